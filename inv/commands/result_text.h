// What the SQL commands have in common: their files, their timeout, and results as text.
#pragma once

#include <string>
#include <vector>

#include "inv/commands/command.h"
#include "inv/export/query.h"
#include "inv/export/rows.h"

namespace inv {

// How long a query may take by default, in seconds.
constexpr unsigned kUsualPatience = 60;

// The option --timeout.
void add_timeout(CLI::App& command, unsigned& patience);

// Adds the readable files, with their secrets masked unless they are to be kept, and complains of the others.
// False, after a complaint, if there is no database to query: an answer about no file would be taken for a
// good one.
bool open_for_questions(const char* command, QueryDatabase& database, const std::vector<std::string>& files,
                        uint64_t max_size, bool keep_secrets, int& status);

// Writes a result row by row, as "table", "csv" (optionally with disarmed formulas) or "json", an array of
// objects.
void result_text(const QueryResult& result, const std::string& format, Formulas formulas,
                 const TextSink& sink);

}  // namespace inv
