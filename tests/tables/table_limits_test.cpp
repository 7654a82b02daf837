// Construction arguments at and past their limits, keys at the top of the
// range, and what checked mode refuses.

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <fstream>
#include <new>
#include <string>

#include "support/FaultInjection.h"
#include "support/NoLeaks.h"
#include "zorvancow/core/cow_COW.h"
#include "zorvancow/tables/omi_IntTable.h"

namespace {

using testing_support::NoLeaks;

TEST(TableLimitsDeathTest, ShiftArgumentsPastTheirLimitsAreRefusedInEveryBuildAndWorkAtThem) {
    EXPECT_DEATH(omi_UintTable<cow_String>(0, 10, 24),
                 "^omi_UintTable::omi_UintTable: needs a from 1 to 32 and a \\+ b at most 32 \\(a 0, b 10\\)\n");
    EXPECT_DEATH(omi_UintTable<cow_String>(33, 0, 24), "omi_UintTable::omi_UintTable: .* \\(a 33, b 0\\)");
    EXPECT_DEATH(omi_UintTable<cow_String>(12, 21, 24), "omi_UintTable::omi_UintTable: .* \\(a 12, b 21\\)");
    EXPECT_DEATH(omi_IntTable<cow_String>(20, 13, 1), "omi_UintTable::omi_UintTable: .* \\(a 20, b 13\\)");
    EXPECT_DEATH(omi_BlockedArray<cow_String>(4, 32), "omi_BlockedArray::omi_BlockedArray: shift out of range \\(shift 32\\)");

    // a = 32 is in range: every key its own table block.
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

TEST(TableLimitsDeathTest, KeysAtTheTopOfTheRangeGrowTheArrayOrAreRefused) {
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
    // Block number 2^32 - 1 would need 2^32 entries, one more than the
    // length field can count.
    EXPECT_DEATH(
        {
            omi_UintTable<cow_String> table(32, 0, 1);
            table.Insert(0xFFFFFFFFu, cow_String());
        },
        "omi_UintTable::Insert: the table block array would need 2\\^32 entries \\(block number 4294967295\\)");
}

#if ZORVANCOW_CHECKED
TEST(TableCheckedDeathTest, AnIteratorMustStandOnAKey) {
    omi_UintTable<cow_String> table;
    table.Insert(3, cow_String("x"));
    omi_UintTableIterator<cow_String> unpositioned(table);
    EXPECT_DEATH(unpositioned.CurrentKey(), "^omi_UintTableIterator::CurrentKey: the iterator is done or not positioned");
    omi_UintTableIterator<cow_String> it(table);
    it.First();
    it.Next();
    EXPECT_DEATH(it.CurrentValue(), "omi_UintTableIterator::CurrentValue: the iterator is done or not positioned");
}
#endif

TEST(TableFaultInjectionDeathTest, EveryFailedAllocationEndsInOneLine) {
    testing_support::ExpectEveryAllocationFailureAborts([] {
        cow_String const text("t");
        // The storage of the first table is the test's own allocation; what
        // its constructor allocates is the library's.
        void* storage;
        {
            testing_support::FaultPause pause;
            storage = ::operator new(sizeof(omi_IntTable<cow_String>));
        }
        cow_COW<omi_IntTable<cow_String>> shared(new (storage) omi_IntTable<cow_String>(20, 4, 2));
        for (int key : {-70000, -3, 0, 5, 4096, 1 << 20, 1 << 30}) shared.Get().Insert(key, text);
        cow_COW<omi_IntTable<cow_String>> copy = shared;
        copy.Get().Remove(5);
        copy.Get().Insert(7, text);
        omi_IntTableIterator<cow_String> it(*copy.ConstGet());
        int seen = 0;
        for (it.First(); !it.IsDone(); it.Next()) ++seen;
        omi_UintTableIterator<cow_String> sorted(copy.ConstGet()->GetNonNegative(),
                                                 [](void const*, void const*) { return 0; });
        sorted.First();
        testing_support::FaultPause pause;
        EXPECT_EQ(seen, 7);
    });
}

}  // namespace
