// What makes elements of two scans the same thing: the number in a file is only the place where it happened
// to be.
#pragma once

#include <string>
#include <string_view>

#include "inv/facts/counterparts.h"
#include "inv/file/document.h"

namespace inv {

// The identity of an element among its siblings: the values of its identifying attributes, separated by
// blanks (an application's location, a disk's serial number, ...), else its name in the tree. An element with
// details of another one has that one's identity.
std::string identity_of(Element element, Counterparts& counterparts);
// The same without the fallback to the name: empty if it has none of the attributes, or its kind has none.
std::string own_identity_of(Element element);
// The same as a view: into the tree, or into `joined`, which is empty at first, when it has several parts.
std::string_view own_identity_of(Element element, std::string& joined);

// Whether elements of its kind hold details of other elements.
bool has_details(Element element);
// The element of which it holds details; empty if there is none.
Element main_of(Element element, Counterparts& counterparts);

}  // namespace inv
