#include <windows.h>

#include "pages/output/thread_priority.h"

namespace tessavo {

void lowerThreadPriority() {
    SetThreadPriority(GetCurrentThread(), THREAD_PRIORITY_LOWEST);
}

}  // namespace tessavo
