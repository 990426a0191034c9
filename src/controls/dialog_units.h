#pragma once

#include <QRect>

namespace tessavo {

/// Turns a place in dialog units into logical pixels: a unit is a quarter of the dialog font's average width
/// (6 pixels) across and an eighth of its height (13 pixels) down.
///
/// Edges are rounded, not sizes, so that places which touch in dialog units touch in pixels.
[[nodiscard]] QRect dialogUnits(int x, int y, int width, int height);

}  // namespace tessavo
