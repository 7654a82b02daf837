// The tree iterator: random steps both ways with turns and restarts, its
// frames, and walks under writes to a tree that shares its nodes.

#include "zorvancow/tree/cow_Btree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>
#include <vector>

namespace {

using IntTree = cow_Btree<int, int>;
using Iterator = cow_BtreeIterator<int, int>;

IntTree Build(std::vector<int> const& keys) {
    IntTree tree;
    for (int key : keys) tree.InsertUnlessMember(key, -key);
    return tree;
}

TEST(BtreeIterator, RandomStepsTurnsAndRestartsFollowTheSortedKeys) {
    std::mt19937 random(7);
    std::vector<int> many;
    for (int i = 0; i < 300; ++i) many.push_back(static_cast<int>(random() % 1000));
    // Turns at a leaf, at a node with only the other child, on chains, and in
    // a random tree; the empty tree and one element for the ends.
    for (std::vector<int> const& keys : {std::vector<int>{}, std::vector<int>{5}, std::vector<int>{1, 2, 3},
                                         std::vector<int>{3, 2, 1}, std::vector<int>{0, 3, 1, 2}, many}) {
        IntTree tree = Build(keys);
        std::set<int> const unique(keys.begin(), keys.end());
        std::vector<int> const sorted(unique.begin(), unique.end());
        Iterator it(tree);
        EXPECT_TRUE(it.IsDone()) << "a new iterator has no current element";
        it.Last();
        if (sorted.empty()) {
            EXPECT_TRUE(it.IsDone());
            continue;
        }
        std::size_t index = sorted.size() - 1;
        for (int step = 0; step < 2000; ++step) {
            switch (random() % 8) {
                case 6: it.First(), index = 0; break;  // also in mid-walk: no stale frames
                case 7: it.Last(), index = sorted.size() - 1; break;
                default:
                    if (random() % 2 == 0) it.Next(), ++index; else it.Previous(), --index;
            }
            if (index >= sorted.size()) {
                ASSERT_TRUE(it.IsDone());
                it.First();
                index = 0;
            }
            ASSERT_FALSE(it.IsDone());
            ASSERT_EQ(it.CurrentKey(), sorted[index]);
            ASSERT_EQ(it.CurrentValue(), -sorted[index]);
        }
    }
    // The frames are the path from the root: a chain's last key sits three deep.
    IntTree chain = Build({1, 2, 3});
    Iterator it(chain);
    it.Last();
    EXPECT_EQ(it.GetStackDepth(), 3);
    it.Previous();
    it.Previous();
    EXPECT_EQ(it.GetStackDepth(), 1);
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
