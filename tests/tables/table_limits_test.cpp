// Construction arguments at their limits and keys at the top of the range
// (what is refused beyond them is in std/refusals_test.cpp).

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <fstream>
#include <string>

#include "support/NoLeaks.h"
#include "zorvancow/tables/omi_IntTable.h"

namespace {

using testing_support::NoLeaks;

TEST(TableLimits, WithAOf32EveryKeyHasItsOwnTableBlock) {
    NoLeaks noLeaks;
    omi_UintTable<cow_String> single(32, 0, 0);
    EXPECT_TRUE(single.Insert(5000, cow_String("v")));
    EXPECT_EQ(single.GetBlockCount(), 5056u);
    EXPECT_TRUE(single.Remove(5000));
}

// Limits this process's address space to what it maps now plus `extra`
// bytes, so that a huge allocation fails at once instead of paging.
void LimitAddressSpace(unsigned long long extra) {
    std::ifstream status("/proc/self/status");
    std::string field;
    while (status >> field && field != "VmSize:") continue;
    unsigned long long kib = 0;
    status >> kib;
    rlimit limit{kib * 1024 + extra, kib * 1024 + extra};
    setrlimit(RLIMIT_AS, &limit);
}

TEST(TableLimitsDeathTest, AKeyAtTheTopOfTheRangeGrowsTheArrayWithoutWrapping) {
    // With a = 32 the table block number is the key itself. For a key near
    // 2^32 the next multiple of 64 does not fit 32 bits; the array must
    // then ask for (nearly) 2^32 pointers, 32 GiB, which fails here, and
    // not wrap to an array of none and write past it.
    EXPECT_DEATH(
        {
            LimitAddressSpace(1ull << 30);
            omi_UintTable<cow_String> table(32, 0, 1);
            table.Insert(0xFFFFFFC0u, cow_String());
        },
        "out of memory");
}

}  // namespace
