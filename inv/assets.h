// The files of inv/assets/, as the build puts them into the program.
#pragma once

#include <string_view>

namespace inv {

extern const std::string_view kPage;  // with {{policy}}, {{title}}, {{style}}, {{body}} and {{script}}
extern const std::string_view kPageStyle;
extern const std::string_view kPageScript;
extern const std::string_view kDatabaseSchema;

}  // namespace inv
