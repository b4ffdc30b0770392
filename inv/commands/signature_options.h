// The options of commands that check who signed a file.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "inv/commands/command.h"
#include "inv/signature/trust.h"

namespace inv {

struct SignatureOptions {
  std::string signature;  // empty: beside each file, under its name and ".sig"
  std::string allowed_signers;
  std::string identity;
  std::string revoked_keys;
};

void add_signature_options(CLI::App& command, SignatureOptions& options);

// The check that those options ask for, with their lists already read.
class SignatureCheck {
 public:
  // std::nullopt, after a complaint, if the check is impossible for these files; the run then ends with
  // kUnusable.
  static std::optional<SignatureCheck> create(const SignatureOptions& options,
                                              const std::vector<std::string>& files);

  // Whether signatures are checked at all.
  bool wanted() const { return wanted_; }

  // Judges the signature of a file that was opened from this path, using the bytes that were read.
  SignatureVerdict judge(const std::string& path, const Inventory& inventory) const;

  // For commands that use only properly signed files: the signer, empty if signatures are not checked.
  // std::nullopt, after a complaint and with status kNo, if the signature does not count.
  std::optional<std::string> signer_of(const std::string& path, const Inventory& inventory,
                                       int& status) const;

 private:
  bool read_lists(const SignatureOptions& options);

  bool wanted_ = false;
  std::string signature_;
  Trust trust_;
};

}  // namespace inv
