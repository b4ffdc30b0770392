#include "zxml/INVfile.h"

#include <sys/stat.h>

#include <csignal>
#include <cstdio>
#include <utility>

#include "zxml/deflate.h"

namespace {

constexpr char kSource[] = "INVfile";
constexpr size_t kTrailerSize = 14;

bool is_snapshot(const InventoryTree* tree) { return tree && tree->top().name() == "Snapshot"; }

// The scan's date, which the console lists without opening the section; empty when the tree has none in text
// form.
const char* timestamp(const InventoryTree* tree) {
  const Attribute* attribute = tree ? tree->top().find_attribute("timestamp") : nullptr;
  const char* text = attribute ? attribute->value().text() : nullptr;
  return text ? text : "";
}

// False for a device or a pipe: those were there before, and are not to be removed.
bool is_regular(std::FILE* file) {
  struct stat status;
  return fstat(fileno(file), &status) == 0 && S_ISREG(status.st_mode);
}

// While this lives, a file that reaches the size that the user may write makes the write fail; otherwise the
// signal that the system sends then would end the program, with half a file left behind.
class FileSizeSignalIgnored {
 public:
  FileSizeSignalIgnored() : before_(std::signal(SIGXFSZ, SIG_IGN)) {}
  FileSizeSignalIgnored(const FileSizeSignalIgnored&) = delete;
  FileSizeSignalIgnored& operator=(const FileSizeSignalIgnored&) = delete;
  ~FileSizeSignalIgnored() { std::signal(SIGXFSZ, before_); }

 private:
  void (*before_)(int);
};

}  // namespace

INVfile::~INVfile() {
  for (Section& section : sections_) {
    if (section.borrowed && frees_borrowed_data) delete[] section.data;
  }
}

void INVfile::add_section(std::unique_ptr<InventoryTree> tree, int32_t kind, bool sectioned,
                          bool compressed) {
  Bytes data = tree->serialize(sectioned, compressed);
  Section section = {kind, false, sectioned, compressed, std::move(tree), std::move(data), nullptr, 0, 0};
  section.data = section.owned_data.data();
  section.length = section.owned_data.length();
  sections_.push_back(std::move(section));
}

void INVfile::add_raw_section(unsigned char* data, size_t length) {
  sections_.push_back({kRawData, true, true, true, nullptr, Bytes(), data, length, 0});
}

// Assigns the offsets and lists the sections; a kind the console does not know takes its place and its
// number, but no lines.
std::string INVfile::header_text() {
  uint32_t offset = 0;
  int snapshots = 0;
  std::string entries;
  for (size_t i = 0; i < sections_.size(); ++i) {
    Section& section = sections_[i];
    section.offset = offset;
    offset += static_cast<uint32_t>(section.length);
    if (is_snapshot(section.tree.get())) ++snapshots;

    const std::string entry = "[" + std::to_string(i) + "]\noffset=" + std::to_string(section.offset) +
                              "\nlength=" + std::to_string(section.length) + "\n";
    if (section.kind == kSnapshot) {
      entries += entry + "type=snapshot\ntimestamp=" + timestamp(section.tree.get()) + "\nsnaptype=mac:1\n";
    } else if (section.kind == kAssetInfo) {
      entries += entry + "type=assetinfo\n";
    } else if (section.kind == kRawData) {
      entries += entry + "type=customdata\nID=rawdata\n";
    }
  }
  return "[H]\ncount=" + std::to_string(sections_.size()) + "\nsnapshotcount=" + std::to_string(snapshots) +
         "\n" + entries;
}

Bytes INVfile::build(bool compress_header) {
  const std::string text = header_text();
  Bytes header;
  if (compress_header) {
    header = deflate_buffer(text.data(), text.size(), kSource);
  } else {
    header.append(text.data(), text.size());
  }
  size_t data_length = 0;
  for (const Section& section : sections_) data_length += section.length;

  Bytes file(data_length + header.length() + kTrailerSize);
  for (const Section& section : sections_) file.append(section.data, section.length);
  file.append(header.data(), header.length());
  file.append_number(static_cast<uint64_t>(data_length), byte_order_flag_ != 0);
  file.append_byte(3);
  file.append_byte(compress_header ? 1 : 0);
  file.append("INV!", 4);
  return file;
}

bool INVfile::save(const char* path, bool compress_header) {
  std::FILE* file = std::fopen(path, "w");
  if (!file) return false;
  const bool removable = is_regular(file);
  const FileSizeSignalIgnored ignored;
  const Bytes bytes = build(compress_header);
  const bool written = std::fwrite(bytes.data(), 1, bytes.length(), file) == bytes.length();
  const bool flushed = std::fflush(file) == 0;
  const bool closed = std::fclose(file) == 0;
  if (written && flushed && closed) return true;
  // A console must never import half a file.
  if (removable) std::remove(path);
  return false;
}
