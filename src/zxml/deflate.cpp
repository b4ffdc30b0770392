#include "zxml/deflate.h"

#include <zlib.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr size_t kPiece = 16384;

[[noreturn]] void fail(const char* source, unsigned line, const char* condition) {
  std::fprintf(stderr, "%s:%u: failed assertion `%s'\n", source, line, condition);
  std::abort();
}

#define ENSURE(condition) \
  if (!(condition)) fail(source, __LINE__, #condition)

}  // namespace

Bytes deflate_buffer(const void* input, size_t length, const char* source) {
  z_stream strm = {};
  // The version text of the zlib this was first written for; the library checks its first digit only.
  if (deflateInit_(&strm, Z_BEST_COMPRESSION, "1.2.5", static_cast<int>(sizeof strm)) != Z_OK) return Bytes();

  Bytes output(length);
  unsigned char staging[kPiece];
  const unsigned char* next = static_cast<const unsigned char*>(input);
  size_t left = length;
  int ret = Z_OK;
  int flush = Z_NO_FLUSH;
  do {
    const size_t piece = std::min(left, kPiece);
    left -= piece;
    flush = left == 0 ? Z_FINISH : Z_NO_FLUSH;
    strm.next_in = const_cast<Bytef*>(next);
    strm.avail_in = static_cast<uInt>(piece);
    next += piece;
    do {
      strm.next_out = staging;
      strm.avail_out = kPiece;
      ret = deflate(&strm, flush);
      ENSURE(ret != Z_STREAM_ERROR);
      output.append(staging, kPiece - strm.avail_out);
    } while (strm.avail_out == 0);
    ENSURE(strm.avail_in == 0);
  } while (flush != Z_FINISH);
  ENSURE(ret == Z_STREAM_END);
  deflateEnd(&strm);
  return output;
}
