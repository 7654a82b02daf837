#ifndef ZORVAN_TESTS_FAULT_INJECTION_H
#define ZORVAN_TESTS_FAULT_INJECTION_H

#include <gtest/gtest.h>

#include <cstddef>

#include "support/AllocationCounter.h"

namespace testing_support {

// Runs `run` twice, the second time to count its allocations, then once more for every k up
// to that count in a child process whose k-th allocation throws
// std::bad_alloc. Every child must end with the library's out-of-memory
// line and abort(): never an exception out of the library, never a
// sanitizer report first. `run` keeps its own bookkeeping (models, messages)
// under a FaultPause, so that only the library's allocations are failed.
template <class Run>
void ExpectEveryAllocationFailureAborts(Run run) {
    run();  // first uses on the thread (its absent-key values) allocate once
    std::size_t const before = FaultCandidates();
    run();
    std::size_t const total = FaultCandidates() - before;
    ASSERT_GT(total, 0u);
    for (std::size_t k = 1; k <= total; ++k) {
        EXPECT_DEATH(
            {
                FailAllocation(k);
                run();
                FailAllocation(0);
            },
            "zorvancow: out of memory")
            << "allocation " << k << " of " << total;
        if (::testing::Test::HasFailure()) return;
    }
}

}  // namespace testing_support

#endif
