// Decompression of untrusted streams.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace inv {

struct Inflated {
  std::string bytes;
  size_t consumed = 0;  // of the input, up to the end of the stream or the damage
  std::string error;    // a clause; empty if the stream is intact
};

// Inflates one zlib stream, which may end before the input does. Nothing beyond `limit` bytes of output is
// kept or computed: a longer stream is an error.
Inflated inflate_stream(std::string_view input, uint64_t limit);

}  // namespace inv
