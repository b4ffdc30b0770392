// A tree for people: indented, aligned, with paths that can be copied into other commands.
#pragma once

#include <cstdint>
#include <limits>
#include <string>

#include "inv/base/text_sink.h"
#include "inv/facts/paths.h"
#include "inv/show/terminal.h"

namespace inv {

constexpr uint32_t kAnyDepth = std::numeric_limits<uint32_t>::max();

// One line per tag, with its whole path, followed by its attributes with their names only. Tags more than
// `depth` levels below the match are only counted. Whole lines go into the sink, tag by tag.
void show_match(const Match& match, uint32_t depth, const Terminal& terminal, const TextSink& sink);

}  // namespace inv
