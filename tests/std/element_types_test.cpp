// The element and key rules for types the library does not know. A Probe
// counts its live objects, copies and moves, and its copy is not a byte copy
// (it points into itself, so a byte copy would leave `self` on the source).
// Contents through copies, for std::string elements too, are the operation
// interpreters'.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "support/NoLeaks.h"
#include "zorvancow/zorvancow.h"

namespace {

struct Probe {
    static inline long live = 0, copies = 0, moves = 0;

    int value = 0;
    int const* self = &value;
    Probe() { ++live; }
    explicit Probe(int v) : value(v) { ++live; }
    Probe(Probe const& other) : value(other.value) { ++live, ++copies; }
    Probe(Probe&& other) noexcept : value(other.value) { ++live, ++moves; }
    Probe& operator=(Probe const& other) { value = other.value; ++copies; return *this; }
    Probe& operator=(Probe&& other) noexcept { value = other.value; ++moves; return *this; }
    ~Probe() { --live; }
    friend bool operator==(Probe const& a, Probe const& b) { return a.value == b.value; }
    friend bool operator<(Probe const& a, Probe const& b) { return a.value < b.value; }
};

bool Intact(Probe const& p) { return p.self == &p.value; }

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
    EXPECT_EQ(list.front().value, 1);
    EXPECT_EQ(list.back().value, 100);
    EXPECT_TRUE(std::all_of(list.begin(), list.end(), [](Probe const& p) { return Intact(p); }));
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

    cow_Map<long, int> map{{-1L, 1}, {1L << 40, 2}, {0L, 3}};
    std::vector<long> sorted;
    for (auto const& [key, value] : map.Sorted()) sorted.push_back(key);
    EXPECT_EQ(sorted, (std::vector<long>{-1L, 0L, 1L << 40}));
    cow_Btree<unsigned long, int> tree{{~0UL, 1}, {1UL, 2}};
    EXPECT_EQ(tree.begin()->first, 1UL);
}

}  // namespace
