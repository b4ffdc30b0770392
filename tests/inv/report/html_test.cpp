#include "inv/report/html.h"

#include <gtest/gtest.h>

namespace {

TEST(Html, EscapesWhatIsMarkup) {
  EXPECT_EQ(inv::escaped("<script>alert(\"x\" + 'y') && 1</script>"),
            "&lt;script&gt;alert(&quot;x&quot; + &#39;y&#39;) &amp;&amp; 1&lt;/script&gt;");
}

TEST(Html, ReplacesWhatNoPageMayHold) {
  EXPECT_EQ(inv::escaped("caf\xE9\x01\x7F"), "caf\uFFFD\uFFFD\uFFFD");
  EXPECT_EQ(inv::escaped("\x1F\t\x0B "), "\uFFFD\uFFFD\uFFFD ");
  EXPECT_EQ(inv::escaped("one\rtwo"), "one\ntwo");
}

TEST(Html, IsolatesValuesOfAnyDirection) {
  EXPECT_EQ(inv::isolated("\u05E9\u05DC"), "<bdi>\u05E9\u05DC</bdi>");
  EXPECT_EQ(inv::isolated(""), "");
}

}  // namespace
