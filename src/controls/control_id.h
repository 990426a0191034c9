#pragma once

#include <QWidget>

namespace tessavo {

/// Gives a control its number: slider events carry it, and the object is findable as "id<number>".
void setControlId(QWidget& control, int controlId);

/// The control's number, -1 for a widget that has none.
[[nodiscard]] int controlId(const QWidget& control);

}  // namespace tessavo
