// The file of a database: whose it is, and its tables.
#pragma once

#include <string>

#include "inv/export/sqlite.h"

namespace inv {

// Opens the file for changes, creates its tables when it is new, and brings those of the versions before
// to this one, all in one transaction that no other can come between. False with the reason, a clause, in
// `refusal` when it is a database of another program, or of a later version, of which nothing is changed;
// when anything else fails, the reason is the connection's.
bool open_database_file(const std::string& path, Sqlite& sqlite, std::string* refusal);

// The same tables, new and in no file.
bool open_database_in_memory(Sqlite& sqlite);

}  // namespace inv
