// The tags and texts of a damaged list, one after the other.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "plist/cursor.h"
#include "plist/tags.h"

namespace plist {

class DamagedInput {
 public:
  // Begins with the XML declaration or <plist; where there is neither, with the first byte.
  explicit DamagedInput(std::string_view list);

  // The next tag of an element other than plist. Text, comments and anything else before it are skipped.
  // std::nullopt at the end.
  std::optional<Tag> next_tag();

  // Whether a "<" comes right before that tag, as before a close tag whose slash was damaged.
  bool after_bracket() const { return after_bracket_; }

  // After an open tag: the text up to its close tag, which is read as well. False when another tag or the end
  // comes first; the input then stays there. Entities are resolved where they are known, and invalid UTF-8 is
  // replaced.
  bool read_text(Element element, std::string& text);
  // The bytes as they are.
  bool read_raw_text(Element element, std::string& text);

 private:
  enum class Entities { resolve, keep };
  bool gather_text(Element element, Entities entities, std::string& text);
  void skip_word();
  bool skip_section(std::string_view end);

  Cursor cursor_;
  bool after_bracket_ = false;
};

}  // namespace plist
