// Receives a text piece by piece, since all of it might not fit into memory.
#pragma once

#include <functional>
#include <string_view>

namespace inv {

using TextSink = std::function<void(std::string_view)>;

}  // namespace inv
