#include "app/console.h"

namespace tessavo {

void attachConsole() {}

}  // namespace tessavo
