#include "zxml/value.h"

#include <cstring>
#include <utility>

namespace {

// Writes `text` to `converted` with line ends turned into carriage returns and returns the number of bytes
// written. `offset` is where the original layout would have put the next piece of text. A piece that does not
// join the text written so far was hidden after that text's terminator, and so is lost; the last piece
// always joins.
size_t convert_line_ends(const char* text, char* converted) {
  size_t length = 0;
  size_t offset = 0;
  const auto append = [&](const char* piece, size_t size) {
    std::memcpy(converted + length, piece, size);
    length += size;
  };
  for (;;) {
    const size_t size = std::strcspn(text, "\r\n");
    const char line_end = text[size];
    if (line_end == '\0') {
      append(text, size);
      return length;
    }
    const bool pair = line_end == '\r' && text[size + 1] == '\n';
    const bool joins = offset == length;
    // The last byte before a pair is cut off.
    if (joins) append(text, pair && size > 0 ? size - 1 : size);
    // A lone carriage return is dropped.
    if (pair || line_end == '\n') converted[length++] = '\r';
    offset += size + (pair || line_end == '\r' ? 1 : 2);
    text += size + (pair ? 2 : 1);
  }
}

// The new length of a text whose blanks at both ends are dropped in place; a single byte is kept, whatever it
// is.
size_t trim_blanks(char* text, size_t length) {
  if (length <= 1 || (text[0] != ' ' && text[length - 1] != ' ')) return length;
  size_t leading = 0;
  while (leading < length && text[leading] == ' ') ++leading;
  length -= leading;
  std::memmove(text, text + leading, length);
  while (length > 1 && text[length - 1] == ' ') --length;
  return length;
}

}  // namespace

Value::Value(Value&& source) noexcept { *this = std::move(source); }

Value& Value::operator=(const Value& source) {
  if (this == &source || source.kind_ == Kind::none) return *this;
  text_ = copy_text(source.text_.get());
  kind_ = source.kind_;
  payload_ = source.payload_;
  return *this;
}

Value& Value::operator=(Value&& source) noexcept {
  if (this == &source || source.kind_ == Kind::none) return *this;
  text_ = std::move(source.text_);
  kind_ = source.kind_;
  payload_ = source.payload_;
  source.clear();
  return *this;
}

void Value::become(Kind kind) {
  text_.reset();
  payload_.int64 = 0;
  kind_ = kind;
}

void Value::set_text(const char* text) {
  if (!text) text = "";
  Text converted(new char[std::strlen(text) + 1]);
  size_t length = convert_line_ends(text, converted.get());
  length = trim_blanks(converted.get(), length);
  converted[length] = '\0';
  become(Kind::text);
  text_ = std::move(converted);
}

void Value::set_string(const char* text) {
  Text copy = copy_text(text ? text : "");
  become(Kind::text);
  text_ = std::move(copy);
}

void Value::set_bool(bool flag) {
  become(Kind::boolean);
  payload_.boolean = flag ? 1 : 0;
}

void Value::set_int64(int64_t number) {
  become(Kind::int64);
  payload_.int64 = number;
}

void Value::set_double(double number) {
  become(Kind::real);
  payload_.real = number;
}

void Value::clear() { become(Kind::none); }

Value text_value(const char* text) {
  Value value;
  value.set_text(text);
  return value;
}
