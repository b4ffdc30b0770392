// Text for JSON: what is not UTF-8 becomes U+FFFD, so that no JSON writer refuses it.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "inv/base/text_sink.h"
#include "inv/base/utf8.h"

namespace inv {

using Json = nlohmann::ordered_json;

inline Json json_text(std::string_view text) { return to_utf8(text); }

// Appends a text as a quoted JSON string, exactly as Json's own writer does, but fast enough for millions of
// rows.
void append_json(std::string& json, std::string_view text);

// An array that is written one element after the other, in the form of Json's own writer.
class JsonArray {
 public:
  // Each level is indented by so many blanks more.
  JsonArray(const TextSink& sink, int indent) : sink_(sink), indent_(indent) {}
  void add(const Json& element);
  // To be called once, after the last element.
  void end();

 private:
  TextSink sink_;
  int indent_;
  bool is_empty_ = true;
};

}  // namespace inv
