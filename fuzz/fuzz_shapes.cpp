#include <cstddef>
#include <cstdint>
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const*, std::size_t) { return 0; }
