// Lists used as queues for a long time, and what checked mode refuses.

#include <gtest/gtest.h>

#include <deque>
#include <vector>

#include "support/FaultInjection.h"
#include "support/NoLeaks.h"
#include "zorvancow/lists/cow_1DArrayList.h"
#include "zorvancow/lists/cow_List.h"

namespace {

using testing_support::NoLeaks;

TEST(ListQueue, AFifoKeepsItsTableAndPositionsSmall) {
    NoLeaks noLeaks;
    // Ten elements in flight over 2^22 appends and as many removals: the
    // positions move back by whole blocks instead of the table growing.
    cow_List<int> queue;
    for (int i = 0; i < 10; ++i) queue.Append(i);
    int front = 0;
    int maxCapacity = 0;
    for (int next = 10; next < 10 + (1 << 22); ++next) {
        queue.Append(next);
        ASSERT_EQ(queue.ConstGet(0), front);
        queue.RemoveFirst();
        ++front;
        if (queue.GetArray().GetCapacity() > maxCapacity) maxCapacity = queue.GetArray().GetCapacity();
    }
    EXPECT_EQ(maxCapacity, 17) << "the table of the first 16 blocks plus one never grows";
    EXPECT_LT(queue.GetArray().GetEndPosition(), 17 * 16);
    for (int i = 0; i < 10; ++i) EXPECT_EQ(queue.ConstGet(i), front + i);
}

TEST(ListQueue, MovingPositionsBackKeepsCopiesAndLongerQueuesWhole) {
    NoLeaks noLeaks;
    // A queue that grows to 1000, drains to 5 and runs on: its table stays
    // proportional to the most it ever held, and copies taken on the way
    // (one also walked by an iterator) keep their elements.
    cow_List<int> queue;
    std::deque<int> model;
    std::vector<std::pair<cow_List<int>, std::deque<int>>> copies;
    int next = 0;
    auto check = [](cow_List<int> const& list, std::deque<int> const& expected) {
        ASSERT_EQ(list.GetCount(), static_cast<int>(expected.size()));
        for (int i = 0; i < list.GetCount(); ++i) ASSERT_EQ(list.ConstGet(i), expected[i]) << i;
    };
    for (int round = 0; round < 40; ++round) {
        int const target = round % 4 == 1 ? 1000 : 5;
        for (int step = 0; step < 3000; ++step) {
            queue.Append(next);
            model.push_back(next++);
            while (static_cast<int>(model.size()) > target) {
                queue.RemoveFirst();
                model.pop_front();
            }
        }
        if (round % 7 == 3) copies.emplace_back(queue, model);
        check(queue, model);
    }
    // Twice the blocks of the longest queue plus the spare slots; without the
    // moves the table would reach some 7,500 slots.
    EXPECT_LE(queue.GetArray().GetCapacity(), 200);
    for (auto const& [copy, expected] : copies) check(copy, expected);
    cow_ListIter<int> it(copies.front().first);
    for (int expected : copies.front().second) {
        ASSERT_FALSE(it.IsDone());
        EXPECT_EQ(it.Current(), expected);
        it.Next();
    }
}

#if ZORVANCOW_CHECKED
TEST(ListCheckedDeathTest, PreconditionsStopWithOneLine) {
    cow_List<int> empty;
    EXPECT_DEATH(empty.RemoveFirst(), "^cow_List::RemoveFirst: the list is empty \\(count 0\\)\n");
    EXPECT_DEATH(empty.RemoveLast(), "cow_List::RemoveLast: the list is empty \\(count 0\\)");
    EXPECT_DEATH(empty.RemoveIndex(0), "cow_List::RemoveIndex: needs a non-empty list");
    cow_List<int> two;
    two.Append(1).Append(2);
    EXPECT_DEATH(two.InsertAfter(3, 9), "cow_List::InsertAfter: index out of range \\(index 3, count 2\\)");
    EXPECT_DEATH(two.InsertAfter(-2, 9), "cow_List::InsertAfter: index out of range \\(index -2, count 2\\)");
    EXPECT_DEATH(two.Get(-1), "cow_List::Get: negative index \\(index -1, count 2\\)");
    EXPECT_DEATH(two.ConstGet(-1), "cow_List::ConstGet: index out of range");
    EXPECT_DEATH(two.Append(two), "cow_List::Append: a list appended to itself \\(count 2\\)");

    cow_1DArrayList<int> none;
    EXPECT_DEATH(none.Pop(), "cow_1DArrayList::Pop: the list is empty \\(count 0\\)");
    EXPECT_DEATH(none.Remove(0), "cow_1DArrayList::Remove: needs a non-empty list");
    cow_1DArrayList<int> three;
    for (int v : {1, 2, 3}) three.Append(v);
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
        copy.Prepend(texts[1]).RemoveFirst().RemoveIndex(3).InsertAfter(5, texts[0]);
        copy.Sort();
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
