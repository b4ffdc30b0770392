#include "inv/report/report.h"

#include "inv/compare/diff_formats.h"
#include "inv/facts/overview_text.h"
#include "inv/file/machine.h"
#include "inv/report/html.h"
#include "inv/report/page_frame.h"
#include "inv/report/report_pictures.h"
#include "inv/report/report_tables.h"

namespace inv {
namespace {

// A card with a line for each non-empty text.
std::string card(const std::string& title, const std::vector<std::string>& texts) {
  std::string lines;
  for (const std::string& text : texts) {
    if (!text.empty()) lines += "<p>" + isolated(text) + "</p>";
  }
  return lines.empty() ? "" : "<div class=\"card\"><h3>" + title + "</h3>" + lines + "</div>\n";
}

std::string heading(const Overview& overview) {
  std::string line = isolated(model_text(overview));
  const auto add = [&](const std::string& text) { line += (line.empty() ? "" : " &middot; ") + text; };
  if (!overview.serial.empty()) add(isolated(overview.serial));
  if (!overview.timestamp.empty()) add("scanned " + time_element(overview.timestamp));
  return "<h1>" + isolated(overview.name) + "</h1><p>" + line + "</p>";
}

std::vector<std::string> storage_texts(const Overview& overview) {
  uint64_t disk_bytes = 0;
  for (const Disk& disk : overview.disks) disk_bytes += disk.bytes;
  const Space space = space_of(overview.volumes);
  return {
      disk_bytes > 0 ? readable_size(disk_bytes) : "",
      overview.disks.empty() ? "" : readable_count(overview.disks.size(), "drive"),
      overview.volumes.empty() ? "" : readable_count(overview.volumes.size(), "volume"),
      space.bytes > 0 ? readable_size(space.free_bytes) + " of " + readable_size(space.bytes) + " free" : ""};
}

std::vector<std::string> display_texts(const Overview& overview) {
  std::vector<std::string> texts;
  for (const Display& display : overview.displays) texts.push_back(display_text(display));
  return texts;
}

// What protects the Mac, and who manages it.
std::vector<std::string> security_texts(const Overview& overview) {
  std::vector<std::string> texts = overview.security;
  if (!overview.firewall.empty()) texts.push_back("firewall " + overview.firewall);
  texts.push_back(overview.management);
  return texts;
}

std::string cards(const Overview& overview) {
  const std::string uptime = overview.uptime.empty() ? "" : "up " + overview.uptime;
  return "<h2 class=\"unseen\">Overview</h2>\n<div class=\"cards\">\n" +
         card("System", {overview.os, overview.kernel, overview.architecture, uptime}) +
         card("Processor", processor_texts(overview.processor)) +
         card("Memory", {memory_text(overview.memory)}) + card("Storage", storage_texts(overview)) +
         card("Displays", display_texts(overview)) + card("Graphics", overview.graphics) +
         card("Battery", overview.battery) + card("Security", security_texts(overview)) +
         card("Contents", content_counts(overview)) + card("Missing", overview.gaps) + "</div>\n";
}

std::string memory_section(const Overview& overview) {
  const std::string picture = memory_picture(overview.memory.slots);
  return picture.empty() ? ""
                         : "<section id=\"memory\"><h2>Memory</h2>\n<div class=\"scroll\" tabindex=\"0\" "
                           "role=\"region\" aria-label=\"Memory slots, as a picture\">" +
                               picture + "</div></section>\n";
}

std::string volume_section(const Overview& overview) {
  std::string bars;
  for (const std::vector<Volume>& volumes : by_space(overview.volumes)) bars += volume_line(volumes);
  return bars.empty() ? "" : "<section id=\"space\"><h2>Space</h2>\n" + bars + "</section>\n";
}

PagePart change_table(const ChangeSentences& sentences) {
  const std::vector<ReportColumn> columns = {{"Change", ""}, {"Of", ""}, {"What changed", ""}};
  return table_part("Changes", columns, sentences.size(), [&sentences](size_t i) -> std::vector<std::string> {
    const ChangeSentence change = sentences[i];
    const std::string kind = kind_text(change.kind);
    return {"<span class=\"" + kind + "\">" + kind + "</span>", isolated(change.thing),
            isolated(change.sentence)};
  });
}

}  // namespace

void report_page(const Inventory& inventory, const TextSink& sink) {
  const Overview overview = overview_of(inventory);
  std::vector<PagePart> parts = report_tables(inventory.snapshot_top());
  parts.insert(parts.begin(), {cards(overview) + memory_section(overview) + volume_section(overview), {}});
  framed_page(overview.name, heading(overview), parts, sink);
}

void comparison_page(const Inventory& old_inventory, const Inventory& new_inventory, const TextSink& sink) {
  const Overview overview = overview_of(new_inventory);
  const ChangeSentences sentences(diff(old_inventory, new_inventory, Facts::lasting));
  const std::string warning = machine_warning(old_inventory, new_inventory);
  const std::string note =
      warning.empty() ? "" : "<p class=\"warning\" role=\"note\">Note: " + isolated(warning) + "</p>\n";
  const std::string since = "<p class=\"since\">" + readable_count(sentences.size(), "change") + " since " +
                            time_element(scan_timestamp(old_inventory)) + "</p>\n";
  std::vector<PagePart> parts = {{note + since, {}}};
  if (!sentences.empty()) parts.push_back(change_table(sentences));
  framed_page(overview.name + ", compared", heading(overview), parts, sink);
}

}  // namespace inv
