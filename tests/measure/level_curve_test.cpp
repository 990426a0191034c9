#include "measure/level_curve.h"

#include <gtest/gtest.h>
