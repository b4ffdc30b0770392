#include "driver/options.h"

#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <string_view>

namespace {

bool is_option(const char* argument, const char* name) {
  return (argument[0] == '/' || argument[0] == '-') && std::strcmp(argument + 1, name) == 0;
}

// The text after "NAME:", or null if the argument is something else.
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

// Whether a text begins with these letters, in capitals or not; they differ in one bit.
bool begins_with(std::string_view text, std::string_view small_letters) {
  const auto same = [](char small, char c) { return (c | 0x20) == small; };
  return text.size() >= small_letters.size() &&
         std::equal(small_letters.begin(), small_letters.end(), text.begin(), same);
}

// An option to leave something out, or a mistyped one: in capitals, with other characters before it, or
// something other than a colon after it. Some people are used to backslashes, and some text editors turn "-"
// into longer dashes, to which the bytes belong.
bool means_to_leave_out(std::string_view argument) {
  const size_t start = argument.find_first_not_of("-/\\\xE2\x80\x90\x91\x92\x93\x94\x95");
  return start != 0 && start != argument.npos && begins_with(argument.substr(start), "without");
}

// An argument as one line of a message.
std::string on_one_line(std::string text) {
  for (char& c : text) {
    if (static_cast<unsigned char>(c) < ' ' || c == '\x7F') c = '?';
  }
  return text;
}

void refuse(Options& options, const char* argument, const char* reason) {
  if (options.refusal.empty()) options.refusal = on_one_line(argument) + ": " + reason;
}

void leave_out(const char* argument, Options& options) {
  const char* list = option_value(argument, "without");
  if (list && add_omissions(list, options.omitted)) return;
  refuse(
      options, argument,
      "can leave out processes, arguments, environment, values, accounts and, with /extended, people, with "
      "commas between");
}

// False if the argument is not one of our options.
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
  } else if (means_to_leave_out(argument)) {
    leave_out(argument, options);
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
  if (options.omitted.people && !options.extended) {
    refuse(options, "/without:people",
           "needs /extended; an ordinary scan has people in its accounts, processes and environment");
  }
  return options;
}
