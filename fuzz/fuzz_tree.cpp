// libFuzzer target: each input is one stream for the trees interpreter.

#include "ops/tree.h"

ZORVANCOW_FUZZ_TARGET(fuzz::tree::Run)
