#include "inv/export/policy.h"

#include <algorithm>

#include "inv/base/input_file.h"
#include "inv/base/utf8.h"
#include "inv/commands/arguments.h"
#include "inv/commands/file_list.h"
#include "inv/commands/result_text.h"
#include "inv/commands/secret_options.h"
#include "inv/show/table.h"
#include "inv/show/terminal.h"

namespace inv {
namespace {

// Thousands of rules.
constexpr uint64_t kLargestPolicy = 1 << 22;

struct Options {
  std::string rules;
  FileOptions files;
  std::string format = "table";
  unsigned patience = kUsualPatience;
  bool keep_secrets = false;
  uint64_t max_size = kUsualMaxSize;
};

std::optional<std::vector<PolicyRule>> open_policy(const std::string& path) {
  std::string error;
  const std::optional<std::string> text = read_file(path, kLargestPolicy, &error);
  std::optional<std::vector<PolicyRule>> rules;
  if (text) rules = read_policy(*text, &error);
  if (!rules) complain(path, error);
  return rules;
}

// A line for each breach, and one for each rule without any.
std::string verdict_table(const std::vector<PolicyVerdict>& verdicts) {
  Table table({{"Rule"}, {"Severity"}, {"Result"}});
  for (const PolicyVerdict& verdict : verdicts) {
    const std::string name = printable(verdict.rule.name);
    if (!verdict.error.empty()) table.add({name, verdict.rule.severity, "no answer"});
    if (verdict.error.empty() && verdict.breaches.empty()) table.add({name, verdict.rule.severity, "kept"});
    for (const PolicyBreach& breach : verdict.breaches) {
      table.add({name, verdict.rule.severity, printable(breach.message)});
    }
  }
  return table.text();
}

std::string verdict_text(const std::vector<PolicyVerdict>& verdicts, const std::string& format) {
  if (format == "json") return verdicts_json(verdicts);
  return format == "junit" ? verdicts_junit(verdicts) : verdict_table(verdicts);
}

int run(const Options& options) {
  if (is_named_like_file("RULES", options.rules)) return kUnusable;
  const std::optional<std::vector<PolicyRule>> rules = open_policy(options.rules);
  if (!rules) return kUnusable;
  int status = kDone;
  const std::vector<std::string> files = find_files(options.files, status);
  QueryDatabase database{std::chrono::seconds(options.patience), options.max_size};
  if (!open_for_questions("policy", database, files, options.max_size, options.keep_secrets, status))
    return kUnusable;
  std::vector<PolicyVerdict> verdicts;
  for (const PolicyRule& rule : *rules) {
    verdicts.push_back(check_rule(rule, database));
    const PolicyVerdict& verdict = verdicts.back();
    if (!verdict.error.empty()) complain(options.rules, "rule \"" + rule.name + "\": " + verdict.error);
    if (!verdict.error.empty()) status = worse(status, kUnusable);
    if (!verdict.breaches.empty()) status = worse(status, kNo);
  }
  return worse(status, print_result(verdict_text(verdicts, options.format)));
}

constexpr char kExamples[] =
    "  inv policy starter.json *.inv                         which machines break which rule\n"
    "  inv policy starter.json --format junit *.inv > policy.xml\n"
    "  inv policy mine.json MAC.inv && admit MAC.inv\n";

}  // namespace

void add_policy(CLI::App& app, int& status) {
  auto options = std::make_shared<Options>();
  CLI::App& command =
      add_command(app, "policy", "Check files against rules; status 1 when one is broken", kExamples);
  command.add_option("RULES", options->rules, "The rules, in JSON")->required();
  add_files(command, options->files);
  limit_to(
      command.add_option("-f,--format", options->format, "table, json or junit (table)")->type_name("NAME"),
      {"table", "json", "junit"});
  add_timeout(command, options->patience);
  add_secrets(command, options->keep_secrets);
  add_max_size(command, options->max_size);
  command.callback([options, &status] { status = run(*options); });
}

}  // namespace inv
