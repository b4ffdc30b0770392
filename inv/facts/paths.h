// Paths as users write them: "/Software/Soft:1/version" in the Snapshot, "AssetInfo/control/os-name" in
// another tree, whose name comes first. The last segment names an attribute or a tag; "*" matches any text
// within a segment.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "inv/file/document.h"

namespace inv {

// The path of a tag: "/" for the Snapshot's top element, its name for that of another tree.
std::string path_of(Element element);
// The path of something named `name` below the tag.
std::string path_below(Element element, std::string_view name);

// What a path names: a tag, or one of its attributes.
struct Match {
  Element element;
  const Attribute* attribute = nullptr;
};

// Everything in a tree that the path names, in the order of the text: attributes before tags of the same
// name.
std::vector<Match> find_matches(const Document& document, std::string_view path);

// The path in this tree that a slightly misspelt one may have meant; empty if none is close. Numbers are not
// guessed.
std::string nearest_path(const Document& document, std::string_view path);

// Whether a text begins like a path: with "/" or the name of a tree that the scanner writes.
bool looks_like_path(std::string_view text);
// Whether the scanner writes something at this path. Names are compared up to their colon; "*" is no wildcard
// here.
bool is_known_path(std::string_view path);

}  // namespace inv
