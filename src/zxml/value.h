// The scalar that a tag or an attribute holds.
#pragma once

#include <cstdint>

#include "driver/base/text.h"

class Value {
 public:
  enum class Kind : int32_t { none = 0, boolean = 1, int64 = 2, real = 3, text = 4 };

  Value() = default;
  explicit Value(int64_t number) { set_int64(number); }
  explicit Value(double number) { set_double(number); }
  Value(const Value& source) { *this = source; }
  Value(Value&& source) noexcept;

  // Assigning an empty value (kind none) leaves this value as it was: a collector that found nothing keeps
  // what is there.
  Value& operator=(const Value& source);
  Value& operator=(Value&& source) noexcept;

  // A text that fits on one line of the text form: line ends become carriage returns and blanks around it are
  // dropped. Text between several line ends, and the byte before a carriage-return-line-feed pair, are lost:
  // the console's files have always been like that. Null gives the empty text.
  void set_text(const char* text);
  // The text exactly as given; null gives the empty text.
  void set_string(const char* text);
  void set_bool(bool flag);
  void set_int64(int64_t number);
  void set_double(double number);
  void clear();

  Kind kind() const { return kind_; }
  // The payload of this kind; false, 0 or null when the value is of another kind.
  bool boolean() const { return kind_ == Kind::boolean && payload_.boolean != 0; }
  int64_t int64() const { return kind_ == Kind::int64 ? payload_.int64 : 0; }
  double real() const { return kind_ == Kind::real ? payload_.real : 0; }
  const char* text() const { return text_.get(); }
  // For the collectors that shorten a text in place; the length may only shrink.
  char* text() { return text_.get(); }

 private:
  union Payload {
    int64_t int64;
    double real;
    int32_t boolean;
  };

  void become(Kind kind);

  Kind kind_ = Kind::none;
  Payload payload_ = {0};
  Text text_;  // present exactly when the kind is text
};

// A value made by set_text: the usual way from outside text into a tree.
Value text_value(const char* text);
