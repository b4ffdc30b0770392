// What changed, in a person's words: a sentence for each thing, however many of its facts changed.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "inv/compare/diff.h"

namespace inv {

struct ChangeSentence {
  enum class Kind { added, removed, replaced, changed };

  Kind kind = Kind::changed;
  std::string thing;  // what kind of thing it is: "Disk"; its path if the catalogue has no word
  // "Disk replaced: SIMDISK 1 TB (A) by SIMDISK 2 TB (B)", "Safari 5.1.10 to 6.0"; fit for a terminal. Long
  // values are cut off, and only the first of very many changes of a thing are listed.
  std::string sentence;
};

// The sentences in the order of the changes. A fact that follows another one according to the catalogue is
// left out if that one changed too; at least one of the changes has a sentence. Each sentence is made on
// request, since there can be millions. Valid as long as the inventories.
class ChangeSentences {
 public:
  explicit ChangeSentences(std::vector<Change> changes);
  ChangeSentences(ChangeSentences&& other) noexcept;
  ~ChangeSentences();

  const std::vector<Change>& changes() const;
  size_t size() const;
  bool empty() const { return size() == 0; }
  ChangeSentence operator[](size_t place) const;
  // The places of the changes that a sentence describes.
  std::vector<size_t> changes_of(size_t place) const;

  class Iterator {
   public:
    Iterator(const ChangeSentences& all, size_t place) : all_(&all), place_(place) {}
    ChangeSentence operator*() const { return (*all_)[place_]; }
    Iterator& operator++() {
      ++place_;
      return *this;
    }
    bool operator!=(const Iterator& other) const { return place_ != other.place_; }

   private:
    const ChangeSentences* all_;
    size_t place_;
  };
  Iterator begin() const { return {*this, 0}; }
  Iterator end() const { return {*this, size()}; }

 private:
  class Writer;
  std::unique_ptr<const Writer> writer_;
};

// "added", "removed", "replaced" or "changed".
const char* kind_text(ChangeSentence::Kind kind);

}  // namespace inv
