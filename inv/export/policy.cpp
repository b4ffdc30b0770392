#include "inv/export/policy.h"

#include <algorithm>
#include <set>

#include "inv/base/utf8.h"

namespace inv {
namespace {

constexpr std::string_view kSeverities[] = {"high", "medium", "low"};
// Deeper than any policy, but not deep enough to exhaust the stack on destruction.
constexpr int kDeepest = 16;

std::optional<Json> parse(std::string_view text, std::string* error) {
  bool too_deep = false;
  const auto limit_depth = [&](int depth, Json::parse_event_t, Json&) {
    too_deep = too_deep || depth > kDeepest;
    return depth <= kDeepest;
  };
  Json parsed;
  try {
    parsed = Json::parse(text, limit_depth, true, true);
  } catch (const Json::exception& fault) {
    *error = "is not JSON: " + to_utf8(fault.what());
    return std::nullopt;
  }
  if (!too_deep) return parsed;
  *error = "is nested too deeply";
  return std::nullopt;
}

// A text, or the lines of one.
std::optional<std::string> text_of(const Json& value) {
  if (value.is_string()) return value.get<std::string>();
  if (!value.is_array()) return std::nullopt;
  std::string text;
  for (const Json& line : value) {
    if (!line.is_string()) return std::nullopt;
    text += line.get<std::string>() + "\n";
  }
  return text;
}

// What is wrong with an object's keys: one is missing, is not a text, or is unknown.
std::string fault_of_keys(const Json& object, std::initializer_list<const char*> keys) {
  for (const char* key : keys) {
    if (!object.contains(key)) return std::string("has no \"") + key + "\"";
    const std::optional<std::string> text = text_of(object[key]);
    if (!text || text->empty()) return std::string("has a \"") + key + "\" that is not a text";
  }
  for (const auto& item : object.items()) {
    const bool known =
        std::any_of(keys.begin(), keys.end(), [&](const char* key) { return item.key() == key; });
    if (!known) return "has an unknown \"" + item.key() + "\"";
  }
  return "";
}

std::string fault_of_rule(const Json& rule, const std::set<std::string>& names) {
  if (!rule.is_object()) return "is not an object";
  const std::string fault = fault_of_keys(rule, {"name", "severity", "message", "sql"});
  if (!fault.empty()) return fault;
  const std::string severity = *text_of(rule["severity"]);
  if (std::find(std::begin(kSeverities), std::end(kSeverities), severity) == std::end(kSeverities)) {
    return "has a severity that is not high, medium or low";
  }
  return names.count(*text_of(rule["name"])) > 0 ? "has the name of another rule" : "";
}

// Nobody reads a longer one.
constexpr size_t kLongestMessage = 1 << 16;

// The message with the column names in braces replaced by the row's values.
std::string filled(const std::string& message, const Json& row) {
  std::string text;
  size_t at = 0;
  for (size_t open = message.find('{'); open != std::string::npos; open = message.find('{', open + 1)) {
    const size_t close = message.find('}', open);
    if (close == std::string::npos) break;
    const auto found = row.find(message.substr(open + 1, close - open - 1));
    if (found == row.end()) continue;
    text.append(message, at, open - at);
    text += text_of_cell(*found);
    at = close + 1;
    if (text.size() > kLongestMessage) return text.substr(0, kLongestMessage);
  }
  return text.append(message, at, std::string::npos);
}

Json object_of(const std::vector<std::string>& columns, const std::vector<Json>& row) {
  Json object = Json::object();
  for (size_t i = 0; i < row.size(); ++i) object[columns[i]] = row[i];
  return object;
}

// XML does not allow control characters, not even escaped.
std::string xml_text(std::string_view text) {
  std::string escaped;
  for (const char character : to_utf8(text)) {
    const unsigned char byte = static_cast<unsigned char>(character);
    if (character == '&') {
      escaped += "&amp;";
    } else if (character == '<') {
      escaped += "&lt;";
    } else if (character == '>') {
      escaped += "&gt;";
    } else if (character == '"') {
      escaped += "&quot;";
    } else if (byte < 0x20 || byte == 0x7F) {
      escaped += ' ';
    } else {
      escaped += character;
    }
  }
  return escaped;
}

bool failed(const PolicyVerdict& verdict) { return !verdict.breaches.empty(); }
bool unanswered(const PolicyVerdict& verdict) { return !verdict.error.empty(); }

std::string junit_case(const PolicyVerdict& verdict) {
  std::string text = "  <testcase classname=\"policy\" name=\"" + xml_text(verdict.rule.name) + "\">\n";
  if (unanswered(verdict)) text += "    <error message=\"" + xml_text(verdict.error) + "\"/>\n";
  if (failed(verdict)) {
    text += "    <failure type=\"" + xml_text(verdict.rule.severity) + "\" message=\"" +
            xml_text(verdict.breaches.front().message) + "\">";
    for (const PolicyBreach& breach : verdict.breaches) text += xml_text(breach.message) + "\n";
    text += "</failure>\n";
  }
  return text + "  </testcase>\n";
}

}  // namespace

std::optional<std::vector<PolicyRule>> read_policy(std::string_view text, std::string* error) {
  const std::optional<Json> policy = parse(text, error);
  if (!policy) return std::nullopt;
  *error = "needs a list of \"rules\" and nothing else";
  if (!policy->is_object() || policy->size() != 1 || !policy->contains("rules")) return std::nullopt;
  const Json& list = (*policy)["rules"];
  if (!list.is_array() || list.empty()) return std::nullopt;

  std::vector<PolicyRule> rules;
  std::set<std::string> names;
  for (const Json& rule : list) {
    const std::string fault = fault_of_rule(rule, names);
    if (!fault.empty()) {
      *error = "rule " + std::to_string(rules.size() + 1) + " " + fault;
      return std::nullopt;
    }
    rules.push_back({*text_of(rule["name"]), *text_of(rule["severity"]), *text_of(rule["message"]),
                     *text_of(rule["sql"])});
    names.insert(rules.back().name);
  }
  error->clear();
  return rules;
}

PolicyVerdict check_rule(const PolicyRule& rule, QueryDatabase& database) {
  PolicyVerdict verdict = {rule, {}, {}};
  const std::optional<QueryResult> answer = database.ask(rule.sql);
  if (!answer) {
    verdict.error = database.error();
    return verdict;
  }
  // The verdict has the rows with the names of their columns, and a message for each.
  database.keep(3 * answer->size);
  for (const std::vector<Json>& row : answer->rows) {
    Json object = object_of(answer->columns, row);
    std::string message = filled(rule.message, object);
    verdict.breaches.push_back({std::move(message), std::move(object)});
  }
  return verdict;
}

std::string verdicts_json(const std::vector<PolicyVerdict>& verdicts) {
  Json list = Json::array();
  for (const PolicyVerdict& verdict : verdicts) {
    Json breaches = Json::array();
    for (const PolicyBreach& breach : verdict.breaches) {
      breaches.push_back({{"message", breach.message}, {"row", breach.row}});
    }
    Json object = {{"rule", verdict.rule.name},
                   {"severity", verdict.rule.severity},
                   {"kept", !failed(verdict) && !unanswered(verdict)},
                   {"breaches", std::move(breaches)}};
    if (unanswered(verdict)) object["error"] = verdict.error;
    list.push_back(std::move(object));
  }
  return list.dump(2) + "\n";
}

std::string verdicts_junit(const std::vector<PolicyVerdict>& verdicts) {
  const std::string failures = std::to_string(std::count_if(verdicts.begin(), verdicts.end(), failed));
  const std::string errors = std::to_string(std::count_if(verdicts.begin(), verdicts.end(), unanswered));
  std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuite name=\"policy\" tests=\"" +
                     std::to_string(verdicts.size()) + "\" failures=\"" + failures + "\" errors=\"" + errors +
                     "\">\n";
  for (const PolicyVerdict& verdict : verdicts) text += junit_case(verdict);
  return text + "</testsuite>\n";
}

}  // namespace inv
