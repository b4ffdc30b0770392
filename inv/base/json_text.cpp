#include "inv/base/json_text.h"

#include <cstdio>

namespace inv {
namespace {

bool is_plain(char character) {
  return static_cast<unsigned char>(character) >= 0x20 && character != '"' && character != '\\';
}

void append_escaped(std::string& json, char character) {
  constexpr std::string_view kNamed = "\"\\\b\f\n\r\t";
  constexpr std::string_view kNames = "\"\\bfnrt";
  const size_t place = kNamed.find(character);
  if (place != kNamed.npos) {
    json += '\\';
    json += kNames[place];
    return;
  }
  char code[8];
  std::snprintf(code, sizeof code, "\\u%04x", static_cast<unsigned>(character));
  json += code;
}

void append_valid(std::string& json, std::string_view text) {
  json += '"';
  size_t start = 0;
  for (size_t i = 0; i < text.size(); ++i) {
    if (is_plain(text[i])) continue;
    json.append(text, start, i - start);
    append_escaped(json, text[i]);
    start = i + 1;
  }
  json.append(text, start, text.npos);
  json += '"';
}

}  // namespace

void JsonArray::add(const Json& element) {
  const std::string line_start = "\n" + std::string(static_cast<size_t>(indent_), ' ');
  std::string text = (is_empty_ ? "[" : ",") + line_start;
  is_empty_ = false;
  // Line ends in texts are escaped.
  for (const char character : element.dump(indent_)) {
    if (character == '\n') {
      text += line_start;
    } else {
      text += character;
    }
  }
  sink_(text);
}

void JsonArray::end() { sink_(is_empty_ ? "[]" : "\n]"); }

void append_json(std::string& json, std::string_view text) {
  if (is_utf8(text)) {
    append_valid(json, text);
  } else {
    append_valid(json, to_utf8(text));
  }
}

}  // namespace inv
