#pragma once

namespace tessavo {

/// Lets a program with a window answer into the console from which it was started. Where a program has
/// standard streams anyway, and where there is no console, nothing changes.
void attachConsole();

}  // namespace tessavo
