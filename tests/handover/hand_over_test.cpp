// cow_HandOver: the copy shares nothing with the source at any level, keeps
// the value (and the shape of trees and maps), changes no count of the
// source, and can be used on another thread while the sender goes on
// writing. The tsan preset runs every HandOver test.

#include "zorvancow/zorvancow.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "support/NoLeaks.h"

namespace {

// Hands `source` over. Whatever the value, the copy holds every heap piece
// (text, block, table, node, representation, counter) alone: its footprint
// has nothing that a value outside it holds too, the source included.
template <class V>
V HandedOver(V const& source) {
    V handed = cow_HandOver(source);
    EXPECT_EQ(cow_Footprint(&handed, &handed + 1).outsideBytes, 0u);
    return handed;
}

// Same shape, depths, keys and values, node by node.
using Tree = cow_Btree<cow_String, cow_String>;
void ExpectSameTree(Tree::Handle const* copy, Tree::Handle const* source) {
    ASSERT_EQ(copy == nullptr, source == nullptr);
    if (copy == nullptr) return;
    auto const *c = copy->ConstGet(), *s = source->ConstGet();
    EXPECT_TRUE(c->GetKey() == s->GetKey() && c->GetValue() == s->GetValue() && c->GetMaxDepth() == s->GetMaxDepth());
    ExpectSameTree(c->GetLeft(), s->GetLeft());
    ExpectSameTree(c->GetRight(), s->GetRight());
}

// Every test gives back all it allocated.
class HandOver : public ::testing::Test {
    testing_support::NoLeaks noLeaks;
};

TEST_F(HandOver, ArraysAndListsShareNoTableBlockOrText) {
    // A list grown at both ends, shared by a copy, with a default string
    // and an empty one among its elements.
    cow_List<cow_String> list;
    for (int i = 0; i < 40; ++i) list.Append(cow_String(std::to_string(i).c_str()));
    list.Prepend(cow_String());
    list.Prepend(cow_String(""));
    cow_List<cow_String> sharer = list;
    int const tableShares = list.GetArray().GetTableShareCount();
    int const textShares = list.ConstGet(5).GetShareCount();
    cow_List<cow_String> const handed = HandedOver(list);
    EXPECT_EQ(handed, list);
    for (int i : {0, 1}) EXPECT_EQ(handed.ConstGet(i).GetHeader() == nullptr, list.ConstGet(i).GetHeader() == nullptr);
    // The source's counts are where they were.
    EXPECT_EQ(list.GetArray().GetTableShareCount(), tableShares);
    EXPECT_EQ(list.ConstGet(5).GetShareCount(), textShares);

    // A sparse array keeps its holes and size; no block appears in the source.
    cow_1DArray<int> sparse(1000);
    sparse.Get(900) = 7;
    cow_1DArray<int> sparseCopy = sparse;
    cow_1DArray<int> const handedSparse = HandedOver(sparse);
    EXPECT_EQ(std::make_pair(handedSparse.GetSize(), handedSparse.PartialArrayConstGet(900)), std::make_pair(1000, 7));
    EXPECT_EQ(handedSparse.GetBlock(0), nullptr);
    EXPECT_EQ(sparse.GetBlock(0), nullptr);
    EXPECT_EQ(HandedOver(cow_1DArrayList<int>()).GetCount(), 0);
}

TEST_F(HandOver, ShapesAndHandlesGetTheirOwnRepresentation) {
    cow_FixedArray<cow_String> fixed(3, cow_String("f"));
    cow_FixedArray<cow_String> fixedSharer = fixed;
    EXPECT_TRUE(HandedOver(fixed) == fixed);
    EXPECT_EQ(fixed.GetShareCount(), 2);

    cow_2DArray<cow_String> matrix(2, 3, cow_String());
    matrix.Get(1, 2) = cow_String("m");
    auto const handedMatrix = HandedOver(matrix);
    ASSERT_EQ(std::make_pair(handedMatrix.GetRows(), handedMatrix.GetColumns()), std::make_pair(2, 3));
    for (int i = 0; i < 6; ++i) EXPECT_EQ(handedMatrix.ConstGet(i / 3, i % 3), matrix.ConstGet(i / 3, i % 3));

    cow_COW<cow_FixedArray<cow_String>> handle(fixed);
    cow_COW<cow_FixedArray<cow_String>> handleSharer = handle;
    EXPECT_TRUE(*HandedOver(handle).ConstGet() == fixed);
    cow_COW<int> none(static_cast<int*>(nullptr));
    EXPECT_EQ(HandedOver(none).ConstGet(), nullptr);
}

TEST_F(HandOver, TreesAndMapsKeepTheirExactShape) {
    // Ascending keys make the tree rotate; a rebuild by insertion in
    // another order would give another shape.
    Tree tree;
    for (int i = 0; i < 30; ++i) {
        std::string key = (i < 10 ? "k0" : "k") + std::to_string(i);
        tree.InsertUnlessMember(cow_String(key.c_str()), cow_String(("v" + key).c_str()));
    }
    Tree treeSharer = tree;
    tree.Get(cow_String("k07"));  // some nodes private, the rest shared with treeSharer
    Tree const handedTree = HandedOver(tree);
    EXPECT_EQ(handedTree.GetCount(), tree.GetCount());
    ExpectSameTree(handedTree.GetRoot(), tree.GetRoot());
    EXPECT_EQ(HandedOver(Tree()).GetRoot(), nullptr);

    // A map of lists, whose keys went through a removal (a key pulled up
    // a level): every key at the same depth, with an equal list.
    cow_Map<cow_String, cow_1DArrayList<cow_String>> map;
    cow_1DArrayList<cow_String> words{cow_String("w")};
    for (int i = 0; i < 40; ++i) map.Insert(cow_String(("key" + std::to_string(i * 7)).c_str()), words);
    map.Remove(cow_String("key0"));
    cow_Map<cow_String, cow_1DArrayList<cow_String>> mapSharer = map;
    auto const handedMap = HandedOver(map);
    EXPECT_EQ(handedMap.GetCount(), map.GetCount());
    EXPECT_EQ(map.GetRoot().GetShareCount(), 2);
    for (auto const& [key, value] : map) {
        EXPECT_EQ(handedMap.GetDepth(key), map.GetDepth(key)) << key;
        EXPECT_EQ(handedMap.ConstGet(key), value);
        EXPECT_EQ(handedMap.ConstGet(key).GetArray().GetTableShareCount(), 1) << "not shared among the copy's values either";
    }
}

// The point of it all: values go to other threads by cow_HandOver while the
// sender keeps copying and writing its own values, which share storage among
// themselves. Under ThreadSanitizer any count touched from two threads (the
// stand-ins' live counters too) shows as a race.
TEST_F(HandOver, HandedValuesWorkOnOtherThreadsWhileTheSenderWrites) {
    using Map = cow_Map<cow_String, cow_1DArrayList<cow_String>>;
    using Words = cow_Btree<cow_String, int>;
    using Table = cow_COW<omi_IntTable<cow_String>>;
    Map map;
    Words tree;
    Table table(new omi_IntTable<cow_String>());
    cow_String text("kept");
    cow_1DArrayList<cow_String> words;
    for (int i = 0; i < 50; ++i) {
        cow_String word(("w" + std::to_string(i)).c_str());
        words.Append(word);
        tree.InsertUnlessMember(word, i);
        table.Get().Insert((i - 25) * 4099, text);
    }
    for (int i = 0; i < 20; ++i) map.Insert(cow_String(("m" + std::to_string(i)).c_str()), words);
    // A handed table shares no block and no text with the sender's, not even
    // the text of a value that a removal left in place.
    cow_String const stale("stale");
    table.Get().Insert(1, stale);
    table.Get().Remove(1);
    Table const handed = cow_HandOver(table);
    EXPECT_EQ(stale.GetShareCount(), 2) << "held by the sender's table alone besides this one";
    for (int key : {-4099, 0, 4099 * 24}) {
        EXPECT_NE(handed.ConstGet()->FindBlock(key), table.ConstGet()->FindBlock(key));
        cow_String const* value = handed.ConstGet()->ConstGet(key);
        EXPECT_TRUE(*value == "kept" && value->GetShareCount() == 1) << key;
    }

    std::vector<std::thread> workers;
    std::vector<int> results(8, 0);
    for (int round = 0; round < 8; ++round) {
        // Each worker reads, copies and writes its values; the copies it
        // makes share storage with one another on its own thread. The map
        // goes across by value (std::thread moves it), the tree behind a pointer.
        workers.emplace_back(
            [&results, round](Map m, std::unique_ptr<Words> t, Table tab, cow_String s) {
                int total = 0;
                for (int k = 0; k < 20; ++k) {
                    Map copy = m;
                    cow_String key(("m" + std::to_string(k)).c_str());
                    total += copy.ConstGet(key).GetCount();
                    copy.Get(key).Append(key);
                    Words treeCopy = *t;
                    *treeCopy.Get(cow_String("w3")) += 1;
                    total += t->ConstGet(cow_String("w3"));
                    Table tableCopy = tab;
                    tableCopy.Get().Insert(k, s);
                    total += tableCopy.ConstGet()->GetCount() - tab.ConstGet()->GetCount();
                    omi_IntTable<int> base;
                    base.Insert(k, k);
                    atr_String bytes(s.GetCString());
                    cow_String again = s;
                    again = cow_String("other");
                }
                results[round] = total;
            },
            cow_HandOver(map), cow_HandOverPtr(tree), cow_HandOver(table), cow_HandOver(text));

        // Meanwhile the sender writes its own values and their copies.
        for (int k = 0; k < 20; ++k) {
            auto keep = map;
            map.Get(cow_String("m1")).Append(cow_String("more"));
            map.Get(cow_String("m1")).Remove(0);
            auto treeKeep = tree;
            *tree.Get(cow_String("w3")) = 3;
            words.Append(cow_String("x"));
            words.Pop();
            Table tableKeep = table;
            table.Get().Insert(1, cow_String("sender"));
            table.Get().Remove(1);
            text = cow_String(k % 2 ? "kept" : "changed");
        }
    }
    for (auto& worker : workers) worker.join();
    // 20 lookups of 50 words, 20 reads of w3 (3), and 20 new keys but 0, held already.
    for (int total : results) EXPECT_EQ(total, 20 * 50 + 20 * 3 + 19);
}

}  // namespace
