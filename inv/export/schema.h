// The database's schema, compiled into the program.
#pragma once

#include <string_view>

namespace inv {

// schema.sql: the tables.
extern const std::string_view kDatabaseSchema;
// set_aside.sql and migration.sql migrate a database of an earlier version, before and after the tables are
// made.
extern const std::string_view kDatabaseSetAside;
extern const std::string_view kDatabaseMigration;
// Views with a row for each element of each scan; the catalogue of facts says which.
extern const std::string_view kDatabaseViews;

}  // namespace inv
