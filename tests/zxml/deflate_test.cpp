#include "zxml/deflate.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <zlib.h>

#include <random>
#include <string>
#include <vector>

#include "zxml/inflated.h"

// The library's calls of zlib are watched here, and can be made to fail: these two definitions come before
// those of zlib in the test program and pass everything on.
namespace {

enum class Fault { none, no_memory, stream_error, input_left, endless };

struct Call {
  uInt input;
  int flush;
  bool operator==(const Call& other) const { return input == other.input && flush == other.flush; }
};

Fault fault = Fault::none;
std::string version_text;
int level = 0;
std::vector<Call> calls;

template <typename Function>
Function of_zlib(const char* name) {
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" int deflateInit_(z_streamp stream, int wanted_level, const char* version, int size) {
  version_text = version;
  level = wanted_level;
  calls.clear();
  if (fault == Fault::no_memory) return Z_MEM_ERROR;
  static const auto kOriginal = of_zlib<decltype(&deflateInit_)>("deflateInit_");
  return kOriginal(stream, wanted_level, version, size);
}

extern "C" int deflate(z_streamp stream, int flush) {
  calls.push_back({stream->avail_in, flush});
  if (fault == Fault::stream_error) return Z_STREAM_ERROR;
  if (fault == Fault::input_left) return Z_OK;
  static const auto kOriginal = of_zlib<decltype(&deflate)>("deflate");
  const int status = kOriginal(stream, flush);
  return fault == Fault::endless && status == Z_STREAM_END ? Z_OK : status;
}

namespace {

std::string deflated(const std::string& input) {
  return as_string(deflate_buffer(input.data(), input.size(), "test"));
}

std::string noise(size_t length) {
  std::mt19937 random(7);
  std::string bytes(length, '\0');
  for (char& byte : bytes) byte = static_cast<char>(random());
  return bytes;
}

class DeflateBuffer : public testing::Test {
 protected:
  void TearDown() override { fault = Fault::none; }
};

TEST_F(DeflateBuffer, GivesOneCompleteStreamForAnyLength) {
  for (const size_t length : {0u, 1u, 2u, 16383u, 16384u, 16385u, 32768u, 100000u, 3000000u}) {
    EXPECT_TRUE(inflated(deflated(std::string(length, 'x'))) == std::string(length, 'x')) << length;
    EXPECT_TRUE(inflated(deflated(noise(length))) == noise(length)) << length;
  }
}

TEST_F(DeflateBuffer, GrowsWhenTheStreamIsLongerThanItsInput) {
  for (const size_t length : {0u, 1u, 10u, 16384u, 100000u})
    EXPECT_GT(deflated(noise(length)).size(), length);
}

TEST_F(DeflateBuffer, AsksForTheBestLevelByTheVersionItWasWrittenFor) {
  EXPECT_EQ(deflated("text").substr(0, 2), "\x78\xDA");
  EXPECT_EQ(level, Z_BEST_COMPRESSION);
  EXPECT_EQ(version_text, "1.2.5");
}

TEST_F(DeflateBuffer, TakesNoInputInOneFinishingCall) {
  deflated("");
  EXPECT_EQ(calls, (std::vector<Call>{{0, Z_FINISH}}));
}

TEST_F(DeflateBuffer, TakesAFullPieceInOneFinishingCall) {
  deflated(std::string(16384, 'x'));
  EXPECT_EQ(calls, (std::vector<Call>{{16384, Z_FINISH}}));
}

TEST_F(DeflateBuffer, TakesOneByteMoreInTwoCalls) {
  deflated(std::string(16385, 'x'));
  EXPECT_EQ(calls, (std::vector<Call>{{16384, Z_NO_FLUSH}, {1, Z_FINISH}}));
}

TEST_F(DeflateBuffer, IsEmptyWhenTheCompressorCannotBeStarted) {
  fault = Fault::no_memory;
  EXPECT_EQ(deflated("text"), "");
}

using DeflateBufferDeathTest = DeflateBuffer;

void deflate_with(Fault wanted, const char* source) {
  fault = wanted;
  deflate_buffer("text", 4, source);
}

TEST_F(DeflateBufferDeathTest, EndsTheProgramAtAStreamError) {
  EXPECT_DEATH(deflate_with(Fault::stream_error, "zXML"),
               "^zXML:[0-9]+: failed assertion `ret != Z_STREAM_ERROR'\n");
}

TEST_F(DeflateBufferDeathTest, EndsTheProgramWhenInputIsLeft) {
  EXPECT_DEATH(deflate_with(Fault::input_left, "INVfile"),
               "^INVfile:[0-9]+: failed assertion `strm.avail_in == 0'\n");
}

TEST_F(DeflateBufferDeathTest, EndsTheProgramWhenTheStreamDoesNotEnd) {
  EXPECT_DEATH(deflate_with(Fault::endless, "zXML"),
               "^zXML:[0-9]+: failed assertion `ret == Z_STREAM_END'\n");
}

}  // namespace
