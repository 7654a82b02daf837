// The element and key rules for types the library does not know (Probe).
// Contents through copies, for std::string elements too, are the operation
// interpreters'.

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <utility>
#include <string>
#include <type_traits>
#include <vector>

#include "support/NoLeaks.h"
#include "support/Probe.h"
#include "zorvancow/zorvancow.h"

namespace {

using testing_support::Probe;

TEST(ElementRules, SortMovesTheLibrarysOwnValuesAsBytesAndOthersByTheirOwnMoves) {
    static_assert(cow_ElementBytewise<int>::value && cow_ElementBytewise<cow_String>::value);
    static_assert(cow_ElementBytewise<cow_List<int>>::value && cow_ElementBytewise<cow_Btree<int, int>>::value);
    static_assert(!cow_ElementBytewise<std::string>::value && !cow_ElementBytewise<Probe>::value);
    static_assert(!cow_ElementBytewise<cow_Btree<int, std::string>>::value);

    // A sort moves the elements, and copies only into and out of the buffer.
    cow_List<Probe> list;
    for (int i = 0; i < 100; ++i) list.Append(Probe(100 - i));
    long const copiesBefore = Probe::copies;
    long const movesBefore = Probe::moves;
    list.Sort();
    EXPECT_EQ(Probe::copies - copiesBefore, 200);
    EXPECT_GT(Probe::moves - movesBefore, 0);
    EXPECT_TRUE(std::all_of(list.begin(), list.end(), [](Probe const& p) { return p.Intact(); }));
}

// Sort keys with a tag that the order does not look at: equal keys must keep
// the order of their tags. An int tag moves as bytes, a text tag by its own
// moves; texts of one length order as the numbers they spell.
template <class Tag>
struct Keyed {
    int key = 0;
    Tag tag{};
    friend bool operator==(Keyed const& a, Keyed const& b) { return a.key == b.key; }
    friend bool operator<(Keyed const& a, Keyed const& b) { return a.key < b.key; }
};

template <class Tag>
void ExpectStableSort(int n) {
    std::mt19937 random(static_cast<unsigned>(n));
    std::vector<std::pair<int, Tag>> expected, sorted;
    cow_List<Keyed<Tag>> list;
    for (int i = 0; i < n; ++i) {
        Keyed<Tag> element{static_cast<int>(random() % 7), {}};
        if constexpr (std::is_same<Tag, int>::value) element.tag = i;
        else element.tag = std::to_string(100000 + i);
        list.Append(element);
        expected.emplace_back(element.key, element.tag);
    }
    list.Sort();
    // The stable order: by key, then by position in the list. (Not
    // std::stable_sort: its buffer comes from an operator new that the test
    // programs do not count.)
    std::sort(expected.begin(), expected.end());
    for (Keyed<Tag> const& element : list) sorted.emplace_back(element.key, element.tag);
    EXPECT_EQ(sorted, expected) << n;
}

TEST(ElementRules, SortKeepsEqualElementsInOrderWhicheverWayItMovesThem) {
    static_assert(cow_ElementBytewise<Keyed<int>>::value && !cow_ElementBytewise<Keyed<std::string>>::value);
    testing_support::NoLeaks noLeaks;
    // Within one insertion run, across one merge, and across several with a
    // short last run.
    for (int n : {1, 16, 17, 33, 200, 1000}) {
        ExpectStableSort<int>(n);
        ExpectStableSort<std::string>(n);
    }
}

TEST(ElementRules, KeysOfEveryIntegralTypeAndStdString) {
    // Integral keys: digits from the low end, with the full width.
    EXPECT_EQ(cow_KeyBits<long long>::Bit(1LL << 40, 40), 1);
    EXPECT_EQ(cow_KeyBits<long long>::Bit(-1, 63), 1);
    EXPECT_EQ(cow_KeyBits<unsigned char>::Bit(0x80, 7), 1);
    EXPECT_EQ(cow_KeyBits<short>::Bit(-1, 16), 0);
    // std::string keys cut like cow_String keys, and compare by bytes.
    for (char const* text : {"", "abc", "ab\xe4", "hello world"}) {
        for (int depth = 0; depth < 14; ++depth)
            EXPECT_EQ(cow_KeyBits<std::string>::Bit(text, depth), cow_KeyBit(cow_String(text), depth)) << text << depth;
    }
    EXPECT_TRUE(cow_KeyBits<std::string>::Less("z", "\xe4"));
    // The tree orders int keys by the wrapped difference, every other integral type by value.
    EXPECT_LT(cow_KeyOrder<int>::Compare(2147483647, -1), 0);
    EXPECT_GT(cow_KeyOrder<long>::Compare(2147483647L, -1L), 0);
    EXPECT_GT(cow_KeyOrder<unsigned>::Compare(0xFFFFFFFFu, 1u), 0);

    // A type with only < and == keys a tree too, as it would a std::map.
    cow_Btree<Keyed<int>, int> byKey{{{3, 0}, 3}, {{1, 0}, 1}};
    EXPECT_EQ(byKey.begin()->first.key, 1);
}

}  // namespace
