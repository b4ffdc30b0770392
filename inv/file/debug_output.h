// The system profiler's own output, as a debug run keeps it: one property list over all data types.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace inv {

struct DataType {
  std::string name;  // "SPHardwareDataType": letters and digits only
  // Its dictionary, with the blanks before it and the line end after it; points into the output.
  std::string_view dict;
};

// The dictionaries of the outermost array that say which data type they are, in order. Nothing is checked
// beyond the tags that lead there: an output that no parser accepts is split all the same.
std::vector<DataType> split_profiler_output(std::string_view output);

// The first text under this key in a data type's dictionary, wherever in it; empty when there is none.
std::string_view text_of_key(std::string_view dict, std::string_view key);

// What the profiler prints for this data type alone: the dictionary in the frame of every such output.
std::string output_of(const DataType& type);

}  // namespace inv
