// Node walks and sorted walks: exact orders, snapshots, and what the
// iterators hold and free.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "map/MapTestSupport.h"
#include "support/AllocationCounter.h"
#include "zorvancow/map/cow_Map.h"
#include "zorvanstr/atr_String.h"

using map_test::Walk;
using map_test::WalkKeys;

namespace {

template <class K>
cow_Map<K, int> Build(std::vector<K> const& keys) {
    cow_Map<K, int> map;
    for (K const& key : keys) map.Insert(key, static_cast<int>(key) * 10);
    return map;
}

cow_Map<cow_String, float> Strings(std::vector<char const*> const& keys) {
    cow_Map<cow_String, float> map;
    for (char const* key : keys) map.Insert(cow_String(key), 1.0f);
    return map;
}

using Texts = std::vector<std::string>;

}  // namespace

TEST(MapIterator, WalksInPreOrderOfTheDigitTree) {
    EXPECT_EQ(WalkKeys(Build<int>({5, 3, 6, 1, 7, 2, 4, 0})), (std::vector<int>{5, 6, 4, 0, 2, 3, 1, 7}));
    EXPECT_EQ(WalkKeys(Build<int>({0, 1, 2, 3, 4, 5, 6, 7})), (std::vector<int>{0, 2, 4, 6, 1, 5, 3, 7}));
    EXPECT_EQ(WalkKeys(Build<int>({1, 2, 4})), (std::vector<int>{1, 2, 4}));
    EXPECT_EQ(WalkKeys(Build<int>({4, 1, 2})), (std::vector<int>{4, 2, 1}));

    auto map = Build<int>({0, 1, 2});
    EXPECT_EQ(WalkKeys(map), (std::vector<int>{0, 2, 1}));
    map.Remove(0);
    EXPECT_EQ(WalkKeys(map), (std::vector<int>{1, 2}));

    // Values come with their keys.
    cow_ConstMapIterator<int, int> it(map);
    for (it.First(); !it.IsDone(); it.Next()) EXPECT_EQ(it.CurrentValue(), it.CurrentKey() * 10);
}

TEST(MapIterator, EmptyOneEntryAndTheEndMark) {
    cow_Map<int, int> empty;
    cow_ConstMapIterator<int, int> none(empty);
    EXPECT_TRUE(none.IsDone());  // before First as well
    none.Next();
    none.First();
    EXPECT_TRUE(none.IsDone());
    none.Next();
    EXPECT_TRUE(none.IsDone());

    cow_Map<int, int> one;
    one.Insert(3, 30);
    cow_ConstMapIterator<int, int> it(one);
    it.First();
    ASSERT_FALSE(it.IsDone());
    EXPECT_EQ(it.CurrentKey(), 3);
    it.Next();
    EXPECT_TRUE(it.IsDone());
    it.Next();
    EXPECT_TRUE(it.IsDone());
    // First again starts over.
    it.First();
    EXPECT_FALSE(it.IsDone());
    EXPECT_EQ(it.CurrentValue(), 30);
}

TEST(MapIterator, WalksItsSnapshotWhileTheMapChanges) {
    auto map = Build<int>({5, 3, 6, 1, 7, 2, 4, 0});
    cow_ConstMapIterator<int, int> it(map);
    EXPECT_EQ(map.GetRoot().GetShareCount(), 2);
    std::vector<int> keys, values;
    for (it.First(); !it.IsDone(); it.Next()) {
        int const key = it.CurrentKey();
        map.Remove(key);  // the entry under the walk, inside the loop
        map.Insert(key + 100, 0);
        keys.push_back(it.CurrentKey());
        values.push_back(it.CurrentValue());
    }
    EXPECT_EQ(keys, (std::vector<int>{5, 6, 4, 0, 2, 3, 1, 7}));
    EXPECT_EQ(values, (std::vector<int>{50, 60, 40, 0, 20, 30, 10, 70}));
    EXPECT_EQ(map.GetCount(), 8);
    EXPECT_FALSE(map.IsMember(5));

    // A second First gives the snapshot again, in the same order.
    EXPECT_EQ(Walk(it), keys);
    EXPECT_EQ(it.GetMap().GetCount(), 8);
    EXPECT_TRUE(it.GetMap().IsMember(5));
}

TEST(MapIterator, HoldsTheTreeAndFreesWhatOnlyItHeld) {
    long const textsAtStart = atr_GetLiveTexts();
    {
        cow_Map<int, cow_String> map;
        map.Insert(1, cow_String("one"));
        map.Insert(2, cow_String("two"));
        {
            cow_ConstMapIterator<int, cow_String> it(map);
            it.First();
            EXPECT_EQ(map.GetRoot().GetShareCount(), 2);
        }
        // Nothing written: the root count is back.
        EXPECT_EQ(map.GetRoot().GetShareCount(), 1);

        auto* it = new cow_ConstMapIterator<int, cow_String>(map);
        it->First();
        map.Remove(2);
        map.Get(1) = cow_String("uno");
        EXPECT_EQ(atr_GetLiveTexts(), textsAtStart + 3);  // "two" and "one" live on in the snapshot
        delete it;
        EXPECT_EQ(atr_GetLiveTexts(), textsAtStart + 1);
        EXPECT_EQ(map.GetRoot().GetShareCount(), 1);

        // The map goes first; the iterator walks on and frees the tree.
        auto* map2 = new cow_Map<int, cow_String>(map);
        map2->Insert(7, cow_String("seven"));
        auto* last = new cow_ConstMapIterator<int, cow_String>(*map2);
        delete map2;
        EXPECT_EQ(Walk(*last), (std::vector<int>{1, 7}));
        delete last;
        EXPECT_EQ(atr_GetLiveTexts(), textsAtStart + 1);
        EXPECT_EQ(map.GetRoot().GetShareCount(), 1);
    }
    EXPECT_EQ(atr_GetLiveTexts(), textsAtStart);
}

TEST(MapSortedIt, StringKeysSortByBytesWhateverTheNaturalOrder) {
    auto map = Strings({"b", "ab", "a"});
    cow_ConstMapSortedIt<cow_String, float> up(map);
    EXPECT_EQ(Walk(up), (Texts{"a", "ab", "b"}));
    cow_ConstMapSortedIt<cow_String, float> down(map, true);
    EXPECT_EQ(Walk(down), (Texts{"b", "ab", "a"}));
    auto other = Strings({"a", "b", "ab"});
    cow_ConstMapSortedIt<cow_String, float> again(other);
    EXPECT_EQ(Walk(again), (Texts{"a", "ab", "b"}));

    auto bytes = Strings({"z", "\xE4x", "a", "Z"});
    cow_ConstMapSortedIt<cow_String, float> byBytes(bytes);
    EXPECT_EQ(Walk(byBytes), (Texts{"Z", "a", "z", "\xE4x"}));

    atr_setNaturalOrder(1);
    auto numbered = Strings({"a9", "a10"});
    cow_ConstMapSortedIt<cow_String, float> natural(numbered);
    Texts const walked = Walk(natural);
    atr_setNaturalOrder(0);
    EXPECT_EQ(walked, (Texts{"a10", "a9"}));

    cow_Map<cow_String, cow_String> empty;
    cow_ConstMapSortedIt<cow_String, cow_String> none(empty);
    none.First();
    EXPECT_TRUE(none.IsDone());
}

TEST(MapSortedIt, IntegerKeysSortAsSignedNumbers) {
    auto map = Build<int>({1, -1, 0});
    EXPECT_EQ(WalkKeys(map), (std::vector<int>{1, 0, -1}));  // the node walk differs
    cow_ConstMapSortedIt<int, int> up(map);
    EXPECT_EQ(Walk(up), (std::vector<int>{-1, 0, 1}));
    cow_ConstMapSortedIt<int, int> down(map, true);
    EXPECT_EQ(Walk(down), (std::vector<int>{1, 0, -1}));
    // First again sorts the same snapshot again.
    map.Insert(-5, 0);
    EXPECT_EQ(Walk(up), (std::vector<int>{-1, 0, 1}));
    for (up.First(); !up.IsDone(); up.Next()) EXPECT_EQ(up.CurrentValue(), up.CurrentKey() * 10);

    cow_Map<unsigned int, int> unsignedKeys;
    for (unsigned key : {0x80000000u, 3u, 0u}) unsignedKeys.Insert(key, 0);
    cow_ConstMapSortedIt<unsigned int, int> plain(unsignedKeys);
    EXPECT_EQ(Walk(plain), (std::vector<unsigned>{0u, 3u, 0x80000000u}));
}

TEST(MapSortedIt, ComparisonsLookAtKeysOnlyAndGiveUnitResults) {
    using Node = cow_MapNode<cow_String, float>;
    using It = cow_ConstMapSortedIt<cow_String, float>;
    Node a(cow_String("a"), 2.0f), z(cow_String("z"), 2.0f), a2(cow_String("a"), 9.0f);
    Node const *pa = &a, *pz = &z, *pa2 = &a2;
    EXPECT_EQ(It::AscSortCmp(&pa, &pz), -1);
    EXPECT_EQ(It::AscSortCmp(&pz, &pa), 1);
    EXPECT_EQ(It::AscSortCmp(&pa, &pa2), 0);
    EXPECT_EQ(It::DescSortCmp(&pa, &pz), 1);
    EXPECT_EQ(It::DescSortCmp(&pz, &pa), -1);
    EXPECT_EQ(It::DescSortCmp(&pa, &pa2), 0);
}
