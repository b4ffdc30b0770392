// The lines of a parsed text, for callers that rewrite the text without changing the tree.
#pragma once

#include <string_view>

#include "inv/base/byte_reader.h"
#include "inv/file/document.h"
#include "inv/file/zxml_parser.h"

namespace inv {

struct TextLine {
  char marker = 0;        // "+", "*", "~" or "-" as the line begins; 0 for an attribute
  std::string_view name;  // of the tag or attribute, or an annotation's key
  std::string_view value;
  Element
      element;  // the line's tag: for an attribute or annotation the tag it belongs to, for "-" the last one

  bool is_tag() const { return marker == kBranchMarker || marker == kLeafMarker; }
};

// Calls visit(const TextLine&) for every line but the mark.
template <typename Visit>
void each_line(const Document& document, Visit visit) {
  std::string_view rest = std::string_view(document.text()).substr(kTextMark.size());
  const Record* next = document.top().subtree().begin();
  Element element;
  while (const std::optional<std::string_view> line = take_line(rest)) {
    constexpr char kMarkers[] = {kBranchMarker, kLeafMarker, kAnnotationMarker, '\0'};
    const bool marked =
        *line == "-" || std::string_view(kMarkers).find(line->front()) != std::string_view::npos;
    const std::string_view content = line->substr(marked ? 1 : 0);
    const size_t equals = content.find('=');
    TextLine parts{marked ? line->front() : '\0', content.substr(0, equals), {}, element};
    if (equals != std::string_view::npos) parts.value = content.substr(equals + 1);
    if (parts.is_tag()) parts.element = element = Element(next++);
    visit(parts);
  }
}

}  // namespace inv
