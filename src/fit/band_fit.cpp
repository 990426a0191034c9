#include "fit/band_fit.h"

namespace tessavo {}
