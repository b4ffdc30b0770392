// The database's schema, as the build puts it into the program.
#pragma once

#include <string_view>

namespace inv {

// schema.sql: the tables.
extern const std::string_view kDatabaseSchema;
// Views with a row for each element of each scan; the catalogue of facts says which.
extern const std::string_view kDatabaseViews;

}  // namespace inv
