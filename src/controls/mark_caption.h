#pragma once

#include <QAbstractButton>

#include "controls/skin.h"

namespace tessavo {

inline constexpr int markBox = 22;  ///< mark with the room for its ring

/// Draws a check box or radio button: its mark and the caption behind.
///
/// \param notes further states of the skin's piece
void paintMarkCaption(QAbstractButton& button, SkinPiece::Kind mark, bool hovered, bool ringed,
                      unsigned notes = 0);

/// Width that mark and caption need.
[[nodiscard]] int markCaptionWidth(const QAbstractButton& button);

}  // namespace tessavo
