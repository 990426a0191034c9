#include "measure/predicted.h"

#include <gtest/gtest.h>
