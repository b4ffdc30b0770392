#include "inv/file/text_lines.h"

#include <gtest/gtest.h>

#include <string>

#include "inv/maker.h"

namespace {

TEST(TextLines, VisitEveryLineWithItsTag) {
  const auto inventory =
      maker::open(maker::file_of_text("\xEF\xBB\xBF?zxml\n"
                                      "+Snapshot=\n"
                                      "~note=a=b\n"
                                      "-odd=1\n"
                                      "*Soft:1=name\n"
                                      "=empty\n"
                                      "~key=\n"
                                      "-\n"));
  std::string lines;
  inv::each_line(*inventory->snapshot(), [&](const inv::TextLine& line) {
    lines += line.marker == 0 ? '.' : line.marker;
    lines.append(line.name)
        .append("|")
        .append(line.value)
        .append("|")
        .append(line.element.name())
        .append("\n");
  });
  EXPECT_EQ(lines,
            "+Snapshot||Snapshot\n"
            "~note|a=b|Snapshot\n"
            ".-odd|1|Snapshot\n"
            "*Soft:1|name|Soft:1\n"
            ".|empty|Soft:1\n"
            "~key||Soft:1\n"
            "-||Soft:1\n");
}

}  // namespace
