#include "measure/alignment.h"

#include <gtest/gtest.h>
