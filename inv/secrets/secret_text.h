// The secrets in a text, and the text without them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "inv/secrets/secret_shapes.h"

namespace inv {

// In a command line, or any other text that can hold one: what is a secret by its shape, what a name says is
// one ("--password=x", "--password x", "token: x", "?key=x"), and long random texts that stand alone, as a
// word or as the value of a name. In the order of the text; none touches another.
std::vector<TextPart> secrets_in_line(std::string_view line);

// In the value of a variable: all of it when the variable's name says so, else as in a line. What tells
// nothing is no secret: a path, yes or no.
std::vector<TextPart> secrets_in_variable(std::string_view name, std::string_view value);

// The text with "••• (40 characters)" in place of each part. Parts are in order, and none touches another.
std::string masked(std::string_view text, const std::vector<TextPart>& secrets);
// How many secrets a text had that are masked so.
size_t masks_in(std::string_view text);

}  // namespace inv
