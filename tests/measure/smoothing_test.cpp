#include "measure/smoothing.h"

#include <gtest/gtest.h>
