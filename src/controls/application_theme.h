#pragma once

namespace tessavo {

/// Gives the application its style, palette and font. Called once, before the first widget is made.
void applyTheme();

}  // namespace tessavo
