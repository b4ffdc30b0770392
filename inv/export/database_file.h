// A database file: which program it belongs to, and its tables.
#pragma once

#include <string>

#include "inv/export/sqlite.h"

namespace inv {

// Opens the file for changes, creates its tables if it is new, and migrates those of earlier versions, all in
// one exclusive transaction. False with the reason, a clause, in `refusal` if it is a database of another
// program or of a later version, which is left unchanged; if anything else fails, the reason is the
// connection's.
bool open_database_file(const std::string& path, Sqlite& sqlite, std::string* refusal);

// The same tables, new and in memory.
bool open_database_in_memory(Sqlite& sqlite);

}  // namespace inv
