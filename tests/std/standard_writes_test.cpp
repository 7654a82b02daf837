// Writing through the standard interface of arrays and lists: the usual
// idioms agree with a std::vector doing the same, a write unshares exactly
// the block it lands in, and a read through a non-const value unshares
// nothing. Built into the C++17 and the C++20 test programs alike.

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/AllocationCounter.h"
#include "support/NoLeaks.h"
#include "zorvancow/zorvancow.h"

namespace {

// The blocks of `a` in use that `b`'s table holds too.
template <class T>
int SharedBlocks(cow_1DArray<T> const& a, cow_1DArray<T> const& b) {
    int shared = 0;
    for (int s = a.GetHeadPosition() >> a.GetShift(); s < a.GetCapacity() && s < b.GetCapacity(); ++s) {
        if (a.GetBlock(s) != nullptr && a.GetBlock(s) == b.GetBlock(s)) ++shared;
    }
    return shared;
}
template <class C>
cow_1DArray<typename C::value_type> const& ArrayOf(C const& c) {
    return c.GetArray();
}
template <class T>
cow_1DArray<T> const& ArrayOf(cow_1DArray<T> const& c) {
    return c;
}

// Each idiom (a generic lambda), run on a copy of `start` and on a copy of
// its model vector: the results agree and `start` keeps its values.
template <class C, class Model, class... Idioms>
void ExpectIdiomsAgree(C const& start, Model const& model, Idioms... idioms) {
    auto run = [&](auto idiom) {
        C c = start;
        Model m = model;
        idiom(c);
        idiom(m);
        ASSERT_TRUE(std::equal(c.cbegin(), c.cend(), m.begin(), m.end()));
        EXPECT_TRUE(std::equal(start.begin(), start.end(), model.begin(), model.end()));
    };
    (run(idioms), ...);
}
template <class C, class Model>
void ExpectIdiomsAgree(C const& start, Model const& model) {
    using T = typename C::value_type;
    ExpectIdiomsAgree(
        start, model, [](auto& s) { std::sort(s.begin(), s.end()); },
        [](auto& s) { std::sort(s.begin() + 5, s.end() - 30, [](T const& a, T const& b) { return b < a; }); },
        [](auto& s) { std::reverse(s.begin(), s.end()); },
        [&model](auto& s) { std::fill(s.begin() + 20, s.begin() + 50, model[3]); },
        [&model](auto& s) {
            std::size_t i = 0;
            for (auto& x : s) x = model[i++ * 7 % model.size()];
        },
        [](auto& s) {
            s[7] = s[9];
            s.front() = s.back();
            std::iter_swap(s.begin() + 1, s.end() - 1);
            using std::swap;
            swap(s[2], s[40]);
        },
        [&model](auto& s) {
            std::copy(model.rbegin(), model.rbegin() + 40, s.begin() + 60);
            std::rotate(s.begin(), s.begin() + 33, s.end());
        });
}

template <class C>
class StandardWrites : public testing::Test {};
using Sequences = testing::Types<cow_1DArray<int>, cow_1DArrayList<int>, cow_List<int>, cow_List<std::string>,
                                 cow_1DArrayList<cow_String>>;
TYPED_TEST_SUITE(StandardWrites, Sequences, ::testing::internal::DefaultNameGenerator);

template <class T>
T Value(int v) {
    if constexpr (std::is_same<T, int>::value) return v;
    else return T(std::to_string(v).c_str());
}

TYPED_TEST(StandardWrites, IdiomsAgreeWithAVectorAndLeaveTheSourceAlone) {
    using T = typename TypeParam::value_type;
    testing_support::NoLeaks noLeaks;
    std::mt19937 random(7);
    std::vector<T> model;
    for (int i = 0; i < 300; ++i) model.push_back(Value<T>(static_cast<int>(random() % 1000)));
    TypeParam values(model);
    ExpectIdiomsAgree(values, model);
    if constexpr (std::is_same<TypeParam, cow_List<int>>::value) {
        // The head inside a block, and a list whose array reaches past its count.
        cow_List<int> headed(model);
        headed.Prepend(1).Prepend(2).RemoveFirst().RemoveFirst().Append(5).RemoveLast();
        ExpectIdiomsAgree(headed, model);
    }
}

TYPED_TEST(StandardWrites, AWriteUnsharesOneBlockAndAReadNone) {
    using T = typename TypeParam::value_type;
    testing_support::NoLeaks noLeaks;
    std::vector<T> model;
    for (int i = 0; i < 100; ++i) model.push_back(Value<T>(i));
    TypeParam const source(model);
    int const blocks = 7;  // 100 elements in blocks of 16
    TypeParam copy = source;

    // Reads through the non-const copy: range-for, indexing, iterators, algorithms.
    std::vector<T> read;
    for (T const& x : copy) read.push_back(x);
    T const first = copy[0];
    EXPECT_TRUE(read == model && first == model[0] && copy.back() == model[99] && *(copy.end() - 1) == model[99]);
    EXPECT_EQ(std::find(copy.begin(), copy.end(), model[70]) - copy.begin(), 70);
    EXPECT_EQ(ArrayOf(copy).GetTableShareCount(), 2);

    // One write through an iterator, then more in the same block: one block copy.
    auto it = copy.begin() + 40;
    *it = model[1];
    ++it;
    if constexpr (std::is_same<T, int>::value) {
        *it += 1;
        ++*it;
    } else {
        *it = model[3];
    }
    copy[47] = model[2];
    EXPECT_EQ(ArrayOf(copy).GetTableShareCount(), 1);
    EXPECT_EQ(SharedBlocks(ArrayOf(copy), ArrayOf(source)), blocks - 1);
    EXPECT_TRUE(std::equal(source.begin(), source.end(), model.begin(), model.end()));

    // A sort of a copy copies each block at most once: a block is two
    // objects (the block and its element run), and the table is no object.
    TypeParam reversed(model.rbegin(), model.rend());
    TypeParam sorted = reversed;
    testing_support::AllocationScope scope;
    std::sort(sorted.begin(), sorted.end());
    EXPECT_LE(scope.News(), static_cast<std::size_t>(2 * blocks + 1));  // and the table's counter
    EXPECT_EQ(SharedBlocks(ArrayOf(sorted), ArrayOf(reversed)), 0);
    EXPECT_TRUE(std::is_sorted(sorted.cbegin(), sorted.cend()));
    EXPECT_TRUE(std::equal(reversed.begin(), reversed.end(), model.rbegin(), model.rend()));
}

TEST(StandardWrites, ListMembersBackInsertionAndIteratorsSeeEachOthersWrites) {
    testing_support::NoLeaks noLeaks;
    std::vector<int> model{4, 1, 3};
    cow_List<int> list;
    cow_1DArrayList<cow_String> strings;
    std::copy(model.begin(), model.end(), std::back_inserter(list));
    strings.push_back(cow_String("a"));
    EXPECT_EQ(strings.emplace_back("bc").ConstGet().GetLength(), 2u);
    list.emplace_back(7);
    list.pop_back();
    strings.pop_back();
    EXPECT_EQ(list, (cow_List<int>{4, 1, 3}));
    EXPECT_EQ(strings, (cow_1DArrayList<cow_String>{cow_String("a")}));
    EXPECT_EQ(list.GetArray().PartialArrayConstGet(3), 0);  // the slot popped is back to zero

    // Two iterators of a copy in one shared block: the write through the one
    // unshares the block, and the other reads (and compares) the new value.
    cow_List<int> shared = list;
    auto a = shared.begin();
    auto b = shared.begin();
    *b = 9;
    EXPECT_EQ(*a, 9);
    EXPECT_TRUE(a == b && a == shared.cbegin());
    EXPECT_EQ(list.front(), 4);
}

TEST(StandardWrites, FixedArraysAndMatricesUnshareTheWholeOnNonConstAccess) {
    testing_support::NoLeaks noLeaks;
    cow_FixedArray<int> const fixed{3, 1, 2};
    cow_FixedArray<int> copy = fixed;
    EXPECT_EQ(*std::as_const(copy).begin() + std::as_const(copy)[1], 4);
    EXPECT_EQ(copy.GetShareCount(), 2);  // const reads share
    std::sort(copy.begin(), copy.end());
    copy[0] += 10;
    copy.back() = 9;
    EXPECT_EQ(fixed, (cow_FixedArray<int>{3, 1, 2}));
    EXPECT_EQ(copy, (cow_FixedArray<int>{11, 2, 9}));
    EXPECT_EQ(fixed.GetShareCount(), 1);

    cow_2DArray<int> const matrix(2, 3, 1);
    cow_2DArray<int> edited = matrix;
    for (int& x : edited.Row(1)) x = 5;
    std::fill(edited.begin(), edited.begin() + 2, 7);
    EXPECT_EQ(std::vector<int>(edited.begin(), edited.end()), (std::vector<int>{7, 7, 1, 5, 5, 5}));
    EXPECT_EQ(std::count(matrix.begin(), matrix.end(), 1), 6);
    EXPECT_EQ(matrix.GetShareCount(), 1);
}

// The write paths keep the basic guarantee when the element's assignment
// throws: the source keeps its values, the copy stays a valid list, and
// nothing leaks.
struct Fragile {
    static inline int throwIn = 0;
    int value = 0;
    Fragile() = default;
    explicit Fragile(int v) : value(v) {}
    Fragile(Fragile const&) = default;
    Fragile& operator=(Fragile const& other) {
        if (throwIn != 0 && --throwIn == 0) throw std::runtime_error("assignment refused");
        value = other.value;
        return *this;
    }
    friend bool operator<(Fragile const& a, Fragile const& b) { return a.value < b.value; }
};

TEST(StandardWrites, AThrowingAssignmentInASortLeavesEveryValueValid) {
    cow_List<Fragile> source;
    for (int i = 0; i < 40; ++i) source.Append(Fragile(40 - i));
    for (int n = 1; n < 400; ++n) {
        testing_support::NoLeaks noLeaks;
        cow_List<Fragile> copy = source;
        Fragile::throwIn = n;
        bool threw = false;
        try {
            std::sort(copy.begin(), copy.end());
        } catch (std::runtime_error const&) {
            threw = true;
        }
        Fragile::throwIn = 0;
        EXPECT_EQ(copy.size(), 40u);
        for (int i = 0; i < 40; ++i) ASSERT_EQ(source.ConstGet(i).value, 40 - i);
        if (!threw) {
            EXPECT_TRUE(std::is_sorted(copy.cbegin(), copy.cend()));
            return;
        }
    }
    FAIL() << "the sort never completed";
}

}  // namespace
