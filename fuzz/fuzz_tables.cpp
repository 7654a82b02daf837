// libFuzzer target: each input is one stream for the radix tables interpreter.

#include "ops/tables.h"

ZORVANCOW_FUZZ_TARGET(fuzz::tables::Run)
