#include "inv/compare/diff_formats.h"

#include "inv/base/json_text.h"
#include "inv/facts/facts.h"
#include "inv/facts/readable.h"
#include "inv/file/machine.h"

namespace inv {
namespace {

std::string coloured(const ToldChange& told, const Terminal& terminal) {
  switch (told.kind) {
    case ToldChange::Kind::added:
      return terminal.green(told.sentence);
    case ToldChange::Kind::removed:
      return terminal.red(told.sentence);
    case ToldChange::Kind::replaced:
    case ToldChange::Kind::changed:
      return terminal.yellow(told.sentence);
  }
  return told.sentence;
}

void add_members(Json& members, Element element, const std::string& prefix) {
  for (const Attribute& attribute : element.attributes()) {
    const std::string name = prefix + std::string(attribute.name);
    if (is_fact(attribute)) members[to_utf8(name)] = json_text(attribute.value);
  }
}

// The attributes of an element that came or went, and those of the elements right below it: "h-freq/max".
Json members_of(const Change& change, Element element) {
  Json members = Json::object();
  if (!element || !change.name.empty() || change.kind == Change::Kind::changed) return members;
  add_members(members, element, "");
  for (const Element child : element.children()) add_members(members, child, std::string(child.name()) + "/");
  return members;
}

// What could be markup, call somebody or become a link.
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

// What is told of one change; of a list that came, several things are.
struct Sentences {
  std::string thing;
  std::string text;
};

std::vector<Sentences> sentences_of(size_t changes, const std::vector<ToldChange>& told) {
  std::vector<Sentences> sentences(changes);
  for (const ToldChange& one : told) {
    for (const size_t place : one.changes) {
      Sentences& all = sentences[place];
      all.thing = one.thing;
      all.text += (all.text.empty() ? "" : "; ") + one.sentence;
    }
  }
  return sentences;
}

std::string time_of(const Inventory& inventory) { return readable_time(scan_timestamp(inventory)); }

}  // namespace

std::string changes_text(const std::vector<ToldChange>& told, const Terminal& terminal) {
  std::string text;
  for (const ToldChange& change : told) text += coloured(change, terminal) + "\n";
  return text;
}

std::string changes_json(const std::vector<Change>& changes, const std::vector<ToldChange>& told) {
  const std::vector<Sentences> sentences = sentences_of(changes.size(), told);
  Json list = Json::array();
  for (size_t i = 0; i < changes.size(); ++i) {
    const Change& change = changes[i];
    list.push_back({{"change", kind_text(change.kind)},
                    {"path", json_text(change.path)},
                    {"old_path", json_text(change.old_path)},
                    {"identity", json_text(change.identity)},
                    {"label", json_text(change.label)},
                    {"name", json_text(change.name)},
                    {"old", json_text(change.old_value)},
                    {"new", json_text(change.new_value)},
                    {"thing", json_text(sentences[i].thing)},
                    {"told", json_text(sentences[i].text)},
                    {"old_members", members_of(change, change.old_element)},
                    {"new_members", members_of(change, change.new_element)}});
  }
  return list.dump(1) + "\n";
}

std::string changes_markdown(const Inventory& old_inventory, const Inventory& new_inventory,
                             const std::vector<ToldChange>& told) {
  std::string text = "## What changed on " + escaped(printable(machine_name(new_inventory))) + "\n\nFrom " +
                     escaped(printable(time_of(old_inventory))) + " to " +
                     escaped(printable(time_of(new_inventory))) + "\n\n";
  const std::string warning = machine_warning(old_inventory, new_inventory);
  if (!warning.empty()) text += "**Note:** " + escaped(printable(warning)) + "\n\n";
  for (const ToldChange& change : told) text += "- " + escaped(change.sentence) + "\n";
  return told.empty() ? text + "Nothing.\n" : text;
}

std::string machine_warning(const Inventory& old_inventory, const Inventory& new_inventory) {
  const std::string old_machine = machine_identity(old_inventory);
  const std::string new_machine = machine_identity(new_inventory);
  return old_machine == new_machine
             ? ""
             : "these are two different machines: " + old_machine + " and " + new_machine;
}

}  // namespace inv
