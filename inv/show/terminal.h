// Where output goes, and how it looks there.
#pragma once

#include <string>
#include <string_view>

namespace inv {

struct Terminal {
  bool interactive = false;  // a person is watching
  bool colour = false;
  size_t width = 80;  // in columns

  std::string bold(std::string_view text) const { return styled("1", text); }
  std::string dim(std::string_view text) const { return styled("2", text); }
  std::string red(std::string_view text) const { return styled("31", text); }
  std::string green(std::string_view text) const { return styled("32", text); }
  std::string yellow(std::string_view text) const { return styled("33", text); }
  std::string cyan(std::string_view text) const { return styled("36", text); }

 private:
  std::string styled(const char* code, std::string_view text) const;
};

// When output is coloured. Automatic: on a terminal that supports it, unless NO_COLOR is set and not empty.
enum class Colours { automatic, always, never };

// For all terminals requested later.
void set_colours(Colours colours);

// Standard output, with these colours.
Terminal output_terminal();

// The same for standard error.
Terminal error_terminal();

// Writes to standard output. False if that fails, as on a full disk.
[[nodiscard]] bool print(std::string_view text);

// One line on standard error: "inv: about: text".
void complain(std::string_view about, std::string_view text);

}  // namespace inv
