// What the commands that ask in SQL have in common: their files, their patience, and answers as texts.
#pragma once

#include <string>
#include <vector>

#include "inv/commands/command.h"
#include "inv/export/query.h"

namespace inv {

// How long a question may take unless the caller says otherwise, in seconds.
constexpr unsigned kUsualPatience = 60;

// The option --timeout.
void add_timeout(CLI::App& command, unsigned& patience);

// Adds the files that can be read, complaining of those that cannot, without their secrets unless they are
// kept. False, after a complaint, when there is no database to ask.
bool open_for_questions(const char* command, QueryDatabase& database, const std::vector<std::string>& files,
                        uint64_t max_size, bool keep_secrets, int& status);

// An answer as "table", "csv" or "json", an array of objects.
std::string result_text(const QueryResult& result, const std::string& format);

}  // namespace inv
