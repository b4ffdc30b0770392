// The data types that a scan requests from the system profiler.
#pragma once

#include <string_view>

struct DataType {
  const char* name;
  const char* title;  // that the operator sees
  int percent;        // the progress that is printed once it has run; 0: nothing
  // Keys on which many facts depend: everything below them, or what is read only when they say so; unused
  // entries are empty. And a value of a key like that. All are repaired where one byte of them is damaged.
  std::string_view keys[4];
  std::string_view value;
};

// In the order of the document.
extern const DataType kDataTypes[21];
