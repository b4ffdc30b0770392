#include "inv/redact/remains.h"

#include <gtest/gtest.h>

#include "inv/maker.h"

namespace {

std::string remains(const std::string& lines) {
  return inv::what_remains(
      *maker::open(maker::file_of_text("\xEF\xBB\xBF?zxml\n+Snapshot=\n" + lines + "-\n")));
}

TEST(WhatRemains, CountsNamesThatAnybodyCouldHaveGiven) {
  EXPECT_EQ(remains("*Soft:1=Notes\nversion=2\n*Soft:2=Chess\n*process:1=sh\n*Soft:3=\n*env-var:X=X\n"),
            "2 application names, 1 process name, 1 variable name");
  EXPECT_EQ(remains("model=iMac11,1\n"), "");
}

TEST(WhatRemains, NamesWordsThatLookLikeHosts) {
  EXPECT_EQ(
      remains("*Soft:1=Mail\ninfo=from WWW.firm.example, www.firm.example or (nas.lan).\n~note=a.b.de\n"),
      "1 application name, 3 host-like words: a.b.de, nas.lan, www.firm.example");
  EXPECT_EQ(remains("a=a.com\nb=b.com\nc=c.com\nd=d.com\ne=e.com\n"),
            "5 host-like words: a.com, b.com, c.com, d.com, e.com");
  EXPECT_EQ(remains("a=a.com\nb=b.com\nc=c.com\nd=d.com\ne=e.com\nf=f.com\n"),
            "6 host-like words: a.com, b.com, c.com, d.com, e.com, ...");
}

TEST(WhatRemains, TakesNoFileBundleOrVersionForAHost) {
  EXPECT_EQ(remains("a=com.example.tool.com\nb=x.app\nc=10.4.11\nd=.com\ne=com\nf=x.\n"), "");
}

TEST(WhatRemains, CountsNoMoreThanAnybodyWouldRead) {
  std::string lines;
  for (int i = 0; i < 10'000; ++i) lines += "a=h" + std::to_string(i) + ".com\n";
  EXPECT_EQ(remains(lines).rfind("10000 host-like words: h0.com, ", 0), 0U) << remains(lines);
  EXPECT_EQ(remains(lines + "a=x.com\n").rfind("10000 or more host-like words: h0.com, ", 0), 0U);
}

}  // namespace
