#include "measure/target_curves.h"

#include <gtest/gtest.h>
