// The database's schema, schema.sql, as the build puts it into the program.
#pragma once

#include <string_view>

namespace inv {

extern const std::string_view kDatabaseSchema;

}  // namespace inv
