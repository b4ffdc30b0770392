#include "profiler/acquisition.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <string>

#include "fake_tools.h"

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
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
  EXPECT_EQ(cut(framed("<a/>"), Cut::first), kPrologue + "<a/>");
}

TEST(CutOutput, MiddleKeepsOnlyTheElements) { EXPECT_EQ(cut(framed("<a/>"), Cut::middle), "<a/>"); }

TEST(CutOutput, LastDropsThePrologueAndTheFinalLineFeed) {
  EXPECT_EQ(cut(framed("<a/>"), Cut::last), "<a/></array>\n</plist>");
}

TEST(CutOutput, GoesByLengthsWhateverTheBytes) {
  EXPECT_EQ(cut(std::string(17, 'x'), Cut::first), "");
  EXPECT_EQ(cut(std::string(18, 'x'), Cut::first), "");
  EXPECT_EQ(cut(std::string(19, 'x'), Cut::first), "x");
  EXPECT_EQ(cut(std::string(189, 'x'), Cut::middle), "");
  EXPECT_EQ(cut(std::string(190, 'x'), Cut::middle), "");
  EXPECT_EQ(cut(std::string(191, 'x'), Cut::middle), "x");
  EXPECT_EQ(cut(std::string(171, 'x'), Cut::last), "");
  EXPECT_EQ(cut(std::string(172, 'x'), Cut::last), "");
  EXPECT_EQ(cut(std::string(173, 'x'), Cut::last), "");
  EXPECT_EQ(cut(std::string(174, 'x'), Cut::last), "x");
}

TEST(CutOutput, OfNothingIsNothing) {
  for (const Cut where : {Cut::first, Cut::middle, Cut::last}) EXPECT_EQ(cut_output(nullptr, 0, where), "");
}

TEST(CutOutput, EndsAtTheFirstNul) {
  EXPECT_EQ(cut(framed(std::string("<a/>\0<b/>", 9)), Cut::middle), "<a/>");
  EXPECT_EQ(cut(framed(std::string("\0<b/>", 5)), Cut::middle), "");
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
    pauses.clear();
    document = collect_profiler_document(progress, limits, remember);
    printed = testing::internal::GetCapturedStdout();
    complaints = testing::internal::GetCapturedStderr();
    return document.text.get();
  }

  // How often the profiler was run.
  size_t runs() const { return tools.read("runs").size(); }

  FakeTools tools;
  // Those between the attempts, which the tests do not wait for, in milliseconds.
  std::vector<long long> pauses;
  const Pause remember = [this](std::chrono::milliseconds time) { pauses.push_back(time.count()); };
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

// Counts its runs, and answers except on the given condition.
std::string counting_profiler(const FakeTools& tools, const std::string& silent) {
  return "echo >> '" + tools.file("runs") + "'; " + silent + " || " + kNamingProfiler;
}

TEST_F(CollectProfilerDocument, RetriesAnEmptyType) {
  tools.write("system_profiler",
              counting_profiler(tools, "[ $(wc -l < '" + tools.file("runs") + "') -lt 3 ]"));
  EXPECT_THAT(collect(false), HasSubstr("SPHardwareDataType"));
  EXPECT_EQ(runs(), 23u);
  EXPECT_THAT(pauses, ElementsAre(10, 20));
  EXPECT_EQ(complaints, "");
}

// Ten seconds, without the last pause, which would go beyond them.
constexpr long long kPausesOfOneType[] = {10,   20,   40,   80,   160,  320,  640, 1000,
                                          1000, 1000, 1000, 1000, 1000, 1000, 1000};

TEST_F(CollectProfilerDocument, DoublesThePausesUpToASecond) {
  tools.write("system_profiler", counting_profiler(tools, "[ \"$4\" = SPHardwareDataType ]"));
  EXPECT_THAT(collect(false), HasSubstr("SPPowerDataType"));
  EXPECT_THAT(pauses, ElementsAreArray(kPausesOfOneType));
  EXPECT_EQ(runs(), 21u + 15u);
  EXPECT_EQ(complaints, "No output: system_profiler -detailLevel full -xml SPHardwareDataType\n");
}

TEST_F(CollectProfilerDocument, RetriesALaterTypeAfterOneThatNeverAnswers) {
  const std::string seen = tools.file("seen");
  tools.write("system_profiler",
              "[ \"$4\" != SPParallelATADataType ] || exit 0\n"
              "[ \"$4\" != SPPowerDataType ] || [ -e '" +
                  seen + "' ] || { : > '" + seen + "'; exit 0; }\n" + kNamingProfiler);
  EXPECT_THAT(collect(false), HasSubstr("SPPowerDataType"));
  EXPECT_EQ(pauses.back(), 10);
  EXPECT_EQ(complaints, "No output: system_profiler -detailLevel full -xml SPParallelATADataType\n");
}

TEST_F(CollectProfilerDocument, PausesTenSecondsInAllAndThenTriesOnlyOnce) {
  tools.write("system_profiler", counting_profiler(tools, "true"));
  EXPECT_EQ(collect(false), kPrologue + kEpilogue);
  EXPECT_EQ(std::accumulate(pauses.begin(), pauses.end(), 0LL), 10000);
  EXPECT_EQ(runs(), 21u + pauses.size());
  EXPECT_THAT(complaints,
              StartsWith("No output: system_profiler -detailLevel full -xml SPHardwareDataType\n"));
  EXPECT_THAT(complaints, EndsWith("No output: system_profiler -detailLevel full -xml SPPowerDataType\n"));
  EXPECT_EQ(std::count(complaints.begin(), complaints.end(), '\n'), 21);
}

TEST_F(CollectProfilerDocument, DoesNotRetryATypeThatWasGivenUp) {
  set_longest_silence(std::chrono::milliseconds(200));
  tools.write("system_profiler",
              counting_profiler(tools, "[ \"$4\" != SPNetworkVolumeDataType ] || exec sleep 1000; false"));
  EXPECT_THAT(collect(false), EndsWith("SPPowerDataType</string>\n</array>\n</plist>"));
  set_longest_silence(kLongestSilence);
  EXPECT_EQ(runs(), 21u);
  EXPECT_THAT(pauses, IsEmpty());
  EXPECT_EQ(complaints,
            "Gave up waiting for: system_profiler -detailLevel full -xml SPNetworkVolumeDataType\n");
}

TEST_F(CollectProfilerDocument, KeepsWhatATypeSaidBeforeItWasGivenUp) {
  set_longest_silence(std::chrono::milliseconds(200));
  tools.write("system_profiler",
              std::string(kNamingProfiler) + "; [ \"$4\" != SPNetworkVolumeDataType ] || exec sleep 1000");
  EXPECT_THAT(collect(false), HasSubstr("SPNetworkVolumeDataType"));
  set_longest_silence(kLongestSilence);
}

TEST(PauseFor, TakesSoLong) {
  const auto start = std::chrono::steady_clock::now();
  pause_for(std::chrono::milliseconds(30));
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(30));
}

TEST_F(CollectProfilerDocument, CutsOffATypeThatPrintsForever) {
  tools.write("system_profiler", "[ \"$4\" = SPAudioDataType ] && exec yes; " + std::string(kNamingProfiler));
  SeriesLimits limits;
  limits.one_output = 100000;
  EXPECT_THAT(collect(false, limits), EndsWith("SPPowerDataType</string>\n</array>\n</plist>"));
  EXPECT_EQ(document.outputs[4].length, 100000u);
  EXPECT_EQ(complaints,
            "Output cut off after 100000 bytes: system_profiler -detailLevel full -xml SPAudioDataType\n");
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
      EndsWith("Output cut off after 500 bytes: system_profiler -detailLevel full -xml SPSoftwareDataType\n"
               "No longer run: system_profiler -detailLevel full -xml SPParallelATADataType\n"));
}

TEST(RunFullProfiler, NamesNoDataTypeAndCutsNothing) {
  const FakeTools tools;
  tools.write("system_profiler", "printf 'raw %s' \"$*\"");
  const ProfilerOutput output = run_full_profiler();
  EXPECT_STREQ(output.text.get(), "raw -detailLevel full -xml");
  EXPECT_EQ(output.length, 26u);
}

TEST(RunFullProfiler, IsTriedAgainLikeATypeAndNamedWhenItStaysSilent) {
  const FakeTools tools;
  tools.write("system_profiler", "exit 0");
  std::vector<long long> pauses;
  testing::internal::CaptureStderr();
  const ProfilerOutput output = run_full_profiler(
      SeriesLimits(), [&](std::chrono::milliseconds time) { pauses.push_back(time.count()); });
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "No output: system_profiler -detailLevel full -xml\n");
  EXPECT_THAT(pauses, ElementsAreArray(kPausesOfOneType));
  EXPECT_EQ(output.length, 0u);
}

TEST(RunFullProfiler, TakesALaterAnswer) {
  const FakeTools tools;
  const std::string seen = tools.file("seen");
  tools.write("system_profiler", "[ -e '" + seen + "' ] && exec echo answer; : > '" + seen + "'");
  EXPECT_STREQ(run_full_profiler().text.get(), "answer\n");
}

}  // namespace
