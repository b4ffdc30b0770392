#include "plist/damaged_tags.h"

#include <algorithm>
#include <iterator>

namespace plist {
namespace {

// A tag as it is written where it has no attributes.
struct TagForm {
  std::string_view text;
  Tag tag;
};
constexpr TagForm kForms[] = {
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
constexpr size_t kLongestForm = std::string_view("</integer>").size();

// A changed byte is likelier than an extra or missing one.
constexpr int kLengthChanges[] = {0, 1, -1};

// Whether the text, which is not empty, is the form with one byte changed, added or missing.
bool differs_in_one_byte(std::string_view text, std::string_view form) {
  // Most texts are ruled out by their last byte, unless that is the one changed or missing.
  if (text.back() != form.back()) {
    const size_t before = form.size() - 1;
    return text.size() <= form.size() && text.substr(0, before) == form.substr(0, before);
  }
  const auto [different, in_form] = std::mismatch(text.begin(), text.end(), form.begin(), form.end());
  if (different == text.end() && in_form == form.end()) return false;
  const size_t same = static_cast<size_t>(in_form - form.begin());
  const bool missing = text.size() < form.size();
  const bool added = text.size() > form.size();
  return text.substr(same + !missing) == form.substr(same + !added);
}

// The text between the angle brackets; empty when there is no ">" before the next "<".
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
  return FoundTag{{element, closes, empty}, content->size() + 2, true};
}

std::optional<FoundTag> find_damaged_tag(std::string_view text) {
  // What looks like a damaged close tag may be a stray "<" before a whole open tag.
  if (text.substr(0, 2) == "<<" && find_whole_tag(text.substr(1))) return std::nullopt;
  // "/dict>" has lost its "<", and not become anything else.
  const bool has_slash = text.substr(0, 2).find('/') != text.npos;
  const bool has_end = text.substr(0, kLongestForm + 1).find('>') != text.npos;
  for (const int change : kLengthChanges) {
    if (change != 0 && !has_end) break;
    for (const TagForm& form : kForms) {
      // What ends with the input may be a tag that was cut.
      if (text.size() < form.text.size() || (has_slash && !form.tag.closes)) continue;
      const size_t length = form.text.size() + static_cast<size_t>(change);
      if (differs_in_one_byte(text.substr(0, length), form.text)) return FoundTag{form.tag, length, false};
    }
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
  const auto form = std::find_if(std::begin(kForms), std::end(kForms), [element](const TagForm& candidate) {
    return candidate.tag.closes && candidate.tag.element == element;
  });
  if (form == std::end(kForms)) return false;
  for (const int change : kLengthChanges) {
    const size_t length = form->text.size() + static_cast<size_t>(change);
    if (trimmed.size() < length) continue;
    const size_t start = trimmed.size() - length;
    if (!differs_in_one_byte(trimmed.substr(start), form->text)) continue;
    text = trimmed.substr(0, start);
    return true;
  }
  return false;
}

}  // namespace plist
