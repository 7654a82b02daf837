#ifndef ZORVANCOW_FUZZ_FUZZSUPPORT_H
#define ZORVANCOW_FUZZ_FUZZSUPPORT_H

// What every fuzz target shares: a reader that turns the fuzzer's bytes into
// small choices, a check that stops the run with a readable line, and the
// start of the library plus the leak check on the stand-ins' live counters.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "zorvancow/core/cow_Lifecycle.h"
#include "zorvanmem/mem_Heap.h"
#include "zorvanstr/atr_String.h"

// Stops the run when `condition` fails. A plain abort, so that libFuzzer
// records the input that got here and ASan prints the stack.
#define FUZZ_CHECK(condition)                                                                     \
    do {                                                                                          \
        if (!(condition)) {                                                                       \
            std::fprintf(stderr, "%s:%d: model mismatch: %s\n", __FILE__, __LINE__, #condition); \
            std::abort();                                                                         \
        }                                                                                         \
    } while (false)

namespace fuzz {

// With FUZZ_TRACE set in the environment, each target names every operation
// it makes on standard error: the way to read a saved crash input.
inline bool Tracing() {
    static bool const on = std::getenv("FUZZ_TRACE") != nullptr;
    return on;
}
#define FUZZ_TRACE(...)                                         \
    do {                                                        \
        if (fuzz::Tracing()) std::fprintf(stderr, __VA_ARGS__); \
    } while (false)

// Reads the input front to back. Once the bytes run out every read gives 0,
// so a decoder never has to test for the end in the middle of an operation.
class Input {
public:
    Input(std::uint8_t const* data, std::size_t size) : data(data), size(size) {}

    bool Done() const { return used >= size; }
    std::uint8_t Byte() { return used < size ? data[used++] : 0; }
    // A number in [0, n), n at least 1.
    int Below(int n) {
        unsigned int const wide = static_cast<unsigned int>(Byte()) << 8 | Byte();
        return static_cast<int>(wide % static_cast<unsigned int>(n));
    }
    std::uint32_t Word() {
        std::uint32_t word = 0;
        for (int i = 0; i < 4; ++i) word = word << 8 | Byte();
        return word;
    }

private:
    std::uint8_t const* data;
    std::size_t size;
    std::size_t used = 0;
};

// The library is started once per process and never stopped: no container
// operation depends on that state, and a stop between inputs would only
// repeat the siblings' start-up for nothing.
inline void StartLibrary() {
    static int started = 0;
    if (started == 0) cow_initialize(started);
}

// The stand-ins' live counters when an input begins; at its end, after every
// value of the input is gone, both must be back where they were.
class LiveCounters {
public:
    LiveCounters() : blocks(mem_GetLiveBlocks()), texts(atr_GetLiveTexts()) {}
    void ExpectBack() const {
        if (mem_GetLiveBlocks() != blocks || atr_GetLiveTexts() != texts) {
            std::fprintf(stderr, "leak: %ld mem_ blocks and %ld texts still alive after the input\n",
                         mem_GetLiveBlocks() - blocks, atr_GetLiveTexts() - texts);
            std::abort();
        }
    }

private:
    long blocks;
    long texts;
};

// A few short texts whose lowest bits coincide in many ways, so that string
// maps and trees get deep paths and close keys without growing without end.
inline std::string PickText(Input& in) {
    static char const letters[] = {'a', 'b', 'q', '1', '2', 'B'};
    int const length = in.Below(4);
    std::string text;
    for (int i = 0; i < length; ++i) text += letters[in.Below(sizeof letters)];
    return text;
}

}  // namespace fuzz

#endif
