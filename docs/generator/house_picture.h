#pragma once

#include <string>

#include "house/source_tree.h"

namespace tessavo {

/// The rooms of the house on their floors as a drawing (SVG), with an arrow from each room to those that its sources
/// include. What a room reaches through another one has no arrow of its own.
[[nodiscard]] std::string housePicture(const house::SourceTree& tree);

}  // namespace tessavo
