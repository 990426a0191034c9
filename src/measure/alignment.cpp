#include "measure/alignment.h"

namespace tessavo {}
