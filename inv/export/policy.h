// A policy: rules for inventories, each a query whose result is what breaks it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "inv/export/query.h"

namespace inv {

struct PolicyRule {
  std::string name;      // unique
  std::string severity;  // "high", "medium" or "low"
  std::string message;   // "{column}" stands for a value of the result row
  std::string sql;
};

// Reads rules in JSON, with comments allowed; the query may be a list of lines:
//
//   {"rules": [{"name": "firewall", "severity": "high", "message": "{machine_name}: the firewall is off",
//               "sql": ["SELECT machine_name FROM firewall", "WHERE status = 0"]}]}
//
// std::nullopt, with the reason as a clause, for any other text. Unknown keys are refused too, as a mistyped
// one would weaken a rule unnoticed.
std::optional<std::vector<PolicyRule>> read_policy(std::string_view text, std::string* error);

struct PolicyBreach {
  std::string message;
  Json row;  // the result's row: an object
};

struct PolicyVerdict {
  PolicyRule rule;
  std::vector<PolicyBreach> breaches;
  std::string error;  // why the query failed; empty if it succeeded
};

PolicyVerdict check_rule(const PolicyRule& rule, QueryDatabase& database);

// The verdicts for other programs: an array of objects, and a test suite with a case for each rule.
std::string verdicts_json(const std::vector<PolicyVerdict>& verdicts);
std::string verdicts_junit(const std::vector<PolicyVerdict>& verdicts);

}  // namespace inv
