#pragma once

#include <QColor>
#include <QFont>

#include "controls/palette.h"

namespace tessavo::theme {

/// The program's font in logical pixels: Inter, Segoe UI, Noto Sans or DejaVu Sans, whichever is there.
[[nodiscard]] QFont font(int pixelSize, QFont::Weight weight = QFont::Normal);

/// Fixed pitch, for the log.
[[nodiscard]] QFont fixedFont(int pixelSize);

}  // namespace tessavo::theme
