// Names that say that what they stand for is a secret: of variables, of options, of what comes before "=".
#pragma once

#include <string_view>

namespace inv {

// "AWS_SECRET_ACCESS_KEY", "dbPassword", "client.token", "X-Api-Key"; not "KEYBOARD", "TOKENIZER", nor
// "KEY_FILE" and others whose last word says that they tell of a secret but not the secret itself. Case does
// not matter but where it parts words.
bool names_secret(std::string_view name);

}  // namespace inv
