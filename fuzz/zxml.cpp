// A tree's text: what the reader accepts, it writes again byte for byte.
#include <cstdlib>

#include "inv/file/zxml_parser.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  // The mark is prepended, so that the search starts after it.
  const std::string text = std::string(kTextMark).append(reinterpret_cast<const char*>(bytes), size);
  inv::Fault fault;
  const std::optional<inv::Document> document = inv::parse_text(text, &fault);
  if (document ? inv::write_text(*document) != text : fault.line == 0) std::abort();
  return 0;
}
