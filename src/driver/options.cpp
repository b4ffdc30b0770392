#include "driver/options.h"

#include <algorithm>
#include <cstring>
#include <initializer_list>

namespace {

bool is_option(const char* argument, const char* name) {
  return (argument[0] == '/' || argument[0] == '-') && std::strcmp(argument + 1, name) == 0;
}

// The text after "NAME:", or none when the argument is something else.
const char* option_value(const char* argument, const char* name) {
  const size_t length = std::strlen(name);
  if (argument[0] != '/' && argument[0] != '-') return nullptr;
  if (std::strncmp(argument + 1, name, length) != 0 || argument[1 + length] != ':') return nullptr;
  return argument + 1 + length + 1;
}

bool is_any_of(const char* argument, std::initializer_list<const char*> words) {
  return std::any_of(words.begin(), words.end(),
                     [argument](const char* word) { return std::strcmp(argument, word) == 0; });
}

// False when the argument is none of ours.
bool take(const char* argument, Options& options) {
  if (is_option(argument, "silent")) {
    options.silent = true;
  } else if (const char* ip = option_value(argument, "ip")) {
    options.ip = copy_text(ip);
  } else if (is_option(argument, "log")) {
    options.log = true;
  } else if (const char* login = option_value(argument, "login")) {
    options.login = copy_text(login);
  } else if (is_option(argument, "debug")) {
    options.debug = true;
  } else if (is_option(argument, "extended")) {
    options.extended = true;
  } else if (is_any_of(argument, {"/help", "/?", "--help", "-h"})) {
    options.help = true;
  } else if (is_any_of(argument, {"/version", "--version"})) {
    options.version = true;
  } else {
    return false;
  }
  return true;
}

void note(const char* argument, std::string& given) {
  if (!given.empty()) given += ' ';
  const char* login = option_value(argument, "login");
  given.append(argument, login ? static_cast<size_t>(login - argument) : std::strlen(argument));
}

}  // namespace

Options parse_options(int count, const char* const* arguments) {
  Options options;
  for (int i = 1; i < count; ++i) {
    if (take(arguments[i], options)) note(arguments[i], options.given);
  }
  return options;
}
