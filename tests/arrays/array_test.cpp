#include <gtest/gtest.h>

#include <climits>
#include <deque>
#include <random>
#include <vector>

#include "support/AllocationCounter.h"
#include "support/NoLeaks.h"
#include "zorvancow/arrays/cow_1DArray.h"

namespace {

using testing_support::AllocationScope;

// A default-constructed array whose elements [0, n) hold base + i, written through Get.
cow_1DArray<int> Filled(int n, int base = 0) {
    cow_1DArray<int> a;
    for (int i = 0; i < n; ++i) a.Get(i) = base + i;
    return a;
}

std::vector<int> Values(cow_1DArray<int> const& a) {
    std::vector<int> out;
    for (int i = 0; i < a.GetSize(); ++i) out.push_back(a.PartialArrayConstGet(i));
    return out;
}

using testing_support::NoLeaks;

TEST(BlockedArray, SizedConstructionPicksBlockLengthFromTheFloatExponent) {
    int const rows[][3] = {{-7, 4, 16},     {255, 4, 16},     {256, 5, 24},       {257, 5, 25},
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

// One write through a copy unshares the table and one block; IsEqual takes
// the shared blocks by address but still reads the private one.
TEST(BlockedArray, WriteThroughCopyUnsharesTableAndOneBlock) {
    cow_1DArray<int> a = Filled(40);
    cow_1DArray<int> b(a);
    EXPECT_TRUE(a.IsEqual(b));
    b.Get(20) = -1;
    EXPECT_FALSE(a.IsEqual(b));
    EXPECT_EQ(a.GetTableShareCount(), 1);
    for (int s : {0, 2}) {
        EXPECT_EQ(a.GetBlock(s), b.GetBlock(s));
        EXPECT_EQ(a.GetBlockCount(s), 2);
    }
    EXPECT_NE(a.GetBlock(1), b.GetBlock(1));
    EXPECT_EQ(a.GetBlockCount(1), 1);
    EXPECT_EQ(b.GetBlockCount(1), 1);

    AllocationScope scope;
    b.Get(17) = -2;
    EXPECT_EQ(scope.News(), 0u) << "a second write into the private block copies nothing";
    cow_1DArray<int> c = Filled(40);
    EXPECT_TRUE(a.IsEqual(c));
    c.Get(40) = 40;
    EXPECT_FALSE(a.IsEqual(c));
}

TEST(BlockedArray, GetBeyondTheEndGrowsTheTable) {
    cow_1DArray<int> a;
    a.Get(0) = 5;
    EXPECT_EQ(a.GetShift(), 4);
    EXPECT_EQ(a.GetCapacity(), 17);
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

TEST(BlockedArray, GrowResetsOrShrinksOnlyTheCallersTable) {
    cow_1DArray<int> a = Filled(40);
    cow_1DArray<int> b(a);
    b.Grow(0);
    b.Grow(1);
    EXPECT_EQ(b.GetShift(), 4) << "a reset array grows like a new one";
    EXPECT_EQ(b.GetCapacity(), 17);

    // Shrinking a copy lets go of the blocks beyond its new end only.
    cow_1DArray<int> c(a);
    c.Grow(17);
    EXPECT_EQ(c.GetBlock(2), nullptr);
    EXPECT_EQ(a.GetBlockCount(2), 1);
    EXPECT_EQ(a.GetBlockCount(1), 2) << "the partly kept block stays shared";
    c.Grow(40);
    EXPECT_EQ(c.PartialArrayConstGet(39), 0) << "the dropped block does not come back";
}

// Resetting one of two sharing arrays ends as a reset of a private copy
// would, without copying the table or touching a block.
TEST(BlockedArray, ResetOfASharedArrayLeavesTheTableToTheOthers) {
    NoLeaks noLeaks;
    cow_1DArray<int> a = Filled(40);
    cow_1DArray<int> b(a);
    {
        long const tables = mem_GetLiveBlocks();
        AllocationScope scope;
        b.Grow(0);
        EXPECT_EQ(scope.News(), 1u) << "a counter of its own; no table copy, no block";
        EXPECT_EQ(scope.Deletes(), 0u);
        EXPECT_EQ(mem_GetLiveBlocks(), tables + 1) << "the reset table of no slots";
    }
    EXPECT_EQ(b.GetCapacity(), 0);
    EXPECT_EQ(b.GetShift(), 0);
    EXPECT_EQ(b.GetHeadPosition(), 0);
    EXPECT_EQ(b.GetEndPosition(), 0);
    EXPECT_EQ(b.GetTableShareCount(), 1);
    EXPECT_EQ(a.GetTableShareCount(), 1);
    for (int s = 0; s < 3; ++s) EXPECT_EQ(a.GetBlockCount(s), 1);
    EXPECT_EQ(Values(a), Values(Filled(40)));
    b.Get(3) = 9;
    EXPECT_EQ(b.GetCapacity(), 17) << "and grows like a new one";

    // A copy of an array with no slots (reset or default) resets to no
    // table at all, as a copy of its zero slots would.
    b.Grow(0);
    cow_1DArray<int> c(b);
    cow_1DArray<int> d;
    cow_1DArray<int> e(d);
    long const tables = mem_GetLiveBlocks();
    c.Grow(0);
    e.Grow(0);
    EXPECT_EQ(mem_GetLiveBlocks(), tables);
    EXPECT_EQ(b.GetTableShareCount(), 1);
    EXPECT_EQ(d.GetTableShareCount(), 1);
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
    for (int i = 0; i < next; ++i) ASSERT_EQ(a.PartialArrayConstGet(i), next - 1 - i);

    // A short array moves its block to the back; elements keep their addresses.
    cow_1DArray<int> b = Filled(5, 100);
    int const* third = &b.PartialArrayConstGet(2);
    b.GetHead() = 99;
    EXPECT_EQ(b.GetBlock(0), nullptr);
    EXPECT_EQ(&b.PartialArrayConstGet(3), third);
}

TEST(BlockedArray, RemoveHeadFreesABlockOnlyWhenTheHeadLeavesIt) {
    cow_1DArray<int> a = Filled(40);
    auto const* first = a.GetBlock(0);
    for (int k = 0; k < 15; ++k) a.RemoveHead();
    EXPECT_EQ(a.GetBlock(0), first);
    a.RemoveHead();
    EXPECT_EQ(a.GetBlock(0), nullptr);
}

// A sized array keeps its size, a shorter one grows to the last run's first
// element, and a default one (block length 1 until then) copies one by one.
// String elements are assigned, sharing their texts.
TEST(BlockedArray, SetFromArrayCopiesOneRunPerBlock) {
    NoLeaks noLeaks;
    std::vector<int> src(40);
    for (int i = 0; i < 40; ++i) src[i] = i * 3;
    cow_1DArray<int> sized(40);
    cow_1DArray<int> zero(0);
    cow_1DArray<int> fresh;
    {
        AllocationScope scope;
        sized.SetFromArray(src.data(), 40);
        EXPECT_EQ(scope.News(), 6u) << "three runs, three blocks";
    }
    zero.SetFromArray(src.data(), 40);
    fresh.SetFromArray(src.data(), 40);
    EXPECT_EQ(Values(fresh), src);
    EXPECT_EQ(Values(zero), std::vector<int>(src.begin(), src.begin() + 33));

    cow_String texts[2] = {cow_String("x"), cow_String("y")};
    cow_1DArray<cow_String> s1(20);
    EXPECT_EQ(s1.PartialArrayConstGet(19).GetHeader(), nullptr) << "a default element has no text";
    s1.SetFromArray(texts, 2);
    cow_1DArray<cow_String> s2(s1);
    s2.Get(1) = cow_String("beta");
    EXPECT_EQ(texts[0].GetShareCount(), 3) << "assigned into s1, then copied with the block";
    EXPECT_EQ(texts[1].GetShareCount(), 2);
}

TEST(BlockedArrayIter, WalksASnapshotAndStopsAtHolesAndTheEnd) {
    // Nothing to read: never written, and drained by RemoveHead (end above 0).
    cow_1DArray<int> untouched(100);
    cow_1DArray<int> drained = Filled(3);
    for (int k = 0; k < 3; ++k) drained.RemoveHead();
    for (cow_1DArray<int> const* a : {&untouched, &drained}) {
        EXPECT_EQ(cow_1DArrayIter<int>(*a).GetBlockData(), nullptr);
    }

    // First block present, second absent: a hole with the position below the limit.
    cow_1DArray<int> sparse(100);
    for (int i = 0; i < 16; ++i) sparse.Get(i) = i;
    sparse.Get(40) = 40;
    cow_1DArrayIter<int> walk(sparse);
    for (int i = 0; i < 16; ++i, walk.Next()) ASSERT_EQ(walk.ConstGet(), i);
    EXPECT_EQ(walk.GetBlockData(), nullptr);
    EXPECT_LT(walk.GetPosition(), walk.GetLimit());

    // At the end of a partly used block the data stays, after a full one it turns null.
    for (int n : {20, 32}) {
        cow_1DArray<int> a = Filled(n);
        cow_1DArrayIter<int> it(a);
        for (int i = 0; i < n; ++i, it.Next()) ASSERT_EQ(it.ConstGet(), i);
        EXPECT_EQ(it.GetBlockData() == nullptr, n == 32) << n;
    }

    // Writes to the source after the iterator was made do not show.
    cow_1DArray<int> source = Filled(40);
    cow_1DArrayIter<int> snap(source);
    source.Get(20) = -20;
    source.Get(41) = -41;
    int i = 0;
    for (; snap.GetPosition() < snap.GetLimit(); snap.Next(), ++i) ASSERT_EQ(snap.ConstGet(), i);
    EXPECT_EQ(i, 40);
}

}  // namespace
