// The libFuzzer target of one family, built once per family: the family's
// interpreter header and namespace come as ZORVANCOW_FUZZ_HEADER and
// ZORVANCOW_FUZZ_FAMILY, and each input is one stream for it. The library is
// started once and never stopped: no container operation depends on that.

#include ZORVANCOW_FUZZ_HEADER
#include "zorvancow/core/cow_Lifecycle.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    static int started = 0;
    cow_initialize(started);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    fuzz::ZORVANCOW_FUZZ_FAMILY::Run(data, size);
    return 0;
}
