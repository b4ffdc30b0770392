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
// versions.sql: the keys of the versions in the tables.
extern const std::string_view kDatabaseVersions;
// Views with a row for each element of each scan; the catalogue of facts says which.
extern const std::string_view kDatabaseViews;
// Removes them, including those of an earlier version.
extern const std::string_view kDatabaseViewsDropped;

}  // namespace inv
