// What checked mode refuses of the tree iterator, and allocation failure.

#include <gtest/gtest.h>

#include "support/FaultInjection.h"
#include "zorvancow/tree/cow_Btree.h"

namespace {

#if ZORVANCOW_CHECKED
TEST(BtreeCheckedDeathTest, ADoneIteratorHasNoCurrentElementAndNoStep) {
    cow_Btree<int, int> tree{{1, 10}};
    cow_BtreeIterator<int, int> it(tree);
    it.First();
    it.Next();
    ASSERT_TRUE(it.IsDone());
    EXPECT_DEATH(it.CurrentKey(), "^cow_BtreeIterator::CurrentKey: the iterator is done");
    EXPECT_DEATH(it.CurrentValue(), "cow_BtreeIterator::CurrentValue: the iterator is done");
    EXPECT_DEATH(it.Next(), "cow_BtreeIterator::Next: the iterator is done");
    EXPECT_DEATH(it.Previous(), "cow_BtreeIterator::Previous: the iterator is done");
}
#endif

TEST(BtreeFaultInjectionDeathTest, EveryFailedAllocationEndsInOneLine) {
    testing_support::ExpectEveryAllocationFailureAborts([] {
        cow_Btree<int, int> tree;
        for (int i = 0; i < 40; ++i) tree.InsertUnlessMember((i * 37) % 101, i);
        cow_Btree<int, int> copy = tree;
        copy.Remove(37);
        *copy.Get(74) = 5;
        cow_Btree<int, int>* heap = copy.Copy();
        heap->InsertUnlessMember(1000, 1);
        delete heap;
        cow_List<int> keys = cow_BtreeUtils<int, int>::cow_Keys(copy);
        testing_support::FaultPause pause;
        EXPECT_EQ(keys.GetCount(), 39);
    });
}

}  // namespace
