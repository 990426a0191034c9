#include "app/demo_target.h"

namespace tessavo {

std::unique_ptr<IDemoTarget> makePtyDemoTarget() {
    return nullptr;
}

}  // namespace tessavo
