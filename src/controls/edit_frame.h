#pragma once

#include <QLineEdit>

#include "controls/skin.h"

namespace tessavo {

/// Prepares an edit that paints its own frame: font, focus policy and a transparent ground. What a person
/// drops on it is left to the window.
void prepareEdit(QLineEdit& edit);

/// Draws the frame of an edit, for its paint event, before the text is drawn. An edit with the focus shows
/// its ring however the focus came.
/// \param edit the edit
/// \param focused whether it has the focus
/// \param hovered whether the pointer is over it
/// \param stripe colour of the stripe at its left edge; 0 for none
/// \param notes further states of the skin's piece
void paintEditFrame(QLineEdit& edit, bool focused, bool hovered, QRgb stripe, unsigned notes = 0);

/// Width that the edit needs to show a text without scrolling, in pixels.
[[nodiscard]] int editNeededWidth(const QLineEdit& edit, const QString& text);

}  // namespace tessavo
