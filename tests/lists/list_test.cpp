// Lists: where edits unshare, what stays in place, what letting go of a copy
// costs, and the orders and equalities of particular element types. Values
// through random edits are the model test's.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

#include "support/AllocationCounter.h"
#include "support/NoLeaks.h"
#include "zorvancow/handover/cow_HandOver.h"
#include "zorvancow/lists/cow_1DArrayList.h"
#include "zorvancow/lists/cow_List.h"
#include "zorvancow/shapes/cow_FixedArray.h"

namespace {

using testing_support::AllocationScope;
using testing_support::NoLeaks;

template <class List>
List Counting(int n) {
    List list;
    for (int i = 0; i < n; ++i) list.Append(i);
    return list;
}

// The block count of every slot of a list's table.
template <class List>
std::vector<int> BlockCounts(List const& list) {
    std::vector<int> out;
    for (int s = 0; s < list.GetArray().GetCapacity(); ++s) out.push_back(list.GetArray().GetBlockCount(s));
    return out;
}

TEST(ArrayList, RemovalThroughACopyUnsharesOnlyFromTheIndexOn) {
    auto a = Counting<cow_1DArrayList<int>>(40);
    cow_1DArrayList<int> b(a), c(a), d(a);
    b.Remove(0);
    for (int s = 0; s < 3; ++s) EXPECT_NE(a.GetArray().GetBlock(s), b.GetArray().GetBlock(s));
    c.Remove(39);
    EXPECT_EQ(a.GetArray().GetBlock(1), c.GetArray().GetBlock(1));
    EXPECT_NE(a.GetArray().GetBlock(2), c.GetArray().GetBlock(2));
    d.AppendUnlessMember(17);
    EXPECT_EQ(d.GetArray().GetTableCounter(), a.GetArray().GetTableCounter()) << "a member: nothing unshared";
    d.ClearAll();
    EXPECT_EQ(a.GetArray().GetBlockCount(0), 2) << "a and c's tables";
}

// Elements that are copy-on-write values themselves: a write through one
// list's element copies that element's handle, not what it refers to, and
// a vacated slot lets go of its value.
TEST(Lists, CopyOnWriteElementsShareOneLevelDown) {
    NoLeaks noLeaks;
    cow_1DArrayList<cow_String> words{cow_String("one"), cow_String("two")};
    EXPECT_EQ(words.Pop().GetShareCount(), 1);

    auto inner = Counting<cow_1DArrayList<int>>(20);
    cow_1DArrayList<cow_1DArrayList<int>> outer{inner, inner};
    cow_1DArrayList<cow_1DArrayList<int>> outerCopy(outer);
    outerCopy.Get(0).Append(20);  // unshares the outer block, then the inner table
    EXPECT_EQ(outer.ConstGet(0).GetArray().GetBlock(0), outerCopy.ConstGet(0).GetArray().GetBlock(0))
        << "the inner first block is still shared";

    cow_FixedArray<int> fixed(3, 9);
    cow_List<cow_FixedArray<int>> arrays;
    arrays.Append(fixed).Append(fixed).RemoveLast();
    EXPECT_EQ(fixed.GetShareCount(), 2);
    EXPECT_EQ(arrays.ConstGet(1).GetSize(), 10) << "the zero value is a fresh array of ten";
}

// A stack at the front, 17 in and out across a block boundary: no element moves.
TEST(List, StackUseAcrossBlocksMovesNoElement) {
    cow_List<int> stack;
    std::vector<int const*> where;
    for (int i = 0; i < 17; ++i) where.push_back(&stack.Prepend(i).ConstGet(0));
    for (int i = 0; i < 17; ++i) EXPECT_EQ(&stack.ConstGet(i), where[16 - i]);
    for (int i = 16; i > 0; --i) EXPECT_EQ(&stack.RemoveFirst().ConstGet(0), where[i - 1]);
}

// A copy costs nothing. Letting go of a shared table touches neither the
// heap nor a block count; clearing a shared copy costs a counter.
TEST(List, CopiesShareForFreeAndLetGoInConstantTime) {
    NoLeaks noLeaks;
    auto a = Counting<cow_List<int>>(1000);
    auto arrayList = Counting<cow_1DArrayList<int>>(1000);
    std::vector<int> const counts = BlockCounts(a);
    long const tables = mem_GetLiveBlocks();
    {
        AllocationScope scope;
        std::optional<cow_List<int>> copy(a);
        std::optional<cow_1DArrayList<int>> arrayListCopy(arrayList);
        copy.reset();
        arrayListCopy.reset();
        EXPECT_EQ(scope.News() + scope.Deletes(), 0u) << "no block, table or counter comes or goes";
    }
    EXPECT_EQ(a.GetArray().GetTableShareCount() + arrayList.GetArray().GetTableShareCount(), 2);
    EXPECT_EQ(BlockCounts(a), counts);
    EXPECT_EQ(BlockCounts(arrayList), counts);

    cow_List<int> b(a);
    {
        AllocationScope scope;
        EXPECT_EQ(b.Clear().GetCount(), 0);
        EXPECT_EQ(scope.News(), 1u) << "the new counter only";
        EXPECT_EQ(scope.Deletes(), 0u);
    }
    cow_List<int> empty, emptyCopy(empty);
    emptyCopy.Clear();  // a shared list that never had a table clears to no table either
    EXPECT_EQ(mem_GetLiveBlocks(), tables + 1) << "b keeps a table of no slots";
    EXPECT_EQ(BlockCounts(a), counts);
}

TEST(List, SearchAndEqualityTreatNaNAndSignedZeroAsFloatingPointDoes) {
    float const nan = std::numeric_limits<float>::quiet_NaN();
    cow_List<float> a{nan, -0.0f, 1.0f, nan};
    EXPECT_EQ(a.Position(nan), -1);
    EXPECT_EQ(a.Remove(nan).GetCount(), 4) << "removing a NaN changes nothing";
    EXPECT_EQ(a.Position(0.0f), 1);
    EXPECT_EQ((cow_1DArrayList<float>{1.0f, nan}).FindLast(1.0f), 0) << "the first element is searched too";

    // Difference keeps order and duplicates; NaN is a member of nothing.
    cow_List<float> minusSelf = a - a;
    EXPECT_EQ(minusSelf.GetCount(), 2);
    EXPECT_TRUE(std::isnan(minusSelf.ConstGet(0)) && std::isnan(minusSelf.ConstGet(1)));
    EXPECT_EQ((a - cow_List<float>{0.0f}).GetCount(), 3) << "+0.0 removes -0.0";
    cow_List<int> x{1, 2, 2, 3};
    cow_List<int> kept = x - cow_List<int>{5};
    EXPECT_EQ(kept, x);
    EXPECT_NE(kept.GetArray().GetBlock(0), x.GetArray().GetBlock(0)) << "storage of its own even when nothing was dropped";
}

// The natural-order switch sorts cow_String lists only; atr_String keeps the
// byte order. Sorting many strings through the merging passes is in the
// element-type table.
TEST(List, StringsSortByTheNaturalOrderSwitch) {
    NoLeaks noLeaks;
    cow_List<cow_String> natural{cow_String("a9"), cow_String("a10"), cow_String("\xE4"), cow_String("z")};
    cow_List<atr_String> bytes{atr_String("a9"), atr_String("a10")};
    atr_setNaturalOrder(1);
    natural.Sort();
    bytes.Sort();
    atr_setNaturalOrder(0);
    EXPECT_EQ(natural, (cow_List<cow_String>{cow_String("a9"), cow_String("a10"), cow_String("z"), cow_String("\xE4")}));
    EXPECT_STREQ(bytes.ConstGet(0).GetCString(), "a10") << "atr_String keeps the byte order";
    EXPECT_EQ(std::make_pair(GetLengthShortestString(natural), GetLengthLongestString(natural)), std::make_pair(1u, 3u));
    natural.Append(cow_String());
    EXPECT_EQ(natural.Position(cow_String("")), 4) << "a default string equals the empty text";

    EXPECT_EQ(GetLengthShortestString(cow_List<cow_String>()), 0u) << "no string: no shortest length either";
}

// A queue holds the run of ints [front, next), fed at one end and drained
// at the other, forwards (Append, RemoveFirst) or in reverse (Prepend,
// RemoveLast). Ten in flight over 10^6 steps: the table stops growing once
// it reaches the size from which the blocks move within it, and so does the
// number of blocks. Then rounds that grow it to 1000 and drain it to 5.
TEST(ListQueue, BothQueuesStayInBoundedMemory) {
    for (bool reverse : {false, true}) {
        NoLeaks noLeaks;
        std::size_t const objects = testing_support::NewCalls() - testing_support::DeleteCalls();
        cow_List<int> queue;
        int front = 0, next = 0, widest = 0;
        std::size_t most = 0;
        auto step = [&](int keep) {
            reverse ? queue.Prepend(next++) : queue.Append(next++);
            for (; next - front > keep; ++front) reverse ? queue.RemoveLast() : queue.RemoveFirst();
            widest = std::max(widest, queue.GetArray().GetCapacity());
            most = std::max(most, testing_support::NewCalls() - testing_support::DeleteCalls() - objects);
        };
        for (int i = 0; i < 1000000; ++i) step(10);
        int const limit = cow_1DArray<int>::kQueueSlots + 17;
        EXPECT_LE(widest, limit) << reverse;
        EXPECT_LE(most, 2u * limit) << reverse << ": blocks and their counters";
        for (int round = 0; round < 40; ++round)
            for (int i = 0; i < 3000; ++i) step(round % 4 == 1 ? 1000 : 5);
        EXPECT_LE(queue.GetArray().GetCapacity(), limit) << reverse;
        EXPECT_EQ(queue.GetCount(), next - front);
    }
}

// Below the queue size the growth rules hold exactly: a new list given
// Prepend then Append has 34 slots, head 271 and end 273, and 271 more
// Prepends end at head 0. A list appended to itself doubles.
TEST(ListQueue, SmallTablesFollowTheGrowthRules) {
    cow_List<int> list;
    list.Prepend(1).Append(2);
    cow_1DArray<int> const& a = list.GetArray();
    EXPECT_EQ(a.GetCapacity(), 34);
    EXPECT_EQ(a.GetHeadPosition(), 271);
    EXPECT_EQ(a.GetEndPosition(), 273);
    for (int i = 0; i < 271; ++i) list.Prepend(-i);
    EXPECT_EQ(a.GetHeadPosition(), 0);
    EXPECT_EQ(a.GetEndPosition(), 273);
    list.Append(list);
    ASSERT_EQ(list.GetCount(), 2 * 273);
    for (int i = 0; i < 273; ++i) ASSERT_EQ(list.ConstGet(i + 273), list.ConstGet(i)) << i;
    cow_1DArrayList<int> three{1, 2, 3};
    three.Append(three);
    EXPECT_EQ(three, (cow_1DArrayList<int>{1, 2, 3, 1, 2, 3}));
}

// A chosen block length belongs to the value: copies (a hand-over too),
// moves, Clear, ClearAll and Grow(0) keep it, and a sized array takes it.
TEST(BlockLength, ChosenLengthSurvivesCopiesAndResets) {
    NoLeaks noLeaks;
    std::pair<cow_BlockLength, int> const rows[] = {
        {cow_BlockLength(), 4}, {cow_BlockLength(16), 4}, {cow_BlockLength(1024), 10}, {cow_BlockLength::Balanced(), 4}};
    for (auto const& [length, shift] : rows) {
        cow_List<int> list(length);
        cow_1DArrayList<int> flat(length);
        cow_1DArray<int> array(length);
        list.Append(1);
        cow_List<int> moved(std::move(cow_List<int>(list).Clear().Append(2)));
        cow_List<int> const handed = cow_HandOver(list);
        flat.Append(1);
        flat.ClearAll();
        array.Get(0) = 1;
        array.Grow(0);
        for (auto const* a : std::vector<cow_1DArray<int> const*>{&list.GetArray(), &moved.GetArray(), &handed.GetArray(),
                                                                   &flat.GetArray(), &array}) {
            EXPECT_TRUE(a->GetBlockLength() == length) << length.GetLength();
        }
        EXPECT_EQ(moved.GetArray().GetShift(), shift);
        EXPECT_EQ(array.Get(5), 0);
        EXPECT_EQ(array.GetShift(), shift) << length.GetLength();
    }
    EXPECT_EQ(cow_1DArray<int>(1000000, cow_BlockLength(1024)).GetCapacity(), 977 + 16);
    EXPECT_EQ(cow_1DArray<int>(1000000, cow_BlockLength()).GetShift(), 16) << "the growth rules";
}

// A balanced list re-blocks as it grows at either end (what copies held
// across a re-blocking read is the interpreter's). One version of 10 writes
// then costs a short table and 10 short blocks.
TEST(BlockLength, BalancedReblocksAsItGrows) {
    NoLeaks noLeaks;
    cow_List<int> list(cow_BlockLength::Balanced());
    int reblocks = 0;
    for (int i = 0; i < 100000; ++i) {
        int const shift = list.GetArray().GetShift();
        if (i % 3 == 0) list.Prepend(-i);
        else list.Append(i);
        reblocks += shift != 0 && list.GetArray().GetShift() != shift;
    }
    EXPECT_EQ(list.GetArray().GetShift(), 8) << "100,000 elements in 391 blocks of 256";
    EXPECT_EQ(reblocks, 4);
    EXPECT_EQ(std::make_pair(list.ConstGet(0), list.ConstGet(99999)), std::make_pair(-99999, 99998)) << "both ends kept";
    cow_List<int> version(list);
    for (int w = 0; w < 10; ++w) version.Get(w * 9973) = w;
    std::size_t const bytes = sizeof(void*) * static_cast<std::size_t>(version.GetArray().GetCapacity()) +
                              10 * (sizeof(int) << version.GetArray().GetShift());
    EXPECT_LT(bytes, 16u * 1024) << "against 50 KB of table alone with blocks of 16";
}

}  // namespace
