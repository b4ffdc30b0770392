// Names whose value is a secret: of variables, of options, of anything before "=".
#pragma once

#include <string_view>

namespace inv {

// "AWS_SECRET_ACCESS_KEY", "dbPassword", "client.token", "X-Api-Key"; not "KEYBOARD", "TOKENIZER", nor names
// such as "KEY_FILE" whose last word says that they describe a secret. Case matters only where it separates
// words.
bool names_secret(std::string_view name);

}  // namespace inv
