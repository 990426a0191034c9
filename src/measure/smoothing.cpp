#include "measure/smoothing.h"

namespace tessavo {}
