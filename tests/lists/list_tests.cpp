#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <deque>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "support/AllocationCounter.h"
#include "zorvancow/lists/cow_1DArrayList.h"
#include "zorvancow/lists/cow_List.h"
#include "zorvancow/shapes/cow_FixedArray.h"

namespace {

using testing_support::AllocationScope;

template <class List>
std::vector<int> Elements(List const& list) {
    std::vector<int> out;
    for (int i = 0; i < list.GetCount(); ++i) out.push_back(static_cast<int>(list.ConstGet(i)));
    return out;
}

std::vector<std::string> Texts(cow_List<cow_String> const& list) {
    std::vector<std::string> out;
    for (int i = 0; i < list.GetCount(); ++i) out.push_back(list.ConstGet(i).GetCString());
    return out;
}

double const kNaN = std::numeric_limits<double>::quiet_NaN();

// ---------------------------------------------------------------------------
// cow_1DArrayList

TEST(ArrayList, EditingAtAndBeyondTheCount) {
    cow_1DArrayList<int> empty;
    EXPECT_EQ(empty.FindFirst(3), 0);
    EXPECT_FALSE(empty.IsMember(3));
    EXPECT_TRUE(empty.IsEqual(cow_1DArrayList<int>()));
    EXPECT_EQ(empty.Slice(0, 5).GetCount(), 0);

    cow_1DArrayList<int> list;
    for (int i = 0; i < 5; ++i) list.Append(i * 10);
    list.Insert(0, -1);
    list.Insert(3, 15);
    list.Insert(list.GetCount(), 99);
    EXPECT_EQ(Elements(list), (std::vector<int>{-1, 0, 10, 15, 20, 30, 40, 99}));

    EXPECT_TRUE(list.Remove(100)) << "beyond the count: the last element goes";
    EXPECT_EQ(Elements(list), (std::vector<int>{-1, 0, 10, 15, 20, 30, 40}));
    list.Remove(0);
    EXPECT_EQ(list.Pop(), 40);
    EXPECT_EQ(Elements(list), (std::vector<int>{0, 10, 15, 20, 30}));
    EXPECT_EQ(list.ConstGet(5), 0) << "vacated slots hold the zero value";
    EXPECT_EQ(list.ConstGet(7), 0);
    EXPECT_EQ(list.GetArray().GetSize(), 8) << "the extent is a high-water mark";

    EXPECT_EQ(Elements(list.Slice(2, 100)), (std::vector<int>{15, 20, 30}));
    EXPECT_EQ(list.Slice(3, 3).GetCount(), 0);
    EXPECT_EQ(list.Slice(4, 2).GetCount(), 0);
    EXPECT_EQ(list.Slice(7, 9).GetCount(), 0);
    cow_1DArrayList<int> out;
    out.Append(7);
    list.Slice(1, 3, out);
    EXPECT_EQ(Elements(out), (std::vector<int>{10, 15}));

    list.Append(10);
    EXPECT_EQ(list.FindFirst(10), 1);
    EXPECT_EQ(list.FindLast(10), 5);
    EXPECT_EQ(list.FindLast(11), list.GetCount());
    list.RemoveMember(10);
    EXPECT_EQ(Elements(list), (std::vector<int>{0, 15, 20, 30, 10}));

    int size = -1;
    int* plain = list.GetCArray(size);
    ASSERT_EQ(size, 5);
    EXPECT_EQ(plain[4], 10);
    plain[0] = 1234;
    EXPECT_EQ(list.ConstGet(0), 0);
    delete[] plain;
    int* none = empty.GetCArray(size);
    EXPECT_NE(none, nullptr);
    EXPECT_EQ(size, 0);
    delete[] none;
}

TEST(ArrayList, RemovalThroughACopyUnsharesOnlyFromTheIndexOn) {
    cow_1DArrayList<int> a;
    for (int i = 0; i < 40; ++i) a.Append(i);
    cow_1DArrayList<int> b(a);
    b.Remove(0);
    EXPECT_EQ(a.GetCount(), 40);
    EXPECT_EQ(Elements(a)[0], 0);
    EXPECT_EQ(b.ConstGet(0), 1);
    for (int s = 0; s < 3; ++s) EXPECT_NE(a.GetArray().GetBlock(s), b.GetArray().GetBlock(s));

    cow_1DArrayList<int> c(a);
    c.Remove(39);
    EXPECT_EQ(a.GetArray().GetBlock(0), c.GetArray().GetBlock(0));
    EXPECT_EQ(a.GetArray().GetBlock(1), c.GetArray().GetBlock(1));
    EXPECT_NE(a.GetArray().GetBlock(2), c.GetArray().GetBlock(2));
    EXPECT_EQ(a.ConstGet(39), 39);

    // A value already held changes nothing and unshares nothing.
    cow_1DArrayList<int> d(a);
    d.AppendUnlessMember(17);
    EXPECT_EQ(d.GetArray().GetTableCounter(), a.GetArray().GetTableCounter());
    d.AppendUnlessMember(400);
    EXPECT_EQ(d.GetCount(), 41);

    // ClearAll leaves the others their elements.
    d.ClearAll();
    EXPECT_EQ(d.GetCount(), 0);
    EXPECT_EQ(a.ConstGet(20), 20);
    EXPECT_EQ(a.GetArray().GetBlockCount(0), 2) << "a and c's tables";
}

TEST(ArrayList, StringAndNestedElementsShareOneLevelDown) {
    long textsBefore = atr_GetLiveTexts();
    long blocksBefore = mem_GetLiveBlocks();
    {
        cow_1DArrayList<cow_String> words;
        words.Append(cow_String("one"));
        words.Append(cow_String("two"));
        cow_String popped = words.Pop();
        EXPECT_STREQ(popped.GetCString(), "two");
        EXPECT_EQ(popped.GetShareCount(), 1) << "the vacated slot let go of the text";
        EXPECT_EQ(words.ConstGet(1).GetHeader(), nullptr);
        EXPECT_EQ(words.FindFirst(cow_String("one")), 0);

        cow_1DArrayList<int> inner;
        for (int i = 0; i < 20; ++i) inner.Append(i);
        cow_1DArrayList<cow_1DArrayList<int>> outer;
        outer.Append(inner);
        outer.Append(inner);
        EXPECT_EQ(inner.GetArray().GetTableShareCount(), 3);
        cow_1DArrayList<cow_1DArrayList<int>> outerCopy(outer);
        outerCopy.Get(0).Append(20);  // unshares the outer block, then the inner table
        EXPECT_EQ(outer.ConstGet(0).GetCount(), 20);
        EXPECT_EQ(outerCopy.ConstGet(0).GetCount(), 21);
        EXPECT_EQ(outer.ConstGet(0).GetArray().GetBlock(0), outerCopy.ConstGet(0).GetArray().GetBlock(0))
            << "the inner first block is still shared";
        EXPECT_TRUE(outer.IsMember(inner));
        EXPECT_FALSE(outerCopy.IsEqual(outer));
        outerCopy.Remove(0);
        EXPECT_TRUE(outerCopy.IsMember(inner));
    }
    EXPECT_EQ(atr_GetLiveTexts(), textsBefore);
    EXPECT_EQ(mem_GetLiveBlocks(), blocksBefore);
}

// Appending a list after removals: the reservation lowers the array's extent
// below its high-water mark; nothing held may be lost, no block leaked.
TEST(ArrayList, AppendReservationAfterRemovalsLosesNothing) {
    long blocksBefore = mem_GetLiveBlocks();
    std::size_t liveBefore = testing_support::NewCalls() - testing_support::DeleteCalls();
    {
        cow_1DArrayList<int> a;
        for (int i = 0; i < 100; ++i) a.Append(i);
        cow_1DArrayList<int> keep(a);
        for (int i = 0; i < 80; ++i) a.Remove(a.GetCount() - 1);
        cow_1DArrayList<int> other;
        for (int i = 0; i < 30; ++i) other.Append(1000 + i);
        a.Append(other);  // extent 100 lowered to 30 by the reservation
        ASSERT_EQ(a.GetCount(), 50);
        for (int i = 0; i < 20; ++i) EXPECT_EQ(a.ConstGet(i), i);
        for (int i = 0; i < 30; ++i) EXPECT_EQ(a.ConstGet(20 + i), 1000 + i);
        EXPECT_EQ(keep.GetCount(), 100);
        for (int i = 0; i < 100; ++i) ASSERT_EQ(keep.ConstGet(i), i);
        a.Append(99);
        EXPECT_EQ(a.ConstGet(50), 99);
    }
    EXPECT_EQ(mem_GetLiveBlocks(), blocksBefore);
    EXPECT_EQ(testing_support::NewCalls() - testing_support::DeleteCalls(), liveBefore);
}

// ---------------------------------------------------------------------------
// cow_List

TEST(List, ChainsAndWorksAtBothEndsWithoutMovingElements) {
    cow_List<int> list;
    EXPECT_EQ(list.Position(1), -1);
    EXPECT_FALSE(list.IsMember(1));
    list.Remove(1).Clear();
    EXPECT_TRUE(list.IsEqual(cow_List<int>()));
    list.Append(1).Prepend(0).Append(2);
    EXPECT_EQ(Elements(list), (std::vector<int>{0, 1, 2}));

    cow_List<int> one;
    one.Prepend(5);
    EXPECT_EQ(one.GetCount(), 1);
    EXPECT_EQ(one.ConstGet(0), 5);

    // A stack at the front: 17 in, 17 out, each the reverse of going in,
    // across a block boundary, and no element ever changes address.
    cow_List<int> stack;
    std::vector<int const*> where;
    for (int i = 0; i < 17; ++i) {
        stack.Prepend(i);
        where.push_back(&stack.ConstGet(0));
    }
    for (int i = 0; i < 17; ++i) EXPECT_EQ(&stack.ConstGet(i), where[16 - i]);
    for (int i = 16; i >= 0; --i) {
        EXPECT_EQ(stack.ConstGet(0), i);
        EXPECT_EQ(stack.Position(i), 0) << "positions count from the head";
        stack.RemoveFirst();
    }
    EXPECT_EQ(stack.GetCount(), 0);

    // A queue: append at the back, take from the front, across many blocks.
    cow_List<int> queue;
    int front = 0;
    for (int i = 0; i < 200; ++i) {
        queue.Append(i);
        if (i % 3 == 2) {
            int const* second = &queue.ConstGet(1);
            EXPECT_EQ(queue.ConstGet(0), front++);
            queue.RemoveFirst();
            EXPECT_EQ(&queue.ConstGet(0), second);
        }
    }
    EXPECT_EQ(queue.GetCount(), 200 - 66);
    EXPECT_EQ(queue.ConstGet(0), 66);
    EXPECT_EQ(queue.GetArray().GetBlock(0), nullptr) << "blocks walked off are freed";
    queue.RemoveLast().RemoveLast();
    EXPECT_EQ(queue.ConstGet(queue.GetCount() - 1), 197);
    EXPECT_EQ(queue.ConstGet(queue.GetCount()), 0);
}

TEST(List, IndexEditingAndGetBeyondTheCount) {
    cow_List<int> list;
    for (int i = 0; i < 5; ++i) list.Append(i);
    list.InsertAfter(-1, -1).InsertAfter(2, 15).InsertAfter(list.GetCount(), 50).InsertAfter(list.GetCount() - 1, 60);
    EXPECT_EQ(Elements(list), (std::vector<int>{-1, 0, 1, 15, 2, 3, 4, 50, 60}));
    list.RemoveIndex(3).RemoveIndex(100);
    EXPECT_EQ(Elements(list), (std::vector<int>{-1, 0, 1, 2, 3, 4, 50}));

    list.Get(list.GetCount()) = 777;  // a slot, not an element
    EXPECT_EQ(list.GetCount(), 7);
    list.Append(8);
    EXPECT_EQ(list.ConstGet(7), 8);

    cow_List<int> twice;
    twice.Append(3).Append(4).Append(3);
    twice.Remove(3);
    EXPECT_EQ(Elements(twice), (std::vector<int>{4, 3}));
    twice.AppendUnlessMember(4).AppendUnlessMember(5);
    EXPECT_EQ(Elements(twice), (std::vector<int>{4, 3, 5}));
}

TEST(List, CopiesShareUntilWrittenAndDestructionKeepsOthersWhole) {
    long blocksBefore = mem_GetLiveBlocks();
    {
        cow_List<int> a;
        for (int i = 0; i < 40; ++i) a.Append(i);
        cow_List<int> b(a);
        {
            AllocationScope scope;
            cow_List<int> c(a);
            EXPECT_EQ(scope.News(), 0u);
        }  // ~cow_List clears its own table copy only
        EXPECT_EQ(a.GetArray().GetTableShareCount(), 2);
        EXPECT_EQ(a.GetArray().GetBlockCount(0), 1);
        b.Append(40);
        EXPECT_EQ(a.GetCount(), 40);
        EXPECT_EQ(a.GetArray().GetBlock(0), b.GetArray().GetBlock(0));
        EXPECT_EQ(a.GetArray().GetBlock(1), b.GetArray().GetBlock(1));
        EXPECT_NE(a.GetArray().GetBlock(2), b.GetArray().GetBlock(2));
        b.Clear();
        EXPECT_EQ(Elements(a).back(), 39);
        EXPECT_EQ(a.GetArray().GetBlockCount(0), 1);

        cow_List<int> d;
        d.Append(a).Append(a);
        EXPECT_EQ(d.GetCount(), 80);
        EXPECT_EQ(d.ConstGet(79), 39);
    }
    EXPECT_EQ(mem_GetLiveBlocks(), blocksBefore);
}

TEST(List, FloatingSearchEqualityAndDifference) {
    cow_List<float> a;
    float const nan = std::numeric_limits<float>::quiet_NaN();
    a.Append(nan).Append(-0.0f).Append(1.0f).Append(nan);
    EXPECT_EQ(a.Position(nan), -1);
    a.Remove(nan);
    EXPECT_EQ(a.GetCount(), 4) << "removing a NaN changes nothing";
    EXPECT_EQ(a.Position(0.0f), 1);
    cow_List<float> same(a);
    EXPECT_TRUE(a.IsEqual(same));
    cow_List<float> apart;
    apart.Append(nan).Append(0.0f).Append(1.0f).Append(nan);
    EXPECT_FALSE(a.IsEqual(apart));

    // Difference keeps order and duplicates; NaN is a member of nothing.
    cow_List<float> minusSelf = a - a;
    EXPECT_EQ(minusSelf.GetCount(), 2);
    EXPECT_TRUE(std::isnan(minusSelf.ConstGet(0)) && std::isnan(minusSelf.ConstGet(1)));
    cow_List<float> zero;
    zero.Append(0.0f);
    cow_List<float> noZero = a - zero;
    EXPECT_EQ(noZero.GetCount(), 3) << "+0.0 removes -0.0";

    cow_List<int> x, two, three;
    x.Append(1).Append(2).Append(2).Append(3);
    two.Append(2);
    three.Append(3);
    EXPECT_EQ(Elements(x - two), (std::vector<int>{1, 3}));
    cow_List<int> y;
    y.Append(2).Append(1).Append(2);
    cow_List<int> kept = y - three;
    EXPECT_EQ(Elements(kept), (std::vector<int>{2, 1, 2}));
    EXPECT_NE(kept.GetArray().GetBlock(kept.GetArray().GetHeadPosition() >> 4),
              y.GetArray().GetBlock(y.GetArray().GetHeadPosition() >> 4))
        << "storage of its own even when nothing was dropped";
    EXPECT_EQ((cow_List<int>() - x).GetCount(), 0);
    EXPECT_EQ(Elements(x - cow_List<int>()), Elements(x));
}

TEST(List, SortOrdersPerElementTypeIntoStorageOfItsOwn) {
    cow_List<int> empty;
    {
        AllocationScope scope;
        empty.Sort();
        EXPECT_EQ(scope.News(), 0u);
    }

    // A moved head, and a copy that keeps its order and shares nothing after.
    cow_List<int> a;
    for (int i = 0; i < 40; ++i) a.Append((i * 17) % 40);
    a.RemoveFirst().Prepend(100).Prepend(-5);
    ASSERT_NE(a.GetArray().GetHeadPosition(), 0);
    cow_List<int> before(a);
    a.Sort();
    EXPECT_EQ(a.GetArray().GetHeadPosition(), 0);
    std::vector<int> sorted = Elements(a);
    EXPECT_TRUE(std::is_sorted(sorted.begin(), sorted.end()));
    EXPECT_EQ(sorted.front(), -5);
    EXPECT_EQ(sorted.back(), 100);
    EXPECT_EQ(before.ConstGet(0), -5);
    EXPECT_EQ(before.ConstGet(1), 100);
    for (int s = 0; s < a.GetArray().GetCapacity(); ++s) {
        if (a.GetArray().GetBlock(s) == nullptr) continue;
        EXPECT_EQ(a.GetArray().GetBlockCount(s), 1);
        for (int t = 0; t < before.GetArray().GetCapacity(); ++t)
            EXPECT_NE(a.GetArray().GetBlock(s), before.GetArray().GetBlock(t));
    }

    cow_List<unsigned int> u;
    u.Append(0xFFFFFFFFu).Append(1u);
    u.Sort();
    EXPECT_EQ(u.ConstGet(0), 1u);
    cow_List<int> s;
    s.Append(-1).Append(1);
    s.Sort();
    EXPECT_EQ(s.ConstGet(0), -1);

    cow_List<bool> flags;
    flags.Append(true).Append(false).Append(true).Append(false);
    flags.Sort();
    EXPECT_FALSE(flags.ConstGet(0) || flags.ConstGet(1));
    EXPECT_TRUE(flags.ConstGet(2) && flags.ConstGet(3));

    // -0.0 and +0.0 tie: both follow -1.0, in either order.
    cow_List<double> zeros;
    zeros.Append(0.0).Append(-0.0).Append(-1.0).Sort();
    EXPECT_EQ(zeros.ConstGet(0), -1.0);
    EXPECT_EQ(std::signbit(zeros.ConstGet(1)) + std::signbit(zeros.ConstGet(2)), 1);

    // NaN: no order is promised, but every element stays, also through
    // the merging passes of a longer list.
    std::mt19937 rng(5);
    cow_List<double> many;
    std::vector<double> numbers;
    for (int i = 0; i < 1000; ++i) {
        double v = i % 7 == 0 ? kNaN : static_cast<double>(rng() % 500) - 250.0;
        many.Append(v);
        if (!std::isnan(v)) numbers.push_back(v);
    }
    many.Sort();
    std::vector<double> seen;
    for (int i = 0; i < many.GetCount(); ++i) {
        if (!std::isnan(many.ConstGet(i))) seen.push_back(many.ConstGet(i));
    }
    std::vector<double> expected = numbers;
    std::sort(expected.begin(), expected.end());
    std::vector<double> seenSorted = seen;
    std::sort(seenSorted.begin(), seenSorted.end());
    EXPECT_EQ(seenSorted, expected) << "no element lost or doubled";
    EXPECT_EQ(many.GetCount(), 1000);
}

TEST(List, StringsSortByTheirOwnOrderAndReleaseTexts) {
    long textsBefore = atr_GetLiveTexts();
    {
        cow_List<cow_String> natural;
        natural.Append(cow_String("a9")).Append(cow_String("a10")).Append(cow_String("\xE4")).Append(cow_String("z"));
        cow_List<atr_String> bytes;
        bytes.Append(atr_String("a9")).Append(atr_String("a10"));
        cow_List<cow_String> copy(natural);
        copy.Sort();
        EXPECT_EQ(Texts(copy), (std::vector<std::string>{"a10", "a9", "z", "\xE4"}));
        EXPECT_EQ(natural.ConstGet(0).GetShareCount(), 2) << "the sorted copy shares the texts";

        atr_setNaturalOrder(1);
        natural.Sort();
        bytes.Sort();
        atr_setNaturalOrder(0);
        EXPECT_EQ(Texts(natural), (std::vector<std::string>{"a9", "a10", "z", "\xE4"}));
        EXPECT_STREQ(bytes.ConstGet(0).GetCString(), "a10");

        EXPECT_EQ(natural.Position(cow_String("a10")), 1);

        // Many strings: moved as bytes through the merging passes, each
        // text still held exactly as often as before.
        cow_List<cow_String> many;
        std::vector<std::string> model;
        for (int i = 0; i < 300; ++i) {
            std::string text = "t" + std::to_string((i * 7919) % 300);
            many.Append(cow_String(text.c_str()));
            model.push_back(text);
        }
        cow_String probe = many.ConstGet(17);
        many.Sort();
        std::sort(model.begin(), model.end());
        EXPECT_EQ(Texts(many), model);
        EXPECT_EQ(probe.GetShareCount(), 2);
        natural.Append(cow_String());
        EXPECT_EQ(natural.Position(cow_String("")), 4) << "a default string equals the empty text";

        EXPECT_EQ(GetLengthShortestString(natural), 0u);
        EXPECT_EQ(GetLengthLongestString(natural), 3u);
        cow_List<cow_String> two;
        two.Append(cow_String("ab")).Append(cow_String("abcd"));
        EXPECT_EQ(GetLengthShortestString(two), 2u);
        EXPECT_EQ(GetLengthLongestString(two), 4u);
        EXPECT_EQ(GetLengthShortestString(cow_List<cow_String>()), 0u);
        EXPECT_EQ(GetLengthLongestString(cow_List<cow_String>()), 0u);
    }
    EXPECT_EQ(atr_GetLiveTexts(), textsBefore);
}

TEST(List, ListsOfListsCopyOneLevelDown) {
    cow_1DArrayList<int> inner;
    inner.Append(1);
    inner.Append(2);
    cow_List<cow_1DArrayList<int>> outer;
    outer.Append(inner).Prepend(inner);
    EXPECT_EQ(inner.GetArray().GetTableShareCount(), 3);
    cow_List<cow_1DArrayList<int>> copy(outer);
    copy.Get(0).Append(3);
    EXPECT_EQ(outer.ConstGet(0).GetCount(), 2);
    EXPECT_EQ(copy.ConstGet(0).GetCount(), 3);
    copy.RemoveFirst();
    EXPECT_EQ(copy.GetCount(), 1);
    // The two elements lie in different blocks (the Prepend moved the head),
    // so the copy's remaining element sits in a block still shared with
    // outer: inner's table is held by inner and outer's two elements.
    EXPECT_EQ(inner.GetArray().GetTableShareCount(), 3);
    EXPECT_EQ(&copy.ConstGet(0), &outer.ConstGet(1));

    // Lists of cow_List values, as the maps hand them out.
    long blocksBefore = mem_GetLiveBlocks();
    {
        cow_List<int> row;
        row.Append(7).Prepend(6);
        cow_List<cow_List<int>> rows;
        rows.Append(row).Append(row).Prepend(row);
        cow_List<cow_List<int>> rowsCopy(rows);
        rowsCopy.Get(1).RemoveFirst();
        EXPECT_EQ(rows.ConstGet(1).GetCount(), 2);
        EXPECT_EQ(rowsCopy.ConstGet(1).ConstGet(0), 7);
        EXPECT_TRUE(rows.ConstGet(2).IsEqual(row));
        rowsCopy.RemoveFirst().RemoveLast();
        EXPECT_EQ(rowsCopy.GetCount(), 1);

        // Fixed arrays as elements: copies share the representation, and a
        // removal writes back the zero value, a fresh array of ten.
        cow_FixedArray<int> fixed(3, 9);
        cow_List<cow_FixedArray<int>> arrays;
        arrays.Append(fixed).Append(fixed);
        EXPECT_EQ(fixed.GetShareCount(), 3);
        arrays.RemoveLast();
        EXPECT_EQ(fixed.GetShareCount(), 2);
        EXPECT_EQ(arrays.ConstGet(1).GetSize(), 10);
        EXPECT_EQ(arrays.ConstGet(0).GetRep(), fixed.GetRep());
    }
    EXPECT_EQ(mem_GetLiveBlocks(), blocksBefore);
}

// Several lists sharing through copies and iterators, random edits at both
// ends and in the middle, each checked against a deque after every step.
TEST(ListModel, RandomEditsNeverShowInOtherCopies) {
    long blocksBefore = mem_GetLiveBlocks();
    long textsBefore = atr_GetLiveTexts();
    std::size_t liveBefore = testing_support::NewCalls() - testing_support::DeleteCalls();
    {
        std::mt19937 rng(424242);
        constexpr int kLists = 5;
        std::vector<cow_List<int>> lists(kLists);
        std::vector<std::deque<int>> models(kLists);
        std::vector<cow_ListIter<int>> iters;
        std::vector<std::deque<int>> iterModels;
        int next = 1;

        for (int step = 0; step < 8000; ++step) {
            int k = static_cast<int>(rng() % kLists);
            cow_List<int>& l = lists[k];
            std::deque<int>& m = models[k];
            int n = static_cast<int>(m.size());
            int index = n > 0 ? static_cast<int>(rng() % static_cast<unsigned>(n)) : 0;
            switch (rng() % 13) {
                case 0:
                case 1:
                    l.Append(next);
                    m.push_back(next++);
                    break;
                case 2:
                case 3:
                    l.Prepend(next);
                    m.push_front(next++);
                    break;
                case 4:
                    if (n > 0) {
                        l.RemoveFirst();
                        m.pop_front();
                    }
                    break;
                case 5:
                    if (n > 0) {
                        l.RemoveLast();
                        m.pop_back();
                    }
                    break;
                case 6: {
                    int after = static_cast<int>(rng() % static_cast<unsigned>(n + 2)) - 1;
                    l.InsertAfter(after, next);
                    m.insert(m.begin() + (after == n ? n : after + 1), next++);
                    break;
                }
                case 7:
                    if (n > 0) {
                        l.RemoveIndex(index);
                        m.erase(m.begin() + index);
                    }
                    break;
                case 8: {
                    int from = static_cast<int>(rng() % kLists);
                    lists[k] = lists[from];
                    models[k] = models[from];
                    break;
                }
                case 9:
                    if (n > 0) {
                        int value = m[index];
                        int first = static_cast<int>(std::find(m.begin(), m.end(), value) - m.begin());
                        ASSERT_EQ(l.Position(value), first);
                        l.Remove(value);
                        m.erase(m.begin() + first);
                    }
                    break;
                case 10: {
                    int from = static_cast<int>(rng() % kLists);
                    if (from != k && n + static_cast<int>(models[from].size()) < 3000) {
                        l.Append(lists[from]);
                        m.insert(m.end(), models[from].begin(), models[from].end());
                    }
                    break;
                }
                case 11:
                    if (rng() % 4 == 0) {
                        l.Clear();
                        m.clear();
                    } else if (n > 0) {
                        l.Get(index) = next;
                        m[index] = next++;
                    }
                    break;
                case 12:
                    if (rng() % 3 == 0) {
                        l.Sort();
                        std::sort(m.begin(), m.end());
                    } else {
                        iters.emplace_back(l);
                        iterModels.push_back(m);
                        if (iters.size() > 3) {
                            iters.erase(iters.begin());
                            iterModels.erase(iterModels.begin());
                        }
                    }
                    break;
            }
            for (int j = 0; j < kLists; ++j) {
                ASSERT_EQ(lists[j].GetCount(), static_cast<int>(models[j].size()));
                for (int i = 0; i < lists[j].GetCount(); ++i) ASSERT_EQ(lists[j].ConstGet(i), models[j][i]);
            }
            for (std::size_t j = 0; j < iters.size(); ++j) {
                std::size_t i = 0;
                for (iters[j].First(); !iters[j].IsDone(); iters[j].Next(), ++i) {
                    ASSERT_EQ(iters[j].Current(), iterModels[j][i]);
                }
                ASSERT_EQ(i, iterModels[j].size());
            }
        }
    }
    EXPECT_EQ(mem_GetLiveBlocks(), blocksBefore);
    EXPECT_EQ(atr_GetLiveTexts(), textsBefore);
    EXPECT_EQ(testing_support::NewCalls() - testing_support::DeleteCalls(), liveBefore);
}

}  // namespace
