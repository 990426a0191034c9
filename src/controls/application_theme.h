#pragma once

namespace tessavo {

/// Gives the application its style, palette and font. Once, before the first widget.
void applyTheme();

}  // namespace tessavo
