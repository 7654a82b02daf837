// Tree shapes: where each insertion and removal leaves every node and which
// depths it stores (the shapes are part of the contract), and the key orders.

#include "zorvancow/tree/cow_Btree.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <utility>
#include <vector>

#include "support/AllocationCounter.h"

namespace {

using IntTree = cow_Btree<int, int>;

// A subtree as "key(left,right)", leaves as bare keys, a missing child as
// nothing: "2(1,3(,4))". With `depths`, the stored depths in the same layout.
std::string Shape(IntTree::Handle const* link, bool depths = false) {
    if (link == nullptr) return "";
    auto const* node = link->ConstGet();
    std::string text = std::to_string(depths ? node->GetMaxDepth() : node->GetKey());
    if (node->GetLeft() == nullptr && node->GetRight() == nullptr) return text;
    return text + "(" + Shape(node->GetLeft(), depths) + "," + Shape(node->GetRight(), depths) + ")";
}

struct ShapeCase {
    std::vector<int> inserted, removed;
    char const* shape;
    char const* depths;
};

TEST(BtreeShape, InsertionsAndRemovalsLeaveExactShapesAndDepths) {
    ShapeCase const cases[] = {
        {{1, 2, 3}, {}, "1(,2(,3))", "2(,1(,0))"},  // d = 1 at the root: no rotation yet
        {{1, 2, 3, 4}, {}, "2(1,3(,4))", "2(0,1(,0))"},
        {{4, 3, 2, 1}, {}, "3(2(1,),4)", "2(1(0,),0)"},  // the mirror: one right rotation
        // No double rotation: the -2 left at the new root stays until a write passes it.
        {{0, 3, 1, 2}, {}, "3(0(,1(,2)),)", "3(2(,1(,0)),)"},
        // A present key, absent keys: nothing moves, no depth changes.
        {{1, 2, 3, 3}, {5, 0}, "1(,2(,3))", "2(,1(,0))"},
        // Successor walk: 6 lay between the removed root and the successor's
        // parent, so its depth stays 2 where 1 would be exact.
        {{1, 2, 3, 6, 5, 4}, {3}, "4(2(1,),6(5,))", "3(1(0,),2(0,))"},
        {{2, 1, 3, 4}, {4}, "2(1,3)", "1(0,0)"},  // a leaf
        {{4, 2, 6, 1}, {2}, "4(1,6)", "1(0,0)"},  // a left child only
        {{4, 2, 6, 7}, {6}, "4(2,7)", "1(0,0)"},  // a right child only
        {{4, 2, 6, 1, 3, 7}, {4}, "6(2(1,3),7)", "2(1(0,0),0)"},  // the right child is the successor
        // Deeper successors: each one's right subtree stays under its old parent.
        {{4, 2, 8, 1, 6, 9, 5, 7, 3}, {4}, "5(2(1,3),8(6(,7),9))", "3(1(0,0),2(1(,0),0))"},
        {{4, 2, 8, 1, 6, 9, 5, 7, 3}, {4, 5}, "6(2(1,3),8(7,9))", "2(1(0,0),1(0,0))"},
        {{1, 2, 3}, {1}, "2(,3)", "1(,0)"},  // the root's single child goes to the top
        {{7}, {7}, "", ""},
        // Below the root: successor 3 replaces 2 and takes 5, whose depth 2 is
        // stale; the root balances its new child by it and rotates 5 up.
        {{2, 5, 6, 8, 7, 4, 3, 1}, {2}, "6(5(3(1,4),),8(7,))", "3(2(1(0,0),),1(0,))"},
        // From the light side: the difference reaches 2 at the top, one left rotation.
        {{4, 2, 6, 1, 5, 7, 8}, {1}, "6(4(2,5),7(,8))", "2(1(0,0),1(,0))"},
        // Keys further apart than 2^31 go by the sign of the wrapped difference.
        {{-1, INT_MAX}, {}, "-1(2147483647,)", "1(0,)"},
    };
    // Counts, values and return values along the way are the interpreter's.
    for (ShapeCase const& row : cases) {
        IntTree tree;
        for (int key : row.inserted) tree.InsertUnlessMember(key, -key);
        for (int key : row.removed) tree.Remove(key);
        EXPECT_EQ(Shape(tree.GetRoot()) + " " + Shape(tree.GetRoot(), true), std::string(row.shape) + " " + row.depths);
    }

    IntTree run;
    for (int key = 1; key <= 4096; ++key) run.InsertUnlessMember(key, key);
    EXPECT_EQ(run.GetRoot()->ConstGet()->GetKey(), 1536);
    EXPECT_EQ(run.GetRoot()->ConstGet()->GetMaxDepth(), 12);
}

TEST(BtreeShape, AnEmptyTreeAllocatesNothing) {
    IntTree tree;
    testing_support::AllocationScope scope;
    EXPECT_TRUE(!tree.Remove(1) && tree.Get(1) == nullptr && tree.ConstGet(1) == 0);
    EXPECT_EQ(scope.News(), 0u);
}

template <class K>
std::string Text(K const& key) { return key.GetCString(); }

// The keys a walk from First visits.
template <class K, class V>
auto Keys(cow_Btree<K, V> const& tree) {
    std::vector<decltype(Text(std::declval<K const&>()))> keys;
    cow_BtreeIterator<K, V> it(tree);
    for (it.First(); !it.IsDone(); it.Next()) keys.push_back(Text(it.CurrentKey()));
    return keys;
}

TEST(BtreeOrder, NaturalOrderForCowStringKeysBytesForAtrStringKeys) {
    char const* const texts[] = {"file10", "file9", "file1", "file100", "File2", "\xe4x"};
    cow_Btree<cow_String, int> cowKeys;
    cow_Btree<atr_String, int> atrKeys;
    atr_setNaturalOrder(1);
    for (char const* text : texts)
        cowKeys.InsertUnlessMember(cow_String(text), 1), atrKeys.InsertUnlessMember(atr_String(text), 1);
    auto const walkedCow = Keys(cowKeys), walkedAtr = Keys(atrKeys);
    bool const found = cowKeys.IsMember(cow_String("file9")) && cowKeys.Remove(cow_String("file10"));
    atr_setNaturalOrder(0);
    EXPECT_EQ(walkedCow, (std::vector<std::string>{"File2", "file1", "file9", "file10", "file100", "\xe4x"}));
    EXPECT_EQ(walkedAtr, (std::vector<std::string>{"File2", "file1", "file10", "file100", "file9", "\xe4x"}));
    EXPECT_TRUE(found);
}

}  // namespace
