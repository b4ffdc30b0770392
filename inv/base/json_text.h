// Text for JSON: what is not UTF-8 becomes U+FFFD, so that no JSON writer refuses it.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "inv/base/utf8.h"

namespace inv {

using Json = nlohmann::ordered_json;

inline Json json_text(std::string_view text) { return to_utf8(text); }

// Appends a text as a quoted JSON string, exactly as Json's own writer does, but fast enough for millions of
// rows.
void append_json(std::string& json, std::string_view text);

}  // namespace inv
