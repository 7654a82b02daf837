// The blocked array: block length and table size, what growth, shrinking and
// reset let go of, the moves at the front, bulk loads and where the snapshot
// walk's data ends. What one write unshares is the standard-writes test's. Values through random edits are the model
// test's; these tests watch tables, blocks and counts.

#include <gtest/gtest.h>

#include <climits>
#include <vector>

#include "support/AllocationCounter.h"
#include "support/NoLeaks.h"
#include "zorvancow/arrays/cow_1DArray.h"

namespace {

using testing_support::AllocationScope;
using testing_support::NoLeaks;

// A default-constructed array whose elements [0, n) hold base + i, written through Get.
cow_1DArray<int> Filled(int n, int base = 0) {
    cow_1DArray<int> a;
    for (int i = 0; i < n; ++i) a.Get(i) = base + i;
    return a;
}

// What inspection shows of the table: capacity, shift, head, end and how
// many arrays share it.
std::vector<int> Shape(cow_1DArray<int> const& a) {
    return {a.GetCapacity(), a.GetShift(), a.GetHeadPosition(), a.GetEndPosition(), a.GetTableShareCount()};
}

TEST(BlockedArray, SizedConstructionPicksBlockLengthFromTheFloatExponent) {
    int const rows[][3] = {{0, 4, 16},      {255, 4, 16},     {256, 5, 24},       {257, 5, 25},
                           {384, 5, 28},    {511, 5, 32},     {512, 6, 24},       {1000, 6, 32},
                           {65536, 13, 24}, {100000, 13, 29}, {16777217, 21, 24}, {INT_MAX, 28, 24}};
    for (auto const& [n, shift, capacity] : rows) {
        AllocationScope scope;
        cow_1DArray<int> a(n);
        EXPECT_EQ(a.GetShift(), shift) << n;
        EXPECT_EQ(a.GetCapacity(), capacity) << n;
        EXPECT_EQ(scope.News(), 1u) << "the counter only: no block before the first write";
    }
}

TEST(BlockedArray, GetBeyondTheEndGrowsTheTable) {
    cow_1DArray<int> a;
    a.Get(0) = 5;
    EXPECT_EQ(Shape(a), (std::vector<int>{17, 4, 0, 1, 1}));
    a.Get(271) = 6;
    EXPECT_EQ(a.GetCapacity(), 17);
    a.Get(272) = 7;
    EXPECT_EQ(a.GetCapacity(), 34);
    EXPECT_EQ(a.GetBlock(1), nullptr) << "skipped slots stay empty";
}

TEST(BlockedArray, ConstReadFillsASharedSlotWithoutUnsharing) {
    cow_1DArray<double> a(100);
    cow_1DArray<double> b(a);
    AllocationScope scope;
    EXPECT_EQ(&a.PartialArrayConstGet(50), &b.PartialArrayConstGet(50)) << "one block for both";
    EXPECT_EQ(scope.News(), 2u) << "one block and its element storage";
    EXPECT_EQ(a.GetBlockCount(3), 1);
}

TEST(BlockedArray, ShrinkingACopyLetsGoOfTheBlocksBeyondItsEndOnly) {
    cow_1DArray<int> a = Filled(40);
    cow_1DArray<int> c(a);
    c.Grow(17);
    EXPECT_EQ(c.GetBlock(2), nullptr);
    EXPECT_EQ(a.GetBlockCount(2), 1);
    EXPECT_EQ(a.GetBlockCount(1), 2) << "the partly kept block stays shared";
}

// Resetting one of two sharing arrays ends as a reset of a private copy
// would, without copying the table or touching a block; a sole array's
// reset keeps its table, shrunk to no slots. Both then grow like a new array.
TEST(BlockedArray, ResetOfASharedArrayLeavesTheTableToTheOthers) {
    NoLeaks noLeaks;
    cow_1DArray<int> a = Filled(40);
    cow_1DArray<int> b(a);
    cow_1DArray<int> sole = Filled(40);
    long const tables = mem_GetLiveBlocks();
    {
        AllocationScope scope;
        b.Grow(0);
        EXPECT_EQ(scope.News(), 1u) << "a counter of its own; no table copy, no block";
        EXPECT_EQ(scope.Deletes(), 0u);
    }
    sole.Grow(0);
    EXPECT_EQ(mem_GetLiveBlocks(), tables + 1) << "b's new table of no slots";
    for (cow_1DArray<int> const* reset : {&b, &sole}) EXPECT_EQ(Shape(*reset), (std::vector<int>{0, 0, 0, 0, 1}));
    EXPECT_EQ(a.GetTableShareCount(), 1);
    for (int s = 0; s < 3; ++s) EXPECT_EQ(a.GetBlockCount(s), 1);
    b.Get(3) = 9;
    EXPECT_EQ(b.GetCapacity(), 17) << "and grows like a new one";

    // A copy of an array with no slots (reset or default) resets to no
    // table at all, as a copy of its zero slots would.
    b.Grow(0);
    cow_1DArray<int> c(b), d, e(d);
    long const before = mem_GetLiveBlocks();
    c.Grow(0);
    e.Grow(0);
    EXPECT_EQ(mem_GetLiveBlocks(), before);
    EXPECT_EQ(b.GetTableShareCount() + d.GetTableShareCount(), 2);
}

TEST(BlockedArray, GetHeadMovesTheTableAndKeepsOffsets) {
    // 272 calls fill a default array's 17 slots; the next one moves them back
    // by 17. The second such move shifts 34 used slots by 17, so source and
    // target overlap.
    cow_1DArray<int> a;
    int next = 0;
    for (int used : {17, 34}) {
        while (next < used * 16) a.GetHead() = next++;
        std::vector<cow_1DArrayBlock<int> const*> before;
        for (int s = 0; s < used; ++s) before.push_back(a.GetBlock(s));
        a.GetHead() = next++;
        EXPECT_EQ(a.GetCapacity(), used + 17);
        EXPECT_EQ(a.GetHeadPosition(), 271);
        EXPECT_EQ(a.GetEndPosition(), 271 + next);
        for (int s = 0; s < used; ++s) EXPECT_EQ(a.GetBlock(s + 17), before[s]) << "blocks move by pointer";
    }

    // A short array moves its block to the back; elements keep their addresses.
    cow_1DArray<int> b = Filled(5, 100);
    int const* third = &b.PartialArrayConstGet(2);
    b.GetHead() = 99;
    EXPECT_EQ(b.GetBlock(0), nullptr);
    EXPECT_EQ(&b.PartialArrayConstGet(3), third);
}

// A sized array copies one run per block (what the others hold after a load
// is the interpreter's). String elements are assigned, sharing their texts.
TEST(BlockedArray, SetFromArrayCopiesOneRunPerBlock) {
    NoLeaks noLeaks;
    std::vector<int> src(40);
    for (int i = 0; i < 40; ++i) src[i] = i * 3;
    cow_1DArray<int> sized(40);
    AllocationScope scope;
    sized.SetFromArray(src.data(), 40);
    EXPECT_EQ(scope.News(), 6u) << "three runs, three blocks";

    cow_String texts[2] = {cow_String("x"), cow_String("y")};
    cow_1DArray<cow_String> s1(20);
    s1.SetFromArray(texts, 2);
    EXPECT_EQ(texts[0].GetShareCount() + texts[1].GetShareCount(), 4) << "assigned into s1";
}

// Holes and what a walk reads are the interpreter's; this is where the
// block data ends: at the end of a partly used block it stays, after a full
// one it turns null.
TEST(BlockedArrayIter, DataAtTheEndOfTheLastBlock) {
    for (int n : {20, 32}) {
        cow_1DArray<int> a = Filled(n);
        cow_1DArrayIter<int> it(a);
        for (int i = 0; i < n; ++i, it.Next()) ASSERT_EQ(it.ConstGet(), i);
        EXPECT_EQ(it.GetBlockData() == nullptr, n == 32) << n;
    }
}

TEST(BlockedArrayLimits, FrontGrowthOfAHugeSizedArrayKeepsPositionsInRange) {
    NoLeaks noLeaks;
    // Blocks of 2^27 elements: the table has 16 free slots, but only 7 of
    // them fit in front of the array before the end position would pass
    // the largest int. Bool elements keep the one new block at 128 MiB.
    cow_1DArray<bool> a(1 << 30);
    ASSERT_EQ(a.GetShift(), 27);
    ASSERT_EQ(a.GetCapacity(), 24);
    a.GetHead() = true;
    EXPECT_EQ(a.GetSize(), (1 << 30) + 1);
    EXPECT_EQ(a.GetHeadPosition(), (7 << 27) - 1);
    EXPECT_EQ(a.GetEndPosition(), INT_MAX - (1 << 27) + 1);
    EXPECT_TRUE(a.PartialArrayConstGet(0));
    // The next calls step the head back inside the free slots.
    a.GetHead() = false;
    EXPECT_EQ(a.GetHeadPosition(), (7 << 27) - 2);
    EXPECT_TRUE(a.PartialArrayConstGet(1));
}

}  // namespace
