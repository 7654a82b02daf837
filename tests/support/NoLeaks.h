#ifndef ZORVAN_TESTS_NO_LEAKS_H
#define ZORVAN_TESTS_NO_LEAKS_H

#include <gtest/gtest.h>

#include <cstddef>

#include "support/AllocationCounter.h"
#include "zorvanmem/mem_Heap.h"
#include "zorvanstr/atr_String.h"

namespace testing_support {

// Declared first in a test, it checks on the way out that every mem_ block,
// string text and operator-new allocation made inside the test was given back.
struct NoLeaks {
    long blocks = mem_GetLiveBlocks();
    long texts = atr_GetLiveTexts();
    std::size_t news = NewCalls() - DeleteCalls();
    ~NoLeaks() {
        EXPECT_EQ(mem_GetLiveBlocks(), blocks);
        EXPECT_EQ(atr_GetLiveTexts(), texts);
        EXPECT_EQ(NewCalls() - DeleteCalls(), news);
    }
};

}  // namespace testing_support

#endif
