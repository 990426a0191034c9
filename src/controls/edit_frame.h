#pragma once

#include <QLineEdit>

#include "controls/skin.h"

namespace tessavo {

/// Font, focus and a clear ground for an edit that paints its own frame. What is dropped on it goes to the
/// window.
void prepareEdit(QLineEdit& edit);

/// Draws the frame below the text; `stripe` 0 for none. An edit with the focus always shows its ring.
///
/// \param notes further states of the skin's piece
void paintEditFrame(QLineEdit& edit, bool focused, bool hovered, QRgb stripe, unsigned notes = 0);

/// Width that a text needs in the edit without scrolling.
[[nodiscard]] int editNeededWidth(const QLineEdit& edit, const QString& text);

}  // namespace tessavo
