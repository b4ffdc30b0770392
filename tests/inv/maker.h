// Inventory files for the reader's tests, made by the scanner's own writer or, if they must be wrong, by
// hand.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "inv/file/inventory.h"
#include "zxml/INVfile.h"

namespace maker {

struct Form {
  int byte_order = 1;
  Layout layout = Layout::whole_compressed;
  HeaderForm header = HeaderForm::compressed;
};

std::string bytes_of(const Bytes& bytes);

// A small Mac: a processor, two applications, an account, a compound field, a disk with a volume.
std::unique_ptr<InventoryTree> snapshot();
std::unique_ptr<InventoryTree> asset();
// A file with these two trees.
std::string file(const Form& form = {});
// A debug run's file, with this output of the profiler.
std::string debug_file(std::string_view profiler_output);

std::string text_of(const InventoryTree& tree);

// What is put into a sink, as one text.
template <typename Write>
std::string written(Write write) {
  std::string text;
  write([&text](std::string_view piece) { text += piece; });
  return text;
}

// One complete zlib stream.
std::string deflated(std::string_view text);
// A container around any bytes and any header text, plain.
std::string container(std::string_view sections, std::string_view header, bool big_endian = true);
// A container whose one section is a snapshot of this text, whole and compressed.
std::string file_of_text(std::string_view text);

// The 14 bytes at a file's end.
std::string trailer(uint64_t header_offset, bool big_endian, char version = kTrailerVersion,
                    char compressed = 0);

// A text of empty tags, each inside the one before it, and the last of them.
inv::Document document_of_tags(const std::vector<std::string>& tags);
inv::Element last_tag(const inv::Document& document);

// open_inventory with the usual limit.
std::unique_ptr<inv::Inventory> open(std::string bytes);

}  // namespace maker
