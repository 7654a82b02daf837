// The tree iterator: both directions, direction changes, and its frames.

#include "zorvancow/tree/cow_Btree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "support/AllocationCounter.h"

using testing_support::AllocationScope;

namespace {

using IntTree = cow_Btree<int, int>;
using Iterator = cow_BtreeIterator<int, int>;

IntTree Build(std::vector<int> const& keys) {
    IntTree tree;
    for (int key : keys) tree.InsertUnlessMember(key, -key);
    return tree;
}

TEST(BtreeIterator, EmptyAndSingleElementTrees) {
    IntTree empty;
    Iterator none(empty);
    EXPECT_TRUE(none.IsDone());
    none.First();
    EXPECT_TRUE(none.IsDone());
    none.Last();
    EXPECT_TRUE(none.IsDone());

    IntTree one = Build({5});
    Iterator it(one);
    EXPECT_TRUE(it.IsDone()) << "a new iterator has no current element";
    it.First();
    ASSERT_FALSE(it.IsDone());
    EXPECT_EQ(it.CurrentKey(), 5);
    EXPECT_EQ(it.CurrentValue(), -5);
    it.Next();
    EXPECT_TRUE(it.IsDone());
    it.Last();
    EXPECT_EQ(it.CurrentKey(), 5);
    it.Previous();
    EXPECT_TRUE(it.IsDone());
}

TEST(BtreeIterator, EndsAndDirectionChanges) {
    // Shapes where the turn happens at a leaf, at a node with only the other
    // child, and on a chain.
    for (std::vector<int> const& keys : {std::vector<int>{4, 2, 6, 1, 3, 5, 7},
                                         std::vector<int>{1, 2, 3}, std::vector<int>{3, 2, 1},
                                         std::vector<int>{0, 3, 1, 2}}) {
        IntTree tree = Build(keys);
        std::vector<int> sorted = keys;
        std::sort(sorted.begin(), sorted.end());
        Iterator it(tree);

        it.Last();
        EXPECT_EQ(it.CurrentKey(), sorted.back());
        it.Next();
        EXPECT_TRUE(it.IsDone());
        it.First();
        EXPECT_EQ(it.CurrentKey(), sorted.front());
        it.Previous();
        EXPECT_TRUE(it.IsDone());

        it.First();
        it.Next();
        it.Next();
        it.Previous();
        EXPECT_EQ(it.CurrentKey(), sorted[1]);
        it.Last();
        it.Previous();
        it.Previous();
        it.Next();
        EXPECT_EQ(it.CurrentKey(), sorted[sorted.size() - 2]);
    }
}

TEST(BtreeIterator, StackHoldsThePathFromTheRoot) {
    IntTree chain = Build({1, 2, 3});
    Iterator it(chain);
    it.Last();
    EXPECT_EQ(it.GetStackDepth(), 3);
    it.Previous();
    EXPECT_EQ(it.CurrentKey(), 2);
    EXPECT_EQ(it.GetStackDepth(), 2);
    it.Previous();
    EXPECT_EQ(it.CurrentKey(), 1);
    EXPECT_EQ(it.GetStackDepth(), 1);
    it.Previous();
    EXPECT_EQ(it.GetStackDepth(), 0);

    // First twice: the same place, and the frames of the first call freed.
    AllocationScope scope;
    {
        Iterator again(chain);
        again.Last();
        again.First();
        again.First();
        EXPECT_EQ(again.CurrentKey(), 1);
        EXPECT_EQ(again.GetStackDepth(), 1);
        EXPECT_EQ(scope.News() - scope.Deletes(), 1u);
        again.Last();
    }
    EXPECT_EQ(scope.News(), scope.Deletes()) << "a positioned iterator frees its frames";
}

TEST(BtreeIterator, RandomMixOfStepsFollowsTheSortedKeys) {
    std::mt19937 random(7);
    std::vector<int> keys;
    IntTree tree;
    for (int i = 0; i < 300; ++i) {
        int const key = static_cast<int>(random() % 1000);
        if (tree.InsertUnlessMember(key, -key)) keys.push_back(key);
    }
    for (int i = 0; i < 100; ++i) {
        int const key = static_cast<int>(random() % 1000);
        if (tree.Remove(key)) keys.erase(std::find(keys.begin(), keys.end(), key));
    }
    std::sort(keys.begin(), keys.end());

    // A random mix of steps, followed by an index into the sorted keys.
    Iterator it(tree);
    std::size_t index = 0;
    it.First();
    for (int step = 0; step < 5000; ++step) {
        bool const forwardStep = random() % 2 == 0;
        if (forwardStep) {
            it.Next();
            ++index;
        } else {
            it.Previous();
            --index;
        }
        if (index >= keys.size()) {
            EXPECT_TRUE(it.IsDone());
            bool const restartAtFirst = random() % 2 == 0;
            if (restartAtFirst) it.First(); else it.Last();
            index = restartAtFirst ? 0 : keys.size() - 1;
        }
        ASSERT_FALSE(it.IsDone());
        ASSERT_EQ(it.CurrentKey(), keys[index]);
        EXPECT_EQ(it.CurrentValue(), -keys[index]);
    }
}

TEST(BtreeIterator, WritesToASharingTreeDoNotDisturbTheWalk) {
    IntTree walked = Build({4, 2, 6, 1, 3, 5, 7});
    IntTree other = walked;
    Iterator it(walked);
    it.First();
    it.Next();
    other.InsertUnlessMember(8, 0);
    other.Remove(3);
    *other.Get(4) = 44;
    std::vector<int> rest;
    for (; !it.IsDone(); it.Next()) rest.push_back(it.CurrentValue());
    EXPECT_EQ(rest, (std::vector<int>{-2, -3, -4, -5, -6, -7}));
}

}  // namespace
