#include "measure/measurement_text.h"

namespace tessavo {}
