#include "profiler/property_list.h"

#include <gtest/gtest.h>

#include <string>

#include "profiler/output_helpers.h"
#include "profiler/plist_access.h"
#include "profiler/plist_dump.h"

namespace {

ProfilerDocument document_of(const std::vector<std::string>& texts) {
  ProfilerDocument document;
  for (const std::string& text : texts) document.outputs.push_back(output_of(text));
  document.text = splice_outputs(document.outputs, &document.length);
  return document;
}

// 21 outputs, of which those at positions 1 and 2 are given.
ProfilerDocument document_with(const std::string& first, const std::string& second) {
  std::vector<std::string> texts(21, framed(""));
  texts[1] = first;
  texts[2] = second;
  return document_of(texts);
}

std::string tree_of(const ProfilerDocument& document) {
  InventoryTree tree(1, "Macintosh");
  dump_profiler(parse_profiler_document(document).get(), tree);
  std::string text(tree.top().text_size(), '\0');
  text.resize(tree.top().write_text(text.data(), 0));
  return text;
}

std::string data_type(const std::string& name, const std::string& value) {
  return "<dict><key>_dataType</key><string>" + name + "</string><key>k</key><string>" + value +
         "</string></dict>\n";
}

const std::string kBoth = "+Macintosh=\n*A=\nk=1\n*B=\nk=2\n-\n";

TEST(ParseProfilerDocument, ReadsAWholeDocument) {
  EXPECT_EQ(tree_of(document_with(framed(data_type("A", "1")), framed(data_type("B", "2")))), kBoth);
}

TEST(ParseProfilerDocument, LosesOneValueToOneByte) {
  EXPECT_EQ(tree_of(document_with(framed(data_type("A", "1\xE9")), framed(data_type("B", "2")))),
            "+Macintosh=\n*A=\nk=1\uFFFD\n*B=\nk=2\n-\n");
}

TEST(ParseProfilerDocument, KeepsWhatOnlyNamesAnEndOrDeclaresEntities) {
  const std::string type = data_type("A", "1");
  for (const char* noise :
       {"<!-- </plist> </array> -->", "<![CDATA[</plist></dict>]]>", "<foo>&lol;</foo></plist>",
        "<!DOCTYPE plist [<!ENTITY lol \"lol\">]>", "<?xml version=\"1.0\"?>"}) {
    EXPECT_EQ(tree_of(document_with(framed(noise + type), framed(data_type("B", "2")))), kBoth) << noise;
  }
  EXPECT_EQ(
      tree_of(document_with(framed(data_type("A", "<![CDATA[</plist>]]>")), framed(data_type("B", "2")))),
      "+Macintosh=\n*A=\nk=</plist>\n*B=\nk=2\n-\n");
}

TEST(ParseProfilerDocument, MissesNothingAfterANul) {
  // Each piece of the document ends at its first NUL, which may leave a list that parses.
  const std::string type = data_type("A", "1");
  EXPECT_EQ(tree_of(document_with(framed(std::string("\0", 1) + type), framed(data_type("B", "2")))), kBoth);
  ProfilerDocument document = document_with(framed(data_type("B", "2")), framed(""));
  for (const size_t place : {size_t{0}, kPrologueLength - 1}) {
    std::string first = framed(type);
    first[place] = '\0';
    document.outputs[0] = output_of(first);
    document.text = splice_outputs(document.outputs, &document.length);
    EXPECT_EQ(tree_of(document), kBoth);
  }
}

TEST(ParseProfilerDocument, MissesNothingAfterAListWithoutItsFrame) {
  const std::string bare = "<?xml version=\"1.0\"?>\n<array>" + data_type("A", "1") + "</array>\n";
  ProfilerDocument document = document_with(framed(data_type("B", "2")), framed(""));
  document.outputs[0] = output_of(bare + std::string(kEpilogueLength, '\n'));
  document.text = splice_outputs(document.outputs, &document.length);
  EXPECT_EQ(tree_of(document), kBoth);
}

TEST(ParseProfilerDocument, ReadsAnOutputWithALongerPrologue) {
  const std::string old_frame =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE plist PUBLIC \"-//Apple Computer//DTD PLIST "
      "1.0//EN\" "
      "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n<plist version=\"1.0\">\n<array>\n";
  ASSERT_EQ(old_frame.size(), 181u);
  EXPECT_EQ(tree_of(document_with(old_frame + data_type("A", "1") + kEpilogue,
                                  old_frame + data_type("B", "2") + kEpilogue)),
            kBoth);
}

TEST(ParseProfilerDocument, ReadsOnAfterAnEndInTheMiddle) {
  // With a frame of this length, the first list's end is inside the document.
  EXPECT_EQ(
      tree_of(document_with(framed(data_type("A", "1") + "</array></plist>"), framed(data_type("B", "2")))),
      kBoth);
}

TEST(ParseProfilerDocument, ReadsAnOutputThatDiedHalfWay) {
  EXPECT_EQ(
      tree_of(document_with(kPrologue + data_type("A", "1").substr(0, 70), framed(data_type("B", "2")))),
      "+Macintosh=\n*B=\nk=2\n-\n");
}

TEST(ParseProfilerDocument, DropsWhatNestsTooDeeplyAndKeepsTheRest) {
  std::string deep;
  for (int i = 0; i < 100000; ++i) deep += "<array>";
  const std::string type = data_type("A", "1");
  EXPECT_EQ(tree_of(document_with(framed(type.substr(0, type.size() - 8) + "<key>d</key>" + deep),
                                  framed(data_type("B", "2")))),
            kBoth);
}

// A list that parses unchanged, though a salvaged one would have another key.
std::string odd_but_healthy(const std::string& name) {
  return framed("<dict><key>_dataType</key><string>" + name +
                "</string><key>_it\uFFFDms</key><string>&#65;</string></dict>\n");
}

TEST(ParseProfilerDocument, LeavesEachHealthyOutputAsTheToolWroteIt) {
  for (size_t damaged = 0; damaged < 21; ++damaged) {
    for (const std::string& damage : {std::string("\xE9"), std::string("\0", 1), std::string("<")}) {
      std::vector<std::string> texts;
      std::string expected = "+Macintosh=\n";
      for (size_t i = 0; i < 21; ++i) {
        const std::string name(1, static_cast<char>('A' + i));
        texts.push_back(odd_but_healthy(name));
        expected += "*" + name + "=\n" + (i == damaged ? "_items" : "_it\uFFFDms") + "=A\n";
      }
      std::string& text = texts[damaged];
      text.replace(text.find("\uFFFD"), 3, damage);
      EXPECT_EQ(tree_of(document_of(texts)), expected + "-\n") << damaged;
    }
  }
}

TEST(ParseProfilerDocument, LeavesAHealthyOutputInAnotherFrameAlone) {
  const std::string healthy = odd_but_healthy("A");
  const std::string reframed = "<plist version=\"1.0\"><array>" + healthy.substr(kPrologueLength);
  EXPECT_EQ(tree_of(document_with(reframed, framed(data_type("B", "2\xE9")))),
            "+Macintosh=\n*A=\n_it\uFFFDms=A\n*B=\nk=2\uFFFD\n-\n");
}

// What real systems print for a type without items, which is shorter than the frame.
TEST(ParseProfilerDocument, ReadsTheShortFormOfAnEmptyList) {
  const std::string prologue(kPrologue, kPrologueLength - 8);
  const std::string empty = prologue + "<array/>\n</plist>\n";
  ASSERT_EQ(empty.size(), 182u);
  for (size_t place = 0; place < 21; ++place) {
    std::vector<std::string> texts(21, framed(""));
    texts[place == 3 ? 4 : 3] = framed(data_type("A", "1"));
    texts[place == 5 ? 6 : 5] = framed(data_type("B", "2"));
    texts[place] = empty;
    EXPECT_EQ(tree_of(document_of(texts)), kBoth) << place;
  }
}

TEST(ParseProfilerDocument, ReadsTheShortFormsOfManyEmptyLists) {
  const std::string empty = std::string(kPrologue, kPrologueLength - 8) + "<array/>\n</plist>\n";
  std::vector<std::string> texts(21, empty);
  const CFRef<CFArrayRef> none = parse_profiler_document(document_of(texts));
  ASSERT_TRUE(none);
  EXPECT_EQ(CFArrayGetCount(none.get()), 0);
  texts[3] = framed(data_type("A", "1"));
  texts[5] = framed(data_type("B", "2"));
  EXPECT_EQ(tree_of(document_of(texts)), kBoth);
}

TEST(ParseProfilerDocument, NamesAnOutputThatIsNotAListAndKeepsTheRest) {
  for (const std::string& garbage : {std::string(500, 'x'), std::string(500, '<'), std::string(100, '\0')}) {
    ProfilerDocument document = document_with(framed(data_type("A", "1")), framed(data_type("B", "2")));
    document.outputs[5] = output_of(garbage);
    document.outputs[5].data_type = "SPAudioDataType";
    document.text = splice_outputs(document.outputs, &document.length);
    testing::internal::CaptureStderr();
    EXPECT_EQ(tree_of(document), kBoth);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Unreadable output from the system profiler: SPAudioDataType\n");
  }
}

TEST(ParseProfilerDocument, SaysNothingOfEmptyOutputsAndEmptyLists) {
  testing::internal::CaptureStderr();
  EXPECT_EQ(tree_of(document_with("", "a driver's log line\n" + framed(""))), "*Macintosh=\n");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(ParseProfilerDocument, OfNothingAtAllIsAnEmptyList) {
  const CFRef<CFArrayRef> list = parse_profiler_document(document_of(std::vector<std::string>(21, "")));
  ASSERT_TRUE(list);
  EXPECT_EQ(CFArrayGetCount(list.get()), 0);
}

TEST(ParseProfilerOutput, PutsANulInANameRight) {
  std::string list = framed(data_type("A", "1"));
  list[list.find("_dataType")] = '\0';
  const CFRef<CFArrayRef> parsed = parse_profiler_output(output_of(list));
  EXPECT_TRUE(find_string(dictionary_at(parsed.get(), 0), CFSTR("_dataType")));
}

TEST(ParseProfilerOutput, SalvagesTheSameWay) {
  const CFRef<CFArrayRef> list = parse_profiler_output(output_of("noise" + framed(data_type("A", "\xFF"))));
  ASSERT_TRUE(list);
  EXPECT_EQ(CFArrayGetCount(list.get()), 1);
}

TEST(ParseProfilerOutput, IsNoneForWhatIsNotAListAndSaysSo) {
  testing::internal::CaptureStderr();
  EXPECT_FALSE(parse_profiler_output({nullptr, copy_text("noise"), 5}));
  EXPECT_FALSE(parse_profiler_output({nullptr, copy_text(""), 0}));
  EXPECT_FALSE(parse_profiler_output({nullptr, nullptr, 0}));
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Unreadable output from the system profiler\n");
}

}  // namespace
