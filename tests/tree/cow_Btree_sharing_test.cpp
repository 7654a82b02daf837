// Sharing between trees: what a copy costs, what each write copies, and that
// the other trees never see it.

#include "zorvancow/tree/cow_Btree.h"

#include <gtest/gtest.h>

#include <set>
#include <vector>

#include "support/AllocationCounter.h"

using testing_support::AllocationScope;

namespace {

using IntTree = cow_Btree<int, int>;
using IntNode = cow_BtreeNode<int, int>;

// A value that counts its live instances, to see when nodes really go.
struct Tracked {
    static int live;
    int value;
    Tracked() : value(0) { ++live; }
    explicit Tracked(int v) : value(v) { ++live; }
    Tracked(Tracked const& other) : value(other.value) { ++live; }
    Tracked& operator=(Tracked const&) = default;
    ~Tracked() { --live; }
};
int Tracked::live = 0;

void Collect(IntTree::Handle const* link, std::vector<IntNode const*>& nodes) {
    if (link == nullptr) return;
    IntNode const* node = link->ConstGet();
    Collect(node->GetLeft(), nodes);
    nodes.push_back(node);
    Collect(node->GetRight(), nodes);
}

std::vector<IntNode const*> Nodes(IntTree const& tree) {
    std::vector<IntNode const*> nodes;
    Collect(tree.GetRoot(), nodes);
    return nodes;
}

// Keys of the nodes of `tree` that `other` does not hold (by address).
std::set<int> PrivateKeys(IntTree const& tree, IntTree const& other) {
    std::vector<IntNode const*> const theirs = Nodes(other);
    std::set<IntNode const*> const shared(theirs.begin(), theirs.end());
    std::set<int> keys;
    for (IntNode const* node : Nodes(tree))
        if (shared.count(node) == 0) keys.insert(node->GetKey());
    return keys;
}

std::vector<int> Keys(IntTree const& tree) {
    std::vector<int> keys;
    cow_BtreeIterator<int, int> it(tree);
    for (it.First(); !it.IsDone(); it.Next()) keys.push_back(it.CurrentKey());
    return keys;
}

IntTree Seven() {
    IntTree tree;
    for (int key : {4, 2, 6, 1, 3, 5, 7}) tree.InsertUnlessMember(key, key * 10);
    return tree;
}

TEST(BtreeSharing, CopyCostsOneHandleAndOneCount) {
    IntTree a = Seven();
    IntNode const* top = a.GetRoot()->ConstGet();
    AllocationScope scope;
    IntTree b(a);
    EXPECT_EQ(scope.News(), 1u) << "one handle, no node";
    EXPECT_NE(b.GetRoot(), a.GetRoot()) << "each tree owns its root handle";
    EXPECT_EQ(b.GetRoot()->ConstGet(), top);
    EXPECT_EQ(a.GetRoot()->GetShareCount(), 2);
    EXPECT_EQ(b.GetCount(), 7);

    IntTree* c = b.Copy();
    EXPECT_EQ(c->GetRoot()->ConstGet(), top);
    EXPECT_EQ(a.GetRoot()->GetShareCount(), 3);
    delete c;
    EXPECT_EQ(a.GetRoot()->GetShareCount(), 2);
}

TEST(BtreeSharing, InsertIntoACopyCopiesExactlyItsPath) {
    IntTree a = Seven();
    ASSERT_EQ(a.GetRoot()->ConstGet()->GetKey(), 4);
    std::vector<IntNode const*> const before = Nodes(a);
    IntTree b = a;

    AllocationScope scope;
    EXPECT_TRUE(b.InsertUnlessMember(8, 80));
    // Nodes 4, 6 and 7 copied (node and counter each, plus new handles for
    // the four children of 4 and 6), and the new leaf (handle, node, counter).
    EXPECT_EQ(scope.News(), 13u);
    EXPECT_EQ(scope.Deletes(), 0u);
    EXPECT_EQ(PrivateKeys(b, a), (std::set<int>{4, 6, 7, 8}));

    EXPECT_EQ(Nodes(a), before) << "the source keeps every node";
    EXPECT_EQ(Keys(a), (std::vector<int>{1, 2, 3, 4, 5, 6, 7}));
    EXPECT_EQ(a.GetCount(), 7);
    EXPECT_EQ(Keys(b), (std::vector<int>{1, 2, 3, 4, 5, 6, 7, 8}));
    EXPECT_EQ(a.GetRoot()->GetShareCount(), 1);
    EXPECT_EQ(b.GetRoot()->GetShareCount(), 1);
    // Off the path, each node is named from both trees.
    EXPECT_EQ(b.GetRoot()->ConstGet()->GetLeft()->GetShareCount(), 2);
    EXPECT_EQ(a.GetRoot()->ConstGet()->GetRight()->ConstGet()->GetLeft()->GetShareCount(), 2);

    // A present key still makes its path private, and adds nothing.
    IntTree c = a;
    EXPECT_FALSE(c.InsertUnlessMember(1, 11));
    EXPECT_EQ(PrivateKeys(c, a), (std::set<int>{4, 2, 1}));
    EXPECT_EQ(c.ConstGet(1), 10);
    EXPECT_EQ(c.GetCount(), 7);
}

TEST(BtreeSharing, WriteAccessUnsharesEvenWhenTheKeyIsMissing) {
    IntTree a = Seven();
    IntTree b = a;
    EXPECT_EQ(b.Get(0), nullptr);
    EXPECT_EQ(PrivateKeys(b, a), (std::set<int>{4, 2, 1}));

    int* value = b.Get(5);
    ASSERT_NE(value, nullptr);
    *value = 555;
    EXPECT_EQ(b.ConstGet(5), 555);
    EXPECT_EQ(a.ConstGet(5), 50);

    // The other tree is now the last holder of its old path: its own write
    // access finds counts of 1 and copies nothing.
    std::vector<IntNode const*> const before = Nodes(a);
    AllocationScope scope;
    *a.Get(5) = 5;
    *a.Get(1) = 1;
    EXPECT_EQ(scope.News(), 0u);
    EXPECT_EQ(Nodes(a), before);
    EXPECT_EQ(b.ConstGet(1), 10);
}

TEST(BtreeSharing, ReadsChangeNoCount) {
    IntTree a = Seven();
    IntTree b = a;
    auto counts = [&] {
        std::vector<int> found;
        for (IntNode const* node : Nodes(a))
            for (IntTree::Handle const* child : {node->GetLeft(), node->GetRight()})
                if (child != nullptr) found.push_back(child->GetShareCount());
        return found;
    };
    std::vector<int> const before = counts();
    AllocationScope scope;
    for (int key = 0; key <= 8; ++key) {
        EXPECT_EQ(b.IsMember(key), key >= 1 && key <= 7);
        EXPECT_EQ(b.ConstGet(key), key >= 1 && key <= 7 ? key * 10 : 0);
    }
    EXPECT_EQ(scope.News(), 0u);
    EXPECT_EQ(counts(), before);
    EXPECT_EQ(a.GetRoot()->GetShareCount(), 2);
}

TEST(BtreeSharing, RemoveFromACopyLeavesTheOtherTree) {
    IntTree a = Seven();
    std::vector<IntNode const*> const before = Nodes(a);
    IntTree b = a;
    EXPECT_FALSE(b.Remove(9)) << "absent key";
    EXPECT_EQ(PrivateKeys(b, a), (std::set<int>{4, 6, 7}));
    EXPECT_EQ(b.GetCount(), 7);

    for (int key : {4, 2, 6}) EXPECT_TRUE(b.Remove(key));
    EXPECT_EQ(Keys(b), (std::vector<int>{1, 3, 5, 7}));
    EXPECT_EQ(b.GetCount(), 4);
    EXPECT_EQ(Nodes(a), before);
    EXPECT_EQ(Keys(a), (std::vector<int>{1, 2, 3, 4, 5, 6, 7}));
    for (int key = 1; key <= 7; ++key) EXPECT_EQ(a.ConstGet(key), key * 10);

    // A single child that moves up is still shared with the other tree; the
    // node that takes it in (or the tree, at the top) makes it private.
    b = a;
    EXPECT_TRUE(b.Remove(1));
    EXPECT_EQ(PrivateKeys(b, a), (std::set<int>{4, 2}));
    EXPECT_TRUE(b.Remove(2));
    EXPECT_EQ(PrivateKeys(b, a), (std::set<int>{4, 3}));
    IntTree pair;
    pair.InsertUnlessMember(1, 10);
    pair.InsertUnlessMember(2, 20);
    IntTree pairCopy = pair;
    EXPECT_TRUE(pairCopy.Remove(1));
    EXPECT_EQ(PrivateKeys(pairCopy, pair), (std::set<int>{2}));
    EXPECT_EQ(pair.GetRoot()->ConstGet()->GetRight()->GetShareCount(), 1);
    EXPECT_EQ(Nodes(a), before);
}

TEST(BtreeSharing, AssignmentInItsThreeCasesReleasesWhatNoOneHolds) {
    Tracked::live = 0;
    {
        using TrackedTree = cow_Btree<int, Tracked>;
        TrackedTree filled, empty;
        for (int key = 0; key < 10; ++key) filled.InsertUnlessMember(key, Tracked(key));
        filled = filled;
        EXPECT_EQ(filled.GetCount(), 10);
        EXPECT_EQ(filled.GetRoot()->GetShareCount(), 1);

        // Empty into filled: the old nodes go once nothing else holds them.
        TrackedTree other = filled;
        int const defaults = 3;
        filled = empty;
        EXPECT_EQ(filled.GetRoot(), nullptr);
        EXPECT_EQ(filled.GetCount(), 0);
        EXPECT_EQ(Tracked::live, 10 + defaults) << "the copy still holds the nodes";
        other = empty;
        EXPECT_EQ(Tracked::live, defaults);

        // Filled into empty, then a write to each side.
        TrackedTree source;
        source.InsertUnlessMember(1, Tracked(1));
        source.InsertUnlessMember(2, Tracked(2));
        filled = source;
        EXPECT_EQ(filled.GetRoot()->ConstGet(), source.GetRoot()->ConstGet());
        filled.Get(2)->value = 20;
        source.InsertUnlessMember(3, Tracked(3));
        EXPECT_EQ(source.ConstGet(2).value, 2);
        EXPECT_EQ(filled.ConstGet(2).value, 20);
        EXPECT_FALSE(filled.IsMember(3));

        // Both filled: between trees already on one root, and then away from it.
        other = source;
        TrackedTree third = source;
        other = third;
        EXPECT_EQ(source.GetRoot()->GetShareCount(), 3);
        int const liveBefore = Tracked::live;
        third = filled;
        other = filled;
        EXPECT_EQ(Tracked::live, liveBefore);
        source = filled;
        EXPECT_LT(Tracked::live, liveBefore) << "the last holder released its nodes";
        EXPECT_EQ(source.ConstGet(2).value, 20);
    }
    EXPECT_EQ(Tracked::live, 0);
}

TEST(BtreeSharing, TreesOfTreesShareAtBothLevels) {
    using Inner = cow_Btree<int, int>;
    cow_Btree<cow_String, Inner> outer;
    Inner inner;
    for (int key = 0; key < 100; ++key) inner.InsertUnlessMember(key, key);
    outer.InsertUnlessMember(cow_String("a"), inner);
    outer.InsertUnlessMember(cow_String("b"), inner);
    EXPECT_EQ(inner.GetRoot()->GetShareCount(), 3);

    cow_Btree<cow_String, Inner> copy = outer;
    Inner* written = copy.Get(cow_String("a"));
    ASSERT_NE(written, nullptr);
    EXPECT_EQ(inner.GetRoot()->GetShareCount(), 4) << "the copied outer node shares the inner tree";
    written->Remove(50);

    EXPECT_FALSE(copy.ConstGet(cow_String("a")).IsMember(50));
    EXPECT_TRUE(outer.ConstGet(cow_String("a")).IsMember(50));
    EXPECT_TRUE(copy.ConstGet(cow_String("b")).IsMember(50));
    EXPECT_TRUE(inner.IsMember(50));
    EXPECT_EQ(copy.ConstGet(cow_String("a")).GetCount(), 99);
    EXPECT_EQ(copy.ConstGet(cow_String("zz")).GetCount(), 0);
}

}  // namespace
