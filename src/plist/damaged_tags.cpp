#include "plist/damaged_tags.h"

namespace plist {

namespace {

// A tag as it is written where it has no attributes.
struct TagForm {
  std::string_view text;
  Tag tag;
};
constexpr TagForm forms[] = {
    {"<key>", {Element::key, false, false}},         {"</key>", {Element::key, true, false}},
    {"<string>", {Element::string, false, false}},   {"</string>", {Element::string, true, false}},
    {"<integer>", {Element::integer, false, false}}, {"</integer>", {Element::integer, true, false}},
    {"<dict>", {Element::dictionary, false, false}}, {"</dict>", {Element::dictionary, true, false}},
    {"<array>", {Element::array, false, false}},     {"</array>", {Element::array, true, false}},
    {"<true/>", {Element::true_value, false, true}}, {"<false/>", {Element::false_value, false, true}},
    {"<date>", {Element::date, false, false}},       {"</date>", {Element::date, true, false}},
    {"<real>", {Element::real, false, false}},       {"</real>", {Element::real, true, false}},
    {"<data>", {Element::data, false, false}},       {"</data>", {Element::data, true, false}},
};

bool differs_in_one_byte(std::string_view text, std::string_view form) {
  if (text.size() != form.size()) return false;
  int differences = 0;
  for (size_t i = 0; i < form.size() && differences < 2; ++i) differences += text[i] != form[i];
  return differences == 1;
}

// What stands between the angle brackets; none when there is no ">" before the next "<".
std::optional<std::string_view> content_of_tag(std::string_view text) {
  if (text.empty() || text.front() != '<') return std::nullopt;
  text = text.substr(1, text.find('<', 1) - 1);
  const size_t end = text.find('>');
  if (end == text.npos) return std::nullopt;
  return text.substr(0, end);
}

std::optional<FoundTag> find_whole_tag(std::string_view text) {
  const std::optional<std::string_view> content = content_of_tag(text);
  if (!content) return std::nullopt;
  std::string_view name = *content;
  const bool closes = !name.empty() && name.front() == '/';
  const bool empty = !closes && !name.empty() && name.back() == '/';
  name = name.substr(closes, name.size() - closes - empty);
  const Element element = element_named(name.substr(0, name.find_first_of(" \t\r\n")));
  if (element == Element::unknown) return std::nullopt;
  return FoundTag{{element, closes, empty}, content->size() + 2};
}

std::optional<FoundTag> find_damaged_tag(std::string_view text) {
  // What looks like a damaged close tag may be a stray "<" before a whole open tag.
  if (text.substr(0, 2) == "<<" && find_whole_tag(text.substr(1))) return std::nullopt;
  for (const TagForm& form : forms) {
    const size_t length = form.text.size();
    if (differs_in_one_byte(text.substr(0, length), form.text)) return FoundTag{form.tag, length};
  }
  return std::nullopt;
}

}  // namespace

std::optional<FoundTag> find_tag_at_start(std::string_view text) {
  const std::optional<FoundTag> whole = find_whole_tag(text);
  return whole ? whole : find_damaged_tag(text);
}

bool remove_damaged_close_tag(std::string_view& text, Element element) {
  const size_t last = text.find_last_not_of(" \t\r\n");
  const std::string_view trimmed = text.substr(0, last + 1);
  for (const TagForm& form : forms) {
    if (!form.tag.closes || form.tag.element != element || trimmed.size() < form.text.size()) continue;
    const size_t start = trimmed.size() - form.text.size();
    if (!differs_in_one_byte(trimmed.substr(start), form.text)) continue;
    text = trimmed.substr(0, start);
    return true;
  }
  return false;
}

}  // namespace plist
