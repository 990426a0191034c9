#include "app/display.h"

namespace tessavo {

bool hasDisplay() {
    return true;
}

}  // namespace tessavo
