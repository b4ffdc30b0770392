#include "inv/show/show.h"

#include <algorithm>

#include "inv/base/utf8.h"

namespace inv {
namespace {

constexpr size_t kIndent = 2;
// Names longer than this do not shift the values of their neighbours.
constexpr size_t kWidestName = 28;

class Shower {
 public:
  Shower(const Terminal& terminal, const TextSink& sink) : terminal_(terminal), sink_(sink) {}

  void show_tree(Element root, uint32_t depth) {
    for (const Record& record : root.subtree()) {
      const uint32_t level = record.depth - root.depth();
      if (level <= depth) show_element(Element(&record), level, level == depth);
    }
  }

  void show_attribute(const Attribute& attribute, const std::string& name, size_t indent, size_t name_width) {
    line_.append(indent, ' ').append(pad_right(name, name_width));
    if (!attribute.value.empty()) line_.append("  ").append(printable(attribute.value));
    end_line(attribute.annotations);
  }

 private:
  void show_element(Element element, uint32_t level, bool without_children) {
    const size_t indent = level * kIndent;
    line_.append(indent, ' ').append(terminal_.bold(printable(path_of(element))));
    if (!element.value().empty()) line_.append("  ").append(printable(element.value()));
    if (without_children && element.first_child()) {
      line_ += terminal_.dim("  (" + std::to_string(element.subtree().size() - 1) + " below)");
    }
    end_line(element.annotations());
    size_t name_width = 0;
    for (const Attribute& attribute : element.attributes()) {
      name_width = std::max(name_width, std::min(columns(printable(attribute.name)), kWidestName));
    }
    for (const Attribute& attribute : element.attributes()) {
      show_attribute(attribute, printable(attribute.name), indent + kIndent, name_width);
    }
  }

  void end_line(const Range<Annotation>& annotations) {
    for (const Annotation& annotation : annotations) {
      line_ += terminal_.dim("  [" + printable(annotation.key) + (annotation.text.empty() ? "" : "=") +
                             printable(annotation.text) + "]");
    }
    line_.resize(line_.find_last_not_of(' ') + 1);
    line_ += '\n';
    sink_(line_);
    line_.clear();
  }

  const Terminal& terminal_;
  const TextSink& sink_;
  std::string line_;
};

}  // namespace

void show_match(const Match& match, uint32_t depth, const Terminal& terminal, const TextSink& sink) {
  Shower shower(terminal, sink);
  if (match.attribute) {
    shower.show_attribute(*match.attribute,
                          terminal.bold(printable(path_below(match.element, match.attribute->name))), 0, 0);
  } else {
    shower.show_tree(match.element, depth);
  }
}

}  // namespace inv
