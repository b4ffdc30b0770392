#include "zxml/zXML.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// The bytes that write_text writes, checked against the size that text_size foretells.
std::string written(const Tag& tag, bool no_close = false, bool without_children = false) {
  std::string text(tag.text_size() + 1, '\0');
  text.resize(tag.write_text(text.data(), 0, no_close, without_children));
  return text;
}

TEST(WriteText, WritesNothingForATagWithoutValue) { EXPECT_EQ(written(Tag("t")), "*t=\n"); }

}  // namespace
