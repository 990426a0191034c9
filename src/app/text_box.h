#pragma once

class QWidget;

namespace tessavo {

/// Whether text is typed into this control: a line, a field with arrows, or a text of several lines.
[[nodiscard]] bool isTextBox(const QWidget& control);

}  // namespace tessavo
