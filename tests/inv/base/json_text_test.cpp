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

TEST(JsonText, AnArrayInPiecesIsWhatTheWriterOfAJsonMakesOfTheWhole) {
  const std::vector<inv::Json> elements = {{{"a", "one\ntwo"}, {"b", {1, 2}}}, inv::Json::object(), 3};
  for (const size_t count : {size_t{0}, size_t{1}, size_t{3}}) {
    std::string text;
    inv::JsonArray array([&](std::string_view piece) { text += piece; }, 2);
    inv::Json whole = inv::Json::array();
    for (size_t i = 0; i < count; ++i) {
      array.add(elements[i]);
      whole.push_back(elements[i]);
    }
    array.end();
    EXPECT_EQ(text, whole.dump(2));
  }
}

}  // namespace
