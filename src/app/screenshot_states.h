#pragma once

#include <QString>
#include <functional>

class QWidget;

namespace tessavo {

/// Saves a picture of a window under a name.
/// \return empty, or what failed
using PictureTaker = std::function<QString(QWidget& window, const char* name)>;

/// Shows pages to `take` as they look in use: filters on, several channels, a slider under the mouse, linked
/// groups, notices in the status bar. All of it happens in a window and a state of its own.
///
/// \return empty, or what failed first
[[nodiscard]] QString takeStatePictures(const PictureTaker& take);

}  // namespace tessavo
