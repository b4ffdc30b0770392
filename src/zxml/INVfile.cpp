#include "zxml/INVfile.h"

#include <sys/stat.h>

#include <csignal>
#include <cstdio>
#include <utility>

namespace {

constexpr char kSource[] = "INVfile";

// The scan's date, which the console lists without opening the section; empty when the tree has none in text
// form.
const char* timestamp(const InventoryTree& tree) {
  const Attribute* attribute = tree.top().find_attribute("timestamp");
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
  if (!frees_borrowed_data) return;
  for (const Section& section : sections_) delete[] section.borrowed_data;
}

void INVfile::add_section(std::unique_ptr<InventoryTree> tree, int32_t kind, Layout layout) {
  Bytes encoded = tree->serialize(layout);
  sections_.push_back({kind, std::move(tree), std::move(encoded), nullptr, 0});
}

void INVfile::add_raw_section(unsigned char* data, size_t length) {
  sections_.push_back({kRawData, nullptr, Bytes(), data, length});
}

ContainerSection INVfile::Section::contents() const {
  ContainerSection contents;
  contents.kind = kind;
  contents.data = {reinterpret_cast<const char*>(borrowed_data), borrowed_length};
  if (tree) {
    contents.data = {reinterpret_cast<const char*>(encoded_tree.data()), encoded_tree.length()};
    contents.counts_as_snapshot = tree->top().name() == "Snapshot";
    contents.timestamp = timestamp(*tree);
  }
  return contents;
}

Bytes INVfile::build(HeaderForm form) const {
  std::vector<ContainerSection> contents;
  for (const Section& section : sections_) contents.push_back(section.contents());
  const ByteOrder order =
      byte_order_flag_ != 0 ? ByteOrder::most_significant_first : ByteOrder::least_significant_first;
  return lay_out_container(contents, form, order, kSource);
}

bool INVfile::save(const char* path, HeaderForm form) const {
  std::FILE* file = std::fopen(path, "w");
  if (!file) return false;
  const bool removable = is_regular(file);
  const FileSizeSignalIgnored ignored;
  const Bytes bytes = build(form);
  const bool written = std::fwrite(bytes.data(), 1, bytes.length(), file) == bytes.length();
  const bool flushed = std::fflush(file) == 0;
  const bool closed = std::fclose(file) == 0;
  if (written && flushed && closed) return true;
  // A console must never import half a file.
  if (removable) std::remove(path);
  return false;
}
