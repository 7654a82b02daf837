// Sharing between trees: what a copy costs, exactly which nodes each write
// copies, and values that are containers. (Walks are the interpreter's.)

#include "zorvancow/tree/cow_Btree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "support/AllocationCounter.h"

using testing_support::AllocationScope;

namespace {

using IntTree = cow_Btree<int, int>;
using IntNode = cow_BtreeNode<int, int>;

IntTree Build(std::vector<int> const& keys) {
    IntTree tree;
    for (int key : keys) tree.InsertUnlessMember(key, key * 10);
    return tree;
}

// Every node under `link` with the share count of its link, in pre-order.
std::vector<std::pair<IntNode const*, int>> Nodes(IntTree::Handle const* link) {
    if (link == nullptr) return {};
    std::vector<std::pair<IntNode const*, int>> nodes{{link->ConstGet(), link->GetShareCount()}};
    for (IntTree::Handle const* child : {link->ConstGet()->GetLeft(), link->ConstGet()->GetRight()})
        for (auto const& node : Nodes(child)) nodes.push_back(node);
    return nodes;
}

// Keys of the nodes of `tree` that `other` does not hold (by address).
std::set<int> PrivateKeys(IntTree const& tree, IntTree const& other) {
    std::set<IntNode const*> theirs;
    for (auto const& node : Nodes(other.GetRoot())) theirs.insert(node.first);
    std::set<int> keys;
    for (auto const& node : Nodes(tree.GetRoot()))
        if (theirs.count(node.first) == 0) keys.insert(node.first->GetKey());
    return keys;
}

std::vector<int> const kSeven = {4, 2, 6, 1, 3, 5, 7};  // 4(2(1,3),6(5,7))

TEST(BtreeSharing, ACopyCostsOneHandleAndAnInsertCopiesItsPath) {
    IntTree a = Build(kSeven);
    AllocationScope scope;
    IntTree b(a);
    EXPECT_EQ(scope.News(), 1u) << "one handle, no node";
    b.InsertUnlessMember(8, 80);
    // Nodes 4, 6 and 7 (node and counter each, plus handles for the four
    // children of 4 and 6), and the new leaf (handle, node, counter).
    EXPECT_EQ(scope.News(), 1u + 13u);
    EXPECT_EQ(scope.Deletes(), 0u);
    // `a` is now the last holder of its old path: its writes copy nothing.
    *a.Get(7) = 7;
    EXPECT_EQ(scope.News(), 14u);
}

TEST(BtreeSharing, EachWriteToACopyMakesExactlyItsPathPrivateAndReadsNothing) {
    struct Case {
        std::vector<int> keys;
        std::function<void(IntTree&)> write;
        std::set<int> copied;
    } const cases[] = {
        {kSeven, [](IntTree& t) { t.InsertUnlessMember(8, 0); }, {4, 6, 7, 8}},
        {kSeven, [](IntTree& t) { t.InsertUnlessMember(1, 0); }, {4, 2, 1}},  // present key
        {kSeven, [](IntTree& t) { EXPECT_EQ(t.Get(0), nullptr); }, {4, 2, 1}},  // missing key
        {kSeven, [](IntTree& t) { *t.Get(5) = 0; }, {4, 6, 5}},
        {kSeven, [](IntTree& t) { t.Remove(9); }, {4, 6, 7}},
        // A single child moving up is still shared: the node or the tree
        // that takes it in makes it private.
        {kSeven, [](IntTree& t) { t.Remove(1); }, {4, 2}},
        {kSeven, [](IntTree& t) { t.Remove(1), t.Remove(2); }, {4, 3}},
        {{1, 2}, [](IntTree& t) { t.Remove(1); }, {2}},
        // Reads copy nothing, allocate nothing and leave every count as it was.
        {kSeven, [](IntTree& t) { EXPECT_TRUE(t.IsMember(7) && !t.IsMember(8) && t.ConstGet(1) == 10 && t.ConstGet(0) == 0); }, {}},
    };
    for (Case const& row : cases) {
        IntTree source = Build(row.keys);
        IntTree copy = source;
        auto const before = Nodes(source.GetRoot());
        AllocationScope scope;
        row.write(copy);
        std::size_t const news = scope.News();
        EXPECT_EQ(PrivateKeys(copy, source), row.copied);
        auto const after = Nodes(source.GetRoot());
        EXPECT_TRUE(std::equal(before.begin(), before.end(), after.begin(), after.end(),
                               [](auto const& x, auto const& y) { return x.first == y.first; }))
            << "the source keeps every node";
        if (row.copied.empty()) {
            EXPECT_EQ(after, before);
            EXPECT_EQ(news, 0u);
        }
    }
}

// Values that are containers: the tree of trees stands for them all, as a
// node copies its value by the value's own copy constructor. What a write
// inside one leaves in the others is the interpreter's.
TEST(BtreeSharing, TreesOfTreesShareAtBothLevels) {
    // The copied outer node shares the inner tree until the inner tree is written.
    IntTree inner = Build({0, 1, 2, 3, 4, 5, 6, 7});
    cow_Btree<cow_String, IntTree> outer{{cow_String("a"), inner}, {cow_String("b"), inner}};
    cow_Btree<cow_String, IntTree> copy = outer;
    copy.Get(cow_String("a"));  // the outer node copied, the inner tree shared
    EXPECT_EQ(inner.GetRoot()->GetShareCount(), 4);

    // Listed values share their trees.
    cow_List<IntTree> const values = cow_BtreeUtils<cow_String, IntTree>::cow_Values(copy);
    EXPECT_EQ(values.ConstGet(1).GetRoot()->ConstGet(), inner.GetRoot()->ConstGet());
}

}  // namespace
