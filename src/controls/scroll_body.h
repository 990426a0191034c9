#pragma once

class QScrollArea;
class QWidget;

namespace tessavo {

/// The part of a dialog that scrolls where the screen is too low for it, so that what stands above and below stays in
/// sight. It shows the dialog's own ground, and what gets the focus comes into view, wherever the focus came from.
/// \param content becomes the area's
[[nodiscard]] QScrollArea* makeScrollBody(QWidget* content, QWidget* parent);

}  // namespace tessavo
