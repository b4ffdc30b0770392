// What makes an element of one scan the same thing as an element of another: its number in the file is only
// where it happened to be.
#pragma once

#include <string>

#include "inv/facts/counterparts.h"
#include "inv/file/document.h"

namespace inv {

// The identity of an element among its siblings: those of the attributes that its kind is known by which it
// has, with blanks between them (an application by its location, a disk by its serial number, ...), else its
// name in the tree. One that tells more of another element has that one's identity.
std::string identity_of(Element element, Counterparts& counterparts);
// The same without that last resort: empty when it has none of the attributes, or its kind is known by none.
std::string own_identity_of(Element element);

// Whether elements of its kind tell more of other elements.
bool tells_more(Element element);
// The element that it tells more of; none when there is none.
Element main_of(Element element, Counterparts& counterparts);

}  // namespace inv
