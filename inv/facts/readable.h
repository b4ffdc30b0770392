// Values of a file in words that people read.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace inv {

// "20120118153045.000000+120" as "2012-01-18 15:30:45 +02:00"; anything else unchanged.
std::string readable_time(const std::string& timestamp);
// "00000002030405.000000:000" as "2 days 3:04:05"; anything else unchanged.
std::string readable_uptime(std::string_view uptime);
// Megabytes of memory, where a gigabyte has 1024 of them: "8 GB".
std::string readable_memory(uint64_t megabytes);
// Bytes of a disk, where a gigabyte is 10^9: "500 GB", "1.5 TB".
std::string readable_size(uint64_t bytes);
// A word of the system profiler's own in those of people, "arch_arm_i64" as "Universal"; others unchanged.
std::string_view readable_word(std::string_view word);
// How many of what an English noun names: "1 process", "2 processes".
std::string readable_count(size_t count, const std::string& noun);

}  // namespace inv
