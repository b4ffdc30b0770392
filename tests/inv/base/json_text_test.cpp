#include "inv/base/json_text.h"

#include <gtest/gtest.h>

namespace {

TEST(JsonText, AppendsWhatTheWriterOfAJsonDoes) {
  std::string all;
  for (int character = 0; character < 256; ++character) all += static_cast<char>(character);
  for (const std::string& text :
       {std::string(), std::string("plain"), std::string("\""), std::string("a\"b\\c/"),
        std::string("caf\xC3\xA9 \xE2\x80\xA8"), std::string("caf\xE9"), all}) {
    std::string json = "before ";
    inv::append_json(json, text);
    EXPECT_EQ(json, "before " + inv::Json(inv::json_text(text)).dump());
  }
}

}  // namespace
