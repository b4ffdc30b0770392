// A whole untrusted file, opened and used in every way that reads it.
#include <cstdlib>

#include "inv/compare/diff.h"
#include "inv/export/tables.h"
#include "inv/facts/facts.h"
#include "inv/file/verify.h"
#include "inv/show/summary.h"

namespace {

constexpr uint64_t kMaxSize = 1 << 20;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  const auto inventory =
      inv::open_inventory("fuzz.inv", std::string(reinterpret_cast<const char*>(bytes), size), kMaxSize);
  const inv::Verdict verdict = inv::verify(*inventory);
  if (verdict.faults.size() < inventory->faults.size()) std::abort();
  if (!inventory->container && inventory->faults.empty()) std::abort();
  size_t length = 0;
  inv::each_fact(*inventory, [&](const inv::Fact& fact) { length += fact.path.size() + fact.value.size(); });
  const inv::Scan scan = inv::scan_of(*inventory);
  for (const inv::TypedTable& table : inv::typed_tables()) {
    inv::each_row(table, *inventory, scan,
                  [&](const std::vector<inv::Cell>& cells) { length += cells.size(); });
  }
  length += inv::summary_screen(inv::overview_of(*inventory), inv::Terminal()).size();
  if (!inv::diff(*inventory, *inventory, inv::Facts::all).empty() || length == 0) std::abort();
  return 0;
}
