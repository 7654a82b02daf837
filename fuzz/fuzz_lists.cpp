// libFuzzer target: each input is one stream for the blocked arrays and lists interpreter.

#include "ops/lists.h"

ZORVANCOW_FUZZ_TARGET(fuzz::lists::Run)
