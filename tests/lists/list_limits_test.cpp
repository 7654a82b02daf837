// Lists used as queues for a long time, and what checked mode refuses.

#include <gtest/gtest.h>

#include <algorithm>
#include <tuple>
#include <vector>

#include "support/FaultInjection.h"
#include "support/NoLeaks.h"
#include "zorvancow/lists/cow_1DArrayList.h"
#include "zorvancow/lists/cow_List.h"

namespace {

using testing_support::NoLeaks;

// A queue holds the run of ints [front, next). Ten in flight over 2^22
// appends and as many removals: positions move back by whole blocks instead
// of the table growing. Then rounds that grow it to 1000 and drain it to 5:
// its table stays proportional to the most it ever held (without the moves
// it would reach some 7,500 slots), and copies taken on the way (one also
// walked by an iterator) keep their elements.
TEST(ListQueue, MovingPositionsBackKeepsTheTableSmallAndCopiesWhole) {
    NoLeaks noLeaks;
    cow_List<int> queue;
    int front = 0, next = 0, widest = 0;
    auto step = [&](int keep) {
        queue.Append(next++);
        for (; next - front > keep; ++front) queue.RemoveFirst();
        widest = std::max(widest, queue.GetArray().GetCapacity());
    };
    auto holds = [](cow_List<int> const& list, int from, int to) {
        ASSERT_EQ(list.GetCount(), to - from);
        for (int i = 0; i < list.GetCount(); ++i) ASSERT_EQ(list.ConstGet(i), from + i) << i;
    };
    for (int i = 0; i < (1 << 22); ++i) step(10);
    EXPECT_EQ(widest, 17) << "the table of the first 16 blocks plus one never grows";
    EXPECT_LT(queue.GetArray().GetEndPosition(), 17 * 16);

    std::vector<std::tuple<cow_List<int>, int, int>> copies;
    for (int round = 0; round < 40; ++round) {
        for (int i = 0; i < 3000; ++i) step(round % 4 == 1 ? 1000 : 5);
        if (round % 7 == 3) copies.emplace_back(queue, front, next);
        holds(queue, front, next);
    }
    EXPECT_LE(queue.GetArray().GetCapacity(), 200);
    for (auto const& [copy, from, to] : copies) holds(copy, from, to);
    int expected = std::get<1>(copies.front());
    for (cow_ListIter<int> it(std::get<0>(copies.front())); !it.IsDone(); it.Next()) EXPECT_EQ(it.Current(), expected++);
    EXPECT_EQ(expected, std::get<2>(copies.front()));
}

#if ZORVANCOW_CHECKED
TEST(ListCheckedDeathTest, PreconditionsStopWithOneLine) {
    cow_List<int> empty;
    EXPECT_DEATH(empty.RemoveFirst(), "^cow_List::RemoveFirst: the list is empty \\(count 0\\)\n");
    EXPECT_DEATH(empty.RemoveLast(), "cow_List::RemoveLast: the list is empty \\(count 0\\)");
    EXPECT_DEATH(empty.RemoveIndex(0), "cow_List::RemoveIndex: needs a non-empty list");
    cow_List<int> two{1, 2};
    EXPECT_DEATH(two.InsertAfter(3, 9), "cow_List::InsertAfter: index out of range \\(index 3, count 2\\)");
    EXPECT_DEATH(two.InsertAfter(-2, 9), "cow_List::InsertAfter: index out of range \\(index -2, count 2\\)");
    EXPECT_DEATH(two.Get(-1), "cow_List::Get: negative index \\(index -1, count 2\\)");
    EXPECT_DEATH(two.ConstGet(-1), "cow_List::ConstGet: index out of range");
    EXPECT_DEATH(two.Append(two), "cow_List::Append: a list appended to itself \\(count 2\\)");

    cow_1DArrayList<int> none;
    EXPECT_DEATH(none.Pop(), "cow_1DArrayList::Pop: the list is empty \\(count 0\\)");
    EXPECT_DEATH(none.Remove(0), "cow_1DArrayList::Remove: needs a non-empty list");
    cow_1DArrayList<int> three{1, 2, 3};
    EXPECT_DEATH(three.Slice(-3, 2), "cow_1DArrayList::Slice: negative start \\(start -3, stop 2, count 3\\)");
    EXPECT_DEATH(three.Insert(4, 0), "cow_1DArrayList::Insert: index out of range \\(index 4, count 3\\)");
    EXPECT_DEATH(three.Append(three), "cow_1DArrayList::Append: a list appended to itself");
    EXPECT_DEATH(three.ConstGet(3 + three.GetArray().GetSize()), "cow_1DArrayList::ConstGet: index out of range");
    // Ranges that read nothing stay legal.
    EXPECT_EQ(three.Slice(-3, -5).GetCount(), 0);
    EXPECT_EQ(three.Slice(1, 99).GetCount(), 2);
}
#endif

TEST(ListFaultInjectionDeathTest, EveryFailedAllocationEndsInOneLine) {
    // Lists of strings and of nested lists, sharing through copies, with a
    // sort and a difference: every allocation on the way is made to fail once.
    testing_support::ExpectEveryAllocationFailureAborts([] {
        cow_List<cow_String> words;
        cow_String const texts[] = {cow_String("pear"), cow_String("fig"), cow_String("kiwi")};
        for (int i = 0; i < 40; ++i) words.Append(texts[i % 3]);
        cow_List<cow_String> copy = words;
        copy.Prepend(texts[1]).RemoveFirst().RemoveIndex(3).InsertAfter(5, texts[0]).Sort();
        cow_List<cow_String> rest = words - copy;
        cow_List<cow_1DArrayList<int>> nested;
        cow_1DArrayList<int> inner;
        for (int i = 0; i < 20; ++i) inner.Append(i);
        for (int i = 0; i < 20; ++i) nested.Append(inner);
        cow_List<cow_1DArrayList<int>> other = nested;
        other.Get(3).Append(7);
        other.RemoveLast().Clear();
        int size = 0;
        delete[] inner.GetCArray(size);
        testing_support::FaultPause pause;
        EXPECT_EQ(copy.GetCount(), 40);
        EXPECT_EQ(rest.GetCount(), 0);
    });
}

}  // namespace
