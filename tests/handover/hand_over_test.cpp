// cow_HandOver: the copy shares nothing with the source at any level, keeps
// the value (and the shape of trees and maps), changes no count of the
// source, and can be used on another thread while the sender goes on
// writing. The tsan preset runs every HandOver test.

#include "zorvancow/zorvancow.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "support/NoLeaks.h"

namespace {

// A handed-over string: same text, its own header (or none, as the source).
void ExpectOwnText(cow_String const& copy, cow_String const& source) {
    EXPECT_STREQ(copy.GetCString(), source.GetCString());
    EXPECT_EQ(copy.GetHeader() == nullptr, source.GetHeader() == nullptr);
    if (source.GetHeader() != nullptr) {
        EXPECT_NE(copy.GetHeader(), source.GetHeader());
        EXPECT_EQ(copy.GetShareCount(), 1);
    }
}

// Every block in use of a handed-over array is held by its table alone, and
// is absent exactly where the source's is.
template <class T>
void ExpectOwnBlocks(cow_1DArray<T> const& copy, cow_1DArray<T> const& source) {
    EXPECT_EQ(copy.GetTableShareCount(), 1);
    EXPECT_NE(copy.GetTableCounter(), source.GetTableCounter());
    int const first = copy.GetHeadPosition() >> copy.GetShift();
    int const stop = (copy.GetEndPosition() + (1 << copy.GetShift()) - 1) >> copy.GetShift();
    for (int slot = first; slot < stop; ++slot) {
        if (copy.GetBlock(slot) != nullptr) {
            EXPECT_EQ(copy.GetBlockCount(slot), 1) << "slot " << slot;
        }
    }
}

// Same shape, same depths, every node held by one handle, new texts.
using Tree = cow_Btree<cow_String, cow_String>;
void ExpectSameTree(Tree::Handle const* copy, Tree::Handle const* source) {
    ASSERT_EQ(copy == nullptr, source == nullptr);
    if (copy == nullptr) return;
    EXPECT_NE(copy->GetCounter(), source->GetCounter());
    EXPECT_EQ(copy->GetShareCount(), 1);
    auto const* c = copy->ConstGet();
    auto const* s = source->ConstGet();
    ExpectOwnText(c->GetKey(), s->GetKey());
    ExpectOwnText(c->GetValue(), s->GetValue());
    EXPECT_EQ(c->GetMaxDepth(), s->GetMaxDepth());
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

    cow_List<cow_String> handed = cow_HandOver(list);
    ASSERT_EQ(handed.GetCount(), list.GetCount());
    for (int i = 0; i < list.GetCount(); ++i) ExpectOwnText(handed.ConstGet(i), list.ConstGet(i));
    ExpectOwnBlocks(handed.GetArray(), list.GetArray());
    // The source's counts are where they were.
    EXPECT_EQ(list.GetArray().GetTableShareCount(), tableShares);
    EXPECT_EQ(list.ConstGet(5).GetShareCount(), textShares);

    // A sparse array keeps its holes and size; no block appears in the source.
    cow_1DArray<int> sparse(1000);
    sparse.Get(900) = 7;
    cow_1DArray<int> sparseCopy = sparse;
    cow_1DArray<int> handedSparse = cow_HandOver(sparse);
    EXPECT_EQ(handedSparse.GetSize(), 1000);
    EXPECT_EQ(handedSparse.GetBlock(0), nullptr);
    EXPECT_EQ(sparse.GetBlock(0), nullptr);
    EXPECT_EQ(handedSparse.PartialArrayConstGet(900), 7);
    ExpectOwnBlocks(handedSparse, sparse);

    EXPECT_EQ(cow_HandOver(cow_1DArrayList<int>()).GetCount(), 0);
}

TEST_F(HandOver, ShapesAndHandlesGetTheirOwnRepresentation) {
    cow_FixedArray<cow_String> fixed(3, cow_String("f"));
    cow_FixedArray<cow_String> fixedSharer = fixed;
    auto handedFixed = cow_HandOver(fixed);
    EXPECT_EQ(handedFixed.GetShareCount(), 1);
    EXPECT_EQ(fixed.GetShareCount(), 2);
    ASSERT_EQ(handedFixed.GetSize(), 3);
    for (int i = 0; i < 3; ++i) ExpectOwnText(handedFixed.ConstGet(i), fixed.ConstGet(i));

    cow_2DArray<cow_String> matrix(2, 3, cow_String());
    matrix.Get(1, 2) = cow_String("m");
    auto handedMatrix = cow_HandOver(matrix);
    EXPECT_NE(handedMatrix.GetRep(), matrix.GetRep());
    ASSERT_EQ(handedMatrix.GetRows(), 2);
    ASSERT_EQ(handedMatrix.GetColumns(), 3);
    for (int i = 0; i < 6; ++i) ExpectOwnText(handedMatrix.ConstGet(i / 3, i % 3), matrix.ConstGet(i / 3, i % 3));

    cow_COW<cow_FixedArray<cow_String>> handle(fixed);
    cow_COW<cow_FixedArray<cow_String>> handleSharer = handle;
    auto handedHandle = cow_HandOver(handle);
    EXPECT_EQ(handedHandle.GetShareCount(), 1);
    EXPECT_NE(handedHandle.ConstGet(), handle.ConstGet());
    EXPECT_EQ(handedHandle.ConstGet()->GetShareCount(), 1);
    ExpectOwnText(handedHandle.ConstGet()->ConstGet(0), fixed.ConstGet(0));

    cow_COW<int> none(static_cast<int*>(nullptr));
    auto handedNone = cow_HandOver(none);
    EXPECT_EQ(handedNone.ConstGet(), nullptr);
    EXPECT_NE(handedNone.GetCounter(), none.GetCounter());
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
    auto handedTree = cow_HandOver(tree);
    EXPECT_EQ(handedTree.GetCount(), tree.GetCount());
    ExpectSameTree(handedTree.GetRoot(), tree.GetRoot());
    EXPECT_EQ(cow_HandOver(Tree()).GetRoot(), nullptr);

    // A map of lists, whose keys went through a removal (a key pulled up
    // a level). Same node walk order and depths: every key in its place.
    cow_Map<cow_String, cow_1DArrayList<cow_String>> map;
    cow_1DArrayList<cow_String> words{cow_String("w")};
    for (int i = 0; i < 40; ++i) map.Insert(cow_String(("key" + std::to_string(i * 7)).c_str()), words);
    map.Remove(cow_String("key0"));
    cow_Map<cow_String, cow_1DArrayList<cow_String>> mapSharer = map;

    auto handedMap = cow_HandOver(map);
    EXPECT_EQ(handedMap.GetCount(), map.GetCount());
    EXPECT_EQ(map.GetRoot().GetShareCount(), 2);
    EXPECT_EQ(handedMap.GetRoot().GetShareCount(), 1);
    cow_ConstMapIterator<cow_String, cow_1DArrayList<cow_String>> walk(handedMap);
    cow_ConstMapIterator<cow_String, cow_1DArrayList<cow_String>> sourceWalk(map);
    for (walk.First(), sourceWalk.First(); !walk.IsDone(); walk.Next(), sourceWalk.Next()) {
        ASSERT_FALSE(sourceWalk.IsDone());
        ExpectOwnText(walk.CurrentKey(), sourceWalk.CurrentKey());
        EXPECT_EQ(handedMap.GetDepth(walk.CurrentKey()), map.GetDepth(sourceWalk.CurrentKey()));
        ExpectOwnText(walk.CurrentValue().ConstGet(0), words.ConstGet(0));
        ExpectOwnBlocks(walk.CurrentValue().GetArray(), words.GetArray());
    }
    EXPECT_TRUE(sourceWalk.IsDone());
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
        ExpectOwnText(*handed.ConstGet()->ConstGet(key), *table.ConstGet()->ConstGet(key));
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
