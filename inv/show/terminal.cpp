#include "inv/show/terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "inv/base/utf8.h"

namespace inv {
namespace {

constexpr size_t kNarrowest = 20;

Colours chosen_colours = Colours::automatic;

bool is_set(const char* variable) {
  const char* value = std::getenv(variable);
  return value && *value;
}

bool has_colours(bool interactive) {
  if (chosen_colours != Colours::automatic) return chosen_colours == Colours::always;
  const char* kind = std::getenv("TERM");
  return interactive && !is_set("NO_COLOR") && kind && std::string_view(kind) != "dumb";
}

Terminal terminal_of(int descriptor) {
  Terminal terminal;
  terminal.interactive = isatty(descriptor) != 0;
  terminal.colour = has_colours(terminal.interactive);
  if (!terminal.interactive) return terminal;
  winsize size = {};
  const bool is_known = ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  if (is_known) terminal.width = std::max<size_t>(size.ws_col, kNarrowest);
  return terminal;
}

}  // namespace

std::string Terminal::styled(const char* code, std::string_view text) const {
  if (!colour || text.empty()) return std::string(text);
  return std::string("\x1B[").append(code).append("m").append(text).append("\x1B[0m");
}

void set_colours(Colours colours) { chosen_colours = colours; }

Terminal output_terminal() { return terminal_of(STDOUT_FILENO); }

Terminal error_terminal() { return terminal_of(STDERR_FILENO); }

bool print(std::string_view text) {
  return std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
}

void complain(std::string_view about, std::string_view text) {
  const std::string line = "inv: " + printable(about) + ": " + printable(text) + "\n";
  std::fwrite(line.data(), 1, line.size(), stderr);
}

}  // namespace inv
