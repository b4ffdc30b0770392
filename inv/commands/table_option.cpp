#include "inv/commands/table_option.h"

#include "inv/export/tables.h"

namespace inv {

void add_table_option(CLI::App& command, std::string& table) {
  std::string description = "Rows of one kind of thing in place of facts: ";
  for (const std::string_view name : table_names()) {
    const bool is_last = name == table_names().back();
    description.append(is_last ? " or " : name == table_names().front() ? "" : ", ").append(name);
  }
  limit_to(command.add_option("--table", table, description)->type_name("NAME"), table_names());
}

}  // namespace inv
