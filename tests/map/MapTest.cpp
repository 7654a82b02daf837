// The map itself: digits, shapes that follow from them, removal by pull-up,
// what a write copies, and absent keys.

#include <gtest/gtest.h>

#include <vector>

#include "map/MapTestSupport.h"
#include "support/AllocationCounter.h"
#include "zorvancow/map/cow_Map.h"
#include "zorvanstr/atr_String.h"

using map_test::SharedNodes;
using map_test::WalkKeys;
using testing_support::AllocationScope;

namespace {

std::vector<int> Digits(cow_String const& key, int depths) {
    std::vector<int> digits;
    for (int depth = 0; depth < depths; ++depth) digits.push_back(cow_KeyBit(key, depth));
    return digits;
}

template <class K, class V>
cow_Map<K, V> Build(std::vector<K> const& keys) {
    cow_Map<K, V> map;
    for (K const& key : keys) map.Insert(key, V(key * 10));
    return map;
}

}  // namespace

TEST(MapKeyBit, IntegerDigitsAreBitsFromTheLowEndSignIgnored) {
    EXPECT_EQ(cow_KeyBit(6, 0), 0);
    EXPECT_EQ(cow_KeyBit(6, 1), 1);
    EXPECT_EQ(cow_KeyBit(6, 2), 1);
    EXPECT_EQ(cow_KeyBit(-1, 31), 1);
    EXPECT_EQ(cow_KeyBit(0x80000000u, 31), 1);
    EXPECT_EQ(cow_KeyBit(0x7fffffff, 31), 0);
}

TEST(MapKeyBit, StringDigitsReadBothEndsInwardThenZeros) {
    EXPECT_EQ(Digits(cow_String("abc"), 6), (std::vector<int>{1, 1, 0, 0, 0, 0}));
    // Lowest bits a=1 b=0 c=1 e=1 f=0, read as c0 c4 c1 c3 c2 c2, then zeros.
    EXPECT_EQ(Digits(cow_String("abcef"), 8), (std::vector<int>{1, 0, 0, 1, 1, 1, 0, 0}));
    // Depth n reads byte n / 2 a second time.
    EXPECT_EQ(Digits(cow_String("ab"), 4), (std::vector<int>{1, 0, 0, 0}));
    EXPECT_EQ(Digits(cow_String(""), 3), (std::vector<int>{0, 0, 0}));
    EXPECT_EQ(Digits(cow_String(), 3), (std::vector<int>{0, 0, 0}));
    // Only the lowest bit counts: "1" and "a" (0x31, 0x61) are digit twins.
    EXPECT_EQ(Digits(cow_String("1"), 3), Digits(cow_String("a"), 3));
}

TEST(Map, EmptyMapAndFirstKey) {
    cow_Map<int, int> map;
    auto const* counter = map.GetRoot().GetCounter();
    EXPECT_FALSE(map.IsMember(0));
    EXPECT_FALSE(map.Remove(0));
    EXPECT_EQ(map.GetRoot().GetCounter(), counter);
    EXPECT_EQ(map.GetRoot().GetShareCount(), 1);

    EXPECT_TRUE(map.Insert(7, 70));
    EXPECT_EQ(map.GetCount(), 1);
    EXPECT_EQ(map.GetRoot().ConstGet()->key, 7);
    EXPECT_EQ(map.GetDepth(7), 0);

    // Removing the only key leaves a usable empty map.
    EXPECT_TRUE(map.Remove(7));
    EXPECT_EQ(map.GetCount(), 0);
    EXPECT_EQ(map.GetRoot().ConstGet(), nullptr);
    EXPECT_TRUE(map.Insert(8, 80));
    EXPECT_EQ(map.ConstGet(8), 80);
}

TEST(Map, InsertOnHeldKeyReplacesValueAndKeepsKeyObject) {
    cow_Map<cow_String, cow_String> map;
    cow_String first("key");
    map.Insert(first, cow_String("old"));
    cow_String second("key");
    ASSERT_NE(first.GetHeader(), second.GetHeader());
    EXPECT_TRUE(map.Insert(second, cow_String("new")));
    EXPECT_EQ(map.GetCount(), 1);
    EXPECT_STREQ(map.ConstGet(first).GetCString(), "new");
    EXPECT_EQ(map.GetRoot().ConstGet()->key.GetHeader(), first.GetHeader());

    // The empty text and the header-less value are one key.
    map.Insert(cow_String(""), cow_String("e"));
    EXPECT_TRUE(map.IsMember(cow_String()));
    map.Insert(cow_String(), cow_String("f"));
    EXPECT_EQ(map.GetCount(), 2);
    EXPECT_STREQ(map.ConstGet(cow_String("")).GetCString(), "f");
}

TEST(Map, ShapeFollowsDigitsAndRemovalPullsUpRightFirst) {
    auto map = Build<int, int>({0, 1, 2});
    auto const* root = map.GetRoot().ConstGet();
    EXPECT_EQ(root->key, 0);
    EXPECT_EQ(root->child[0].ConstGet()->key, 2);
    EXPECT_EQ(root->child[1].ConstGet()->key, 1);

    EXPECT_TRUE(map.Remove(0));
    root = map.GetRoot().ConstGet();
    EXPECT_EQ(root->key, 1);
    EXPECT_EQ(root->value, 10);
    EXPECT_EQ(root->child[1].ConstGet(), nullptr);
    EXPECT_EQ(root->child[0].ConstGet()->key, 2);
    EXPECT_EQ(map.GetCount(), 2);
    EXPECT_TRUE(map.IsMember(1));
    EXPECT_TRUE(map.IsMember(2));
    EXPECT_FALSE(map.IsMember(0));

    // With no right child the pull-up takes the left one, down to the leaf.
    auto chain = Build<int, int>({0, 2, 4});  // 2 below 0, 4 below 2, all on digit 0
    EXPECT_TRUE(chain.Remove(0));
    EXPECT_EQ(chain.GetDepth(2), 0);
    EXPECT_EQ(chain.GetDepth(4), 1);
    EXPECT_EQ(chain.ConstGet(4), 40);
}

TEST(Map, SingleBitKeysMakeAChainOf33Levels) {
    cow_Map<int, int> map;
    for (int bit = 0; bit < 32; ++bit) map.Insert(static_cast<int>(1u << bit), bit);
    map.Insert(0, -1);
    EXPECT_EQ(map.GetCount(), 33);
    for (int bit = 0; bit < 32; ++bit) EXPECT_EQ(map.GetDepth(static_cast<int>(1u << bit)), bit);
    EXPECT_EQ(map.GetDepth(0), 32);
    EXPECT_TRUE(map.IsMember(0));
    EXPECT_EQ(map.ConstGet(0), -1);
    // Nothing hangs off digit 1 anywhere.
    for (auto const* node = map.GetRoot().ConstGet(); node; node = node->child[0].ConstGet())
        EXPECT_EQ(node->child[1].ConstGet(), nullptr);

    // Removing the root moves every key one level up.
    EXPECT_TRUE(map.Remove(1));
    EXPECT_EQ(map.GetDepth(0), 31);
    EXPECT_EQ(map.GetDepth(2), 0);
    EXPECT_EQ(map.GetCount(), 32);

    cow_Map<unsigned int, int> unsignedMap;
    unsignedMap.Insert(0x80000000u, 1);
    unsignedMap.Insert(0u, 2);
    EXPECT_EQ(unsignedMap.GetDepth(0u), 1);
}

TEST(Map, StringKeysWithLikeDigitsStack) {
    cow_Map<cow_String, int> map;
    char const* keys[] = {"ab", "cd", "ef", "gh"};
    for (int i = 0; i < 4; ++i) map.Insert(cow_String(keys[i]), i);
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(map.GetDepth(cow_String(keys[i])), i) << keys[i];
        EXPECT_EQ(map.ConstGet(cow_String(keys[i])), i);
    }
    auto const* ab = map.GetRoot().ConstGet();
    auto const* cd = ab->child[1].ConstGet();
    ASSERT_NE(cd, nullptr);
    EXPECT_STREQ(cd->key.GetCString(), "cd");
    auto const* ef = cd->child[0].ConstGet();
    ASSERT_NE(ef, nullptr);
    EXPECT_STREQ(ef->key.GetCString(), "ef");
    ASSERT_NE(ef->child[0].ConstGet(), nullptr);
    EXPECT_STREQ(ef->child[0].ConstGet()->key.GetCString(), "gh");
    EXPECT_FALSE(map.IsMember(cow_String("ij")));
}

TEST(MapSharing, AWriteCopiesExactlyItsPath) {
    auto a = Build<int, int>({0, 1, 2, 3, 4, 5, 6, 7});
    cow_Map<int, int> b = a;
    EXPECT_EQ(a.GetRoot().GetShareCount(), 2);
    EXPECT_EQ(SharedNodes(a, b), 8);

    {
        // 6 lies at depth 2 (0, then 2, then 6): three node copies, each a node and a counter.
        AllocationScope scope;
        b.Insert(6, 66);
        EXPECT_EQ(scope.News(), 6u);
        EXPECT_EQ(scope.Deletes(), 0u);
    }
    EXPECT_EQ(SharedNodes(a, b), 5);
    EXPECT_EQ(a.ConstGet(6), 60);
    EXPECT_EQ(b.ConstGet(6), 66);
    EXPECT_EQ(a.GetRoot().GetShareCount(), 1);
    EXPECT_EQ(b.GetRoot().GetShareCount(), 1);

    {
        // The same path again is private already.
        AllocationScope scope;
        b.Get(6) = 67;
        b.Insert(2, 22);
        EXPECT_EQ(scope.News(), 0u);
    }

    // Get privatises the found node too; a new key adds one leaf.
    cow_Map<int, int> c = a;
    c.Get(4) = 44;
    EXPECT_EQ(SharedNodes(a, c), 5);
    EXPECT_EQ(a.ConstGet(4), 40);
    c.Insert(8, 80);  // 0 -> 2 -> 4 -> 8: 4 is private already
    EXPECT_EQ(SharedNodes(a, c), 5);
    EXPECT_EQ(a.GetCount(), 8);
    EXPECT_EQ(c.GetCount(), 9);
    EXPECT_FALSE(a.IsMember(8));
}

TEST(MapSharing, RemoveCopiesNothingItDoesNotHaveTo) {
    auto a = Build<int, int>({0, 1, 2, 3, 4, 5, 6, 7});
    cow_Map<int, int> b = a;
    {
        AllocationScope scope;
        EXPECT_FALSE(b.Remove(9));
        EXPECT_EQ(scope.News(), 0u);
        EXPECT_EQ(a.GetRoot().GetShareCount(), 2);
    }
    {
        // 7 is a leaf under 0 -> 1 -> 3: those three are copied, the leaf is
        // left to `a` and the emptied branch gets a counter of its own.
        auto const* leaf = a.GetRoot().ConstGet()->child[1].ConstGet()->child[1].ConstGet()->child[1].ConstGet();
        ASSERT_EQ(leaf->key, 7);
        AllocationScope scope;
        EXPECT_TRUE(b.Remove(7));
        EXPECT_EQ(scope.News(), 7u);
        EXPECT_EQ(scope.Deletes(), 0u);
        EXPECT_EQ(map_test::Nodes(a).count(leaf), 1u);
    }
    EXPECT_EQ(a.ConstGet(7), 70);
    EXPECT_EQ(a.GetCount(), 8);
    EXPECT_EQ(b.GetCount(), 7);
    EXPECT_FALSE(b.IsMember(7));
    EXPECT_EQ(SharedNodes(a, b), 4);

    // Removing an inner key copies the chain it pulls up, except the leaf cut at its end.
    cow_Map<int, int> c = a;
    EXPECT_TRUE(c.Remove(1));  // chain 1 -> 3 -> 7; root copied, 1 and 3 rewritten
    EXPECT_EQ(SharedNodes(a, c), 4);
    EXPECT_EQ(c.GetDepth(3), 1);
    EXPECT_EQ(c.GetDepth(7), 2);
    EXPECT_EQ(a.GetDepth(1), 1);
}

TEST(MapSharing, ReadingWalksLeaveCountsAndAllocateNothing) {
    cow_Map<cow_String, int> map;
    for (char const* key : {"x", "y", "zz", "w"}) map.Insert(cow_String(key), 1);
    cow_Map<cow_String, int> copy = map;
    std::vector<int> before;
    for (auto const* node : map_test::Nodes(map)) {
        before.push_back(node->child[0].GetShareCount());
        before.push_back(node->child[1].GetShareCount());
    }
    AllocationScope scope;
    EXPECT_TRUE(copy.IsMember(cow_String("zz")));
    EXPECT_FALSE(copy.IsMember(cow_String("q")));
    EXPECT_EQ(copy.ConstGet(cow_String("w")), 1);
    EXPECT_EQ(scope.News(), 0u);
    std::vector<int> after;
    for (auto const* node : map_test::Nodes(map)) {
        after.push_back(node->child[0].GetShareCount());
        after.push_back(node->child[1].GetShareCount());
    }
    EXPECT_EQ(before, after);
    EXPECT_EQ(map.GetRoot().GetShareCount(), 2);
}

TEST(Map, AbsentKeysGiveADefaultThatNoMapHolds) {
    cow_Map<int, cow_String> map;
    map.Insert(1, cow_String("one"));
    cow_Map<int, cow_String> copy = map;

    cow_String const& missing = map.ConstGet(2);
    EXPECT_TRUE((cow_Map<int, cow_String>::IsAbsent(missing)));
    EXPECT_EQ(missing.GetHeader(), nullptr);
    EXPECT_FALSE((cow_Map<int, cow_String>::IsAbsent(map.ConstGet(1))));

    cow_String& scratch = map.Get(3);
    EXPECT_TRUE((cow_Map<int, cow_String>::IsAbsent(scratch)));
    scratch = cow_String("written");
    EXPECT_EQ(map.GetCount(), 1);
    EXPECT_FALSE(map.IsMember(3));
    EXPECT_EQ(map.ConstGet(3).GetHeader(), nullptr);
    // Each miss starts from a fresh default.
    EXPECT_EQ(map.Get(4).GetHeader(), nullptr);
    EXPECT_FALSE((cow_Map<int, cow_String>::IsAbsent(map.Get(1))));
    EXPECT_STREQ(copy.ConstGet(1).GetCString(), "one");

    cow_Map<int, int> empty;
    EXPECT_EQ(empty.ConstGet(5), 0);
    empty.Get(5) = 9;
    EXPECT_EQ(empty.GetCount(), 0);
    EXPECT_EQ(empty.GetRoot().ConstGet(), nullptr);
}
