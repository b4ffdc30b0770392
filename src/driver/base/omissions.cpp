#include "driver/base/omissions.h"

namespace {

struct Word {
  std::string_view word;
  bool Omissions::*member;
};

constexpr Word kWords[] = {
    {"processes", &Omissions::processes},     {"arguments", &Omissions::arguments},
    {"environment", &Omissions::environment}, {"values", &Omissions::values},
    {"accounts", &Omissions::accounts},       {"people", &Omissions::people},
};

bool add_word(std::string_view word, Omissions& omitted) {
  for (const Word& known : kWords) {
    if (known.word != word) continue;
    omitted.*known.member = true;
    return true;
  }
  return false;
}

}  // namespace

bool add_omissions(std::string_view list, Omissions& omitted) {
  for (size_t comma = list.find(','); comma != list.npos; comma = list.find(',')) {
    if (!add_word(list.substr(0, comma), omitted)) return false;
    list.remove_prefix(comma + 1);
  }
  return add_word(list, omitted);
}

std::string omitted_words(const Omissions& omitted) {
  std::string words;
  for (const Word& known : kWords) {
    if (!(omitted.*known.member)) continue;
    if (!words.empty()) words += ", ";
    words += known.word;
  }
  return words;
}
