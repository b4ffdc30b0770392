// Reading back what the library compressed: texts are compared inflated, since another zlib may compress the
// same text to other bytes.
#pragma once

#include <gtest/gtest.h>
#include <zlib.h>

#include <string>

#include "zxml/bytes.h"

inline std::string as_string(const Bytes& bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.length()};
}

// Inflates the complete zlib stream that `bytes` begin with; `consumed` is its length.
inline std::string inflated_first(const std::string& bytes, size_t* consumed) {
  z_stream stream = {};
  EXPECT_EQ(inflateInit(&stream), Z_OK);
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
  stream.avail_in = static_cast<uInt>(bytes.size());
  std::string text;
  char piece[65536];
  int status = Z_OK;
  while (status == Z_OK) {
    stream.next_out = reinterpret_cast<Bytef*>(piece);
    stream.avail_out = sizeof piece;
    status = inflate(&stream, Z_NO_FLUSH);
    text.append(piece, sizeof piece - stream.avail_out);
  }
  EXPECT_EQ(status, Z_STREAM_END);
  *consumed = stream.total_in;
  inflateEnd(&stream);
  return text;
}

// Inflates bytes that are exactly one zlib stream.
inline std::string inflated(const std::string& bytes) {
  size_t consumed = 0;
  std::string text = inflated_first(bytes, &consumed);
  EXPECT_EQ(consumed, bytes.size());
  return text;
}
