// What a scan leaves out at the request of whoever runs it.
#pragma once

#include <string>
#include <string_view>

// Everything is collected unless its member is set. The tools for what is left out are not run.
struct Omissions {
  bool processes = false;
  bool arguments = false;    // the command lines of processes; their names stay
  bool environment = false;  // the variables that the scan was started with
  bool values = false;       // their values; their names stay
  bool accounts = false;
  bool people =
      false;  // what else an extended scan reveals about people: their devices, who signed, who scans
};

// Adds what a list names: names of the members, separated by commas without blanks. False if one of them is
// not such a name; the empty one is not.
bool add_omissions(std::string_view list, Omissions& omitted);

// These names, in the order of the members, as "accounts, people"; empty if nothing is left out.
std::string omitted_words(const Omissions& omitted);
