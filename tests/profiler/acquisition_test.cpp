#include "profiler/acquisition.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "fake_tools.h"

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

const std::string kPrologue =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<plist version=\"1.0\">\n"
    "<array>\n";
const std::string kEpilogue = "</array>\n</plist>\n";

std::string framed(const std::string& elements) { return kPrologue + elements + kEpilogue; }

std::string cut(const std::string& output, Cut cut) {
  return std::string(cut_output(output.data(), static_cast<uint32_t>(output.size()), cut));
}

TEST(CutOutput, FirstKeepsEverythingButTheEpilogue) {
  EXPECT_EQ(cut(framed("<a/>"), Cut::kFirst), kPrologue + "<a/>");
}

TEST(CutOutput, MiddleKeepsTheElementsAlone) { EXPECT_EQ(cut(framed("<a/>"), Cut::kMiddle), "<a/>"); }

TEST(CutOutput, LastDropsThePrologueAndTheFinalLineFeed) {
  EXPECT_EQ(cut(framed("<a/>"), Cut::kLast), "<a/></array>\n</plist>");
}

TEST(CutOutput, GoesByLengthsWhateverTheBytes) {
  EXPECT_EQ(cut(std::string(17, 'x'), Cut::kFirst), "");
  EXPECT_EQ(cut(std::string(18, 'x'), Cut::kFirst), "");
  EXPECT_EQ(cut(std::string(19, 'x'), Cut::kFirst), "x");
  EXPECT_EQ(cut(std::string(189, 'x'), Cut::kMiddle), "");
  EXPECT_EQ(cut(std::string(190, 'x'), Cut::kMiddle), "");
  EXPECT_EQ(cut(std::string(191, 'x'), Cut::kMiddle), "x");
  EXPECT_EQ(cut(std::string(171, 'x'), Cut::kLast), "");
  EXPECT_EQ(cut(std::string(172, 'x'), Cut::kLast), "");
  EXPECT_EQ(cut(std::string(173, 'x'), Cut::kLast), "");
  EXPECT_EQ(cut(std::string(174, 'x'), Cut::kLast), "x");
}

TEST(CutOutput, OfNothingIsNothing) {
  for (const Cut where : {Cut::kFirst, Cut::kMiddle, Cut::kLast})
    EXPECT_EQ(cut_output(nullptr, 0, where), "");
}

TEST(CutOutput, EndsAtTheFirstNul) {
  EXPECT_EQ(cut(framed(std::string("<a/>\0<b/>", 9)), Cut::kMiddle), "<a/>");
  EXPECT_EQ(cut(framed(std::string("\0<b/>", 5)), Cut::kMiddle), "");
}

std::vector<ProfilerOutput> outputs(const std::vector<std::string>& texts) {
  std::vector<ProfilerOutput> list;
  for (const std::string& text : texts) {
    list.push_back({"SPTestDataType", copy_range(text.data(), text.data() + text.size()),
                    static_cast<uint32_t>(text.size())});
  }
  return list;
}

std::string splice(const std::vector<std::string>& texts) {
  size_t length = 0;
  const Text document = splice_outputs(outputs(texts), &length);
  EXPECT_EQ(std::string(document.get()).size(), length);
  return document.get();
}

std::vector<std::string> all_types(const std::string& output) { return std::vector<std::string>(21, output); }

TEST(SpliceOutputs, PutsTheElementsOfAllTypesIntoOneFrame) {
  std::vector<std::string> texts = all_types(framed(""));
  texts[0] = framed("<dict/>\n");
  texts[7] = framed("<array/>\n");
  texts[20] = framed("<true/>\n");
  EXPECT_EQ(splice(texts), kPrologue + "<dict/>\n<array/>\n<true/>\n</array>\n</plist>");
}

TEST(SpliceOutputs, WithoutAnyElementsIsAnEmptyArray) {
  EXPECT_EQ(splice(all_types(framed(""))), kPrologue + "</array>\n</plist>");
}

TEST(SpliceOutputs, FixedFrameStandsInForAnEmptyFirstAndLastPiece) {
  EXPECT_EQ(splice(all_types("")), kPrologue + kEpilogue);
  std::vector<std::string> texts = all_types(framed(""));
  texts[0] = kEpilogue;
  EXPECT_EQ(splice(texts), kPrologue + "</array>\n</plist>");
  texts[20] = kPrologue;
  EXPECT_EQ(splice(texts), kPrologue + kEpilogue);
}

// Answers every data type with one element that names it.
const char* const kNamingProfiler =
    "printf '%s\\n' '<?xml version=\"1.0\" encoding=\"UTF-8\"?>' "
    "'<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">' "
    "'<plist version=\"1.0\">' '<array>' \"<string>$*</string>\" '</array>' '</plist>'";

class CollectProfilerDocument : public testing::Test {
 protected:
  // The document's text; what the run prints is left in `printed` and `complaints`.
  std::string collect(bool progress, const SeriesLimits& limits = SeriesLimits()) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    document = collect_profiler_document(progress, limits);
    printed = testing::internal::GetCapturedStdout();
    complaints = testing::internal::GetCapturedStderr();
    return document.text.get();
  }

  FakeTools tools;
  ProfilerDocument document;
  std::string printed;
  std::string complaints;
};

TEST_F(CollectProfilerDocument, RunsTheDataTypesInTheirOrder) {
  tools.write("system_profiler", kNamingProfiler);
  std::string elements;
  for (const char* type :
       {"Hardware",    "Network",     "Software", "ParallelATA",     "Audio",         "Bluetooth",
        "FireWire",    "Displays",    "Memory",   "Printers",        "SerialATA",     "ParallelSCSI",
        "USB",         "AirPort",     "Firewall", "NetworkLocation", "NetworkVolume", "Applications",
        "StartupItem", "DiscBurning", "Power"}) {
    elements += std::string("<string>-detailLevel full -xml SP") + type + "DataType</string>\n";
  }
  EXPECT_EQ(collect(false), kPrologue + elements + "</array>\n</plist>");
  EXPECT_EQ(printed, "");
  EXPECT_EQ(complaints, "");
}

TEST_F(CollectProfilerDocument, KeepsTheUntouchedOutputs) {
  tools.write("system_profiler", "printf 'raw %s\\0!' \"$4\"");
  collect(false);
  ASSERT_EQ(document.outputs.size(), 21u);
  EXPECT_STREQ(document.outputs[0].data_type, "SPHardwareDataType");
  EXPECT_EQ(std::string(document.outputs[20].text.get(), document.outputs[20].length),
            std::string("raw SPPowerDataType\0!", 21));
}

TEST_F(CollectProfilerDocument, PrintsTenPercentagesAlsoForTypesWithoutItems) {
  tools.write("system_profiler", "echo short");
  EXPECT_EQ(collect(true), kPrologue + kEpilogue);
  EXPECT_EQ(printed, "10%\n20%\n30%\n40%\n50%\n60%\n70%\n80%\n90%\n100%\n");
}

TEST_F(CollectProfilerDocument, AsksAnEmptyTypeAgain) {
  tools.write("system_profiler", "echo >> '" + tools.file("runs") + "'; [ $(wc -l < '" + tools.file("runs") +
                                     "') -lt 3 ] || " + kNamingProfiler);
  EXPECT_THAT(collect(false), HasSubstr("SPHardwareDataType"));
  EXPECT_EQ(tools.read("runs").size(), 23u);
  EXPECT_EQ(complaints, "");
}

TEST_F(CollectProfilerDocument, GivesUpAfterTwentyRetriesAndThenAsksOnlyOnce) {
  tools.write("system_profiler", "echo >> '" + tools.file("runs") + "'");
  EXPECT_EQ(collect(false), kPrologue + kEpilogue);
  EXPECT_EQ(tools.read("runs").size(), 21u + 20u);
  EXPECT_THAT(complaints,
              StartsWith("No output: system_profiler -detailLevel full -xml SPHardwareDataType\n"));
  EXPECT_THAT(complaints, EndsWith("No output: system_profiler -detailLevel full -xml SPPowerDataType\n"));
}

TEST_F(CollectProfilerDocument, CutsATypeThatWritesForEver) {
  tools.write("system_profiler", "[ \"$4\" = SPAudioDataType ] && exec yes; " + std::string(kNamingProfiler));
  SeriesLimits limits;
  limits.one_output = 100000;
  EXPECT_THAT(collect(false, limits), EndsWith("SPPowerDataType</string>\n</array>\n</plist>"));
  EXPECT_EQ(document.outputs[4].length, 100000u);
  EXPECT_EQ(complaints,
            "Output cut after 100000 bytes: system_profiler -detailLevel full -xml SPAudioDataType\n");
}

TEST_F(CollectProfilerDocument, CutsAllOutputsTogether) {
  tools.write("system_profiler", "head -c 1000 /dev/zero");
  SeriesLimits limits;
  limits.all_outputs = 2500;
  collect(false, limits);
  EXPECT_EQ(document.outputs[1].length, 1000u);
  EXPECT_EQ(document.outputs[2].length, 500u);
  EXPECT_EQ(document.outputs[3].length, 0u);
  EXPECT_THAT(
      complaints,
      EndsWith("Output cut after 500 bytes: system_profiler -detailLevel full -xml SPSoftwareDataType\n"
               "Not run any more: system_profiler -detailLevel full -xml SPParallelATADataType\n"));
}

TEST(RunFullProfiler, NamesNoDataTypeAndCutsNothing) {
  const FakeTools tools;
  tools.write("system_profiler", "printf 'raw %s' \"$*\"");
  const ProfilerOutput output = run_full_profiler();
  EXPECT_STREQ(output.text.get(), "raw -detailLevel full -xml");
  EXPECT_EQ(output.length, 26u);
}

}  // namespace
