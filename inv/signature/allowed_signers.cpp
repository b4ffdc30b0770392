#include "inv/signature/allowed_signers.h"

#include <strings.h>

#include "inv/signature/moment.h"

namespace inv {
namespace {

// Why a function failed; empty on success.
using Reason = std::string;

constexpr char kUnknownOption[] = "there is an unknown option";
constexpr char kNoKey[] = "there is no key such as \"ssh-ed25519 AAAA...\"";
constexpr char kBinaryList[] = "binary revocation lists are not supported; list public keys, one per line";

bool same_word(std::string_view one, std::string_view other) {
  return one.size() == other.size() && strncasecmp(one.data(), other.data(), one.size()) == 0;
}

Reason set_namespaces(AllowedSigner& signer, const std::string& value) {
  if (signer.namespaces) return "namespaces is given twice";
  signer.namespaces = value;
  return "";
}

Reason set_moment(std::optional<int64_t>& moment, const char* option, const std::string& value) {
  if (moment) return std::string(option) + " is given twice";
  moment = parse_moment(value);
  return moment ? "" : std::string(option) + " is no time such as 20260131, 202601311200Z or 20260131120000Z";
}

struct Option {
  std::string_view name;
  Reason (*set)(AllowedSigner&, const std::string& value);
};

constexpr Option kOptions[] = {
    {"namespaces", set_namespaces},
    {"valid-after",
     [](AllowedSigner& signer, const std::string& value) {
       return set_moment(signer.valid_after, "valid-after", value);
     }},
    {"valid-before",
     [](AllowedSigner& signer, const std::string& value) {
       return set_moment(signer.valid_before, "valid-before", value);
     }},
};

// Takes a quoted text off the front, in which \" means a quote; std::nullopt if there is none.
std::optional<std::string> take_quoted(std::string_view& text) {
  if (text.substr(0, 1) != "\"") return std::nullopt;
  std::string value;
  for (size_t i = 1; i < text.size(); ++i) {
    if (text[i] == '"') {
      text.remove_prefix(i + 1);
      return value;
    }
    if (text.substr(i, 2) == "\\\"") ++i;
    value += text[i];
  }
  return std::nullopt;
}

// Takes an option off the front, up to the comma or the end after it.
Reason take_option(std::string_view& text, AllowedSigner& signer) {
  const std::string_view name = text.substr(0, text.find_first_of("=,"));
  text.remove_prefix(name.size());
  if (text.substr(0, 1) != "=") {
    return same_word(name, "cert-authority") ? "cert-authority is not supported" : kUnknownOption;
  }
  text.remove_prefix(1);
  for (const Option& option : kOptions) {
    if (!same_word(option.name, name)) continue;
    const std::optional<std::string> value = take_quoted(text);
    return value ? option.set(signer, *value) : std::string(option.name) + " has no value in quotes";
  }
  return kUnknownOption;
}

Reason read_options(std::string_view text, AllowedSigner& signer) {
  while (true) {
    Reason reason = take_option(text, signer);
    if (!reason.empty()) return reason;
    if (text.empty()) break;
    if (text.front() != ',') return kUnknownOption;
    text.remove_prefix(1);
  }
  const bool empty_time =
      signer.valid_after && signer.valid_before && *signer.valid_before <= *signer.valid_after;
  return empty_time ? "valid-before is not later than valid-after" : "";
}

// Takes the options off the front, which end at the first blank that is not in quotes.
std::string_view take_options(std::string_view& text) {
  bool quoted = false;
  size_t end = 0;
  for (; end < text.size() && (quoted || (text[end] != ' ' && text[end] != '\t')); ++end) {
    if (text.substr(end, 2) == "\\\"") {
      ++end;
    } else if (text[end] == '"') {
      quoted = !quoted;
    }
  }
  const std::string_view options = text.substr(0, end);
  text.remove_prefix(options.size());
  return options;
}

// Takes the names off the front, which may be quoted wholly or in part; std::nullopt if a quote does not end.
std::optional<std::string> take_principals(std::string_view& text) {
  std::string names(text.substr(0, text.find_first_of(" \t\r\n\"")));
  text.remove_prefix(names.size());
  if (text.substr(0, 1) != "\"") return names;
  const size_t end = text.find('"', 1);
  if (end == std::string_view::npos) return std::nullopt;
  names += text.substr(1, end - 1);
  text.remove_prefix(end + 1);
  return names;
}

Reason read_signer(std::string_view line, AllowedSigner& signer) {
  std::optional<std::string> principals = take_principals(line);
  if (!principals) return "a quote does not end";
  if (principals->empty()) return "there is no name";
  signer.principals = std::move(*principals);
  line = skip_blanks(line);
  std::optional<PublicKey> key = take_key(line);
  if (!key) {
    const std::string_view options = take_options(line);
    key = take_key(line);
    if (!key) return kNoKey;
    Reason reason = read_options(options, signer);
    if (!reason.empty()) return reason;
  }
  signer.key = std::move(*key);
  return signer.key.is_ed25519() ? "" : "keys of the type " + signer.key.type + " are not supported";
}

// Calls visit(line, number) for every line that is neither empty nor a comment, without leading blanks; stops
// when visit returns false.
template <typename Visit>
void each_entry(std::string_view text, Visit visit) {
  for (uint64_t number = 1; !text.empty(); ++number) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(line.size() < text.size() ? line.size() + 1 : line.size());
    const std::string_view entry = skip_blanks(line);
    if (!entry.empty() && entry.front() != '#' && !visit(entry, number)) return;
  }
}

}  // namespace

AllowedSigners read_allowed_signers(std::string_view text) {
  AllowedSigners result;
  each_entry(text, [&](std::string_view entry, uint64_t number) {
    AllowedSigner signer;
    Reason reason = read_signer(entry, signer);
    if (reason.empty()) {
      result.signers.push_back(std::move(signer));
    } else {
      result.faults.push_back({number, std::move(reason)});
    }
    return true;
  });
  return result;
}

std::optional<std::vector<PublicKey>> read_revoked_keys(std::string_view text, LineFault* fault) {
  *fault = {};
  if (text.substr(0, 6) == "SSHKRL") {
    *fault = {1, kBinaryList};
    return std::nullopt;
  }
  std::vector<PublicKey> keys;
  each_entry(text, [&](std::string_view entry, uint64_t number) {
    std::optional<PublicKey> key = take_key(entry);
    if (!key) {
      *fault = {number, kNoKey};
      return false;
    }
    keys.push_back(std::move(*key));
    return true;
  });
  if (!fault->message.empty()) return std::nullopt;
  return keys;
}

}  // namespace inv
