// One behaviour table over element types the library does not know: a
// std::string, and a Probe, which counts its live objects, copies and moves,
// and whose copy is not a byte copy (it points into itself, so a byte copy
// would leave `self` on the source, and dangling once the source dies). Each
// must sort, share and unshare, and live in maps and trees, with every
// object it made gone at the end. Search goes by the element type's ==, as
// for the plain numbers of the typed list tests.

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <stdexcept>
#include <type_traits>
#include <utility>
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

// Value v of each type (strings of one length, so that they sort as their
// numbers do), and whether an element still is what its type made.
template <class T> T Value(int v) { return T(v); }
template <> std::string Value(int v) { return "v" + std::to_string(100000 + v); }
bool Intact(std::string const& s) { return s.size() == 7 && s[0] == 'v'; }
bool Intact(Probe const& p) { return p.self == &p.value; }
template <class C> bool AllIntact(C const& c) {
    return std::all_of(c.begin(), c.end(), [](auto const& e) { return Intact(e); });
}

template <class T>
class ElementTypes : public ::testing::Test {
protected:
    static T Make(int v) { return Value<T>(v); }
    void TearDown() override { EXPECT_EQ(Probe::live, 0) << "objects left alive"; }
    testing_support::NoLeaks noLeaks;
};

using Types = ::testing::Types<std::string, Probe>;
TYPED_TEST_SUITE(ElementTypes, Types, ::testing::internal::DefaultNameGenerator);

TYPED_TEST(ElementTypes, SortOrdersByTheTypesOwnOrderAndMovesElementsSafely) {
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
    for (std::size_t i = 0; i < values.size(); ++i) EXPECT_TRUE(list[i] == this->Make(values[i])) << i;
    // The copy taken before keeps its order; both hold intact elements.
    EXPECT_FALSE(before == list);
    EXPECT_TRUE(AllIntact(list) && AllIntact(before));
}

TYPED_TEST(ElementTypes, AWriteToACopyLeavesTheOriginal) {
    cow_List<TypeParam> original;
    for (int i = 0; i < 40; ++i) original.Append(this->Make(i));
    cow_List<TypeParam> copy = original;
    copy.Get(20) = this->Make(-20);
    copy.RemoveIndex(0);
    EXPECT_TRUE(original[20] == this->Make(20) && original[0] == this->Make(0));
    EXPECT_TRUE(copy[19] == this->Make(-20));

    cow_FixedArray<TypeParam> fixed(3, this->Make(5));
    cow_FixedArray<TypeParam> fixedCopy = fixed;
    fixedCopy.Get(1) = this->Make(6);
    EXPECT_TRUE(fixed[1] == this->Make(5));
    EXPECT_TRUE(AllIntact(fixedCopy));
}

TYPED_TEST(ElementTypes, MapsAndTreesHoldTheTypeAsValue) {
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
    // The tree walks std::string keys in their own order: "10" before "2".
    std::vector<std::string> keys;
    for (auto const& [key, value] : tree) {
        keys.push_back(key);
        EXPECT_TRUE(Intact(value));
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
}

// Sort keys with a tag that the order does not look at: equal keys must keep
// the order of their tags. Tagged moves as bytes, Labelled by its own moves.
struct Tagged {
    int key = 0;
    int tag = 0;
    friend bool operator==(Tagged const& a, Tagged const& b) { return a.key == b.key; }
    friend bool operator<(Tagged const& a, Tagged const& b) { return a.key < b.key; }
};
struct Labelled {
    int key = 0;
    std::string tag;
    friend bool operator==(Labelled const& a, Labelled const& b) { return a.key == b.key; }
    friend bool operator<(Labelled const& a, Labelled const& b) { return a.key < b.key; }
};
int TagOf(Tagged const& t) { return t.tag; }
int TagOf(Labelled const& l) { return std::stoi(l.tag); }

template <class T>
void ExpectStableSort(int n) {
    std::mt19937 random(static_cast<unsigned>(n));
    std::vector<std::pair<int, int>> expected;
    cow_List<T> list;
    for (int i = 0; i < n; ++i) {
        int const key = static_cast<int>(random() % 7);
        T element;
        element.key = key;
        if constexpr (std::is_same<T, Tagged>::value) {
            element.tag = i;
        } else {
            element.tag = std::to_string(i);
        }
        list.Append(element);
        expected.emplace_back(key, i);
    }
    list.Sort();
    // The stable order: by key, then by position in the list. (Not
    // std::stable_sort: its buffer comes from an operator new that the test
    // programs do not count.)
    std::sort(expected.begin(), expected.end());
    ASSERT_EQ(list.GetCount(), n);
    for (int i = 0; i < n; ++i) {
        EXPECT_EQ(list[static_cast<std::size_t>(i)].key, expected[static_cast<std::size_t>(i)].first) << n << " " << i;
        EXPECT_EQ(TagOf(list[static_cast<std::size_t>(i)]), expected[static_cast<std::size_t>(i)].second) << n << " " << i;
    }
}

TEST(ElementRules, SortKeepsEqualElementsInOrderWhicheverWayItMovesThem) {
    static_assert(cow_ElementBytewise<Tagged>::value && !cow_ElementBytewise<Labelled>::value);
    testing_support::NoLeaks noLeaks;
    // Within one insertion run, across one merge, and across several with a
    // short last run.
    for (int n : {1, 16, 17, 33, 200, 1000}) {
        ExpectStableSort<Tagged>(n);
        ExpectStableSort<Labelled>(n);
    }
}

// An element whose copy assignment throws on the armed call.
struct Fragile {
    static inline long live = 0;
    static inline int throwIn = 0;  // the copy number that throws; 0 for none
    int value = 0;
    Fragile() { ++live; }
    explicit Fragile(int v) : value(v) { ++live; }
    Fragile(Fragile const& other) : value(other.value) { ++live; }
    Fragile& operator=(Fragile const& other) {
        if (throwIn != 0 && --throwIn == 0) throw std::runtime_error("copy refused");
        value = other.value;
        return *this;
    }
    ~Fragile() { --live; }
};

// Runs `operation` with the n-th element copy throwing, for every n until it
// completes; each failed attempt must leave no object and no allocation behind.
template <class Operation>
void ExpectEveryThrowFreesTheRun(char const* name, Operation operation) {
    for (int n = 1;; ++n) {
        long const live = Fragile::live;
        testing_support::NoLeaks noLeaks;
        Fragile::throwIn = n;
        bool threw = false;
        try {
            operation();
        } catch (std::runtime_error const&) {
            threw = true;
        }
        Fragile::throwIn = 0;
        ASSERT_TRUE(n < 100) << name;
        if (!threw) return;
        EXPECT_EQ(Fragile::live, live) << name << ", copy " << n;
    }
}

TEST(ElementRules, ADeepCopyWhoseElementCopyThrowsFreesWhatItMade) {
    cow_FixedArray<Fragile> fixed(8, Fragile(3));
    cow_2DArray<Fragile> matrix(3, 4, Fragile(4));
    cow_1DArrayList<Fragile> list;
    for (int i = 0; i < 20; ++i) list.Append(Fragile(i));

    ExpectEveryThrowFreesTheRun("fixed array", [&fixed] {
        cow_FixedArray<Fragile> copy = fixed;
        copy.Get(7) = Fragile(9);
    });
    ExpectEveryThrowFreesTheRun("matrix", [&matrix] {
        cow_2DArray<Fragile> copy = matrix;
        copy.Get(2, 3) = Fragile(9);
    });
    ExpectEveryThrowFreesTheRun("GetCArray", [&list] {
        int size = 0;
        Fragile* copy = list.GetCArray(size);
        delete[] copy;
    });
    // The sources were never touched.
    EXPECT_EQ(fixed.GetShareCount(), 1);
    EXPECT_TRUE(std::all_of(fixed.begin(), fixed.end(), [](Fragile const& f) { return f.value == 3; }));
    EXPECT_TRUE(std::all_of(matrix.begin(), matrix.end(), [](Fragile const& f) { return f.value == 4; }));
    for (int i = 0; i < 20; ++i) EXPECT_EQ(list.ConstGet(i).value, i);

    // New runs of plain numbers are zero: the ten of a default fixed array.
    cow_FixedArray<int> ten;
    EXPECT_EQ(ten.size(), 10u);
    EXPECT_TRUE(std::all_of(ten.begin(), ten.end(), [](int v) { return v == 0; }));
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
