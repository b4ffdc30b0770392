// A tree's text in a buffer of its own.
#pragma once

#include "driver/base/text.h"
#include "zxml/tag.h"

// The text that write_text writes, and its length. Zeros follow it: a text that is shorter than its
// text_size, because a leaf hides children, is handed on in that size.
Text written_text(const Tag& tag, bool no_close, bool without_children, size_t* length);
