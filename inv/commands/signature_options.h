// The options of the commands that ask who signed a file.
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

// What those options ask for, with the lists that they name already read.
class SignatureCheck {
 public:
  // None, after a complaint, when they cannot be met for these files; such a run ends with kUnusable.
  static std::optional<SignatureCheck> create(const SignatureOptions& options,
                                              const std::vector<std::string>& files);

  // Whether signatures are asked for at all.
  bool wanted() const { return wanted_; }

  // Judges the signature of a file that was opened from this path, from the bytes that were read of it.
  SignatureVerdict judge(const std::string& path, const Inventory& inventory) const;

  // For commands that use only files whose signature counts: who signed, empty when nobody asked. None, after
  // a complaint and with status kNo, when the signature does not count.
  std::optional<std::string> signer_of(const std::string& path, const Inventory& inventory,
                                       int& status) const;

 private:
  bool read_lists(const SignatureOptions& options);

  bool wanted_ = false;
  std::string signature_;
  Trust trust_;
};

}  // namespace inv
