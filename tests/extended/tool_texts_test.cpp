#include "extended/tool_texts.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string shown(const Text& text) { return text ? text.get() : "(none)"; }

TEST(SwVers, GivesNameVersionAndBuild) {
  const SystemVersion version =
      parse_sw_vers("ProductName:\t\tmacOS\nProductVersion:\t\t14.6.1\nBuildVersion:\t\t23G93\n");
  EXPECT_EQ(shown(version.name), "macOS");
  EXPECT_EQ(shown(version.version), "14.6.1");
  EXPECT_EQ(shown(version.version_extra), "(none)");
  EXPECT_EQ(shown(version.build), "23G93");
}

TEST(SwVers, GivesARapidSecurityResponseSeparately) {
  const SystemVersion version = parse_sw_vers(
      "ProductName: macOS\nProductVersion: 13.4.1\nProductVersionExtra: (c)\nBuildVersion: 22F770820d\n");
  EXPECT_EQ(shown(version.version), "13.4.1");
  EXPECT_EQ(shown(version.version_extra), "(c)");
}

TEST(SwVers, KeepsTheBlanksInAName) {
  EXPECT_EQ(shown(parse_sw_vers("ProductName:\tMac OS X\r\n").name), "Mac OS X");
}

TEST(SwVers, IsEmptyForGarbage) {
  for (const char* output : {"", "\n\n", "ProductName", "ProductName:", "ProductName:  \n",
                             "-bash: sw_vers: command not found\n", "  : macOS\n"}) {
    const SystemVersion version = parse_sw_vers(output);
    EXPECT_EQ(shown(version.name), "(none)") << output;
    EXPECT_EQ(shown(version.build), "(none)") << output;
  }
  EXPECT_EQ(shown(parse_sw_vers(nullptr).name), "(none)");
}

TEST(SwVers, ReadsALastLineWithoutALineEnd) {
  EXPECT_EQ(shown(parse_sw_vers("ProductName: macOS\nBuildVersion: 25A1").build), "25A1");
}

TEST(SwVers, TakesTheFirstOfTwoLines) {
  EXPECT_EQ(shown(parse_sw_vers("ProductName: one\nProductName: two\n").name), "one");
}

TEST(Sysctl, GivesTheProcessorAndItsCores) {
  const ProcessorFacts facts = parse_sysctl(
      "hw.ncpu: 10\nhw.physicalcpu: 10\nhw.physicalcpu_max: 12\nhw.logicalcpu: 11\n"
      "hw.perflevel0.physicalcpu: 8\nhw.perflevel0.name: Performance\n"
      "hw.perflevel1.physicalcpu: 2\nhw.perflevel1.name: Efficiency\n"
      "machdep.cpu.brand_string: Apple M1 Pro\nkern.hv_vmm_present: 0\n");
  EXPECT_EQ(shown(facts.name), "Apple M1 Pro");
  EXPECT_EQ(facts.physical_cores, 10);
  EXPECT_EQ(facts.logical_cores, 11);
  EXPECT_EQ(facts.performance_cores, 8);
  EXPECT_EQ(facts.efficiency_cores, 2);
  EXPECT_EQ(facts.virtual_machine, false);
}

TEST(Sysctl, ReadsTheEqualsSignOfOldSystems) {
  const ProcessorFacts facts =
      parse_sysctl("hw.physicalcpu = 2\nmachdep.cpu.brand_string=Intel(R) Core(TM)2\n");
  EXPECT_EQ(facts.physical_cores, 2);
  EXPECT_EQ(shown(facts.name), "Intel(R) Core(TM)2");
}

TEST(Sysctl, PrefersTheNamesOfTheLevelsToTheirOrder) {
  const ProcessorFacts facts = parse_sysctl(
      "hw.perflevel0.physicalcpu: 4\nhw.perflevel0.name: Efficiency\n"
      "hw.perflevel1.physicalcpu: 6\nhw.perflevel1.name: Performance\n");
  EXPECT_EQ(facts.performance_cores, 6);
  EXPECT_EQ(facts.efficiency_cores, 4);
}

TEST(Sysctl, TakesTheFirstUnnamedLevelAsTheFastOne) {
  const ProcessorFacts facts = parse_sysctl("hw.perflevel0.physicalcpu: 4\nhw.perflevel1.physicalcpu: 5\n");
  EXPECT_EQ(facts.performance_cores, 4);
  EXPECT_EQ(facts.efficiency_cores, 5);
}

TEST(Sysctl, SkipsALevelWithAnotherName) {
  const ProcessorFacts facts = parse_sysctl(
      "hw.perflevel0.physicalcpu: 4\nhw.perflevel0.name: Super\n"
      "hw.perflevel1.physicalcpu: 5\nhw.perflevel1.name: Efficiency\n");
  EXPECT_EQ(facts.performance_cores, std::nullopt);
  EXPECT_EQ(facts.efficiency_cores, 5);
}

TEST(Sysctl, RecognisesAVirtualMachine) {
  EXPECT_EQ(parse_sysctl("kern.hv_vmm_present: 1\n").virtual_machine, true);
  EXPECT_EQ(parse_sysctl("kern.hv_vmm_present: maybe\n").virtual_machine, std::nullopt);
  for (const char* complaint : {"sysctl: unknown oid 'kern.hv_vmm_present'\n",
                                "second level name hv_vmm_present in kern.hv_vmm_present is invalid\n"}) {
    EXPECT_EQ(parse_sysctl(complaint).virtual_machine, std::nullopt);
  }
}

TEST(Sysctl, SkipsInvalidNumbers) {
  for (const char* number : {"", "-1", "4.0", "4 cores", "0x4", "1234567890123456789", "\xff"}) {
    EXPECT_EQ(parse_sysctl((std::string("hw.physicalcpu: ") + number + "\n").c_str()).physical_cores,
              std::nullopt)
        << number;
  }
  EXPECT_EQ(parse_sysctl("hw.physicalcpu: 123456789012345678\n").physical_cores, 123456789012345678);
  EXPECT_EQ(parse_sysctl(nullptr).physical_cores, std::nullopt);
}

TEST(Fdesetup, SaysWhetherFileVaultIsOn) {
  const ProtectionState on = parse_fdesetup("FileVault is On.\n");
  EXPECT_EQ(on.on, true);
  EXPECT_EQ(shown(on.line), "FileVault is On.");
  const ProtectionState off = parse_fdesetup("FileVault is Off.\n");
  EXPECT_EQ(off.on, false);
  EXPECT_EQ(shown(off.line), "FileVault is Off.");
}

TEST(Fdesetup, KeepsTheWordsOfATemporaryState) {
  const ProtectionState state = parse_fdesetup(
      "FileVault master keychain appears to be installed.\nFileVault is Off, but needs to be restarted.\n");
  EXPECT_EQ(state.on, false);
  EXPECT_EQ(shown(state.line), "FileVault is Off, but needs to be restarted.");
  const ProtectionState unknown = parse_fdesetup("FileVault is busy.\n");
  EXPECT_EQ(unknown.on, std::nullopt);
  EXPECT_EQ(shown(unknown.line), "FileVault is busy.");
}

TEST(Fdesetup, IsEmptyWithoutItsLine) {
  for (const char* output : {"", "Error: must be run as root.\n", "On", "FileVault\n"}) {
    EXPECT_EQ(parse_fdesetup(output).on, std::nullopt) << output;
    EXPECT_EQ(shown(parse_fdesetup(output).line), "(none)") << output;
  }
  EXPECT_EQ(parse_fdesetup(nullptr).on, std::nullopt);
}

TEST(Csrutil, SaysWhetherTheSystemIsProtected) {
  EXPECT_EQ(parse_csrutil("System Integrity Protection status: enabled.\n").on, true);
  EXPECT_EQ(parse_csrutil("System Integrity Protection status: disabled.\n").on, false);
  EXPECT_EQ(shown(parse_csrutil("System Integrity Protection status: enabled.\n").line),
            "System Integrity Protection status: enabled.");
}

TEST(Csrutil, DoesNotGuessTheStateOfACustomConfiguration) {
  const ProtectionState state = parse_csrutil(
      "System Integrity Protection status: unknown (Custom Configuration).\n\nConfiguration:\n\tApple "
      "Internal: disabled\n");
  EXPECT_EQ(state.on, std::nullopt);
  EXPECT_EQ(shown(state.line), "System Integrity Protection status: unknown (Custom Configuration).");
}

TEST(Spctl, SaysWhetherGatekeeperIsOn) {
  EXPECT_EQ(parse_spctl("assessments enabled\n").on, true);
  EXPECT_EQ(parse_spctl("assessments disabled\n").on, false);
  EXPECT_EQ(shown(parse_spctl("assessments disabled\ndeveloper id enabled\n").line), "assessments disabled");
  EXPECT_EQ(parse_spctl("developer id enabled\n").on, std::nullopt);
}

TEST(Profiles, GivesTheEnrollment) {
  const Enrollment enrollment = parse_profiles(
      "Enrolled via DEP: Yes\nMDM enrollment: Yes (User Approved)\nMDM server: "
      "https://mdm.example.com/enroll\n");
  EXPECT_EQ(enrollment.by_program, true);
  EXPECT_EQ(enrollment.managed, true);
  EXPECT_EQ(enrollment.user_approved, true);
  EXPECT_EQ(shown(enrollment.server), "https://mdm.example.com/enroll");
}

TEST(Profiles, HasApprovalOnlyForAManagedMac) {
  const Enrollment alone = parse_profiles("Enrolled via DEP: No\nMDM enrollment: No\n");
  EXPECT_EQ(alone.by_program, false);
  EXPECT_EQ(alone.managed, false);
  EXPECT_EQ(alone.user_approved, std::nullopt);
  EXPECT_EQ(shown(alone.server), "(none)");
  EXPECT_EQ(parse_profiles("MDM enrollment: Yes\n").user_approved, false);
}

TEST(Profiles, IsEmptyForGarbage) {
  const Enrollment enrollment = parse_profiles("profiles: unknown command\nMDM enrollment: ?\n");
  EXPECT_EQ(enrollment.by_program, std::nullopt);
  EXPECT_EQ(enrollment.managed, std::nullopt);
}

TEST(Rosetta, IsInstalledWhenItsRuntimeIs) {
  EXPECT_EQ(parse_rosetta("/Library/Apple/usr/libexec/oah/libRosettaRuntime\n"), true);
  EXPECT_EQ(
      parse_rosetta("ls: /Library/Apple/usr/libexec/oah/libRosettaRuntime: No such file or directory\n"),
      false);
}

TEST(Rosetta, IsUnknownAfterAnotherError) {
  EXPECT_EQ(parse_rosetta("ls: /Library/Apple/usr/libexec/oah: Operation not permitted\n"), std::nullopt);
  EXPECT_EQ(parse_rosetta(""), std::nullopt);
  EXPECT_EQ(parse_rosetta(nullptr), std::nullopt);
}

TEST(ToolTexts, ReadALongLine) {
  const std::string line = "ProductName: " + std::string(1 << 20, 'x');
  EXPECT_EQ(shown(parse_sw_vers(line.c_str()).name).size(), size_t{1} << 20);
}

}  // namespace
