// The map: digits, shapes that follow from them, removal by pull-up, what a
// write copies, absent keys, and the exact orders of the two walks.

#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "support/AllocationCounter.h"
#include "zorvancow/map/cow_Map.h"
#include "zorvancow/shapes/cow_FixedArray.h"

using testing_support::AllocationScope;

namespace {

using IntMap = cow_Map<int, int>;

std::string Text(cow_String const& s) { return s.GetCString(); }
int Text(int i) { return i; }

// The keys an iterator walks from First on.
template <class Iterator>
auto Walk(Iterator&& it) {
    std::vector<decltype(Text(it.CurrentKey()))> keys;
    for (it.First(); !it.IsDone(); it.Next()) keys.push_back(Text(it.CurrentKey()));
    return keys;
}

IntMap Build(std::vector<int> const& keys) {
    IntMap map;
    for (int key : keys) map.Insert(key, key * 10);
    return map;
}

// Every link of the map, the empty ones too, breadth first from the root.
std::vector<IntMap::Link const*> Links(IntMap const& map) {
    std::vector<IntMap::Link const*> links{&map.GetRoot()};
    for (std::size_t i = 0; i < links.size(); ++i)
        if (auto const* node = links[i]->ConstGet()) links.push_back(&node->child[0]), links.push_back(&node->child[1]);
    return links;
}

// How many nodes of `a` are nodes of `b` too.
int SharedNodes(IntMap const& a, IntMap const& b) {
    std::set<IntMap::Node const*> inB;
    for (auto const* link : Links(b)) inB.insert(link->ConstGet());
    int shared = 0;
    for (auto const* link : Links(a)) shared += link->ConstGet() != nullptr && inB.count(link->ConstGet()) != 0;
    return shared;
}

// A subtree as "key(digit-0 side,digit-1 side)", leaves bare: "1(2,)".
std::string Shape(IntMap::Link const& link) {
    auto const* node = link.ConstGet();
    if (node == nullptr) return "";
    std::string const text = std::to_string(node->key);
    if (node->child[0].ConstGet() == nullptr && node->child[1].ConstGet() == nullptr) return text;
    return text + "(" + Shape(node->child[0]) + "," + Shape(node->child[1]) + ")";
}

// The first eight digits of a string key.
std::string Digits(cow_String const& key) {
    std::string digits;
    for (int depth = 0; depth < 8; ++depth) digits += static_cast<char>('0' + cow_KeyBit(key, depth));
    return digits;
}

}  // namespace

TEST(Map, KeyDigitsAreLowBitsOfIntegersAndOfLeadingCharacters) {
    EXPECT_EQ(cow_KeyBit(6, 0) * 100 + cow_KeyBit(6, 1) * 10 + cow_KeyBit(6, 2), 11);
    EXPECT_EQ(cow_KeyBit(-1, 31) * 10 + cow_KeyBit(0x7fffffff, 31), 10);
    EXPECT_EQ(Digits(cow_String("abc")), "11000000");
    // Lowest bits a=1 b=0 c=1 e=1 f=0, read as c0 c4 c1 c3 c2 c2, then zeros.
    EXPECT_EQ(Digits(cow_String("abcef")), "10011100");
    EXPECT_EQ(Digits(cow_String("")) + Digits(cow_String()), "0000000000000000");
}

TEST(Map, ShapesFollowTheDigitsAndRemovalPullsKeysUp) {
    auto map = Build({0, 1, 2});
    EXPECT_EQ(Shape(map.GetRoot()), "0(2,1)");
    EXPECT_TRUE(map.Remove(0));  // the right-preferring path pulls 1 up into the root
    EXPECT_EQ(Shape(map.GetRoot()), "1(2,)");
    EXPECT_EQ(map.ConstGet(1), 10);

    // Single-bit keys, then 0: a chain of 33 nodes on digit 0.
    IntMap chain;
    for (int bit = 0; bit < 32; ++bit) chain.Insert(static_cast<int>(1u << bit), bit);
    chain.Insert(0, -1);
    EXPECT_EQ(chain.GetDepth(0) * 100 + chain.GetDepth(1 << 30), 3230);
    EXPECT_TRUE(chain.Remove(1));  // no right child anywhere: all move up one level
    EXPECT_EQ(chain.GetDepth(0) * 100 + chain.GetDepth(2), 3100);

}

TEST(Map, KeysWithEqualDigitsStackAndAnEqualKeyReplacesOnlyTheValue) {
    cow_Map<cow_String, cow_String> texts;
    char const* keys[] = {"ab", "cd", "ef", "gh"};  // all with digits 1, 0, 0, 0...
    for (char const* key : keys) texts.Insert(cow_String(key), cow_String(key));
    for (int i = 0; i < 4; ++i) EXPECT_EQ(texts.GetDepth(cow_String(keys[i])), i);
    auto const* cd = texts.GetRoot().ConstGet()->child[1].ConstGet();
    cow_String again("cd");  // a held key keeps its key object; the value is replaced
    texts.Insert(again, cow_String("new"));
    EXPECT_NE(cd->key.GetHeader(), again.GetHeader());
    texts.Insert(cow_String(""), cow_String("e"));  // the empty text and the header-less
    texts.Insert(cow_String(), cow_String("f"));    // value are one key
    EXPECT_EQ(Text(texts.ConstGet(cow_String(""))) + std::to_string(texts.GetCount()), "f5");
}

TEST(Map, AWriteCopiesExactlyItsPath) {
    // Keys 0 to 7 lie as 0(2(4(6,),),1(5,3(7,))) by their low bits.
    struct Case {
        std::function<void(IntMap&)> write;
        std::size_t news;  // a node and its counter per copied node, plus new branches
        int shared;        // nodes of the source still in the copy
    } const cases[] = {
        {[](IntMap& m) { m.Insert(6, 66), m.Get(6) = 67; }, 6, 5},  // then private: Get copies nothing
        {[](IntMap& m) { m.Get(4) = 44; }, 6, 5},                    // the found node too
        {[](IntMap& m) { EXPECT_FALSE(m.Remove(9)); }, 0, 8},        // nothing to remove, nothing copied
        {[](IntMap& m) { EXPECT_TRUE(m.IsMember(7) && m.ConstGet(5) == 50); }, 0, 8},
        // A leaf under 0, 1, 3: those are copied, the leaf is left to the
        // source, and the emptied branch gets a counter of its own.
        {[](IntMap& m) { m.Remove(7); }, 7, 4},
        {[](IntMap& m) { m.Remove(1); }, 7, 4},  // 3 and 7 pulled up; the cut leaf is not copied
    };
    for (Case const& row : cases) {
        IntMap const a = Build({0, 1, 2, 3, 4, 5, 6, 7});
        IntMap b = a;
        auto counts = [&] {  // of every link of `a`, the empty ones too
            std::vector<int> found;
            for (auto const* link : Links(a)) found.push_back(link->GetShareCount());
            return found;
        };
        std::vector<int> const before = counts();
        AllocationScope scope;
        row.write(b);
        EXPECT_EQ(scope.News(), row.news);
        EXPECT_EQ(scope.Deletes(), 0u);
        EXPECT_EQ(SharedNodes(a, b), row.shared);
        if (row.shared == 8) {
            EXPECT_EQ(counts(), before) << "reads leave every count as it was";
        }
    }
}

// An absent key reads as a default with counted storage: copies of it raise
// its count, so two threads working on maps that share nothing must not get
// the same one.
TEST(Map, AbsentKeysGiveADefaultOfTheirThreadOnly) {
    using Arrays = cow_Map<int, cow_FixedArray<int>>;
    cow_FixedArray<int> const* mine = &Arrays().ConstGet(1);
    cow_FixedArray<int> const* theirs = nullptr;
    std::thread([&] { theirs = &Arrays().ConstGet(1); }).join();
    EXPECT_NE(mine, theirs);
}

TEST(MapIterator, NodeWalkVisitsDigitZeroSidesFirstAndTheListsComeInItsOrder) {
    IntMap const map = Build({0, 1, 2, 3, 4, 5, 6, 7});
    std::vector<int> const order = {0, 2, 4, 6, 1, 5, 3, 7};
    EXPECT_EQ(Walk(cow_ConstMapIterator<int, int>(map)), order);
    EXPECT_TRUE((cow_ConstMapIterator<int, int>(IntMap()).IsDone())) << "done before First as well";
    auto const keys = cow_MapUtils<int, int>::cow_Keys(map);
    auto const values = cow_MapUtils<int, int>::cow_Values(map);
    ASSERT_EQ(keys.GetCount() * 10 + values.GetCount(), 88);
    for (int i = 0; i < 8; ++i) EXPECT_EQ(values.ConstGet(i) + keys.ConstGet(i), order[i] * 11);

    // A row the library does not export builds the same way in the caller.
    cow_Map<unsigned int, int> unsignedKeys;
    unsignedKeys.Insert(0x80000000u, 1);
    EXPECT_EQ(Walk(cow_ConstMapIterator<unsigned int, int>(unsignedKeys)), std::vector<int>{int(0x80000000u)});
}

TEST(MapIterator, SortedWalksOfTextsGoByBytes) {
    atr_setNaturalOrder(1);  // bytes all the same
    cow_Map<cow_String, float> map;
    for (char const* key : {"b", "a9", "ab", "a10", "Z", "z", "\xE4"}) map.Insert(cow_String(key), 1.0f);
    std::vector<std::string> const up = Walk(cow_ConstMapSortedIt<cow_String, float>(map));
    std::vector<std::string> const down = Walk(cow_ConstMapSortedIt<cow_String, float>(map, true));
    atr_setNaturalOrder(0);
    EXPECT_EQ(up, (std::vector<std::string>{"Z", "a10", "a9", "ab", "b", "z", "\xE4"}));
    EXPECT_EQ(down, std::vector<std::string>(up.rbegin(), up.rend()));
}
