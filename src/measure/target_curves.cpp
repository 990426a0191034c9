#include "measure/target_curves.h"

namespace tessavo {}
