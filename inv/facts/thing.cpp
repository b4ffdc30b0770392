#include "inv/facts/thing.h"

#include <algorithm>
#include <optional>

#include "driver/base/text.h"
#include "inv/base/byte_reader.h"
#include "inv/facts/readable.h"

namespace inv {
namespace {

constexpr std::string_view kItsNumber = "its number";

// "1.0 TB" as "1 TB".
std::string without_zero(std::string size) {
  const size_t zero = size.find(".0 ");
  if (zero != std::string::npos) size.erase(zero, 2);
  return size;
}

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r\n";
  const size_t first = text.find_first_not_of(kBlanks);
  if (first == text.npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::string value_from(Element thing, std::string_view source) {
  if (source.empty()) return std::string(trimmed(thing.value()));
  if (source == kItsNumber) return std::string(thing.name().substr(thing.name().find(':') + 1));
  const Attribute* attribute = thing.attribute(source);
  if (!attribute) return "";
  return readable_value(find_fact_below(find_fact(thing), source), trimmed(attribute->value),
                        attribute->annotation("base-value"));
}

Range<DescriptionPart> description_parts(Element thing) {
  const CatalogueFact* fact = find_fact(thing);
  return fact ? fact->wording.described_as : Range<DescriptionPart>();
}

// The wanted parts that have a value, with the texts around them.
template <typename Wanted>
std::string parts_of(Element thing, Wanted wanted) {
  std::string text;
  for (const DescriptionPart& part : description_parts(thing)) {
    const std::string value = value_from(thing, part.source);
    if (!value.empty() && wanted(part, text)) text.append(part.before).append(value).append(part.after);
  }
  // Drops what separated it from a missing part.
  const size_t first = text.find_first_not_of(' ');
  const size_t last = text.find_last_not_of(" ,");
  return first == text.npos || last == text.npos ? "" : text.substr(first, last - first + 1);
}

bool is_bracketed(const DescriptionPart& part) { return part.after == ")"; }

}  // namespace

Element thing_of(Element element) {
  Element thing = element;
  for (; thing; thing = thing.parent()) {
    const CatalogueFact* fact = find_fact(thing);
    if (fact && !fact->wording.called.empty() && (thing == element || thing.parent())) break;
  }
  return thing;
}

bool is_there(Element thing) {
  const CatalogueFact* fact = find_fact(thing);
  return !fact || fact->wording.there_when.empty() || thing.text(fact->wording.there_when) == "1";
}

std::string description_of(Element thing) {
  if (description_parts(thing).empty()) return std::string(trimmed(thing.value()));
  return parts_of(thing, [](const DescriptionPart&, const std::string&) { return true; });
}

std::string contents_of(Element thing) {
  return parts_of(thing,
                  [](const DescriptionPart& part, const std::string&) { return part.source != kItsNumber; });
}

std::string name_of(Element thing) {
  return parts_of(thing, [](const DescriptionPart& part, const std::string& text) {
    return text.empty() && !is_bracketed(part);
  });
}

std::string bracket_of(Element thing) {
  return parts_of(thing, [](const DescriptionPart& part, const std::string&) { return is_bracketed(part); });
}

std::string word_for(const CatalogueFact* fact, std::string_view name) {
  if (fact && !fact->wording.word.empty()) return std::string(fact->wording.word);
  std::string words(name);
  std::replace(words.begin(), words.end(), '-', ' ');
  return words;
}

std::string readable_value(const CatalogueFact* fact, std::string_view value, std::string_view base_value) {
  if (!fact) return std::string(value);
  if (fact->wording.yes_no && (value == "0" || value == "1")) return value == "1" ? "yes" : "no";
  if (fact->unit.empty() || value.empty()) return std::string(value);
  const std::optional<uint64_t> bytes = parse_decimal(base_value);
  if (bytes && fact->unit == "GB") return without_zero(readable_size(*bytes));
  const std::optional<uint64_t> number = parse_decimal(value);
  if (number && fact->unit == "MB") return readable_memory(*number);
  return std::string(value).append(" ").append(fact->unit);
}

}  // namespace inv
