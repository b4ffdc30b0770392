#include "inv/facts/facts.h"

#include <algorithm>

namespace inv {

std::string_view unit_of(const CatalogueFact* tag, const Attribute& attribute) {
  const std::string_view stated = attribute.annotation("units");
  if (!stated.empty()) return stated;
  const CatalogueFact* fact = find_fact_below(tag, attribute.name);
  return fact ? fact->unit : std::string_view();
}

bool is_number(std::string_view value) {
  constexpr size_t kMostDigits = 15;
  const auto are_digits = [](std::string_view text) {
    return !text.empty() &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
  };
  if (!value.empty() && value.front() == '-') value.remove_prefix(1);
  const size_t point = value.find('.');
  const std::string_view whole = value.substr(0, point);
  if (!are_digits(whole) || (whole.size() > 1 && whole.front() == '0')) return false;
  if (point == value.npos) return value.size() <= kMostDigits;
  return are_digits(value.substr(point + 1)) && value.size() - 1 <= kMostDigits;
}

}  // namespace inv
