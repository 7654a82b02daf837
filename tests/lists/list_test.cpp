// Lists: where edits unshare, what stays in place, and the orders and
// equalities of particular element types.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "support/AllocationCounter.h"
#include "support/NoLeaks.h"
#include "zorvancow/lists/cow_1DArrayList.h"
#include "zorvancow/lists/cow_List.h"
#include "zorvancow/shapes/cow_FixedArray.h"

namespace {

using testing_support::AllocationScope;

template <class T = int, class List>
std::vector<T> Elements(List const& list) {
    std::vector<T> out;
    for (int i = 0; i < list.GetCount(); ++i) out.push_back(static_cast<T>(list.ConstGet(i)));
    return out;
}

std::vector<std::string> Texts(cow_List<cow_String> const& list) {
    std::vector<std::string> out;
    for (int i = 0; i < list.GetCount(); ++i) out.push_back(list.ConstGet(i).GetCString());
    return out;
}

template <class List, class T>
List Of(std::initializer_list<T> values) {
    List list;
    for (T const& value : values) list.Append(value);
    return list;
}

template <class List>
List Counting(int n) {
    List list;
    for (int i = 0; i < n; ++i) list.Append(i);
    return list;
}

using testing_support::NoLeaks;

TEST(ArrayList, RemovalThroughACopyUnsharesOnlyFromTheIndexOn) {
    auto a = Counting<cow_1DArrayList<int>>(40);
    std::vector<int> const before = Elements(a);
    cow_1DArrayList<int> b(a);
    b.Remove(0);
    for (int s = 0; s < 3; ++s) EXPECT_NE(a.GetArray().GetBlock(s), b.GetArray().GetBlock(s));
    cow_1DArrayList<int> c(a);
    c.Remove(39);
    EXPECT_EQ(a.GetArray().GetBlock(1), c.GetArray().GetBlock(1));
    EXPECT_NE(a.GetArray().GetBlock(2), c.GetArray().GetBlock(2));

    cow_1DArrayList<int> d(a);
    d.AppendUnlessMember(17);
    EXPECT_EQ(d.GetArray().GetTableCounter(), a.GetArray().GetTableCounter()) << "a member: nothing unshared";
    d.ClearAll();
    EXPECT_EQ(Elements(a), before);
    EXPECT_EQ(a.GetArray().GetBlockCount(0), 2) << "a and c's tables";
}

// Appending a list after removals: the reservation lowers the array's extent
// below its high-water mark; nothing held may be lost, no block leaked.
TEST(ArrayList, AppendReservationAfterRemovalsLosesNothing) {
    NoLeaks noLeaks;
    auto a = Counting<cow_1DArrayList<int>>(100);
    cow_1DArrayList<int> keep(a);
    std::vector<int> want = Elements(a);
    for (int i = 0; i < 80; ++i) a.Remove(a.GetCount() - 1);
    auto other = Counting<cow_1DArrayList<int>>(30);
    a.Append(other);  // extent 100 lowered to 30 by the reservation
    EXPECT_EQ(Elements(keep), want);
    want.resize(20);
    for (int i = 0; i < 30; ++i) want.push_back(i);
    EXPECT_EQ(Elements(a), want);
}

// Elements that are copy-on-write values themselves: a write through one
// list's element copies that element's handle, not what it refers to, and
// a vacated slot lets go of its value.
TEST(Lists, CopyOnWriteElementsShareOneLevelDown) {
    NoLeaks noLeaks;
    auto words = Of<cow_1DArrayList<cow_String>>({cow_String("one"), cow_String("two")});
    EXPECT_EQ(words.Pop().GetShareCount(), 1);

    auto inner = Counting<cow_1DArrayList<int>>(20);
    cow_1DArrayList<cow_1DArrayList<int>> outer;
    outer.Append(inner);
    outer.Append(inner);
    cow_1DArrayList<cow_1DArrayList<int>> outerCopy(outer);
    outerCopy.Get(0).Append(20);  // unshares the outer block, then the inner table
    EXPECT_EQ(outer.ConstGet(0).GetCount(), 20);
    EXPECT_EQ(outer.ConstGet(0).GetArray().GetBlock(0), outerCopy.ConstGet(0).GetArray().GetBlock(0))
        << "the inner first block is still shared";
    EXPECT_TRUE(outer.IsMember(inner));
    EXPECT_FALSE(outerCopy.IsEqual(outer));

    // Prepend puts the two elements in different blocks, so after the copy
    // drops its first one the other still lies in a block shared with chain.
    cow_List<cow_1DArrayList<int>> chain;
    chain.Append(inner).Prepend(inner);
    cow_List<cow_1DArrayList<int>> chainCopy(chain);
    chainCopy.Get(0).Append(99);
    EXPECT_EQ(chain.ConstGet(0).GetCount(), 20);
    chainCopy.RemoveFirst();
    EXPECT_EQ(&chainCopy.ConstGet(0), &chain.ConstGet(1));

    cow_FixedArray<int> fixed(3, 9);
    cow_List<cow_FixedArray<int>> arrays;
    arrays.Append(fixed).Append(fixed).RemoveLast();
    EXPECT_EQ(fixed.GetShareCount(), 2);
    EXPECT_EQ(arrays.ConstGet(1).GetSize(), 10) << "the zero value is a fresh array of ten";
}

TEST(List, QueueAndStackUseAcrossBlocksMovesNoElement) {
    // A stack at the front: 17 in and out across a block boundary.
    cow_List<int> stack;
    std::vector<int const*> where;
    for (int i = 0; i < 17; ++i) where.push_back(&stack.Prepend(i).ConstGet(0));
    for (int i = 0; i < 17; ++i) EXPECT_EQ(&stack.ConstGet(i), where[16 - i]);
    for (int i = 16; i > 0; --i) EXPECT_EQ(&stack.RemoveFirst().ConstGet(0), where[i - 1]);

    // A queue: append at the back, take from the front, across many blocks.
    cow_List<int> queue;
    for (int i = 0; i < 200; ++i) {
        queue.Append(i);
        if (i % 3 == 2) {
            int const* second = &queue.ConstGet(1);
            EXPECT_EQ(&queue.RemoveFirst().ConstGet(0), second);
        }
    }
    EXPECT_EQ(queue.GetArray().GetBlock(0), nullptr) << "blocks walked off are freed";
    int const* last = &queue.ConstGet(queue.GetCount() - 3);
    queue.RemoveLast().RemoveLast();
    EXPECT_EQ(&queue.ConstGet(queue.GetCount() - 1), last);
}

// RemoveIndex at or beyond the count removes the last element; Get at the
// count gives a slot beyond the list, which a later Append overwrites.
TEST(List, IndexEditingAtAndBeyondTheCount) {
    auto list = Counting<cow_List<int>>(6);
    list.RemoveIndex(list.GetCount()).RemoveIndex(100);
    EXPECT_EQ(Elements(list), (std::vector<int>{0, 1, 2, 3}));
    list.Get(list.GetCount()) = 777;
    EXPECT_EQ(list.Append(8).ConstGet(4), 8);
    auto twice = Of<cow_List<int>>({3, 4, 3});
    EXPECT_EQ(Elements(twice.Remove(3).AppendUnlessMember(4).AppendUnlessMember(5)), (std::vector<int>{4, 3, 5}));
}

TEST(List, CopiesShareUntilWrittenAndDestructionKeepsOthersWhole) {
    auto a = Counting<cow_List<int>>(40);
    cow_List<int> b(a);
    {
        AllocationScope scope;
        cow_List<int> c(a);
        EXPECT_EQ(scope.News(), 0u);
    }  // c clears its own table only
    EXPECT_EQ(a.GetArray().GetTableShareCount(), 2);
    EXPECT_EQ(a.GetArray().GetBlockCount(0), 1);
    b.Append(40);
    EXPECT_EQ(a.GetArray().GetBlock(1), b.GetArray().GetBlock(1));
    EXPECT_NE(a.GetArray().GetBlock(2), b.GetArray().GetBlock(2));
}

// Letting go of a shared table touches neither the heap nor a block count:
// the other holders keep exactly what they had, and the last holder (a list
// or a walk still running over it) frees everything.
TEST(List, DestroyingOrClearingASharedCopyIsOneDecrement) {
    NoLeaks noLeaks;
    auto a = Counting<cow_List<int>>(1000);
    auto counts = [](cow_List<int> const& list) {
        std::vector<int> out;
        cow_1DArray<int> const& array = list.GetArray();
        for (int s = 0; s < array.GetCapacity(); ++s) out.push_back(array.GetBlockCount(s));
        return out;
    };
    std::vector<int> const before = counts(a);
    long const tables = mem_GetLiveBlocks();
    {
        auto* copy = new cow_List<int>(a);
        EXPECT_EQ(a.GetArray().GetTableShareCount(), 2);
        AllocationScope scope;
        copy->~cow_List<int>();
        EXPECT_EQ(scope.News(), 0u);
        EXPECT_EQ(scope.Deletes(), 0u) << "no block, table or counter goes";
        EXPECT_EQ(mem_GetLiveBlocks(), tables);
        ::operator delete(copy);
    }
    EXPECT_EQ(a.GetArray().GetTableShareCount(), 1);
    EXPECT_EQ(counts(a), before);

    // Clear on a shared copy: a counter of its own and an empty table, the
    // same state as a cleared sole list, and the original stays whole.
    cow_List<int> b(a);
    {
        AllocationScope scope;
        b.Clear();
        EXPECT_EQ(scope.News(), 1u) << "the new counter only";
        EXPECT_EQ(scope.Deletes(), 0u);
    }
    cow_List<int> sole = Counting<cow_List<int>>(1000);
    sole.Clear();
    for (cow_List<int> const* cleared : {&b, &sole}) {
        cow_1DArray<int> const& array = cleared->GetArray();
        EXPECT_EQ(cleared->GetCount(), 0);
        EXPECT_EQ(array.GetCapacity(), 0);
        EXPECT_EQ(array.GetShift(), 0);
        EXPECT_EQ(array.GetHeadPosition(), 0);
        EXPECT_EQ(array.GetEndPosition(), 0);
        EXPECT_EQ(array.GetTableShareCount(), 1);
    }
    EXPECT_NE(b.GetArray().GetTableCounter(), a.GetArray().GetTableCounter());
    EXPECT_EQ(mem_GetLiveBlocks(), tables + 2) << "each cleared list keeps a table of no slots";
    EXPECT_EQ(counts(a), before);
    EXPECT_EQ(Elements(b.Append(7).Prepend(6)), (std::vector<int>{6, 7}));
    EXPECT_EQ(Elements(a), Elements(Counting<cow_List<int>>(1000)));

    // A shared list that never had a table clears to no table either.
    cow_List<int> empty;
    cow_List<int> emptyCopy(empty);
    emptyCopy.Clear();
    EXPECT_EQ(mem_GetLiveBlocks(), tables + 2);

    // A list destroyed while a walk holds its table: the walk reads on, and
    // frees the storage when it ends.
    {
        std::unique_ptr<cow_ListIter<int>> walk;
        {
            auto gone = Counting<cow_List<int>>(40);
            walk = std::make_unique<cow_ListIter<int>>(gone);
        }
        int expected = 0;
        for (; !walk->IsDone(); walk->Next()) EXPECT_EQ(walk->Current(), expected++);
        EXPECT_EQ(expected, 40);
    }

    // The array list destroys a copy the same way.
    auto c = Counting<cow_1DArrayList<int>>(1000);
    {
        auto* copy = new cow_1DArrayList<int>(c);
        AllocationScope scope;
        copy->~cow_1DArrayList<int>();
        EXPECT_EQ(scope.News() + scope.Deletes(), 0u);
        ::operator delete(copy);
    }
    EXPECT_EQ(c.GetArray().GetTableShareCount(), 1);
    EXPECT_EQ(c.GetArray().GetBlockCount(10), 1);
}

TEST(List, SearchAndEqualityTreatNaNAndSignedZeroAsFloatingPointDoes) {
    float const nan = std::numeric_limits<float>::quiet_NaN();
    auto a = Of<cow_List<float>>({nan, -0.0f, 1.0f, nan});
    EXPECT_EQ(a.Position(nan), -1);
    EXPECT_EQ(a.Remove(nan).GetCount(), 4) << "removing a NaN changes nothing";
    EXPECT_EQ(a.Position(0.0f), 1);
    EXPECT_TRUE(a.IsEqual(cow_List<float>(a))) << "shared elements are equal by address, NaN too";
    EXPECT_FALSE(a.IsEqual(Of<cow_List<float>>({nan, 0.0f, 1.0f, nan})));
    auto forty = Counting<cow_List<int>>(40);
    cow_List<int> changed(forty);
    changed.Get(30) = -1;
    EXPECT_FALSE(forty.IsEqual(changed)) << "the first block is shared, a later one differs";

    // Difference keeps order and duplicates; NaN is a member of nothing.
    cow_List<float> minusSelf = a - a;
    EXPECT_EQ(minusSelf.GetCount(), 2);
    EXPECT_TRUE(std::isnan(minusSelf.ConstGet(0)) && std::isnan(minusSelf.ConstGet(1)));
    EXPECT_EQ((a - Of<cow_List<float>>({0.0f})).GetCount(), 3) << "+0.0 removes -0.0";

    auto x = Of<cow_List<int>>({1, 2, 2, 3});
    cow_List<int> kept = x - Of<cow_List<int>>({5});
    EXPECT_EQ(Elements(kept), Elements(x));
    EXPECT_NE(kept.GetArray().GetBlock(0), x.GetArray().GetBlock(0)) << "storage of its own even when nothing was dropped";
}

// Element types with values that no order ranks: -0.0 and +0.0 tie, and NaN
// gets no promised place, but every element stays, also through the merging
// passes of a longer list.
TEST(List, SortKeepsEveryFloatingPointElement) {
    cow_List<double> zeros = Of<cow_List<double>>({0.0, -0.0, -1.0}).Sort();
    EXPECT_EQ(zeros.ConstGet(0), -1.0);
    EXPECT_EQ(std::signbit(zeros.ConstGet(1)) + std::signbit(zeros.ConstGet(2)), 1);
    std::mt19937 rng(5);
    cow_List<double> many;
    for (int i = 0; i < 1000; ++i) many.Append(i % 7 == 0 ? std::nan("") : static_cast<double>(rng() % 500) - 250.0);
    std::vector<double> numbers = Elements<double>(many);
    auto same = [](double x, double y) { return x == y || (std::isnan(x) && std::isnan(y)); };
    std::vector<double> seen = Elements<double>(many.Sort());
    EXPECT_TRUE(std::is_permutation(seen.begin(), seen.end(), numbers.begin(), numbers.end(), same));
}

TEST(List, StringsSortByTheNaturalOrderSwitchAndKeepTheirTexts) {
    NoLeaks noLeaks;
    auto natural = Of<cow_List<cow_String>>({cow_String("a9"), cow_String("a10"), cow_String("\xE4"), cow_String("z")});
    auto bytes = Of<cow_List<atr_String>>({atr_String("a9"), atr_String("a10")});
    atr_setNaturalOrder(1);
    natural.Sort();
    bytes.Sort();
    atr_setNaturalOrder(0);
    EXPECT_EQ(Texts(natural), (std::vector<std::string>{"a9", "a10", "z", "\xE4"}));
    EXPECT_STREQ(bytes.ConstGet(0).GetCString(), "a10") << "atr_String keeps the byte order";
    natural.Append(cow_String());
    EXPECT_EQ(natural.Position(cow_String("")), 4) << "a default string equals the empty text";

    // Many strings, moved as bytes through the merging passes: each text
    // is still held exactly as often as before.
    cow_List<cow_String> many;
    std::vector<std::string> model;
    for (int i = 0; i < 300; ++i) {
        model.push_back("t" + std::to_string((i * 7919) % 300));
        many.Append(cow_String(model.back().c_str()));
    }
    cow_String probe = many.ConstGet(17);
    std::sort(model.begin(), model.end());
    EXPECT_EQ(Texts(many.Sort()), model);
    EXPECT_EQ(probe.GetShareCount(), 2);

    auto two = Of<cow_List<cow_String>>({cow_String("ab"), cow_String("abcd")});
    EXPECT_EQ(GetLengthShortestString(two), 2u);
    EXPECT_EQ(GetLengthLongestString(two), 4u);
    EXPECT_EQ(GetLengthShortestString(cow_List<cow_String>()), 0u);
}

}  // namespace
