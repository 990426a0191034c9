#pragma once

#include <QSize>

class QWidget;

namespace tessavo {

/// The largest size, in logical pixels, that a dialog can have so that its screen shows all of it, the
/// caption and frame of usual desktops included.
/// \param parent stands on the dialog's screen; null for the first screen
[[nodiscard]] QSize roomOnScreen(const QWidget* parent);

}  // namespace tessavo
