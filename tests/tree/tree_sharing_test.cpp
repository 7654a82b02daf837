// Sharing between trees: what a copy costs, exactly which nodes each write
// copies, that reads change no count, and values that are containers.

#include "zorvancow/tree/cow_Btree.h"

#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "support/AllocationCounter.h"

using testing_support::AllocationScope;

namespace {

using IntTree = cow_Btree<int, int>;
using IntNode = cow_BtreeNode<int, int>;

void Collect(IntTree::Handle const* link, std::vector<IntNode const*>& nodes) {
    if (link == nullptr) return;
    nodes.push_back(link->ConstGet());
    Collect(link->ConstGet()->GetLeft(), nodes);
    Collect(link->ConstGet()->GetRight(), nodes);
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

IntTree Build(std::vector<int> const& keys) {
    IntTree tree;
    for (int key : keys) tree.InsertUnlessMember(key, key * 10);
    return tree;
}

std::vector<int> const kSeven = {4, 2, 6, 1, 3, 5, 7};  // 4(2(1,3),6(5,7))

TEST(BtreeSharing, ACopyCostsOneHandleAndAnInsertCopiesItsPath) {
    IntTree a = Build(kSeven);
    AllocationScope scope;
    IntTree b(a);
    EXPECT_EQ(scope.News(), 1u) << "one handle, no node";
    EXPECT_EQ(b.GetRoot()->ConstGet(), a.GetRoot()->ConstGet());
    EXPECT_EQ(a.GetRoot()->GetShareCount(), 2);
    b.InsertUnlessMember(8, 80);
    // Nodes 4, 6 and 7 (node and counter each, plus handles for the four
    // children of 4 and 6), and the new leaf (handle, node, counter).
    EXPECT_EQ(scope.News(), 1u + 13u);
    EXPECT_EQ(scope.Deletes(), 0u);
    EXPECT_EQ(b.GetRoot()->ConstGet()->GetLeft()->GetShareCount(), 2) << "off the path, shared";
    // `a` is now the last holder of its old path: its writes copy nothing.
    *a.Get(7) = 7;
    EXPECT_EQ(scope.News(), 14u);
}

TEST(BtreeSharing, EachWriteToACopyMakesExactlyItsPathPrivate) {
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
    };
    for (Case const& row : cases) {
        IntTree source = Build(row.keys);
        std::vector<IntNode const*> const before = Nodes(source);
        IntTree copy = source;
        row.write(copy);
        EXPECT_EQ(PrivateKeys(copy, source), row.copied);
        EXPECT_EQ(Nodes(source), before) << "the source keeps every node";
        for (int key : row.keys) EXPECT_EQ(source.ConstGet(key), key * 10);
    }
}

TEST(BtreeSharing, ReadsChangeNoCount) {
    IntTree a = Build(kSeven);
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

// Stores `value`, copies the tree, applies `write` to the copy's value and
// checks with `probe` that only the copy sees it.
template <class K, class V, class Write, class Probe>
void ExpectValueWriteStaysInTheCopy(K const& key, V const& value, Write write, Probe probe) {
    cow_Btree<K, V> tree;
    tree.InsertUnlessMember(key, value);
    cow_Btree<K, V> copy = tree;
    write(*copy.Get(key));
    EXPECT_EQ(probe(tree.ConstGet(key)), probe(value));
    EXPECT_NE(probe(copy.ConstGet(key)), probe(value));
}

TEST(BtreeSharing, ContainerValuesAndTreesOfTrees) {
    cow_1DArrayList<int> list;
    list.Append(1);
    ExpectValueWriteStaysInTheCopy(5, list, [](auto& v) { v.Append(2); }, [](auto& v) { return v.GetCount(); });
    cow_List<atr_String> words;
    words.Append(atr_String("w"));
    ExpectValueWriteStaysInTheCopy(atr_String("k"), words, [](auto& v) { v.Append(atr_String("v")); },
                                   [](auto& v) { return v.GetCount(); });
    ExpectValueWriteStaysInTheCopy(cow_String("f"), cow_FixedArray<int>(3, 7), [](auto& v) { v.Get(0) = 9; },
                                   [](auto& v) { return v.ConstGet(0); });
    cow_1DArray<cow_String> line;
    line.Get(0) = cow_String("beta");
    ExpectValueWriteStaysInTheCopy(cow_String("w"), line, [](auto& v) { v.Get(0) = cow_String("gamma"); },
                                   [](auto& v) { return std::string(v.PartialArrayConstGet(0).GetCString()); });

    // A tree of trees shares at both levels: the copied outer node shares the
    // inner tree until the inner tree is written.
    IntTree inner = Build({0, 1, 2, 3, 4, 5, 6, 7});
    cow_Btree<cow_String, IntTree> outer;
    outer.InsertUnlessMember(cow_String("a"), inner);
    outer.InsertUnlessMember(cow_String("b"), inner);
    cow_Btree<cow_String, IntTree> copy = outer;
    IntTree* written = copy.Get(cow_String("a"));
    EXPECT_EQ(inner.GetRoot()->GetShareCount(), 4);
    written->Remove(5);
    EXPECT_FALSE(copy.ConstGet(cow_String("a")).IsMember(5));
    EXPECT_TRUE(outer.ConstGet(cow_String("a")).IsMember(5) && copy.ConstGet(cow_String("b")).IsMember(5));

    // Keys and values as lists, in key order, sharing what they hold.
    using Utils = cow_BtreeUtils<cow_String, IntTree>;
    EXPECT_EQ(Utils::cow_Keys(cow_Btree<cow_String, IntTree>()).GetCount(), 0);
    cow_List<cow_String> const keys = Utils::cow_Keys(copy);
    cow_List<IntTree> const values = Utils::cow_Values(copy);
    ASSERT_EQ(keys.GetCount() * 10 + values.GetCount(), 22);
    EXPECT_EQ(std::string(keys.ConstGet(0).GetCString()) + keys.ConstGet(1).GetCString(), "ab");
    EXPECT_EQ(values.ConstGet(1).GetRoot()->ConstGet(), inner.GetRoot()->ConstGet());
    EXPECT_EQ(values.ConstGet(0).GetCount(), 7);

    // Trees as list elements: a copied list shares each tree.
    cow_List<IntTree> forest;
    forest.Append(inner);
    cow_List<IntTree> forestCopy = forest;
    forestCopy.Get(0).Remove(1);
    EXPECT_EQ(forest.ConstGet(0).GetCount(), 8);
}

}  // namespace
