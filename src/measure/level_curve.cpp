#include "measure/level_curve.h"

namespace tessavo {}
