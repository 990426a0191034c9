#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "pages/output/thread_priority.h"

namespace tessavo {

void lowerThreadPriority() {
    // Here a thread's number names a process of its own; a class below this one might never get its turn
    // while it holds the line.
    constexpr int lowest = 19;
    setpriority(PRIO_PROCESS, static_cast<id_t>(syscall(SYS_gettid)), lowest);
}

}  // namespace tessavo
