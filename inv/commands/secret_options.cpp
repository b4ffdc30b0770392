#include "inv/commands/secret_options.h"

#include "inv/secrets/mask.h"
#include "inv/show/terminal.h"

namespace inv {

void add_secrets(CLI::App& command, bool& keep_secrets) {
  command.add_flag("--secrets", keep_secrets, "Keep passwords, keys and tokens, which are masked otherwise");
}

size_t mask_unless_kept(bool keep_secrets, Inventory& inventory) {
  return keep_secrets ? 0 : mask_secrets(inventory);
}

void report_masked(const char* command, size_t count) {
  if (count == 0) return;
  complain(command, std::to_string(count) + (count == 1 ? " secret is" : " secrets are") +
                        " masked; --secrets keeps them");
}

}  // namespace inv
