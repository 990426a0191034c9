#pragma once

#include <QSize>

class QWidget;

namespace tessavo {

/// The largest size of a dialog, caption and frame of usual desktops apart, that the screen shows whole on
/// which its parent stands; that of the first screen without a parent.
[[nodiscard]] QSize roomOnScreen(const QWidget* parent);

}  // namespace tessavo
