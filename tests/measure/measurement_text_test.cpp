#include "measure/measurement_text.h"

#include <gtest/gtest.h>
