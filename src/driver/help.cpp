#include "driver/help.h"

#include "driver/base/console.h"
#include "driver/base/version.h"

namespace {

constexpr char kHelp[] =
    "Takes the inventory of this Mac and saves it as an .inv file in the current directory.\n"
    "\n"
    "Usage: velkaro-scanner [OPTION...]\n"
    "\n"
    "Options:\n"
    "  -silent      Scan without asking, and print for a calling program\n"
    "  -log         Print the stages of the scan\n"
    "  -debug       Save what the system profiler printed, instead of a snapshot\n"
    "  -extended    Also collect what only newer systems report\n"
    "  -ip:ADDRESS  Use the network adapter with this address as the machine's own\n"
    "  -login:TEXT  Store this text in the file\n"
    "  -without:LIST\n"
    "               Leave out some of processes, arguments, environment, values, accounts\n"
    "               and, with -extended, people; separated by commas\n"
    "  -h,--help    Print this help message and exit\n"
    "  --version    Display program version information and exit\n"
    "\n"
    "Options may also begin with a slash: /silent, /ip:ADDRESS, /help or /?, /version.\n"
    "Any other argument is ignored.\n";

}  // namespace

bool answer_about_program(const Options& options) {
  if (options.help) {
    print_now("%s", kHelp);
  } else if (options.version) {
    print_now("velkaro-scanner %s\nIts files carry client version %s.\n", kVersion, kClientVersion);
  }
  return options.help || options.version;
}
