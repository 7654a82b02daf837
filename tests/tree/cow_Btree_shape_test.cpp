// Tree shapes: where each insertion and removal leaves every node, and which
// depths it stores. The shapes are part of the contract, so they are checked
// node by node.

#include "zorvancow/tree/cow_Btree.h"

#include <gtest/gtest.h>

#include <string>

#include "support/AllocationCounter.h"

namespace {

using IntTree = cow_Btree<int, int>;
using IntNode = cow_BtreeNode<int, int>;

// The shape of a subtree as "key(left,right)", leaves as bare keys, a missing
// child as nothing: "2(1,3(,4))".
std::string Shape(IntTree::Handle const* link) {
    if (link == nullptr) return "";
    IntNode const* node = link->ConstGet();
    std::string text = std::to_string(node->GetKey());
    if (node->GetLeft() == nullptr && node->GetRight() == nullptr) return text;
    return text + "(" + Shape(node->GetLeft()) + "," + Shape(node->GetRight()) + ")";
}

// Stored depths in the same layout: "2(0,1(,0))".
std::string Depths(IntTree::Handle const* link) {
    if (link == nullptr) return "";
    IntNode const* node = link->ConstGet();
    std::string text = std::to_string(node->GetMaxDepth());
    if (node->GetLeft() == nullptr && node->GetRight() == nullptr) return text;
    return text + "(" + Depths(node->GetLeft()) + "," + Depths(node->GetRight()) + ")";
}

IntTree Build(std::initializer_list<int> keys) {
    IntTree tree;
    for (int key : keys) EXPECT_TRUE(tree.InsertUnlessMember(key, key * 10));
    return tree;
}

IntNode const* Root(IntTree const& tree) { return tree.GetRoot()->ConstGet(); }

TEST(BtreeShape, AscendingChainThenFirstRotationAtRoot) {
    IntTree tree = Build({1, 2, 3});
    EXPECT_EQ(Shape(tree.GetRoot()), "1(,2(,3))") << "d = 1 at the root: no rotation";
    EXPECT_EQ(Root(tree)->GetMaxDepth(), 2);

    EXPECT_TRUE(tree.InsertUnlessMember(4, 40));
    EXPECT_EQ(Shape(tree.GetRoot()), "2(1,3(,4))");
    EXPECT_EQ(Depths(tree.GetRoot()), "2(0,1(,0))");
    EXPECT_EQ(tree.GetCount(), 4);
}

TEST(BtreeShape, NoDoubleRotationLeavesFourLevels) {
    IntTree tree = Build({0, 3, 1, 2});
    // The last insertion rotates left at the root; the -2 it leaves at the new
    // root stays, since a node is balanced only by the write that passes it.
    EXPECT_EQ(Shape(tree.GetRoot()), "3(0(,1(,2)),)");
    EXPECT_EQ(Depths(tree.GetRoot()), "3(2(,1(,0)),)");
}

TEST(BtreeShape, AscendingRunToFourThousand) {
    IntTree tree;
    for (int key = 1; key <= 4096; ++key) tree.InsertUnlessMember(key, key);
    EXPECT_EQ(Root(tree)->GetKey(), 1536);
    EXPECT_EQ(Root(tree)->GetMaxDepth(), 12);
    EXPECT_EQ(tree.GetCount(), 4096);
}

TEST(BtreeShape, RemovalThroughSuccessorWalkLeavesStaleDepth) {
    IntTree tree = Build({1, 2, 3, 6, 5, 4});
    ASSERT_EQ(Shape(tree.GetRoot()), "3(2(1,),6(5(4,),))");
    EXPECT_TRUE(tree.Remove(3));
    EXPECT_EQ(Shape(tree.GetRoot()), "4(2(1,),6(5,))");
    // Node 6 lay between the removed root and the successor's parent: its
    // depth is not recomputed and stays 2, though 1 would be exact.
    EXPECT_EQ(Depths(tree.GetRoot()), "3(1(0,),2(0,))");
    EXPECT_EQ(tree.GetCount(), 5);
    EXPECT_EQ(tree.ConstGet(5), 50);
}

TEST(BtreeShape, RemovalOfLeavesOneChildNodesAndRoot) {
    // A leaf: the parent gets a null link and a new depth.
    IntTree tree = Build({2, 1, 3, 4});
    ASSERT_EQ(Shape(tree.GetRoot()), "2(1,3(,4))");
    EXPECT_TRUE(tree.Remove(4));
    EXPECT_EQ(Shape(tree.GetRoot()), "2(1,3)");
    EXPECT_EQ(Depths(tree.GetRoot()), "1(0,0)");

    // A node with a left child only: the child takes its place.
    tree = Build({4, 2, 6, 1});
    EXPECT_TRUE(tree.Remove(2));
    EXPECT_EQ(Shape(tree.GetRoot()), "4(1,6)");

    // A right child only.
    tree = Build({4, 2, 6, 7});
    EXPECT_TRUE(tree.Remove(6));
    EXPECT_EQ(Shape(tree.GetRoot()), "4(2,7)");

    // The right child has no left child: it moves up with N's left subtree.
    tree = Build({4, 2, 6, 1, 3, 7});
    EXPECT_TRUE(tree.Remove(4));
    EXPECT_EQ(Shape(tree.GetRoot()), "6(2(1,3),7)");
    EXPECT_EQ(Depths(tree.GetRoot()), "2(1(0,0),0)");

    // A deeper successor: its old right subtree stays under its old parent.
    tree = Build({4, 2, 8, 1, 6, 9, 5, 7, 3});
    ASSERT_EQ(Shape(tree.GetRoot()), "4(2(1,3),8(6(5,7),9))");
    EXPECT_TRUE(tree.Remove(4));
    EXPECT_EQ(Shape(tree.GetRoot()), "5(2(1,3),8(6(,7),9))");
    EXPECT_TRUE(tree.Remove(5));
    EXPECT_EQ(Shape(tree.GetRoot()), "6(2(1,3),8(7,9))");

    // The root of a one-sided tree: the single child goes to the top and is
    // balanced there.
    tree = Build({1, 2, 3});
    EXPECT_TRUE(tree.Remove(1));
    EXPECT_EQ(Shape(tree.GetRoot()), "2(,3)");

    // The last element: the tree is as new, and works as new.
    tree = Build({7});
    EXPECT_TRUE(tree.Remove(7));
    EXPECT_EQ(tree.GetRoot(), nullptr);
    EXPECT_EQ(tree.GetCount(), 0);
    EXPECT_FALSE(tree.Remove(7));
    EXPECT_TRUE(tree.InsertUnlessMember(8, 80));
    EXPECT_EQ(Shape(tree.GetRoot()), "8");
    EXPECT_EQ(tree.GetCount(), 1);
}

TEST(BtreeShape, RotationDuringRemovalBalancesThePath) {
    // Below the root: the successor 3 replaces 2 and takes 5, whose depth 2 is
    // stale (1 is exact); the root balances its new child by that stale
    // depth, d = 2 - 0, and rotates 5 up.
    IntTree tree = Build({2, 5, 6, 8, 7, 4, 3, 1});
    ASSERT_EQ(Shape(tree.GetRoot()), "6(2(1,5(4(3,),)),8(7,))");
    EXPECT_TRUE(tree.Remove(2));
    EXPECT_EQ(Shape(tree.GetRoot()), "6(5(3(1,4),),8(7,))");
    EXPECT_EQ(Depths(tree.GetRoot()), "3(2(1(0,0),),1(0,))");

    // Removing from the light side lets the difference reach 2 at the top:
    // one single left rotation at the root.
    tree = Build({4, 2, 6, 1, 5, 7, 8});
    ASSERT_EQ(Shape(tree.GetRoot()), "4(2(1,),6(5,7(,8)))");
    EXPECT_TRUE(tree.Remove(1));
    EXPECT_EQ(Shape(tree.GetRoot()), "6(4(2,5),7(,8))");
    EXPECT_EQ(Depths(tree.GetRoot()), "2(1(0,0),1(,0))");
}

TEST(BtreeShape, PresentAndAbsentKeysChangeNothing) {
    IntTree tree = Build({1, 2, 3});
    std::string const depths = Depths(tree.GetRoot());
    EXPECT_FALSE(tree.InsertUnlessMember(3, 99));
    EXPECT_EQ(tree.ConstGet(3), 30) << "the old value stays";
    EXPECT_EQ(Depths(tree.GetRoot()), depths);
    EXPECT_FALSE(tree.Remove(5));
    EXPECT_FALSE(tree.Remove(0));
    EXPECT_EQ(tree.GetCount(), 3);
    EXPECT_EQ(Shape(tree.GetRoot()), "1(,2(,3))");

    IntTree empty;
    testing_support::AllocationScope scope;
    EXPECT_FALSE(empty.Remove(1));
    EXPECT_FALSE(empty.IsMember(1));
    EXPECT_EQ(empty.Get(1), nullptr);
    EXPECT_EQ(empty.ConstGet(1), 0);
    EXPECT_EQ(scope.News(), 0u);
}

TEST(BtreeShape, NodeOperationsOnAHandBuiltTree) {
    // The node class on its own: a root handle that the test keeps, as the
    // tree class would.
    IntTree::Handle* root = new IntTree::Handle(new IntNode(5, 50));
    IntNode& top = root->Get();
    EXPECT_TRUE(top.InsertUnlessMember(3, 30));
    EXPECT_TRUE(top.InsertUnlessMember(1, 10));
    EXPECT_FALSE(top.InsertUnlessMember(1, 11));
    EXPECT_EQ(top.Balance(root), nullptr) << "a leaf weighs 0: d = -1";
    EXPECT_TRUE(top.InsertUnlessMember(0, 0));
    // The node balances the child it came from, not itself.
    EXPECT_EQ(Shape(root), "5(3(1(0,),),)");
    IntTree::Handle* up = top.Balance(root);
    ASSERT_NE(up, nullptr) << "left side deeper by 2: one right rotation";
    EXPECT_EQ(Shape(up), "3(1(0,),5)");
    EXPECT_EQ(up->ConstGet()->GetRight(), root) << "the given link moves under the new top";
    EXPECT_EQ(Depths(up), "2(1(0,),0)");
    EXPECT_EQ(up->Get().Balance(up), nullptr);

    EXPECT_EQ(up->ConstGet()->ConstFind(5)->GetValue(), 50);
    EXPECT_EQ(up->ConstGet()->ConstFind(4), nullptr);
    EXPECT_EQ(up->Get().Find(1)->GetKey(), 1);
    delete up;
}

}  // namespace
