#include "zxml/bytes.h"

#include <algorithm>
#include <cstring>

void Bytes::reserve(size_t capacity) {
  if (capacity <= capacity_) return;
  std::unique_ptr<unsigned char[]> larger(new unsigned char[capacity]);
  if (length_ > 0) std::memcpy(larger.get(), data_.get(), length_);
  data_ = std::move(larger);
  capacity_ = capacity;
}

void Bytes::append(const void* source, size_t count) {
  if (count == 0) return;
  if (count > capacity_ - length_) reserve(std::max(length_ + count, 2 * capacity_));
  std::memcpy(data_.get() + length_, source, count);
  length_ += count;
}

unsigned char* Bytes::release() {
  length_ = 0;
  capacity_ = 0;
  return data_.release();
}
