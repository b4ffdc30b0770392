// The database's schema, as the build puts it into the program.
#pragma once

#include <string_view>

namespace inv {

// schema.sql: the tables.
extern const std::string_view kDatabaseSchema;
// set_aside.sql and migration.sql: what brings a database of the versions before to this one, before and
// after the tables are made.
extern const std::string_view kDatabaseSetAside;
extern const std::string_view kDatabaseMigration;
// Views with a row for each element of each scan; the catalogue of facts says which.
extern const std::string_view kDatabaseViews;

}  // namespace inv
