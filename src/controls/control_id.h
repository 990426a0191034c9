#pragma once

#include <QWidget>

namespace tessavo {

/// Gives a control its number. Slider events carry it, and it becomes the object name "id<number>", by which
/// a page or a test finds the control. -1 is for controls that nobody looks for.
void setControlId(QWidget& control, int controlId);

/// The control's number; -1 for a widget that was not given one.
[[nodiscard]] int controlId(const QWidget& control);

}  // namespace tessavo
