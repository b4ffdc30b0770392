// Slash paths as the reader's user writes them: "/Software/Soft:1/version" in the Snapshot,
// "AssetInfo/control/os-name" in another tree, which is named first. The last segment names an attribute or a
// tag; "*" in a segment matches any text within that segment.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "inv/file/document.h"

namespace inv {

// The path of a tag. That of the Snapshot's top element is "/", that of another tree its name.
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

// The path in this tree that somebody may have meant who wrote one a little wrong; empty when there is none
// near it. Numbers are not guessed.
std::string nearest_path(const Document& document, std::string_view path);

// Whether a text begins like a path: with "/", or with the name of a tree that the scanner writes.
bool looks_like_path(std::string_view text);
// Whether the scanner writes something at this path, where names count up to their colon and stand for
// themselves.
bool is_known_path(std::string_view path);

}  // namespace inv
