// Random trees, written by the scanner's writer and read back: what the reader writes again is the same text.
#include <gtest/gtest.h>

#include <random>

#include "inv/maker.h"
#include "tests/zxml/layouts.h"

namespace {

class RandomTree {
 public:
  explicit RandomTree(unsigned seed) : random_(seed) {}

  std::unique_ptr<InventoryTree> make() {
    auto tree = std::make_unique<InventoryTree>(1, "Snapshot");
    const int writes = number(1, 200);
    for (int i = 0; i < writes; ++i) write(*tree);
    return tree;
  }

 private:
  int number(int first, int last) { return std::uniform_int_distribution<>(first, last)(random_); }

  std::string name() {
    return std::string(1, static_cast<char>('a' + number(0, 5))) + ":" + std::to_string(number(1, 3));
  }

  std::string path() {
    std::string path;
    for (int depth = number(1, 5); depth > 0; --depth) path += "/" + name();
    return path;
  }

  // Any bytes but NUL; set_text keeps them on one line.
  Value value() {
    if (number(0, 3) == 0) return Value(int64_t{number(-1000, 1000)});
    std::string text;
    for (int length = number(0, 20); length > 0; --length) text += static_cast<char>(number(1, 255));
    return text_value(text.c_str());
  }

  void write(InventoryTree& tree) {
    switch (number(0, 3)) {
      case 0:
        tree.set_tag_value(path().c_str(), value());
        break;
      case 1:
        tree.annotate_attribute(path().c_str(), "key", "text=~+");
        break;
      default:
        tree.set_attribute(path().c_str(), value(), number(0, 2) == 0 ? "type" : nullptr, "bool");
    }
  }

  std::mt19937 random_;
};

TEST(RoundTrip, RandomTreesComeBackToTheByteInEveryLayout) {
  for (unsigned seed = 1; seed <= 50; ++seed) {
    const auto tree = RandomTree(seed).make();
    const std::string text = maker::text_of(*tree);
    for (const Layout layout : kLayouts) {
      INVfile writer(1);
      writer.add_section(std::make_unique<InventoryTree>(*tree), kSnapshot, layout);
      const auto inventory = maker::open(maker::bytes_of(writer.build(HeaderForm::compressed)));
      ASSERT_TRUE(inventory->snapshot()) << "seed " << seed << ": " << inv::describe(inventory->faults.at(0));
      EXPECT_EQ(inv::write_text(*inventory->snapshot()), text) << "seed " << seed;
    }
  }
}

}  // namespace
