// Values from a file in a readable form.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace inv {

// "20120118153045.000000+120" as "2012-01-18 15:30:45 +02:00"; anything else unchanged.
std::string readable_time(const std::string& timestamp);
// "00000002030405.000000:000" as "2 days 3:04:05"; anything else unchanged.
std::string readable_uptime(std::string_view uptime);
// Megabytes of memory, with 1024 to the gigabyte: "8 GB".
std::string readable_memory(uint64_t megabytes);
// Bytes on a disk, with 10^9 to the gigabyte: "500 GB", "1.5 TB".
std::string readable_size(uint64_t bytes);
// One of the system profiler's words in plain English, "arch_arm_i64" as "Universal"; others unchanged.
std::string_view readable_word(std::string_view word);
// A count with an English noun: "1 process", "2 processes".
std::string readable_count(size_t count, const std::string& noun);

}  // namespace inv
