#include "inv/signature/trust.h"

#include <gtest/gtest.h>

#include "inv/signature/signing.h"

namespace {

using signing::Form;
using signing::with;

const signing::Key kKey('1');
const signing::Key kOther('2');
const std::string kLine = kKey.line();
constexpr char kFile[] = "a snapshot";
constexpr int64_t kNow = 1000;

const std::string kFingerprint = inv::read_key(kKey.blob())->fingerprint();

// Who signed a file, or "no: " and why that does not count.
std::string judged(const std::string& list, const std::string& identity = "", const Form& form = {},
                   const std::string& revoked = "") {
  inv::LineFault fault;
  inv::Trust trust;
  trust.signers = inv::read_allowed_signers(list).signers;
  trust.revoked = inv::read_revoked_keys(revoked, &fault).value();
  trust.identity = identity;
  const inv::SignatureVerdict verdict =
      inv::judge_signature(kFile, signing::signature_text(kKey, kFile, form), trust, kNow);
  EXPECT_NE(verdict.signer.empty(), verdict.refusal.empty());
  return verdict.refusal.empty() ? verdict.signer : "no: " + verdict.refusal;
}

std::string key_that(const std::string& reason) { return "no: the key " + kFingerprint + " " + reason; }

TEST(Trust, SaysWhoSigned) {
  EXPECT_EQ(judged("imac " + kLine), "imac");
  EXPECT_EQ(judged("mini " + kOther.line() + "\nimac,*@studio " + kLine), "imac,*@studio");
}

TEST(Trust, NamesTheIdentityThatWasAskedFor) {
  EXPECT_EQ(judged("imac,*@studio " + kLine, "imac"), "imac");
  EXPECT_EQ(judged("imac,*@studio " + kLine, "a@studio"), "a@studio");
  EXPECT_EQ(judged("imac,*@studio " + kLine, "mini"), key_that("is not that of mini"));
  EXPECT_EQ(judged("*,!mini " + kLine, "mini"), key_that("is not that of mini"));
  EXPECT_EQ(judged("mini " + kOther.line() + "\nimac " + kLine, "mini"), key_that("is not that of mini"));
}

TEST(Trust, RefusesKeysThatNobodyAllows) {
  EXPECT_EQ(judged(""), key_that("is not an allowed signer's"));
  EXPECT_EQ(judged("imac " + kOther.line()), key_that("is not an allowed signer's"));
  EXPECT_EQ(judged("imac cert-authority " + kLine), key_that("is not an allowed signer's"));
}

TEST(Trust, RefusesRevokedKeys) {
  EXPECT_EQ(judged("imac " + kLine, "", {}, kLine), key_that("is revoked"));
  EXPECT_EQ(judged("imac " + kLine, "", {}, kOther.line() + "\n" + kLine), key_that("is revoked"));
  EXPECT_EQ(judged("imac " + kLine, "", {}, kOther.line()), "imac");
}

TEST(Trust, WantsASignatureForInventories) {
  EXPECT_EQ(judged("imac " + kLine, "", with(&Form::signed_for, "file")),
            "no: it is made for \"file\", not for \"velkaro-inventory\"");
  EXPECT_EQ(judged("imac " + kLine, "", with(&Form::signed_for, "")),
            "no: it is made for \"\", not for \"velkaro-inventory\"");
  EXPECT_EQ(judged("imac " + kLine, "", with(&Form::signed_for, "velkaro-inventory ")),
            "no: it is made for \"velkaro-inventory \", not for \"velkaro-inventory\"");
}

TEST(Trust, AKeyMayBeKeptToSomePurposes) {
  EXPECT_EQ(judged("imac namespaces=\"velkaro-inventory\" " + kLine), "imac");
  EXPECT_EQ(judged("imac namespaces=\"file,velkaro-*\" " + kLine), "imac");
  EXPECT_EQ(judged("imac namespaces=\"file\" " + kLine), key_that("may not sign for velkaro-inventory"));
  EXPECT_EQ(judged("imac namespaces=\"*,!velkaro-*\" " + kLine),
            key_that("may not sign for velkaro-inventory"));
}

TEST(Trust, AKeyCountsFromTheFirstSecondOfItsTimeToTheLast) {
  const auto moment = [](int64_t seconds) {
    return "\"197001010" + std::string("0") + std::to_string(seconds / 60) + std::to_string(seconds % 60) +
           "Z\" ";
  };
  ASSERT_EQ(moment(1000), "\"19700101001640Z\" ");
  EXPECT_EQ(judged("imac valid-after=" + moment(1000) + kLine), "imac");
  EXPECT_EQ(judged("imac valid-after=" + moment(1001) + kLine), key_that("is not valid yet"));
  EXPECT_EQ(judged("imac valid-before=" + moment(1000) + kLine), "imac");
  EXPECT_EQ(judged("imac valid-before=" + moment(999) + kLine), key_that("is not valid any more"));
}

TEST(Trust, OneLineThatAllowsTheKeyIsEnough) {
  const std::string expired = "imac valid-before=\"19700101000001Z\" " + kLine + "\n";
  EXPECT_EQ(judged(expired + "mini " + kLine), "mini");
  EXPECT_EQ(judged("mini " + kLine + "\n" + expired), "mini");
  EXPECT_EQ(judged(expired + "mini " + kLine, "imac"), key_that("is not that of imac"));
}

TEST(Trust, RefusesWhatIsNotTheFilesOwnSignature) {
  inv::Trust trust;
  trust.signers = inv::read_allowed_signers("imac " + kLine).signers;
  const auto refusal = [&](const std::string& text) {
    return inv::judge_signature(kFile, text, trust, kNow).refusal;
  };
  EXPECT_EQ(refusal(signing::signature_text(kKey, "another")), "it is not a signature of this file");
  EXPECT_EQ(refusal("nonsense"), "it is not a signature as ssh-keygen -Y sign makes it");
}

TEST(Trust, AForgedKeyIsNotEvenLookedUp) {
  EXPECT_EQ(judged("imac " + kOther.line(), "", with(&Form::key_blob, kOther.blob())),
            "no: it is not a signature of this file");
}

}  // namespace
