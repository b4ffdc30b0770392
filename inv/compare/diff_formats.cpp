#include "inv/compare/diff_formats.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

#include "inv/base/json_text.h"
#include "inv/facts/element_identity.h"
#include "inv/facts/facts.h"
#include "inv/facts/readable.h"
#include "inv/file/machine.h"

namespace inv {
namespace {

std::string coloured(const ChangeSentence& change, const Terminal& terminal) {
  switch (change.kind) {
    case ChangeSentence::Kind::added:
      return terminal.green(change.sentence);
    case ChangeSentence::Kind::removed:
      return terminal.red(change.sentence);
    case ChangeSentence::Kind::replaced:
    case ChangeSentence::Kind::changed:
      return terminal.yellow(change.sentence);
  }
  return change.sentence;
}

// Escapes what could be markup, mention somebody or become a link.
std::string escaped(std::string_view text) {
  std::string result;
  for (size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    const bool begins_list = i == 0 && std::string_view("#+->").find(c) != std::string_view::npos;
    const bool begins_link = text.substr(i, 3) == "://";
    const bool is_markup = std::string_view("\\`*_[]|~").find(c) != std::string_view::npos;
    if (begins_list || begins_link || is_markup) result += '\\';
    if (c == '@' || c == '&' || c == '<') {
      result += c == '@' ? "&#64;" : c == '&' ? "&amp;" : "&lt;";
    } else {
      result += c;
    }
  }
  return result;
}

// Finds the sentences about each change.
class SentencesOfChanges {
 public:
  explicit SentencesOfChanges(const ChangeSentences& sentences) : sentences_(sentences) {
    for (size_t i = 0; i < sentences.size(); ++i) {
      for (const size_t change : sentences.changes_of(i)) places_.emplace_back(change, i);
    }
    std::sort(places_.begin(), places_.end());
  }

  // How many sentences there are about a change; a list that came may have several. Call it for the changes
  // in order.
  size_t count_for(size_t change) {
    first_ += count_;
    count_ = 0;
    while (first_ + count_ < places_.size() && places_[first_ + count_].first == change) ++count_;
    return count_;
  }

  // The i-th sentence about that change.
  const ChangeSentence& of_last_change(size_t i) { return sentence_at(places_[first_ + i].second); }

 private:
  // A sentence about very many changes is not made again for each of them.
  static constexpr size_t kManyChanges = 64;

  const ChangeSentence& sentence_at(size_t place) {
    const auto made = made_.find(place);
    if (made != made_.end()) return made->second;
    if (place != last_place_) {
      last_ = sentences_[place];
      last_place_ = place;
    }
    return sentences_.changes_of(place).size() < kManyChanges ? last_
                                                              : made_.emplace(place, last_).first->second;
  }

  const ChangeSentences& sentences_;
  std::vector<std::pair<size_t, size_t>> places_;  // of changes and their sentences
  size_t first_ = 0;
  size_t count_ = 0;
  ChangeSentence last_;
  size_t last_place_ = static_cast<size_t>(-1);
  std::unordered_map<size_t, ChangeSentence> made_;
};

// Writes a list of objects like Json's own writer, but piece by piece.
class JsonList {
 public:
  explicit JsonList(const TextSink& sink) : sink_(sink) {}

  void begin_object() {
    text_ += is_first_object_ ? "[\n {" : ",\n {";
    is_first_object_ = false;
    is_first_member_ = true;
  }
  void add(std::string_view name, std::string_view value) {
    begin_member(name, "\n  ");
    append_json(text_, value);
  }
  // A value in pieces.
  void begin_text(std::string_view name) {
    begin_member(name, "\n  ");
    text_ += '"';
  }
  void add_to_text(std::string_view piece) {
    const size_t quote = text_.size();
    append_json(text_, piece);
    text_.erase(quote, 1);
    text_.pop_back();
    flush_if_large();
  }
  void end_text() { text_ += '"'; }

  void begin_members(std::string_view name) {
    begin_member(name, "\n  ");
    text_ += '{';
    is_first_member_ = true;
  }
  void add_member(std::string_view name, std::string_view value) {
    begin_member(name, "\n   ");
    append_json(text_, value);
    flush_if_large();
  }
  void end_members() {
    text_ += is_first_member_ ? "}" : "\n  }";
    is_first_member_ = false;
  }
  void end_object() {
    text_ += "\n }";
    flush_if_large();
  }
  void end() {
    text_ += is_first_object_ ? "[]\n" : "\n]\n";
    flush();
  }

 private:
  static constexpr size_t kPiece = 1 << 16;

  void begin_member(std::string_view name, const char* line_start) {
    if (!is_first_member_) text_ += ',';
    is_first_member_ = false;
    text_ += line_start;
    append_json(text_, name);
    text_ += ": ";
  }
  void flush_if_large() {
    if (text_.size() > kPiece) flush();
  }
  void flush() {
    sink_(text_);
    text_.clear();
  }

  const TextSink& sink_;
  std::string text_;
  bool is_first_object_ = true;
  bool is_first_member_ = true;
};

// The attributes of an element that came or went, and those of its children: "h-freq/max".
void add_members(const Change& change, Element element, std::string_view name, JsonList& list) {
  list.begin_members(name);
  std::unordered_set<std::string> names;
  const auto add = [&](Element owner, const std::string& prefix) {
    for (const Attribute& attribute : owner.attributes()) {
      const std::string member = prefix + std::string(attribute.name);
      if (is_fact(attribute) && names.insert(member).second) list.add_member(member, attribute.value);
    }
  };
  if (element && change.is_of_element() && change.kind != Change::Kind::changed) {
    add(element, "");
    for (const Element child : element.children()) add(child, std::string(child.name()) + "/");
  }
  list.end_members();
}

std::string time_of(const Inventory& inventory) { return readable_time(scan_timestamp(inventory)); }

void add_sentences(size_t change, SentencesOfChanges& sentences, JsonList& list) {
  const size_t count = sentences.count_for(change);
  list.add("thing", count == 0 ? "" : sentences.of_last_change(count - 1).thing);
  list.begin_text("sentence");
  for (size_t i = 0; i < count; ++i) {
    if (i > 0) list.add_to_text("; ");
    list.add_to_text(sentences.of_last_change(i).sentence);
  }
  list.end_text();
}

}  // namespace

void changes_text(const ChangeSentences& sentences, const Terminal& terminal, const TextSink& sink) {
  for (const ChangeSentence& change : sentences) sink(coloured(change, terminal) + "\n");
}

void changes_json(const ChangeSentences& sentences, const TextSink& sink) {
  SentencesOfChanges finder(sentences);
  CounterpartsByTree counterparts;
  JsonList list(sink);
  const std::vector<Change>& changes = sentences.changes();
  for (size_t i = 0; i < changes.size(); ++i) {
    const Change& change = changes[i];
    list.begin_object();
    list.add("change", kind_text(change.kind));
    list.add("path", change.path());
    list.add("old_path", change.old_path());
    list.add("identity", identity_of(change.element(), counterparts.of(change.element())));
    list.add("label", change.label());
    list.add("name", change.name());
    list.add("old", change.old_value());
    list.add("new", change.new_value());
    add_sentences(i, finder, list);
    add_members(change, change.old_element, "old_members", list);
    add_members(change, change.new_element, "new_members", list);
    list.end_object();
  }
  list.end();
}

void changes_markdown(const Inventory& old_inventory, const Inventory& new_inventory,
                      const ChangeSentences& sentences, const TextSink& sink) {
  sink("## What changed on " + escaped(printable(machine_name(new_inventory))) + "\n\nFrom " +
       escaped(printable(time_of(old_inventory))) + " to " + escaped(printable(time_of(new_inventory))) +
       "\n\n");
  const std::string warning = machine_warning(old_inventory, new_inventory);
  if (!warning.empty()) sink("**Note:** " + escaped(printable(warning)) + "\n\n");
  for (const ChangeSentence& change : sentences) sink("- " + escaped(change.sentence) + "\n");
  if (sentences.empty()) sink("Nothing.\n");
}

std::string machine_warning(const Inventory& old_inventory, const Inventory& new_inventory) {
  const std::string old_machine = machine_identity(old_inventory);
  const std::string new_machine = machine_identity(new_inventory);
  return old_machine == new_machine
             ? ""
             : "these are two different machines: " + old_machine + " and " + new_machine;
}

}  // namespace inv
