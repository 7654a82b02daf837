// One behaviour table over element types the library does not know: a
// std::string, a type that counts its copies and moves, and a type whose copy
// is not a byte copy (it points into itself). Each must sort, search, share
// and unshare, and live in maps and trees, with every object it made gone at
// the end.

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "support/NoLeaks.h"
#include "zorvancow/zorvancow.h"

namespace {

// Counts live objects, copies and moves.
struct Counted {
    static inline long live = 0;
    static inline long copies = 0;
    static inline long moves = 0;

    int value = 0;
    Counted() { ++live; }
    explicit Counted(int v) : value(v) { ++live; }
    Counted(Counted const& other) : value(other.value) { ++live, ++copies; }
    Counted(Counted&& other) noexcept : value(other.value) { ++live, ++moves; }
    Counted& operator=(Counted const& other) {
        value = other.value;
        ++copies;
        return *this;
    }
    Counted& operator=(Counted&& other) noexcept {
        value = other.value;
        ++moves;
        return *this;
    }
    ~Counted() { --live; }
    friend bool operator==(Counted const& a, Counted const& b) { return a.value == b.value; }
    friend bool operator<(Counted const& a, Counted const& b) { return a.value < b.value; }
};

// Points into itself: a byte copy would leave `self` on the source, which
// the checks below would see (and the source's death would leave dangling).
struct Anchored {
    static inline long live = 0;

    int value = 0;
    int const* self = &value;
    Anchored() { ++live; }
    explicit Anchored(int v) : value(v) { ++live; }
    Anchored(Anchored const& other) : value(other.value) { ++live; }
    Anchored& operator=(Anchored const& other) {
        value = other.value;
        return *this;
    }
    ~Anchored() { --live; }
    bool Intact() const { return self == &value; }
    friend bool operator==(Anchored const& a, Anchored const& b) { return a.value == b.value; }
    friend bool operator<(Anchored const& a, Anchored const& b) { return a.value < b.value; }
};

template <class T>
struct Kind;
template <>
struct Kind<std::string> {
    static std::string Make(int v) { return "v" + std::to_string(100000 + v); }
    static long Live() { return 0; }
    static bool Intact(std::string const& s) { return s.size() == 7 && s[0] == 'v'; }
};
template <>
struct Kind<Counted> {
    static Counted Make(int v) { return Counted(v); }
    static long Live() { return Counted::live; }
    static bool Intact(Counted const&) { return true; }
};
template <>
struct Kind<Anchored> {
    static Anchored Make(int v) { return Anchored(v); }
    static long Live() { return Anchored::live; }
    static bool Intact(Anchored const& a) { return a.Intact(); }
};

template <class T>
class ElementTypes : public ::testing::Test {
protected:
    static T Make(int v) { return Kind<T>::Make(v); }
    void TearDown() override { EXPECT_EQ(Kind<T>::Live(), 0) << "objects left alive"; }
};

using Types = ::testing::Types<std::string, Counted, Anchored>;
TYPED_TEST_SUITE(ElementTypes, Types, ::testing::internal::DefaultNameGenerator);

TYPED_TEST(ElementTypes, SortOrdersByTheTypesOwnOrderAndMovesElementsSafely) {
    testing_support::NoLeaks noLeaks;
    std::mt19937 random(7);
    std::vector<int> values(300);
    for (int& v : values) v = static_cast<int>(random() % 1000);
    cow_List<TypeParam> list;
    for (int v : values) list.Append(this->Make(v));
    list.Prepend(this->Make(-1)).RemoveFirst();  // a head inside a block
    cow_List<TypeParam> before = list;

    list.Sort();
    std::sort(values.begin(), values.end());
    ASSERT_EQ(list.size(), values.size());
    for (std::size_t i = 0; i < values.size(); ++i) {
        EXPECT_TRUE(list[i] == this->Make(values[i])) << i;
        EXPECT_TRUE(Kind<TypeParam>::Intact(list[i])) << i;
    }
    // The copy taken before keeps its order and its own intact elements.
    EXPECT_FALSE(before == list);
    EXPECT_TRUE(std::all_of(before.begin(), before.end(), [](TypeParam const& e) { return Kind<TypeParam>::Intact(e); }));
}

TYPED_TEST(ElementTypes, SearchAndEditingFindEqualElements) {
    testing_support::NoLeaks noLeaks;
    cow_List<TypeParam> list{this->Make(3), this->Make(1), this->Make(4), this->Make(1)};
    EXPECT_EQ(list.Position(this->Make(1)), 1);
    EXPECT_EQ(list.Position(this->Make(9)), -1);
    list.Remove(this->Make(1)).AppendUnlessMember(this->Make(4)).InsertAfter(-1, this->Make(0));
    EXPECT_EQ(std::vector<TypeParam>(list.begin(), list.end()),
              (std::vector<TypeParam>{this->Make(0), this->Make(3), this->Make(4), this->Make(1)}));
    cow_List<TypeParam> difference = list - cow_List<TypeParam>{this->Make(4)};
    EXPECT_EQ(difference.size(), 3u);

    cow_1DArrayList<TypeParam> arrayList(list.begin(), list.end());
    EXPECT_EQ(arrayList.FindFirst(this->Make(4)), 2);
    EXPECT_EQ(arrayList.Pop(), this->Make(1));
    EXPECT_TRUE(std::all_of(list.begin(), list.end(), [](TypeParam const& e) { return Kind<TypeParam>::Intact(e); }));
}

TYPED_TEST(ElementTypes, AWriteToACopyLeavesTheOriginal) {
    testing_support::NoLeaks noLeaks;
    cow_List<TypeParam> original;
    for (int i = 0; i < 40; ++i) original.Append(this->Make(i));
    cow_List<TypeParam> copy = original;
    copy.Get(20) = this->Make(-20);
    copy.RemoveIndex(0);
    EXPECT_TRUE(original[20] == this->Make(20));
    EXPECT_TRUE(original[0] == this->Make(0));
    EXPECT_TRUE(copy[19] == this->Make(-20));

    cow_FixedArray<TypeParam> fixed(3, this->Make(5));
    cow_FixedArray<TypeParam> fixedCopy = fixed;
    fixedCopy.Get(1) = this->Make(6);
    EXPECT_TRUE(fixed[1] == this->Make(5));
    EXPECT_TRUE(Kind<TypeParam>::Intact(fixedCopy[1]));
}

TYPED_TEST(ElementTypes, MapsAndTreesHoldTheTypeAsValue) {
    testing_support::NoLeaks noLeaks;
    cow_Map<long, TypeParam> map;
    cow_Btree<std::string, TypeParam> tree;
    for (int i = 0; i < 100; ++i) {
        map.Insert(static_cast<long>(i) << 33, this->Make(i));
        tree.InsertUnlessMember(std::to_string(i), this->Make(i));
    }
    cow_Map<long, TypeParam> mapCopy = map;
    cow_Btree<std::string, TypeParam> treeCopy = tree;
    mapCopy.Remove(5L << 33);
    *treeCopy.Get("7") = this->Make(-7);
    EXPECT_TRUE(map.contains(5L << 33));
    EXPECT_FALSE(mapCopy.contains(5L << 33));
    EXPECT_TRUE(map.at(9L << 33) == this->Make(9));
    EXPECT_TRUE(tree.at("7") == this->Make(7));
    EXPECT_TRUE(treeCopy.at("7") == this->Make(-7));
    EXPECT_EQ(std::distance(map.begin(), map.end()), 100);
    // The tree walks std::string keys in their own order: "10" before "2".
    std::vector<std::string> keys;
    for (auto const& [key, value] : tree) {
        keys.push_back(key);
        EXPECT_TRUE(Kind<TypeParam>::Intact(value));
    }
    EXPECT_TRUE(std::is_sorted(keys.begin(), keys.end()));
    EXPECT_EQ(keys[2], "10");
    EXPECT_FALSE(tree == treeCopy);
    treeCopy.Remove("7");
    treeCopy.InsertUnlessMember("7", this->Make(7));
    EXPECT_TRUE(tree == treeCopy);
}

TEST(ElementRules, SortMovesTheLibrarysOwnValuesAsBytesAndOthersByTheirOwnMoves) {
    static_assert(cow_ElementBytewise<int>::value && cow_ElementBytewise<cow_String>::value);
    static_assert(cow_ElementBytewise<cow_List<int>>::value && cow_ElementBytewise<cow_Btree<int, int>>::value);
    static_assert(!cow_ElementBytewise<std::string>::value && !cow_ElementBytewise<Anchored>::value);
    static_assert(!cow_ElementBytewise<cow_Btree<int, std::string>>::value);

    // A sort of counted elements moves them and copies only into and out of the buffer.
    cow_List<Counted> list;
    for (int i = 0; i < 100; ++i) list.Append(Counted(100 - i));
    long const copiesBefore = Counted::copies;
    long const movesBefore = Counted::moves;
    list.Sort();
    EXPECT_EQ(Counted::copies - copiesBefore, 200);
    EXPECT_GT(Counted::moves - movesBefore, 0);
    EXPECT_EQ(list.front().value, 1);
    EXPECT_EQ(list.back().value, 100);
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
