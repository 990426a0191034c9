#pragma once

#include <QPixmap>
#include <QSize>

namespace tessavo {

/// The communication page's ornament in its free corner: a dim grid and three curves that fade out to all
/// sides.
///
/// \param scale device pixels to a logical one
[[nodiscard]] QPixmap pageArt(QSize size, double scale);

}  // namespace tessavo
