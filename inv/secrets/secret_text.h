// The secrets in a text, and the text without them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "inv/secrets/secret_shapes.h"

namespace inv {

// The secrets in a command line, or any other text that can hold one: by their shape, by their name
// ("--password=x", "--password x", "token: x", "?key=x"), and long random texts that are a whole word or the
// value of a name. In the order of the text; none touches another.
std::vector<TextPart> secrets_in_line(std::string_view line);

// In the value of a variable: all of it if the variable's name says so, else as in a line. Values that give
// nothing away are no secrets: a path, yes or no.
std::vector<TextPart> secrets_in_variable(std::string_view name, std::string_view value);

// The text with "••• (40 characters)" in place of each part. Parts are in order, and none touches another.
std::string masked(std::string_view text, const std::vector<TextPart>& secrets);
// How many masked secrets a text contains.
size_t masks_in(std::string_view text);

}  // namespace inv
