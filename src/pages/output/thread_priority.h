#pragma once

namespace tessavo {

/// Gives the calling thread the lowest priority at which it still runs beside busy ones. Where the system
/// refuses, the thread keeps its priority.
void lowerThreadPriority();

}  // namespace tessavo
