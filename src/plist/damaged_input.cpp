#include "plist/damaged_input.h"

#include <algorithm>

#include "plist/damaged_tags.h"
#include "plist/entities.h"
#include "plist/utf8.h"

namespace plist {

DamagedInput::DamagedInput(std::string_view list) : cursor_(list) {
  const size_t start = std::min(list.find("<?xml"), list.find("<plist"));
  if (start != list.npos) cursor_.at += start;
}

std::optional<Tag> DamagedInput::next_tag() {
  after_bracket_ = false;
  for (cursor_.skip_white(); !cursor_.at_end(); cursor_.skip_white()) {
    if (cursor_.sees("<!--")) {
      skip_section("-->");
    } else if (cursor_.sees("<![CDATA[")) {
      skip_section("]]>");
    } else if (const std::optional<FoundTag> found = find_tag_at_start(cursor_.rest())) {
      cursor_.at += found->length;
      if (found->tag.element != Element::plist) return found->tag;
    } else {
      skip_word();
    }
  }
  return std::nullopt;
}

// A comment or CDATA section that is not closed reaches to the end of the input; false then.
bool DamagedInput::skip_section(std::string_view end) {
  if (cursor_.skip_past(end)) return true;
  cursor_.at = cursor_.end;
  return false;
}

void DamagedInput::skip_word() {
  const char* const word = cursor_.at;
  do {
    ++cursor_.at;
  } while (!cursor_.at_end() && *cursor_.at != '<' && !is_white(*cursor_.at));
  after_bracket_ = *word == '<' && cursor_.at == word + 1 && cursor_.sees('<');
}

bool DamagedInput::read_text(Element element, std::string& text) {
  if (!gather_text(element, Entities::resolve, text)) return false;
  if (classify_utf8(text) == Utf8::invalid) text = repair_utf8(text);
  return true;
}

bool DamagedInput::read_raw_text(Element element, std::string& text) {
  return gather_text(element, Entities::keep, text);
}

// A "<" that begins no tag is text, and so is one that only resembles another element's: "_dataType" may have
// become "<dataType".
bool DamagedInput::gather_text(Element element, Entities entities, std::string& text) {
  text.clear();
  for (;;) {
    const std::string_view run = cursor_.take(cursor_.find('<'));
    if (entities == Entities::resolve) {
      append_resolved(text, run);
    } else {
      text += run;
    }
    if (cursor_.at_end()) return false;
    if (cursor_.skip("<![CDATA[")) {
      const char* const section = cursor_.at;
      if (!skip_section("]]>")) return false;
      text.append(section, cursor_.at - 3);
    } else if (cursor_.skip("<!--")) {
      if (!skip_section("-->")) return false;
    } else if (const std::optional<FoundTag> found = find_tag_at_start(cursor_.rest());
               found && (found->whole || (found->tag.closes && found->tag.element == element))) {
      // "</string>" may have become "<<string>".
      const bool slash_damaged = !found->tag.closes && !text.empty() && cursor_.at[-1] == '<';
      if (found->tag.element == element && (found->tag.closes || slash_damaged)) {
        if (slash_damaged) text.pop_back();
        cursor_.at += found->length;
        return true;
      }
      std::string_view before_close = text;
      if (!remove_damaged_close_tag(before_close, element)) return false;
      text.resize(before_close.size());
      return true;
    } else {
      text += *cursor_.at++;
    }
  }
}

}  // namespace plist
