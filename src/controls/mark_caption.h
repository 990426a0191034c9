#pragma once

#include <QAbstractButton>

#include "controls/skin.h"

namespace tessavo {

inline constexpr int markBox = 22;  ///< height and width of the mark with room for its ring, in pixels

/// Draws a check box or radio button, for its paint event: the mark and the caption behind it.
/// \param button whose caption, size and state are drawn
/// \param mark SkinPiece::Kind::checkMark or radioMark
/// \param hovered whether the pointer is over the button
/// \param ringed whether it shows the focus ring
/// \param notes further states of the skin's piece
void paintMarkCaption(QAbstractButton& button, SkinPiece::Kind mark, bool hovered, bool ringed,
                      unsigned notes = 0);

/// Width that mark and caption need, in pixels.
[[nodiscard]] int markCaptionWidth(const QAbstractButton& button);

}  // namespace tessavo
