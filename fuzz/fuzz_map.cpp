// libFuzzer target: each input is one stream for the digital maps interpreter.

#include "ops/map.h"

ZORVANCOW_FUZZ_TARGET(fuzz::map::Run)
