// Binary data with its length: how the encoded forms of a tree are handed over.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

// A growable block of bytes; its capacity doubles when it is full.
class Bytes {
 public:
  Bytes() = default;
  explicit Bytes(size_t capacity) { reserve(capacity); }

  unsigned char* data() { return data_.get(); }
  const unsigned char* data() const { return data_.get(); }
  size_t length() const { return length_; }
  bool empty() const { return length_ == 0; }

  void reserve(size_t capacity);
  void append(const void* source, size_t count);
  void append_byte(unsigned char byte) { append(&byte, 1); }
  // Appends all bytes of an unsigned number, most significant first or last.
  template <typename Unsigned>
  void append_number(Unsigned number, bool big_endian);
  // Hands the block over; the caller releases it with the array delete. These bytes are empty afterwards.
  unsigned char* release();

 private:
  std::unique_ptr<unsigned char[]> data_;
  size_t length_ = 0;
  size_t capacity_ = 0;
};

template <typename Unsigned>
void Bytes::append_number(Unsigned number, bool big_endian) {
  for (size_t i = 0; i < sizeof(Unsigned); ++i) {
    const size_t place = big_endian ? sizeof(Unsigned) - 1 - i : i;
    append_byte(static_cast<unsigned char>(number >> (8 * place)));
  }
}
