#include "inv/file/inflate.h"

#include <zlib.h>

#include <algorithm>
#include <limits>

namespace inv {
namespace {

// An inventory's text shrinks to about a seventh; if more room is needed, it doubles.
constexpr size_t kUsualRatio = 8;
constexpr size_t kSmallestBuffer = 4096;

constexpr uInt kMostAtOnce = std::numeric_limits<uInt>::max();

class Inflater {
 public:
  Inflater() { ready_ = inflateInit(&stream_) == Z_OK; }
  Inflater(const Inflater&) = delete;
  Inflater& operator=(const Inflater&) = delete;
  ~Inflater() { inflateEnd(&stream_); }

  bool ready() const { return ready_; }
  z_stream& stream() { return stream_; }

 private:
  z_stream stream_ = {};
  bool ready_ = false;
};

std::string reason(int status, const z_stream& stream) {
  if (status == Z_NEED_DICT) return "the zlib stream needs a preset dictionary";
  if (stream.msg) return std::string("the zlib stream is damaged (") + stream.msg + ")";
  return "the zlib stream is cut short";
}

}  // namespace

Inflated inflate_stream(std::string_view input, uint64_t limit) {
  Inflated result;
  Inflater inflater;
  if (!inflater.ready()) {
    result.error = "zlib cannot be initialised";
    return result;
  }
  z_stream& stream = inflater.stream();
  size_t length = 0;
  for (;;) {
    if (length == result.bytes.size()) {
      // One byte beyond the limit shows that a stream does not fit.
      const uint64_t wanted =
          std::max(kSmallestBuffer, length == 0 ? input.size() * kUsualRatio : length * 2);
      result.bytes.resize(static_cast<size_t>(std::min(wanted, limit + 1)));
    }
    const size_t input_left = input.size() - result.consumed;
    const size_t room = result.bytes.size() - length;
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(input.data() + result.consumed));
    stream.avail_in = static_cast<uInt>(std::min<size_t>(input_left, kMostAtOnce));
    stream.next_out = reinterpret_cast<Bytef*>(&result.bytes[length]);
    stream.avail_out = static_cast<uInt>(std::min<size_t>(room, kMostAtOnce));
    const uInt given = stream.avail_in;
    const uInt offered = stream.avail_out;
    const int status = inflate(&stream, Z_NO_FLUSH);
    result.consumed += given - stream.avail_in;
    length += offered - stream.avail_out;
    if (length > limit) {
      result.error = "it inflates to more than " + std::to_string(limit) + " bytes";
      break;
    }
    if (status == Z_STREAM_END) break;
    const bool starved = result.consumed == input.size() && stream.avail_out > 0;
    if (status != Z_OK || starved) {
      result.error = reason(status, stream);
      break;
    }
  }
  result.bytes.resize(result.error.empty() ? length : 0);
  return result;
}

}  // namespace inv
