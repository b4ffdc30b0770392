#include "inv/facts/paths.h"

#include <algorithm>
#include <utility>

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
