#include "inv/commands/signature_options.h"

#include <algorithm>
#include <ctime>

#include "inv/base/input_file.h"
#include "inv/show/terminal.h"

namespace inv {
namespace {

// A signature by an Ed25519 key has 300 bytes, and one by the largest of other keys a few thousand.
constexpr uint64_t kLargestSignature = 1 << 16;
// Lines for a hundred thousand Macs take a tenth of this.
constexpr uint64_t kLargestList = 1 << 28;

// Complains of what makes these options unusable, and returns false.
bool refuse(const std::string& about, const std::string& reason) {
  complain(about, reason);
  return false;
}

void complain_of_line(const std::string& path, const LineFault& fault) {
  complain(path, "line " + std::to_string(fault.line) + ": " + fault.message);
}

// A signature belongs to one file, and standard input has no file beside it.
bool names_signatures(const SignatureOptions& options, const std::vector<std::string>& files) {
  if (!options.signature.empty()) {
    return files.size() == 1 ||
           refuse("--signature", "is for one file; without it, the signature of FILE is FILE.sig");
  }
  const bool has_input = std::find(files.begin(), files.end(), "-") != files.end();
  return !has_input || refuse("standard input", "has no signature beside it; name one with --signature");
}

// None of them may be empty: a variable that a script forgot to set must not disable the check.
CLI::Option* add_text(CLI::App& command, const char* name, const char* kind, std::string& text,
                      const char* description) {
  return command.add_option(name, text, description)->type_name(kind)->check([](const std::string& given) {
    return given.empty() ? "it cannot be empty" : "";
  });
}

}  // namespace

void add_signature_options(CLI::App& command, SignatureOptions& options) {
  CLI::Option* signers = add_text(command, "--allowed-signers", "LIST", options.allowed_signers,
                                  "Require an ssh-keygen signature beside each file, by a key in LIST");
  add_text(command, "--signature", "SIG", options.signature, "The signature of the one file (FILE.sig)")
      ->needs(signers);
  add_text(command, "--identity", "NAME", options.identity, "Who must have signed (anyone in the list)")
      ->needs(signers);
  add_text(command, "--revoked-keys", "LIST", options.revoked_keys, "Public keys that are no longer accepted")
      ->needs(signers);
}

std::optional<SignatureCheck> SignatureCheck::create(const SignatureOptions& options,
                                                     const std::vector<std::string>& files) {
  SignatureCheck check;
  check.wanted_ = !options.allowed_signers.empty();
  check.signature_ = options.signature;
  check.trust_.identity = options.identity;
  if (check.wanted_ && (!names_signatures(options, files) || !check.read_lists(options))) return std::nullopt;
  return check;
}

bool SignatureCheck::read_lists(const SignatureOptions& options) {
  std::string error;
  const std::optional<std::string> list = read_file(options.allowed_signers, kLargestList, &error);
  if (!list) return refuse(options.allowed_signers, error);
  AllowedSigners allowed = read_allowed_signers(*list);
  for (const LineFault& fault : allowed.faults) complain_of_line(options.allowed_signers, fault);
  trust_.signers = std::move(allowed.signers);
  if (options.revoked_keys.empty()) return true;

  const std::optional<std::string> revoked = read_file(options.revoked_keys, kLargestList, &error);
  if (!revoked) return refuse(options.revoked_keys, error);
  LineFault fault;
  std::optional<std::vector<PublicKey>> keys = read_revoked_keys(*revoked, &fault);
  if (!keys) {
    complain_of_line(options.revoked_keys, fault);
    return false;
  }
  trust_.revoked = std::move(*keys);
  return true;
}

SignatureVerdict SignatureCheck::judge(const std::string& path, const Inventory& inventory) const {
  const std::string signature_path = signature_.empty() ? path + ".sig" : signature_;
  std::string error;
  const std::optional<std::string> signature = read_file(signature_path, kLargestSignature, &error);
  if (!signature) return {"", signature_path + " " + error};
  return judge_signature(inventory.bytes, *signature, trust_, std::time(nullptr));
}

std::optional<std::string> SignatureCheck::signer_of(const std::string& path, const Inventory& inventory,
                                                     int& status) const {
  if (!wanted_) return std::string();
  SignatureVerdict verdict = judge(path, inventory);
  if (verdict.refusal.empty()) return std::move(verdict.signer);
  complain(inventory.file_name, "signature refused: " + verdict.refusal);
  status = worse(status, kNo);
  return std::nullopt;
}

}  // namespace inv
