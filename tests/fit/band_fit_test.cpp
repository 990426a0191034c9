#include "fit/band_fit.h"

#include <gtest/gtest.h>
