// The .inv container: sections of encoded bytes, then an INI-like header that lists them, then a trailer that
// a reader finds from the file's end. docs/inv-format.md describes it byte by byte.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "zxml/container.h"
#include "zxml/zXML.h"

class INVfile {
 public:
  // A byte-order flag of 1 writes the trailer's offset most significant byte first, 0 least significant
  // first.
  explicit INVfile(int32_t byte_order_flag) : byte_order_flag_(byte_order_flag) {}
  INVfile(const INVfile&) = delete;
  INVfile& operator=(const INVfile&) = delete;
  ~INVfile();

  int32_t byte_order_flag() const { return byte_order_flag_; }

  // `kind` is one of SectionKind (container.h). Takes over the tree and encodes it at once, so later changes
  // to it do not reach the file.
  void add_section(std::unique_ptr<InventoryTree> tree, int32_t kind, Layout layout);
  // Appends a block made with new[], already compressed, as a raw-data section, unchanged. The container only
  // borrows it, unless frees_borrowed_data is set by the time the container is destroyed.
  void add_raw_section(unsigned char* data, size_t length);
  bool frees_borrowed_data = false;

  // The file's bytes.
  Bytes build(HeaderForm form) const;
  // Creates the file, readable by its owner only, and flushes it to the disk. A file that exists is never
  // replaced. True when the file was written whole; otherwise false with the reason in errno (EEXIST when the
  // path exists), and no file.
  bool save(const char* path, HeaderForm form) const;

 private:
  struct Section {
    int32_t kind;
    std::unique_ptr<InventoryTree> tree;  // null for raw data
    Bytes encoded_tree;
    unsigned char* borrowed_data;  // null for a tree
    size_t borrowed_length;

    ContainerSection contents() const;
  };

  std::vector<Section> sections_;
  int32_t byte_order_flag_;
};
