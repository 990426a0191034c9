#include "measure/predicted.h"

namespace tessavo {}
