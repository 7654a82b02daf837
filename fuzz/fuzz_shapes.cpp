// libFuzzer target: each input is one stream for the fixed arrays and matrices interpreter.

#include "ops/shapes.h"

ZORVANCOW_FUZZ_TARGET(fuzz::shapes::Run)
