#include "inv/redact/redact.h"

#include <algorithm>
#include <utility>

#include "inv/file/container_writer.h"
#include "inv/file/text_lines.h"

namespace inv {
namespace {

// A text that the machine, and not the format, put into a line.
struct OwnText {
  std::optional<IdentifierKind> kind;  // when its place holds identifiers
  std::string_view text;
};

// What follows the colon in the name of a tag or attribute, unless it is a number: the account or the
// variable that the tag describes.
OwnText own_part_of_name(const TextLine& line) {
  const size_t colon = line.name.find(':');
  if (colon == std::string_view::npos) return {};
  const std::string_view part = line.name.substr(colon + 1);
  if (part.find_first_not_of("0123456789") == std::string_view::npos) return {};
  return {line.is_tag() ? identifier_kind(line.element, "") : std::nullopt, part};
}

OwnText own_value(const TextLine& line) {
  const bool is_annotation = line.marker == kAnnotationMarker;
  const std::string_view attribute = line.is_tag() ? std::string_view() : line.name;
  const auto kind = is_annotation ? std::nullopt : identifier_kind(line.element, attribute);
  if (!kind && is_scanner_word(line.value)) return {};
  return {kind, line.value};
}

// What is an identifier in a text however short it is: by its place, or as part of a path.
std::vector<std::string_view> whole_identifiers(const OwnText& own) {
  return own.kind ? identifiers_in(*own.kind, own.text) : identifiers_in_paths(own.text);
}

void learn(const OwnText& own, Pseudonyms& pseudonyms) {
  const IdentifierKind kind = own.kind.value_or(IdentifierKind::text);
  for (const std::string_view identifier : whole_identifiers(own)) pseudonyms.add(kind, identifier);
  // A command line is one identifier, and reveals others.
  for (const std::string_view name : identifiers_in_paths(own.text))
    pseudonyms.add(IdentifierKind::text, name);
}

void learn(const Document& document, Pseudonyms& pseudonyms) {
  each_line(document, [&](const TextLine& line) {
    learn(own_part_of_name(line), pseudonyms);
    learn(own_value(line), pseudonyms);
  });
}

std::string redacted(const OwnText& own, const Pseudonyms& pseudonyms) {
  std::string text;
  size_t end = 0;
  const auto append_up_to = [&](size_t next) {
    text += pseudonyms.replace_tokens(own.text.substr(end, next - end));
  };
  for (const std::string_view identifier : whole_identifiers(own)) {
    const size_t start = static_cast<size_t>(identifier.data() - own.text.data());
    // What a path names may be the beginning of something longer, which is found as a token.
    const bool is_found_later = !own.kind && pseudonyms.occurs_in(identifier);
    if (is_found_later || start < end) continue;
    append_up_to(start);
    text += pseudonyms.replace(identifier);
    end = start + identifier.size();
  }
  append_up_to(own.text.size());
  return text;
}

std::string redacted(const TextLine& line, const Pseudonyms& pseudonyms) {
  if (line.marker == '-') return "-\n";
  const OwnText name = own_part_of_name(line);
  const OwnText value = own_value(line);
  std::string text(line.marker == 0 ? 0 : 1, line.marker);
  text.append(line.name.substr(0, line.name.size() - name.text.size())).append(redacted(name, pseudonyms));
  text.append("=").append(value.text.empty() ? std::string(line.value) : redacted(value, pseudonyms));
  return text.append("\n");
}

std::string redacted(const Document& document, const Pseudonyms& pseudonyms) {
  std::string text(kTextMark);
  each_line(document, [&](const TextLine& line) { text += redacted(line, pseudonyms); });
  return text;
}

bool holds_identifier(const OwnText& own, const Pseudonyms& pseudonyms) {
  const std::vector<std::string_view> whole = whole_identifiers(own);
  return pseudonyms.occurs_in(own.text) ||
         std::any_of(whole.begin(), whole.end(),
                     [&](std::string_view text) { return pseudonyms.knows(text); });
}

// The number of the first line that still holds an identifier; 0 for none.
size_t surviving_line(const Pseudonyms& pseudonyms, const Document& document) {
  size_t number = 1;  // the mark's
  size_t found = 0;
  each_line(document, [&](const TextLine& line) {
    ++number;
    if (found == 0 && (holds_identifier(own_part_of_name(line), pseudonyms) ||
                       holds_identifier(own_value(line), pseudonyms))) {
      found = number;
    }
  });
  return found;
}

bool is_tree(const Section& section) {
  return section.kind == Section::Kind::snapshot || section.kind == Section::Kind::asset_info;
}

// Why the file as it is cannot be redacted, as a clause; empty when it can.
std::string refusal(const Inventory& inventory, bool drop_opaque) {
  if (!inventory.container) return "it is not an inventory";
  if (!inventory.faults.empty()) return "it is damaged";
  size_t trees = 0;
  for (const Section& section : inventory.container->sections) {
    if (is_tree(section))
      ++trees;
    else if (!drop_opaque) {
      return "section " + std::to_string(section.number) + " (" + kind_name(section.kind) +
             ") can contain anything; use --drop-opaque to leave it out";
    }
  }
  return trees == 0 ? "it contains no tree" : "";
}

std::vector<TreeText> redacted_trees(const Inventory& inventory, const Pseudonyms& pseudonyms) {
  std::vector<TreeText> trees;
  for (size_t i = 0; i < inventory.contents.size(); ++i) {
    const Section& section = inventory.container->sections[i];
    if (!is_tree(section)) continue;
    // As the attributes of these names are, which the header repeats.
    const auto header_text = [&](const std::string& text) {
      return is_scanner_word(text) ? text : pseudonyms.replace_tokens(text);
    };
    trees.push_back({section.kind, redacted(*inventory.contents[i].document, pseudonyms),
                     header_text(section.timestamp), header_text(section.snaptype)});
  }
  return trees;
}

}  // namespace

std::string find_survivor(const Pseudonyms& pseudonyms, const Inventory& inventory) {
  for (const Section& section : inventory.container->sections) {
    for (const std::string& text : {section.timestamp, section.snaptype}) {
      if (!is_scanner_word(text) && pseudonyms.occurs_in(text)) return "in the header";
    }
  }
  for (const Content& content : inventory.contents) {
    if (!content.document) return "in a section that cannot be read";
    const size_t line = surviving_line(pseudonyms, *content.document);
    if (line > 0) {
      return "in line " + std::to_string(line) + " of " + std::string(content.document->top().name());
    }
  }
  return "";
}

Redaction redact(const Inventory& inventory, const RedactOptions& options) {
  Redaction redaction{{}, refusal(inventory, options.drop_opaque), Pseudonyms(options.key)};
  if (!redaction.refusal.empty()) return redaction;
  Pseudonyms& pseudonyms = redaction.pseudonyms;
  for (const Content& content : inventory.contents) {
    if (content.document) learn(*content.document, pseudonyms);
  }
  pseudonyms.assign();
  std::string bytes = write_container(redacted_trees(inventory, pseudonyms));
  const auto written = open_inventory("", bytes, kUsualMaxSize);
  const std::string survivor = written->faults.empty() ? find_survivor(pseudonyms, *written) : "";
  if (!written->faults.empty())
    redaction.refusal = "the result would be damaged";
  else if (!survivor.empty())
    redaction.refusal = "an identifier would be left " + survivor;
  else
    redaction.bytes = std::move(bytes);
  return redaction;
}

}  // namespace inv
