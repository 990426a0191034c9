#include <ctime>

#include "comm/page/processor_time.h"

namespace tessavo::test {

double processorSeconds() {
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

}  // namespace tessavo::test
