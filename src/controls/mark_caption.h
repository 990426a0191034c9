#pragma once

#include <QAbstractButton>

#include "controls/skin.h"

namespace tessavo {

inline constexpr int markBox = 22;  ///< mark with the room for its ring

/// Draws a check box or radio button: its mark and the caption behind.
void paintMarkCaption(QAbstractButton& button, SkinPiece::Kind mark, bool hovered, bool ringed);

/// Width that mark and caption need.
[[nodiscard]] int markCaptionWidth(const QAbstractButton& button);

}  // namespace tessavo
