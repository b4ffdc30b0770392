#include "inv/report/report.h"

#include <map>

#include "inv/base/base64.h"
#include "inv/compare/diff.h"
#include "inv/facts/overview_text.h"
#include "inv/file/machine.h"
#include "inv/report/html.h"
#include "inv/report/page.h"
#include "inv/report/report_pictures.h"
#include "inv/report/report_tables.h"

namespace inv {
namespace {

std::string source_of(std::string_view asset) { return "'sha256-" + base64(sha256(asset)) + "'"; }

// The style and the script of the page are known by their digests; nothing else runs, and nothing is fetched.
std::string policy() {
  return "default-src 'none'; style-src " + source_of(kPageStyle) + "; script-src " + source_of(kPageScript) +
         "; base-uri 'none'; form-action 'none'";
}

// The page with its places filled in. What is put in is not looked at again: a value may say "{{body}}".
std::string page(const std::string& title, const std::string& body) {
  const std::map<std::string_view, std::string> contents = {{"policy", policy()},
                                                            {"title", escaped(title)},
                                                            {"style", std::string(kPageStyle)},
                                                            {"script", std::string(kPageScript)},
                                                            {"body", body}};
  std::string html;
  std::string_view rest = kPage;
  for (size_t open = rest.find("{{"); open != rest.npos; open = rest.find("{{")) {
    const size_t close = rest.find("}}", open);
    html.append(rest.substr(0, open)).append(contents.at(rest.substr(open + 2, close - open - 2)));
    rest.remove_prefix(close + 2);
  }
  return html.append(rest);
}

// A card with a line for each text that is not empty.
std::string card(const std::string& title, const std::vector<std::string>& texts) {
  std::string lines;
  for (const std::string& text : texts) {
    if (!text.empty()) lines += "<p>" + isolated(text) + "</p>";
  }
  return lines.empty() ? "" : "<div class=\"card\"><h3>" + title + "</h3>" + lines + "</div>\n";
}

std::string time_element(const std::string& timestamp) {
  return "<time>" + escaped(readable_time(timestamp)) + "</time>";
}

std::string heading(const Overview& overview) {
  std::string line = isolated(model_text(overview));
  const auto add = [&](const std::string& text) { line += (line.empty() ? "" : " &middot; ") + text; };
  if (!overview.serial.empty()) add(isolated(overview.serial));
  if (!overview.timestamp.empty()) add("scanned " + time_element(overview.timestamp));
  return "<header><h1>" + isolated(overview.name) + "</h1><p>" + line + "</p></header>\n";
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

// What protects the Mac, and who.
std::vector<std::string> security_texts(const Overview& overview) {
  std::vector<std::string> texts = overview.security;
  if (!overview.firewall.empty()) texts.push_back("firewall " + overview.firewall);
  texts.push_back(overview.management);
  return texts;
}

std::string cards(const Overview& overview) {
  const std::string uptime = overview.uptime.empty() ? "" : "up " + overview.uptime;
  return "<div class=\"cards\">\n" +
         card("System", {overview.os, overview.kernel, overview.architecture, uptime}) +
         card("Processor", processor_texts(overview.processor)) +
         card("Memory", {memory_text(overview.memory)}) + card("Storage", storage_texts(overview)) +
         card("Displays", display_texts(overview)) + card("Graphics", overview.graphics) +
         card("Battery", overview.battery) + card("Security", security_texts(overview)) +
         card("Contents", content_counts(overview)) + card("Missing", overview.gaps) + "</div>\n";
}

std::string memory_section(const Overview& overview) {
  const std::string picture = memory_picture(overview.memory.slots);
  return picture.empty()
             ? ""
             : "<section><h2>Memory</h2>\n<div class=\"scroll\">" + picture + "</div></section>\n";
}

// A bar for each volume that has a space, or for the volumes that share it, with their names.
std::string volume_section(const Overview& overview) {
  const std::vector<Volume>& volumes = overview.volumes;
  std::string bars;
  for (size_t i = 0; i < volumes.size();) {
    const Volume& volume = volumes[i];
    std::string names = isolated(volume.name);
    while (++i < volumes.size() && volumes[i].shares_space_with(volume))
      names += ", " + isolated(volumes[i].name);
    if (!volume.knows_used()) continue;
    bars += "<div class=\"volume\"><span>" + names + "</span>" + volume_bar(volume) + "<span>" +
            std::to_string(volume.used_percent()) + " % of " + readable_size(volume.bytes) + ", " +
            readable_size(volume.free_bytes) + " free</span></div>\n";
  }
  return bars.empty() ? "" : "<section><h2>Space</h2>\n" + bars + "</section>\n";
}

std::string change_table(const std::vector<Change>& changes) {
  const std::vector<ReportColumn> columns = {{"Change", ""}, {"What", ""},   {"Known by", ""},
                                             {"Where", ""},  {"Before", ""}, {"After", ""}};
  std::vector<std::vector<std::string>> rows;
  for (const Change& change : changes) {
    const std::string kind = kind_text(change.kind);
    rows.push_back({"<span class=\"" + kind + "\">" + kind + "</span>", isolated(change.label),
                    isolated(change.identity), isolated(change.path), isolated(change.old_value),
                    isolated(change.new_value)});
  }
  return table_section("Changes", columns, rows);
}

}  // namespace

std::string report_page(const Inventory& inventory) {
  const Overview overview = overview_of(inventory);
  return page(overview.name, heading(overview) + "<main>\n" + cards(overview) + memory_section(overview) +
                                 volume_section(overview) + report_tables(inventory.snapshot_top()) +
                                 "</main>\n");
}

std::string comparison_page(const Inventory& old_inventory, const Inventory& new_inventory) {
  const Overview overview = overview_of(new_inventory);
  const std::vector<Change> changes = diff(old_inventory, new_inventory, Facts::lasting);
  const std::string since = "<p class=\"since\">" + readable_count(changes.size(), "change") + " since " +
                            time_element(scan_timestamp(old_inventory)) + "</p>\n";
  return page(overview.name + ", compared", heading(overview) + "<main>\n" + since +
                                                (changes.empty() ? "" : change_table(changes)) + "</main>\n");
}

}  // namespace inv
