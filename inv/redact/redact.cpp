#include "inv/redact/redact.h"

#include <algorithm>
#include <utility>

#include "inv/file/container_writer.h"
#include "inv/file/text_lines.h"
#include "inv/redact/common_words.h"
#include "inv/redact/pseudonym_key.h"
#include "inv/redact/remains.h"

namespace inv {
namespace {

// A text that the machine, and not the format, put into a line.
struct OwnText {
  std::optional<IdentifierKind> kind;  // if its place holds identifiers
  std::string_view text;
  bool names_program = false;  // a process or a variable of the environment
};

// The parts of a line that come from the machine.
struct OwnTexts {
  OwnText name;  // the end of the line's name
  OwnText value;
};

bool is_of_program(std::string_view name) {
  const std::string_view kind = name.substr(0, name.find(':'));
  return kind == "process" || kind == "env-var";
}

// What follows the colon in the name of a tag or attribute, unless it is a number: the account or the
// variable that the tag describes.
OwnText own_part_of_name(const TextLine& line, std::optional<IdentifierKind> kind) {
  const size_t colon = line.name.find(':');
  if (colon == std::string_view::npos) return {};
  const std::string_view part = line.name.substr(colon + 1);
  if (part.find_first_not_of("0123456789") == std::string_view::npos) return {};
  return {line.is_tag() ? kind : std::nullopt, part, is_of_program(line.name)};
}

OwnTexts own_texts(const TextLine& line, Places& places) {
  const bool is_annotation = line.marker == kAnnotationMarker;
  const std::string_view attribute = line.is_tag() ? std::string_view() : line.name;
  const auto kind = is_annotation ? std::nullopt : places.kind(line.element, attribute);
  OwnTexts own{own_part_of_name(line, kind), {kind, line.value, line.is_tag() && is_of_program(line.name)}};
  if (!kind && is_scanner_word(line.value)) own.value = {};
  return own;
}

// A secret that is a common word, or a system path such as that of a shell, means nothing elsewhere.
Reach reach_of(IdentifierKind kind, std::string_view identifier) {
  const bool is_plain =
      is_common_word(identifier) || (identifier.front() == '/' && traces_in(identifier).empty());
  return kind == IdentifierKind::secret && is_plain ? Reach::in_place : Reach::everywhere;
}

// What is an identifier regardless of its length: because of its place, or as part of a path.
std::vector<Trace> whole_identifiers(const OwnText& own) {
  if (!own.kind) return traces_in(own.text);
  std::vector<Trace> whole;
  for (const std::string_view identifier : identifiers_in(*own.kind, own.text)) {
    whole.push_back({identifier, reach_of(*own.kind, identifier)});
  }
  return whole;
}

void learn(const OwnText& own, Pseudonyms& pseudonyms) {
  const IdentifierKind kind = own.kind.value_or(IdentifierKind::text);
  for (const Trace& whole : whole_identifiers(own)) pseudonyms.add(kind, whole.text, whole.reach);
  if (own.names_program) pseudonyms.add_program(own.text);
  if (!own.kind) return;
  // A command line is itself an identifier, and reveals others.
  for (const Trace& trace : traces_in(own.text)) {
    if (trace.reach == Reach::everywhere) pseudonyms.add(IdentifierKind::text, trace.text);
  }
}

void learn(const Document& document, Pseudonyms& pseudonyms) {
  Places places;
  each_line(document, [&](const TextLine& line) {
    const OwnTexts own = own_texts(line, places);
    learn(own.name, pseudonyms);
    learn(own.value, pseudonyms);
  });
}

bool is_known_program(const OwnText& own, const Pseudonyms& pseudonyms) {
  return own.names_program && pseudonyms.knows(own.text);
}

std::string redacted(const OwnText& own, const Pseudonyms& pseudonyms) {
  if (is_known_program(own, pseudonyms)) return pseudonyms.replace(own.text);
  std::string text;
  size_t end = 0;
  const auto append_up_to = [&](size_t next) {
    text += pseudonyms.replace_tokens(own.text.substr(end, next - end));
  };
  for (const Trace& whole : whole_identifiers(own)) {
    const size_t start = static_cast<size_t>(whole.text.data() - own.text.data());
    // A name in a path may be the beginning of a longer identifier, which is found as a token.
    const bool is_found_later =
        !own.kind && whole.reach == Reach::everywhere && pseudonyms.occurs_in(whole.text);
    if (is_found_later || start < end) continue;
    append_up_to(start);
    text += pseudonyms.replace(whole.text);
    end = start + whole.text.size();
  }
  append_up_to(own.text.size());
  return text;
}

std::string redacted(const TextLine& line, Places& places, const Pseudonyms& pseudonyms) {
  if (line.marker == '-') return "-\n";
  const OwnTexts own = own_texts(line, places);
  std::string text(line.marker == 0 ? 0 : 1, line.marker);
  text.append(line.name.substr(0, line.name.size() - own.name.text.size()))
      .append(redacted(own.name, pseudonyms));
  text.append("=").append(own.value.text.empty() ? std::string(line.value) : redacted(own.value, pseudonyms));
  return text.append("\n");
}

bool is_salt(const TextLine& line) {
  return line.marker == 0 && line.name == kSaltAttribute && line.element.depth() == 0;
}

// The top element's attributes begin after its annotations.
class SaltLine {
 public:
  explicit SaltLine(const std::string& salt) {
    if (!salt.empty()) text_.append(kSaltAttribute).append("=").append(salt).append("\n");
  }
  std::string before(const TextLine& line) {
    const bool is_top = line.is_tag() && line.element.depth() == 0;
    return is_top || line.marker == kAnnotationMarker ? std::string() : rest();
  }
  std::string rest() { return std::exchange(text_, {}); }

 private:
  std::string text_;
};

// What comes beyond `max_size` is missing, and shows that it is too much.
std::string redacted(const Document& document, const Pseudonyms& pseudonyms, const RedactOptions& options) {
  std::string text(kTextMark);
  text.reserve(document.text().size() + document.text().size() / 4);
  Places places;
  SaltLine salt_line(options.salt);
  each_line(document, [&](const TextLine& line) {
    if (text.size() > options.max_size) return;
    text += salt_line.before(line);
    if (!is_salt(line)) text += redacted(line, places, pseudonyms);
  });
  return text += salt_line.rest();
}

bool holds_identifier(const OwnText& own, const Pseudonyms& pseudonyms) {
  const std::vector<Trace> whole = whole_identifiers(own);
  return is_known_program(own, pseudonyms) || pseudonyms.occurs_in(own.text) ||
         std::any_of(whole.begin(), whole.end(),
                     [&](const Trace& trace) { return pseudonyms.knows(trace.text); });
}

// The number of the first line that still contains an identifier; 0 if none does.
size_t surviving_line(const Pseudonyms& pseudonyms, const Document& document) {
  size_t number = 1;  // the mark
  size_t found = 0;
  Places places;
  each_line(document, [&](const TextLine& line) {
    ++number;
    if (found > 0) return;
    const OwnTexts own = own_texts(line, places);
    if (holds_identifier(own.name, pseudonyms) || holds_identifier(own.value, pseudonyms)) found = number;
  });
  return found;
}

bool is_tree(const Section& section) {
  return section.kind == Section::Kind::snapshot || section.kind == Section::Kind::asset_info;
}

// Why the file cannot be redacted, as a clause; empty if it can.
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

std::vector<TreeText> redacted_trees(const Inventory& inventory, const Pseudonyms& pseudonyms,
                                     const RedactOptions& options) {
  std::vector<TreeText> trees;
  for (size_t i = 0; i < inventory.contents.size(); ++i) {
    const Section& section = inventory.container->sections[i];
    if (!is_tree(section)) continue;
    // Treated like the attributes of these names, which the header repeats.
    const auto header_text = [&](const std::string& text) {
      return is_scanner_word(text) ? text : pseudonyms.replace_tokens(text);
    };
    trees.push_back({section.kind, redacted(*inventory.contents[i].document, pseudonyms, options),
                     header_text(section.timestamp), header_text(section.snaptype)});
  }
  return trees;
}

uint64_t size_of(const std::vector<TreeText>& trees) {
  uint64_t size = 0;
  for (const TreeText& tree : trees) size += tree.text.size();
  return size;
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

Redaction redact(std::unique_ptr<Inventory> inventory, const RedactOptions& options) {
  Redaction redaction{{}, refusal(*inventory, options.drop_opaque), {}, Pseudonyms(options.key)};
  if (!redaction.refusal.empty()) return redaction;
  // Nothing of the container is read again.
  std::string().swap(inventory->bytes);
  Pseudonyms& pseudonyms = redaction.pseudonyms;
  pseudonyms.limit_size(options.max_size / 8);
  for (const Content& content : inventory->contents) {
    if (content.document) learn(*content.document, pseudonyms);
  }
  if (pseudonyms.is_full()) {
    redaction.refusal = "what identifies somebody takes more than " + std::to_string(options.max_size / 8) +
                        " bytes; a larger --max-size allows more";
    return redaction;
  }
  pseudonyms.assign();
  std::vector<TreeText> trees = redacted_trees(*inventory, pseudonyms, options);
  inventory.reset();
  if (size_of(trees) > options.max_size) {
    redaction.refusal = "the result would be larger than " + std::to_string(options.max_size) +
                        " bytes; a larger --max-size allows more";
    return redaction;
  }
  std::string bytes = write_container(std::move(trees));
  const auto written = open_inventory("", bytes, options.max_size);
  const std::string survivor = written->faults.empty() ? find_survivor(pseudonyms, *written) : "";
  if (!written->faults.empty()) {
    redaction.refusal = "the result would be damaged";
  } else if (!survivor.empty()) {
    redaction.refusal = "an identifier would be left " + survivor;
  } else {
    redaction.remains = what_remains(*written);
    redaction.bytes = std::move(bytes);
  }
  return redaction;
}

}  // namespace inv
