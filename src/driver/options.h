// The command line: the only configuration there is.
#pragma once

#include <string>

#include "driver/base/omissions.h"
#include "driver/base/text.h"

struct Options {
  bool silent = false;  // ask nothing, and print for a calling program
  bool log = false;     // stage banners on standard output
  bool debug = false;   // save the raw profiler output instead of a snapshot
  Text ip;  // the address of the adapter to use; null if not given; an empty one is an address too
  Text login = copy_text("");  // stored as it is
  bool extended = false;       // also collect what only newer systems report
  Omissions omitted;           // what not to collect
  bool help = false;           // print how the program is used, instead of scanning
  bool version = false;        // print the program's version, instead of scanning
  // All effective options as they were given, separated by blanks; of the login only its name, since its text
  // may be secret.
  std::string given;
  // Why nothing may be scanned: a clause for people, or empty. A mistyped option must not bring into the file
  // what somebody meant to keep out of it.
  std::string refusal;
};

// Reads "/silent", "/ip:VALUE", "/log", "/login:VALUE", "/debug", "/extended" and "/without:LIST", each also
// with "-" in front, in any order. Case matters; anything else is ignored; of a repeated option the last
// value counts, but lists of what to leave out add up. Anything with "without", in capitals too, after
// slashes, backslashes or dashes that is not a list of the names in omissions.h is refused; so is "people" in
// a scan that is not extended.
//
// "/help", "/?", "--help" and "-h" ask for help, "/version" and "--version" for the version. arguments[0] is
// the program's name.
Options parse_options(int count, const char* const* arguments);
