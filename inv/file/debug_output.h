// The system profiler's output as a debug run keeps it: one property list with all data types.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace inv {

struct DataType {
  std::string name;  // "SPHardwareDataType": letters and digits only
  // Its dictionary, with preceding blanks and the line end; points into the output.
  std::string_view dict;
};

// The dictionaries of the outermost array that name their data type, in order. Only the tags that lead there
// are checked: output that no parser accepts is split all the same.
std::vector<DataType> split_profiler_output(std::string_view output);

// The first text under this key anywhere in a data type's dictionary; empty if there is none.
std::string_view text_of_key(std::string_view dict, std::string_view key);

// What the profiler prints for this data type alone: the dictionary in its usual frame.
std::string output_of(const DataType& type);

}  // namespace inv
