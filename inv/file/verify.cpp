#include "inv/file/verify.h"

#include "inv/base/byte_reader.h"
#include "inv/base/utf8.h"
#include "inv/file/timestamp.h"
#include "inv/file/zxml_parser.h"

namespace inv {
namespace {

// The attributes by which a console files a snapshot.
constexpr std::string_view kNeededAttributes[] = {"timestamp", "scan-time", "client-version", "scan-subtype",
                                                  "snaptype"};

// The top element is on the text's second line, after the mark.
constexpr uint64_t kTopLine = 2;

class Verifier {
 public:
  explicit Verifier(const Inventory& inventory) : inventory_(inventory) { verdict.faults = inventory.faults; }

  void run() {
    if (!inventory_.container) return;
    check_counts();
    for (size_t i = 0; i < inventory_.contents.size(); ++i) {
      const Content& content = inventory_.contents[i];
      if (content.document) check_tree(inventory_.container->sections[i], *content.document);
    }
  }

  Verdict verdict;

 private:
  void check_counts() {
    const Container& container = *inventory_.container;
    uint64_t snapshots = 0;
    bool all_read = true;
    for (const Content& content : inventory_.contents) {
      if (content.document && content.document->top().name() == "Snapshot") ++snapshots;
      all_read = all_read && (content.document || content.raw);
    }
    // Damaged sections and those of an unknown kind may be snapshots too.
    if (snapshots > container.snapshot_count || (all_read && snapshots < container.snapshot_count)) {
      add("the header counts " + std::to_string(container.snapshot_count) + " snapshots, the file has " +
              std::to_string(snapshots),
          container.header_offset);
    }
  }

  void check_tree(const Section& section, const Document& document) {
    count_lines_not_utf8(document.text());
    const Element top = document.top();
    const std::string_view expected = section.kind == Section::Kind::snapshot ? "Snapshot" : "AssetInfo";
    if (top.name() != expected) {
      return add_at_top(section, "the top element is not " + std::string(expected));
    }
    if (section.kind != Section::Kind::snapshot) return;
    for (const std::string_view name : kNeededAttributes) {
      if (top.text(name).empty()) add_at_top(section, "the snapshot has no \"" + std::string(name) + "\"");
    }
    const std::string_view timestamp = top.text("timestamp");
    if (timestamp != section.timestamp) {
      add_at_top(section, "the snapshot's timestamp differs from the header's");
    }
    if (!timestamp.empty() && !is_timestamp(timestamp)) {
      add_at_top(section, "the snapshot's timestamp is not of the form 20120118153045.000000+120");
    }
  }

  void count_lines_not_utf8(std::string_view text) {
    if (is_utf8(text)) return;
    while (const std::optional<std::string_view> line = take_line(text)) {
      if (!is_utf8(*line)) ++verdict.lines_not_utf8;
    }
  }

  void add(std::string message, uint64_t offset) { verdict.faults.push_back({std::move(message), offset}); }

  void add_at_top(const Section& section, std::string message) {
    verdict.faults.push_back({std::move(message), section.offset, kTopLine, kTextMark.size()});
  }

  const Inventory& inventory_;
};

}  // namespace

Verdict verify(const Inventory& inventory) {
  Verifier verifier(inventory);
  verifier.run();
  return std::move(verifier.verdict);
}

}  // namespace inv
