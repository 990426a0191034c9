#pragma once

#include <QColor>
#include <QFont>

#include "controls/palette.h"

namespace tessavo::theme {

/// The program's font: the first of Inter, Segoe UI, Noto Sans and DejaVu Sans that the system has.
/// \param pixelSize height in logical pixels
/// \param weight normal, medium or bold
[[nodiscard]] QFont font(int pixelSize, QFont::Weight weight = QFont::Normal);

/// A font in which all characters are equally wide, for the log. Height in logical pixels.
[[nodiscard]] QFont fixedFont(int pixelSize);

}  // namespace tessavo::theme
