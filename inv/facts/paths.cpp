#include "inv/facts/paths.h"

#include <algorithm>
#include <utility>

#include "inv/base/nearest.h"
#include "inv/base/wildcards.h"
#include "inv/facts/catalogue.h"

namespace inv {
namespace {

// Paths without a tree's name are the Snapshot's.
constexpr std::string_view kUsualTree = "Snapshot";

std::vector<std::string_view> split(std::string_view path) {
  std::vector<std::string_view> segments;
  for (size_t slash = path.find('/'); slash != std::string_view::npos; slash = path.find('/')) {
    segments.push_back(path.substr(0, slash));
    path.remove_prefix(slash + 1);
  }
  segments.push_back(path);
  return segments;
}

// Includes attributes where a path may end with one.
std::vector<std::string_view> names_below(Element element, bool with_attributes) {
  std::vector<std::string_view> names;
  for (const Element child : element.children()) names.push_back(child.name());
  if (!with_attributes) return names;
  for (const Attribute& attribute : element.attributes()) names.push_back(attribute.name);
  return names;
}

bool is_number(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

// "Soft:4" and "Soft:40" are two things, not a typing error.
bool differ_in_number(std::string_view one, std::string_view other) {
  const size_t colon = one.find(':');
  return one != other && colon != std::string_view::npos && one.substr(0, colon) == other.substr(0, colon) &&
         is_number(one.substr(colon + 1));
}

std::string_view tree_of(const std::vector<std::string_view>& segments) {
  return segments.front().empty() ? kUsualTree : segments.front();
}

}  // namespace

std::string path_of(Element element) {
  const Element above = element.parent();
  if (above) return path_below(above, element.name());
  return element.name() == kUsualTree ? "/" : std::string(element.name());
}

std::string path_below(Element element, std::string_view name) {
  std::string path = path_of(element);
  if (path != "/") path += '/';
  return path.append(name);
}

std::vector<Match> find_matches(const Document& document, std::string_view path) {
  const Element top = document.top();
  if (path == path_of(top)) return {{top, nullptr}};
  const std::vector<std::string_view> segments = split(path);
  if (segments.size() < 2 || !matches(tree_of(segments), top.name())) return {};

  std::vector<Element> reached = {top};
  for (size_t i = 1; i + 1 < segments.size(); ++i) {
    std::vector<Element> next;
    for (const Element element : reached) {
      for (const Element child : element.children()) {
        if (matches(segments[i], child.name())) next.push_back(child);
      }
    }
    reached = std::move(next);
  }
  std::vector<Match> found;
  for (const Element element : reached) {
    for (const Attribute& attribute : element.attributes()) {
      if (matches(segments.back(), attribute.name)) found.push_back({element, &attribute});
    }
    for (const Element child : element.children()) {
      if (matches(segments.back(), child.name())) found.push_back({child, nullptr});
    }
  }
  return found;
}

std::string nearest_path(const Document& document, std::string_view path) {
  const std::vector<std::string_view> segments = split(path);
  Element element = document.top();
  if (tree_of(segments) != element.name()) return "";
  std::string found(segments.front());
  for (size_t i = 1; i < segments.size(); ++i) {
    const std::string name = nearest(segments[i], names_below(element, i + 1 == segments.size()));
    if (name.empty() || differ_in_number(segments[i], name)) return "";
    found += "/" + name;
    element = element.child(name);
  }
  return found == path ? "" : found;
}

bool looks_like_path(std::string_view text) {
  if (text.substr(0, 1) == "/") return true;
  const std::string_view tree = text.substr(0, text.find('/'));
  return std::any_of(kCatalogue->below.begin(), kCatalogue->below.end(),
                     [&](const CatalogueFact& known) { return matches(tree, known.name); });
}

bool is_known_path(std::string_view path) {
  if (path.empty()) return false;
  std::vector<std::string_view> segments = split(path);
  if (path == "/") segments.pop_back();
  segments.front() = tree_of(segments);
  const CatalogueFact* fact = kCatalogue;
  for (const std::string_view segment : segments) fact = find_fact_below(fact, segment);
  return fact != nullptr;
}

}  // namespace inv
