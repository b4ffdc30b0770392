// A policy: rules that inventories should keep, each a question whose answer is what breaks it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "inv/export/query.h"

namespace inv {

struct PolicyRule {
  std::string name;      // told from those of the other rules
  std::string severity;  // "high", "medium" or "low"
  std::string message;   // "{column}" stands for a value of the answer's row
  std::string sql;
};

// Reads the rules of a text in JSON, where comments may stand; the question may be a list of its lines:
//
//   {"rules": [{"name": "firewall", "severity": "high", "message": "{machine_name}: the firewall is off",
//               "sql": ["SELECT machine_name FROM firewall", "WHERE status = 0"]}]}
//
// None, with the reason as a clause, when it is no such text. What else is in it is refused as well, as a key
// that was mistyped would be a rule that is not kept.
std::optional<std::vector<PolicyRule>> read_policy(std::string_view text, std::string* error);

struct PolicyBreach {
  std::string message;
  Json row;  // what the answer says about it: an object
};

struct PolicyVerdict {
  PolicyRule rule;
  std::vector<PolicyBreach> breaches;
  std::string error;  // why the question has no answer; empty when it has one
};

PolicyVerdict check_rule(const PolicyRule& rule, QueryDatabase& database);

// The verdicts as other programs read them: an array of objects, and a test suite with a case for each rule.
std::string verdicts_json(const std::vector<PolicyVerdict>& verdicts);
std::string verdicts_junit(const std::vector<PolicyVerdict>& verdicts);

}  // namespace inv
