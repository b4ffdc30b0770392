// The report's page, whose files are compiled into the program.
#pragma once

#include <string_view>

namespace inv {

extern const std::string_view kPage;  // with {{policy}}, {{title}}, {{style}}, {{body}} and {{script}}
extern const std::string_view kPageStyle;
extern const std::string_view kPageScript;

}  // namespace inv
