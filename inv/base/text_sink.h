// Where a text goes that is made piece by piece, since the whole of it might not fit into memory.
#pragma once

#include <functional>
#include <string_view>

namespace inv {

using TextSink = std::function<void(std::string_view)>;

}  // namespace inv
