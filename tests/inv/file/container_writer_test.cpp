#include "inv/file/container_writer.h"

#include <gtest/gtest.h>

#include "inv/maker.h"

namespace {

using inv::Section;

TEST(ContainerWriter, WritesWhatTheScannerWrites) {
  const auto original = maker::open(maker::file());
  const auto& sections = original->container->sections;
  std::vector<inv::TreeText> trees;
  for (size_t i = 0; i < sections.size(); ++i) {
    trees.push_back({sections[i].kind, original->contents[i].document->text(), sections[i].timestamp,
                     sections[i].snaptype});
  }
  EXPECT_EQ(inv::write_container(trees), maker::file());
}

TEST(ContainerWriter, WritesAFileWithoutSections) {
  const auto inventory = maker::open(inv::write_container({}));
  EXPECT_TRUE(inventory->faults.empty());
  EXPECT_EQ(inventory->container->header_text, "[H]\ncount=0\nsnapshotcount=0\n");
}

}  // namespace
