#include "inv/base/utf8.h"
#include "inv/commands/file_list.h"
#include "inv/show/table.h"
#include "inv/show/terminal.h"

namespace inv {
namespace {

struct Options {
  FileOptions files;
  uint64_t max_size = kUsualMaxSize;
};

std::string section_table(const Inventory& inventory) {
  Table table({{"Section", true},
               {"Kind"},
               {"Offset", true},
               {"Length", true},
               {"Inflated", true},
               {"Layout"},
               {"Top element"},
               {"Timestamp"}});
  for (size_t i = 0; i < inventory.contents.size(); ++i) {
    const Section& section = inventory.container->sections[i];
    const Content& content = inventory.contents[i];
    const std::string kind = kind_name(section.kind);
    table.add({std::to_string(section.number),
               section.type.empty() ? kind : kind + " (" + printable(section.type) + ")",
               std::to_string(section.offset), std::to_string(section.length),
               content.size ? std::to_string(*content.size) : "-",
               content.layout ? layout_name(*content.layout) : "-",
               content.document ? printable(content.document->top().name()) : "-",
               section.timestamp.empty() ? "-" : printable(section.timestamp)});
  }
  return table.text();
}

std::string header_lines(std::string_view text) {
  std::string lines;
  while (!text.empty()) {
    const size_t end = text.find('\n');
    lines += "  " + printable(text.substr(0, end)) + "\n";
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  }
  return lines;
}

std::string listing_of(const Inventory& inventory) {
  const Container& container = *inventory.container;
  return printable(inventory.file_name) + ": " + std::to_string(inventory.bytes.size()) + " bytes, " +
         (container.big_endian ? "most" : "least") + " significant byte first\n\n" +
         section_table(inventory) + "\nHeader at " + std::to_string(container.header_offset) + ", " +
         std::to_string(container.header_size) + " bytes, " +
         (container.header_compressed ? "compressed" : "plain") + ":\n" + header_lines(container.header_text);
}

int run(const Options& options) {
  int status = kDone;
  std::string text;
  for (const std::string& file : find_files(options.files, status)) {
    const std::unique_ptr<Inventory> inventory = open_for_command(file, options.max_size, status);
    if (inventory) text += (text.empty() ? "" : "\n") + listing_of(*inventory);
  }
  return worse(status, print_result(text));
}

constexpr char kExamples[] =
    "  inv list MAC.inv          sections, where they are, and the header's text\n"
    "  inv list - < MAC.inv\n";

}  // namespace

void add_list(CLI::App& app, int& status) {
  auto options = std::make_shared<Options>();
  CLI::App& command =
      add_command(app, "list", "Show the container: sections, offsets, sizes, header", kExamples);
  add_files(command, options->files);
  add_max_size(command, options->max_size);
  command.callback([options, &status] { status = run(*options); });
}

}  // namespace inv
