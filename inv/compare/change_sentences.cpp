#include "inv/compare/change_sentences.h"

#include <algorithm>
#include <functional>

#include "inv/base/utf8.h"
#include "inv/compare/changed_things.h"
#include "inv/compare/followers.h"
#include "inv/facts/catalogue.h"
#include "inv/facts/element_identity.h"
#include "inv/facts/paths.h"
#include "inv/facts/thing.h"

namespace inv {
namespace {

using Kind = ChangeSentence::Kind;

constexpr size_t kWidestValue = 100;
constexpr size_t kMostFacts = 8;
constexpr std::string_view kVersion = "version";

std::string shown(std::string_view value) { return shorten(printable(value), kWidestValue); }

// Whether it is a different thing in the same place, by which alone the two are paired.
bool is_another(const ChangedThing& thing) {
  return thing.old_thing && thing.new_thing && is_replaceable(thing.new_thing) &&
         own_identity_of(thing.new_thing).empty() &&
         description_of(thing.old_thing) != description_of(thing.new_thing);
}

Kind kind_of(const ChangedThing& thing) {
  if (thing.successor) return Kind::replaced;
  if (thing.came) return Kind::added;
  if (thing.went) return Kind::removed;
  if (!thing.old_thing || !thing.new_thing) return Kind::changed;
  const bool was_there = is_there(thing.old_thing);
  const bool is_there_now = is_there(thing.new_thing);
  if (was_there != is_there_now) return was_there ? Kind::removed : Kind::added;
  return is_another(thing) ? Kind::replaced : Kind::changed;
}

// "Disk"; the path if there is no word.
std::string noun_of(Element thing) {
  const CatalogueFact* fact = find_fact(thing);
  const bool has_noun = fact && !fact->wording.called.empty();
  return has_noun ? std::string(fact->wording.called) : shown(path_of(thing));
}

std::string with_blank(const std::string& text) { return text.empty() ? "" : text + " "; }

// The words for an element below a thing, and for the elements between: "h freq ".
std::string words_to(Element element, Element thing) {
  std::string words;
  for (; element && element != thing; element = element.parent()) {
    const CatalogueFact* fact = find_fact(element);
    if (has_details(element)) break;
    std::string name = word_for(fact, element.name());
    std::replace(name.begin(), name.end(), ':', ' ');
    words = name + " " + words;
  }
  return words;
}

std::string value_or_nothing(const CatalogueFact* fact, std::string_view value, std::string_view base) {
  return value.empty() ? "nothing" : shown(readable_value(fact, value, base));
}

// "firmware A to B", "info X added", "v mode 3 1280 x 1024 removed".
std::string fact_text(const Change& change, Element thing) {
  const CatalogueFact* fact = attribute_fact(change);
  const Element element = change.element();
  std::string words = printable(words_to(element, thing));
  if (change.is_own_value() && words.empty()) words = "name ";
  if (const Annotation* annotation = change.annotation())
    words += printable(word_for(fact, annotation->key)) + " ";
  if (const Attribute* attribute = change.attribute())
    words += printable(word_for(fact, attribute->name)) + " ";
  const auto value = [&](std::string_view text, std::string_view base) {
    return text.empty() && change.is_whole_element() ? "" : value_or_nothing(fact, text, base);
  };
  switch (change.kind) {
    case Change::Kind::added:
      return words + with_blank(value(change.new_value(), change.new_base())) + "added";
    case Change::Kind::removed:
      return words + with_blank(value(change.old_value(), change.old_base())) + "removed";
    case Change::Kind::changed:
      return words + value(change.old_value(), change.old_base()) + " to " +
             value(change.new_value(), change.new_base());
  }
  return words;
}

}  // namespace

class ChangeSentences::Writer {
 public:
  explicit Writer(std::vector<Change> its_changes)
      : changes(std::move(its_changes)), followers_(changes), things_(changes) {
    count_names();
    for (size_t i = 0; i < things_.list().size(); ++i) {
      const ChangedThing& thing = things_.list()[i];
      if (!thing.is_successor && !is_silent(thing)) mentioned_.push_back(static_cast<uint32_t>(i));
    }
  }

  const std::vector<Change> changes;

  size_t size() const { return mentioned_.size(); }

  ChangeSentence write(size_t place) const {
    const ChangedThing& thing = things_.list()[mentioned_[place]];
    ChangeSentence change;
    change.kind = kind_of(thing);
    change.thing = noun_of(thing.any());
    change.sentence = sentence(change, thing);
    return change;
  }

  std::vector<size_t> changes_of(size_t place) const {
    std::vector<size_t> all;
    things_.each_change(things_.list()[mentioned_[place]], [&](size_t change) { all.push_back(change); });
    return all;
  }

 private:
  bool is_silent(const ChangedThing& thing) const {
    bool silent = true;
    things_.each_change(thing, [&](size_t place) { silent = silent && followers_.says_no_more(place); });
    return silent;
  }

  std::string sentence(const ChangeSentence& change, const ChangedThing& thing) const {
    switch (change.kind) {
      case Kind::added:
        return whole_sentence(change, thing.new_thing);
      case Kind::removed:
        return whole_sentence(change, thing.old_thing);
      case Kind::replaced:
        return change.thing + " replaced: " + named(description_of(thing.old_thing)) + " by " +
               named(thing.successor ? description_of(thing.successor) : contents_of(thing.new_thing));
      case Kind::changed:
        return changed_sentence(change.thing, thing);
    }
    return "";
  }

  static std::string whole_sentence(const ChangeSentence& change, Element thing) {
    const std::string description = shown(description_of(thing));
    if (!is_there(thing))
      return with_blank(change.thing) + with_blank(description) + kind_text(change.kind) + ", empty";
    return change.thing + " " + kind_text(change.kind) + (description.empty() ? "" : ": " + description);
  }

  static std::string named(const std::string& description) {
    return description.empty() ? "one without a name" : shown(description);
  }

  // The beginning of the sentence, followed by the changed facts.
  std::string changed_sentence(const std::string& noun, const ChangedThing& thing) const {
    std::vector<const Change*> all, rest;
    const Change* version = nullptr;
    bool renamed = false;
    things_.each_change(thing, [&](size_t place) {
      if (followers_.says_no_more(place)) return;
      const Change& change = changes[place];
      all.push_back(&change);
      const bool is_own = change.element() == thing.any() && change.kind == Change::Kind::changed;
      if (is_own && change.attribute() && change.attribute()->name == kVersion) {
        version = &change;
      } else if (is_own && change.is_of_element()) {
        renamed = true;
      } else {
        rest.push_back(&change);
      }
    });
    if (renamed && is_described(thing)) {
      return noun + " " + shown(description_of(thing.old_thing)) + " to " +
             shown(description_of(thing.new_thing)) + fact_list(", ", rest, thing);
    }
    if (version && is_described(thing)) {
      return shown(name_of(thing.new_thing)) + bracket_if_needed(thing) + " " + shown(version->old_value()) +
             " to " + shown(version->new_value()) + fact_list(", ", rest, thing);
    }
    return subject(noun, thing) + fact_list(": ", all, thing);
  }

  static bool is_described(const ChangedThing& thing) {
    return thing.old_thing && thing.new_thing && !name_of(thing.old_thing).empty() &&
           !name_of(thing.new_thing).empty();
  }

  static std::string subject(const std::string& noun, const ChangedThing& thing) {
    std::string subject = noun;
    for (const std::string& part : {name_of(thing.any()), bracket_of(thing.any())}) {
      if (!part.empty()) subject += " " + shown(part);
    }
    return subject;
  }

  static std::string fact_list(const char* before, const std::vector<const Change*>& facts,
                               const ChangedThing& thing) {
    std::string text;
    for (size_t i = 0; i < facts.size() && i < kMostFacts; ++i) {
      text += (i == 0 ? before : ", ") +
              fact_text(*facts[i], facts[i]->new_element ? thing.new_thing : thing.old_thing);
    }
    if (facts.size() > kMostFacts) text += " and " + std::to_string(facts.size() - kMostFacts) + " more";
    return text;
  }

  // Equal for things of the same name; if two names collide by chance, they only get superfluous brackets.
  static size_t name_key(const ChangedThing& thing) {
    return std::hash<std::string>()(noun_of(thing.any()) + " " + name_of(thing.any()));
  }

  void count_names() {
    for (const ChangedThing& thing : things_.list()) name_keys_.push_back(name_key(thing));
    std::sort(name_keys_.begin(), name_keys_.end());
  }

  size_t times_changed(const ChangedThing& thing) const {
    const auto [first, last] = std::equal_range(name_keys_.begin(), name_keys_.end(), name_key(thing));
    return static_cast<size_t>(last - first);
  }

  // If two things have the same name, the brackets distinguish them.
  std::string bracket_if_needed(const ChangedThing& thing) const {
    const std::string bracket = shown(bracket_of(thing.new_thing));
    return !bracket.empty() && times_changed(thing) > 1 ? " " + bracket : "";
  }

  Followers followers_;
  ChangedThings things_;
  std::vector<size_t> name_keys_;    // of all things, sorted
  std::vector<uint32_t> mentioned_;  // the things that have a sentence
};

ChangeSentences::ChangeSentences(std::vector<Change> changes)
    : writer_(std::make_unique<const Writer>(std::move(changes))) {}

ChangeSentences::ChangeSentences(ChangeSentences&& other) noexcept = default;

ChangeSentences::~ChangeSentences() = default;

const std::vector<Change>& ChangeSentences::changes() const { return writer_->changes; }

size_t ChangeSentences::size() const { return writer_->size(); }

ChangeSentence ChangeSentences::operator[](size_t place) const { return writer_->write(place); }

std::vector<size_t> ChangeSentences::changes_of(size_t place) const { return writer_->changes_of(place); }

const char* kind_text(ChangeSentence::Kind kind) {
  switch (kind) {
    case Kind::added:
      return "added";
    case Kind::removed:
      return "removed";
    case Kind::replaced:
      return "replaced";
    case Kind::changed:
      return "changed";
  }
  return "";
}

}  // namespace inv
