#pragma once

class QApplication;

namespace tessavo {

/// Gives the application its base style, palette, font and the style sheet of what the skin does not paint:
/// menus, lists, scroll bars, opened lists of combo boxes, tool tips. Once, before the first widget.
void applyTheme(QApplication& application);

}  // namespace tessavo
