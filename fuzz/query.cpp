// Queries and policies from a stranger, answered about a small snapshot: JSON is a policy, the rest is SQL.
#include <cstdint>
#include <cstdlib>

#include "inv/export/policy.h"
#include "inv/file/container_writer.h"

namespace {

constexpr size_t kMostRules = 4;
constexpr uint64_t kMaxSize = 1 << 20;
// A query ends when the clock is first looked at.
constexpr std::chrono::seconds kPatience{0};

constexpr char kSnapshot[] =
    "\xEF\xBB\xBF?zxml\n+Snapshot=\nhostname=ATELIER\ntimestamp=20120118153045.000000+120\n"
    "+System=\n*Chassis=\nserial=C02TEST00001\n-\n"
    "+Software=\n*Soft:1=Safari\nversion=5.1.9\nlocation=/Applications/Safari.app\n"
    "*Soft:2=Mail\nversion=5.10\n-\n"
    "+Storage=\n+Logical-disks=\n*partition:1=Macintosh HD\nsize=499.50\n~base-value=499500000000\n-\n-\n"
    "+Security=\n*Firewall=\nstatus=1\n-\n-\n";
constexpr int kFacts = 11;

std::unique_ptr<inv::QueryDatabase> new_database() {
  auto database = std::make_unique<inv::QueryDatabase>(kPatience, kMaxSize);
  const auto inventory = inv::open_inventory(
      "fuzz.inv",
      inv::write_container({{inv::Section::Kind::snapshot, kSnapshot, "20120118153045.000000+120", "mac:1"}}),
      kMaxSize);
  if (!inventory->faults.empty() || !database->open() || !database->add(*inventory)) std::abort();
  return database;
}

// No query changes what others find.
void check_unchanged(inv::QueryDatabase& database) {
  const auto facts = database.ask("SELECT count(*) FROM facts");
  if (!facts || facts->rows.at(0).at(0) != kFacts) std::abort();
}

void ask(const std::string& sql, inv::QueryDatabase& database) {
  const auto result = database.ask(sql);
  if (!result && database.error().empty()) std::abort();
  if (!result) return;
  for (const auto& row : result->rows) {
    if (row.size() != result->columns.size()) std::abort();
    for (const inv::Json& cell : row) cell.dump();
  }
}

void check(const std::vector<inv::PolicyRule>& rules, inv::QueryDatabase& database) {
  std::vector<inv::PolicyVerdict> verdicts;
  for (size_t i = 0; i < rules.size() && i < kMostRules; ++i) {
    verdicts.push_back(inv::check_rule(rules[i], database));
  }
  if (inv::Json::parse(inv::verdicts_json(verdicts)).size() != verdicts.size()) std::abort();
  if (inv::verdicts_junit(verdicts).empty()) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  static auto database = new_database();
  const std::string text(reinterpret_cast<const char*>(bytes), size);
  std::string error;
  const auto rules = inv::read_policy(text, &error);
  if (!rules && error.empty()) std::abort();
  if (!rules) ask(text, *database);
  if (rules) check(*rules, *database);
  check_unchanged(*database);
  // What is kept of answers is not to be added up for ever.
  if (rules) database.reset();
  if (rules) database = new_database();
  return 0;
}
