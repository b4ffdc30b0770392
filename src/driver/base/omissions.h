// What a scan leaves out because whoever runs it said so.
#pragma once

#include <string>
#include <string_view>

// Everything is collected unless its member is set. What is left out is not asked for.
struct Omissions {
  bool processes = false;
  bool arguments = false;    // the command lines of processes; their names stay
  bool environment = false;  // the variables that the scan was started with
  bool values = false;       // what stands in them; their names stay
  bool accounts = false;
  bool people = false;  // what else an extended scan tells of people: their devices, who signed, who scans
};

// Adds what the words of a list name, as the members are named, with commas between and no blanks. False when
// one of them is no such word; the empty one is none.
bool add_omissions(std::string_view list, Omissions& omitted);

// Those words, in the order of the members, as "accounts, people"; empty when nothing is left out.
std::string omitted_words(const Omissions& omitted);
