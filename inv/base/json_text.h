// Text for JSON: what is not UTF-8 becomes U+FFFD, so that no writer of JSON can refuse it.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "inv/base/utf8.h"

namespace inv {

using Json = nlohmann::ordered_json;

inline Json json_text(std::string_view text) { return to_utf8(text); }

// Appends a text as JSON has it, in quotes. For rows in their millions; it makes the same of a text as the
// writer of a Json does.
void append_json(std::string& json, std::string_view text);

}  // namespace inv
