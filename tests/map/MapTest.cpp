// The map: digits, shapes that follow from them, removal by pull-up, what a
// write copies, absent keys, and the exact orders of the two walks.

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <thread>
#include <vector>

#include "support/AllocationCounter.h"
#include "zorvancow/core/cow_Lifecycle.h"
#include "zorvancow/map/cow_Map.h"
#include "zorvanmem/mem_Heap.h"
#include "zorvanstr/atr_String.h"

using testing_support::AllocationScope;

namespace {

std::string Text(cow_String const& s) { return s.GetCString(); }
int Text(int i) { return i; }

template <class Iterator>
auto Walk(Iterator& it) {
    std::vector<decltype(Text(it.CurrentKey()))> keys;
    for (it.First(); !it.IsDone(); it.Next()) keys.push_back(Text(it.CurrentKey()));
    return keys;
}

template <class K, class V>
auto WalkKeys(cow_Map<K, V> const& map) {
    cow_ConstMapIterator<K, V> it(map);
    return Walk(it);
}

cow_Map<int, int> Build(std::vector<int> const& keys) {
    cow_Map<int, int> map;
    for (int key : keys) map.Insert(key, key * 10);
    return map;
}

template <class Node>
void Nodes(cow_COW<Node> const& link, std::set<Node const*>& into) {
    if (Node const* node = link.ConstGet()) {
        into.insert(node);
        Nodes(node->child[0], into);
        Nodes(node->child[1], into);
    }
}

// How many nodes of `a` are nodes of `b` too.
int SharedNodes(cow_Map<int, int> const& a, cow_Map<int, int> const& b) {
    std::set<cow_MapNode<int, int> const*> inA, inB;
    Nodes(a.GetRoot(), inA);
    Nodes(b.GetRoot(), inB);
    int shared = 0;
    for (auto const* node : inA) shared += static_cast<int>(inB.count(node));
    return shared;
}

std::vector<int> Digits(char const* key) {
    std::vector<int> digits;
    for (int depth = 0; depth < 8; ++depth) digits.push_back(cow_KeyBit(cow_String(key), depth));
    return digits;
}

}  // namespace

TEST(Map, KeyDigits) {
    EXPECT_EQ(cow_KeyBit(6, 0) * 100 + cow_KeyBit(6, 1) * 10 + cow_KeyBit(6, 2), 11);
    EXPECT_EQ(cow_KeyBit(-1, 31), 1);
    EXPECT_EQ(cow_KeyBit(0x7fffffff, 31), 0);
    EXPECT_EQ(Digits("abc"), (std::vector<int>{1, 1, 0, 0, 0, 0, 0, 0}));
    // Lowest bits a=1 b=0 c=1 e=1 f=0, read as c0 c4 c1 c3 c2 c2, then zeros.
    EXPECT_EQ(Digits("abcef"), (std::vector<int>{1, 0, 0, 1, 1, 1, 0, 0}));
    EXPECT_EQ(Digits(""), std::vector<int>(8, 0));
    EXPECT_EQ(cow_KeyBit(cow_String(), 0), 0);
}

TEST(Map, InsertRemoveAndThePullUp) {
    cow_Map<int, int> empty;
    EXPECT_FALSE(empty.IsMember(0));
    EXPECT_FALSE(empty.Remove(0));
    EXPECT_TRUE(empty.Insert(7, 70));
    EXPECT_TRUE(empty.Remove(7));
    EXPECT_EQ(empty.GetRoot().ConstGet(), nullptr);
    EXPECT_TRUE(empty.Insert(8, 80));
    EXPECT_EQ(empty.GetCount(), 1);

    auto map = Build({0, 1, 2});
    EXPECT_EQ(WalkKeys(map), (std::vector<int>{0, 2, 1}));
    EXPECT_TRUE(map.Remove(0));
    auto const* root = map.GetRoot().ConstGet();
    EXPECT_EQ(root->key * 100 + root->value, 110);
    EXPECT_EQ(root->child[1].ConstGet(), nullptr);
    EXPECT_EQ(root->child[0].ConstGet()->key, 2);
    EXPECT_EQ(map.GetCount(), 2);
    EXPECT_EQ(WalkKeys(map), (std::vector<int>{1, 2}));

    // Single-bit keys, then 0: a chain of 33 nodes on digit 0.
    cow_Map<int, int> chain;
    for (int bit = 0; bit < 32; ++bit) chain.Insert(static_cast<int>(1u << bit), bit);
    chain.Insert(0, -1);
    EXPECT_EQ(chain.GetDepth(0), 32);
    EXPECT_EQ(chain.GetDepth(1 << 30), 30);
    EXPECT_EQ(chain.ConstGet(0), -1);
    EXPECT_TRUE(chain.Remove(1));  // no right child anywhere: all move up one level
    EXPECT_EQ(chain.GetDepth(0), 31);
    EXPECT_EQ(chain.GetDepth(2), 0);
    EXPECT_EQ(chain.GetCount(), 32);
}

TEST(Map, StringKeys) {
    cow_Map<cow_String, cow_String> map;
    char const* keys[] = {"ab", "cd", "ef", "gh"};  // all with digits 1, 0, 0, 0...
    for (char const* key : keys) map.Insert(cow_String(key), cow_String(key));
    for (int i = 0; i < 4; ++i) EXPECT_EQ(map.GetDepth(cow_String(keys[i])), i);
    auto const* cd = map.GetRoot().ConstGet()->child[1].ConstGet();
    EXPECT_EQ(Text(cd->key), "cd");
    EXPECT_EQ(Text(cd->child[0].ConstGet()->key), "ef");
    EXPECT_EQ(Text(cd->child[0].ConstGet()->child[0].ConstGet()->key), "gh");
    EXPECT_FALSE(map.IsMember(cow_String("ij")));

    // A held key keeps its key object; the value is replaced.
    cow_String again("cd");
    EXPECT_TRUE(map.Insert(again, cow_String("new")));
    EXPECT_EQ(map.GetCount(), 4);
    EXPECT_NE(cd->key.GetHeader(), again.GetHeader());
    EXPECT_EQ(Text(map.ConstGet(again)), "new");

    // The empty text and the header-less value are one key.
    map.Insert(cow_String(""), cow_String("e"));
    map.Insert(cow_String(), cow_String("f"));
    EXPECT_EQ(map.GetCount(), 5);
    EXPECT_EQ(Text(map.ConstGet(cow_String(""))), "f");
}

TEST(Map, AWriteCopiesExactlyItsPath) {
    auto a = Build({0, 1, 2, 3, 4, 5, 6, 7});
    cow_Map<int, int> b = a;
    {
        // 6 lies under 0 and 2: three node copies, each a node and a counter.
        AllocationScope scope;
        b.Insert(6, 66);
        EXPECT_EQ(scope.News(), 6u);
        EXPECT_EQ(scope.Deletes(), 0u);
        b.Get(6) = 67;  // the path is private now
        EXPECT_EQ(scope.News(), 6u);
    }
    EXPECT_EQ(SharedNodes(a, b), 5);
    EXPECT_EQ(a.ConstGet(6) * 100 + b.ConstGet(6), 6067);
    EXPECT_EQ(a.GetRoot().GetShareCount(), 1);

    cow_Map<int, int> c = a;
    c.Get(4) = 44;  // Get copies the found node too
    EXPECT_EQ(SharedNodes(a, c), 5);
    EXPECT_EQ(a.ConstGet(4), 40);

    {
        // Absent key, or a reading walk: nothing copied, no count left changed.
        cow_Map<int, int> d = a;
        int const branchCount = a.GetRoot().ConstGet()->child[1].GetShareCount();
        AllocationScope scope;
        EXPECT_FALSE(d.Remove(9));
        EXPECT_TRUE(d.IsMember(7));
        EXPECT_EQ(d.ConstGet(5), 50);
        EXPECT_EQ(scope.News(), 0u);
        EXPECT_EQ(a.GetRoot().GetShareCount(), 2);
        EXPECT_EQ(a.GetRoot().ConstGet()->child[1].GetShareCount(), branchCount);
    }

    // 7 is a leaf under 0, 1, 3: those are copied, the leaf is left to `a`
    // and the emptied branch gets a counter of its own.
    cow_Map<int, int> e = a;
    AllocationScope scope;
    EXPECT_TRUE(e.Remove(7));
    EXPECT_EQ(scope.News(), 7u);
    EXPECT_EQ(scope.Deletes(), 0u);
    EXPECT_EQ(SharedNodes(a, e), 4);
    EXPECT_EQ(a.ConstGet(7), 70);
    EXPECT_EQ(e.GetCount() * 10 + a.GetCount(), 78);

    // An inner key: the chain 1, 3, 7 is pulled up; the cut leaf is not copied.
    cow_Map<int, int> f = a;
    EXPECT_TRUE(f.Remove(1));
    EXPECT_EQ(SharedNodes(a, f), 4);
    EXPECT_EQ(f.GetDepth(3) * 10 + f.GetDepth(7), 12);
}

TEST(Map, AbsentKeysGiveADefaultThatNoMapHolds) {
    using Map = cow_Map<int, cow_String>;
    Map map;
    map.Insert(1, cow_String("one"));
    EXPECT_TRUE(Map::IsAbsent(map.ConstGet(2)));
    EXPECT_EQ(map.ConstGet(2).GetHeader(), nullptr);
    EXPECT_FALSE(Map::IsAbsent(map.ConstGet(1)));

    cow_String& scratch = map.Get(3);
    EXPECT_TRUE(Map::IsAbsent(scratch));
    scratch = cow_String("written");
    EXPECT_EQ(map.GetCount(), 1);
    EXPECT_EQ(map.ConstGet(3).GetHeader(), nullptr);
    EXPECT_EQ(map.Get(4).GetHeader(), nullptr);  // each miss starts from a default
    EXPECT_FALSE(Map::IsAbsent(map.Get(1)));

    // A default with counted storage: copies of it raise its count, so two
    // threads working on maps that share nothing must not get the same one.
    using Arrays = cow_Map<int, cow_FixedArray<int>>;
    Arrays arrays;
    cow_FixedArray<int> const* mine = &arrays.ConstGet(1);
    cow_FixedArray<int> const* theirs = nullptr;
    bool theirsAbsent = false;
    std::thread([&] {
        Arrays other;
        theirs = &other.ConstGet(1);
        cow_FixedArray<int> copy = *theirs;
        theirsAbsent = Arrays::IsAbsent(*theirs);
    }).join();
    EXPECT_TRUE(theirsAbsent);
    EXPECT_NE(mine, theirs);
}

TEST(MapIterator, NodeWalkOrdersAndTheEndMark) {
    EXPECT_EQ(WalkKeys(Build({5, 3, 6, 1, 7, 2, 4, 0})), (std::vector<int>{5, 6, 4, 0, 2, 3, 1, 7}));
    EXPECT_EQ(WalkKeys(Build({0, 1, 2, 3, 4, 5, 6, 7})), (std::vector<int>{0, 2, 4, 6, 1, 5, 3, 7}));
    EXPECT_EQ(WalkKeys(Build({1, 2, 4})), (std::vector<int>{1, 2, 4}));
    EXPECT_EQ(WalkKeys(Build({4, 1, 2})), (std::vector<int>{4, 2, 1}));

    cow_Map<int, int> map;
    cow_ConstMapIterator<int, int> none(map);
    EXPECT_TRUE(none.IsDone());  // before First as well
    none.First();
    none.Next();
    EXPECT_TRUE(none.IsDone());

    map.Insert(3, 30);
    cow_ConstMapIterator<int, int> one(map);
    one.First();
    EXPECT_EQ(one.CurrentValue(), 30);
    one.Next();
    one.Next();
    EXPECT_TRUE(one.IsDone());
    one.First();
    EXPECT_FALSE(one.IsDone());
}

TEST(MapIterator, WalksItsSnapshotAndFreesWhatOnlyItHeld) {
    long const texts = atr_GetLiveTexts();
    {
        cow_Map<int, cow_String> map;  // four texts of their own
        for (int key : {5, 3, 6, 1}) map.Insert(key, cow_String("v"));
        {
            cow_ConstMapIterator<int, cow_String> it(map);
            EXPECT_EQ(map.GetRoot().GetShareCount(), 2);
        }
        EXPECT_EQ(map.GetRoot().GetShareCount(), 1);

        auto* it = new cow_ConstMapIterator<int, cow_String>(map);
        std::vector<int> keys;
        for (it->First(); !it->IsDone(); it->Next()) {
            map.Remove(it->CurrentKey());  // the entry under the walk, inside the loop
            map.Insert(it->CurrentKey() + 100, cow_String("w"));
            keys.push_back(it->CurrentKey());
            EXPECT_EQ(Text(it->CurrentValue()), "v");
        }
        EXPECT_EQ(keys, (std::vector<int>{5, 6, 3, 1}));
        EXPECT_EQ(Walk(*it), keys);  // First again: the same snapshot
        EXPECT_EQ(atr_GetLiveTexts(), texts + 8);
        delete it;
        EXPECT_EQ(atr_GetLiveTexts(), texts + 4);  // the old values went with the snapshot

        // The map goes first; the iterator walks on and frees the tree.
        auto* copy = new cow_Map<int, cow_String>(map);
        copy->Insert(7, cow_String("seven"));
        cow_ConstMapIterator<int, cow_String> last(*copy);
        delete copy;
        EXPECT_EQ(Walk(last).size(), 5u);
    }
    EXPECT_EQ(atr_GetLiveTexts(), texts);
}

TEST(MapIterator, SortedWalks) {
    cow_Map<cow_String, float> map;
    for (char const* key : {"b", "ab", "a", "Z", "z", "\xE4"}) map.Insert(cow_String(key), 1.0f);
    cow_ConstMapSortedIt<cow_String, float> up(map), down(map, true);
    using Texts = std::vector<std::string>;
    EXPECT_EQ(Walk(up), (Texts{"Z", "a", "ab", "b", "z", "\xE4"}));
    EXPECT_EQ(Walk(down), (Texts{"\xE4", "z", "b", "ab", "a", "Z"}));

    atr_setNaturalOrder(1);
    cow_Map<cow_String, cow_String> numbered;
    numbered.Insert(cow_String("a9"), cow_String());
    numbered.Insert(cow_String("a10"), cow_String());
    cow_ConstMapSortedIt<cow_String, cow_String> natural(numbered);
    Texts const walked = Walk(natural);
    atr_setNaturalOrder(0);
    EXPECT_EQ(walked, (Texts{"a10", "a9"}));

    auto ints = Build({1, -1, 0});
    cow_ConstMapSortedIt<int, int> intsUp(ints), intsDown(ints, true);
    EXPECT_EQ(Walk(intsUp), (std::vector<int>{-1, 0, 1}));
    EXPECT_EQ(Walk(intsDown), (std::vector<int>{1, 0, -1}));

    // Keys only, and unit results.
    using Node = cow_MapNode<cow_String, float>;
    using It = cow_ConstMapSortedIt<cow_String, float>;
    Node a(cow_String("a"), 2.0f), z(cow_String("z"), 2.0f), a2(cow_String("a"), 9.0f);
    Node const *pa = &a, *pz = &z, *pa2 = &a2;
    EXPECT_EQ(It::AscSortCmp(&pa, &pz), -1);
    EXPECT_EQ(It::AscSortCmp(&pz, &pa), 1);
    EXPECT_EQ(It::AscSortCmp(&pa, &pa2), 0);
    EXPECT_EQ(It::DescSortCmp(&pa, &pz), 1);
}

TEST(Map, CountedAndDeepValuesStayPerMap) {
    long const blocks = mem_GetLiveBlocks();
    {
        cow_Map<int, omi_BlkBitVect> bits;
        omi_BlkBitVect v;
        v.SetBit(70000);
        bits.Insert(1, v);
        cow_Map<int, omi_BlkBitVect> copy = bits;
        copy.Get(1).SetBit(5);
        EXPECT_FALSE(bits.ConstGet(1).TestBit(5));
        EXPECT_TRUE(copy.ConstGet(1).TestBit(5) && copy.ConstGet(1).TestBit(70000));
        EXPECT_TRUE(copy.Remove(1));
        EXPECT_TRUE(bits.ConstGet(1).TestBit(70000));

        cow_Map<cow_String, cow_FixedArray<double>> arrays;
        arrays.Insert(cow_String("x"), cow_FixedArray<double>(3, 1.5));
        cow_Map<cow_String, cow_FixedArray<double>> other = arrays;
        other.Get(cow_String("x")).Get(0) = 2.5;
        EXPECT_EQ(arrays.ConstGet(cow_String("x")).ConstGet(0), 1.5);
        EXPECT_EQ(other.ConstGet(cow_String("x")).ConstGet(0), 2.5);
    }
    EXPECT_EQ(mem_GetLiveBlocks(), blocks);
}

TEST(MapUtils, KeysAndValuesInWalkOrder) {
    cow_Map<cow_String, int> empty;
    EXPECT_EQ((cow_MapUtils<cow_String, int>::cow_Keys(empty).GetCount()), 0);
    EXPECT_EQ((cow_MapUtils<cow_String, int>::cow_Values(empty).GetCount()), 0);

    cow_Map<int, cow_1DArrayList<int>> map;
    for (int key : {5, 3, 6, 1, 7, 2, 4, 0}) {
        cow_1DArrayList<int> value;
        value.Append(key * 10);
        map.Insert(key, value);
    }
    auto keys = cow_MapUtils<int, cow_1DArrayList<int>>::cow_Keys(map);
    auto values = cow_MapUtils<int, cow_1DArrayList<int>>::cow_Values(map);
    std::vector<int> walked;
    for (int i = 0; i < keys.GetCount(); ++i) {
        walked.push_back(keys.ConstGet(i));
        EXPECT_EQ(values.ConstGet(i).ConstGet(0), keys.ConstGet(i) * 10);
    }
    EXPECT_EQ(walked, (std::vector<int>{5, 6, 4, 0, 2, 3, 1, 7}));
    EXPECT_EQ(map.GetRoot().GetShareCount(), 1);

    // The lists are values of their own.
    keys.Get(0) = 99;
    values.Get(0).Get(0) = -1;
    EXPECT_EQ(map.ConstGet(5).ConstGet(0), 50);

    // Rows the library does not export build the same way in the caller.
    cow_Map<cow_String, cow_List<int>> lists;
    lists.Insert(cow_String("a"), cow_List<int>().Append(1));
    EXPECT_EQ((cow_MapUtils<cow_String, cow_List<int>>::cow_Values(lists).ConstGet(0).ConstGet(0)), 1);
    cow_ConstMapSortedIt<cow_String, cow_List<cow_String>> sorted((cow_Map<cow_String, cow_List<cow_String>>()));
    sorted.First();
    EXPECT_TRUE(sorted.IsDone());
    cow_Map<unsigned int, int> unsignedKeys;
    unsignedKeys.Insert(0x80000000u, 1);
    cow_ConstMapIterator<unsigned int, int> walk(unsignedKeys);
    walk.First();
    EXPECT_EQ(walk.CurrentKey(), 0x80000000u);
}

// The library's boundary: what each row exports and what stays inside. The
// inline reads, the handle members the map only uses, and the rows that build
// a class for themselves must not appear.
TEST(MapExports, ExactlyTheListedMembers) {
    Dl_info info{};
    ASSERT_NE(dladdr(reinterpret_cast<void*>(&cow_initialize), &info), 0);
    void* library = dlopen(info.dli_fname, RTLD_LAZY | RTLD_NOLOAD);
    ASSERT_NE(library, nullptr);
    auto exported = [&](char const* name) { return dlsym(library, name) != nullptr; };
    for (char const* name : {
             "_ZNK7cow_MapIiiE8IsMemberERKi", "_ZN7cow_MapIiiE6InsertERKiS2_", "_ZN7cow_MapIiiE6RemoveERKi",
             "_ZN7cow_MapIiiE3GetERKi", "_ZNK7cow_MapIiiE8ConstGetERKi", "_ZN7cow_MapIiiED1Ev",
             "_ZN11cow_MapNodeIiiED1Ev", "_ZN7cow_COWI11cow_MapNodeIiiE10cow_DirectIS1_EE3GetEv",
             "_ZN7cow_COWI11cow_MapNodeIiiE10cow_DirectIS1_EEC1EPS1_",
             "_ZN7cow_COWI11cow_MapNodeIiiE10cow_DirectIS1_EEC1ERKS1_",
             "_ZN7cow_COWI11cow_MapNodeIiiE10cow_DirectIS1_EED1Ev", "_ZN14cow_CountedHldI11cow_MapNodeIiiEE6DeleteEv",
             "_ZN14cow_CountedHldI11cow_MapNodeIiiEED1Ev", "_ZN20cow_ConstMapIteratorIiiE5FirstEv",
             "_ZN20cow_ConstMapIteratorIiiED1Ev", "_ZN20cow_ConstMapSortedItI10cow_StringfE5FirstEv",
             "_ZN20cow_ConstMapSortedItI10cow_StringfE10AscSortCmpEPKvS3_",
             "_ZN20cow_ConstMapSortedItI10cow_StringfED1Ev", "_ZN12cow_MapUtilsI10cow_StringiE8cow_KeysERK7cow_MapIS0_iE",
             "_ZN12cow_MapUtilsI10cow_StringiE10cow_ValuesERK7cow_MapIS0_iE"})
        EXPECT_TRUE(exported(name)) << name;
    for (char const* name : {
             "_ZN20cow_ConstMapSortedItI10cow_StringfE11DescSortCmpEPKvS3_", "_ZNK20cow_ConstMapIteratorIiiE6IsDoneEv",
             "_ZN20cow_ConstMapIteratorIiiE4NextEv", "_ZN7cow_MapIiiEC1Ev", "_ZNK7cow_MapIiiE8GetCountEv",
             "_ZN11cow_MapNodeIiiEC1ERKiS2_", "_ZN10cow_DirectI11cow_MapNodeIiiEE4CopyERKS1_",
             "_ZN14cow_CountedHldI11cow_MapNodeIiiEEaSEPS1_", "_ZN14cow_CountedHldI11cow_MapNodeIiiEEaSERKS2_",
             "_ZN20cow_ConstMapIteratorIjiE5FirstEv", "_ZN20cow_ConstMapSortedItIiiE5FirstEv",
             "_ZN12cow_MapUtilsI10cow_StringfE8cow_KeysERK7cow_MapIS0_fE"})
        EXPECT_FALSE(exported(name)) << name;
    dlclose(library);
}
