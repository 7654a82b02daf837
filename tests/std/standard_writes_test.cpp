// Moves, swaps and the standard write spellings of the containers. What the
// operation interpreters cannot see from their models is checked here: a
// move steals (nothing allocated, no count moved) and leaves an empty value
// that still works; a write through an iterator or [] on a copy unshares the
// one block it lands in, a read through a non-const value unshares nothing.
// Built into the C++17 and the C++20 test programs alike.

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "support/AllocationCounter.h"
#include "support/NoLeaks.h"
#include "zorvancow/zorvancow.h"

namespace {

using testing_support::AllocationScope;
using testing_support::NoLeaks;

template <class C, class... Ts>
constexpr bool kIsOneOf = (std::is_same<C, Ts>::value || ...);
template <class C>
constexpr bool kIsTable = kIsOneOf<C, omi_UintTable<long>, omi_IntTable<long>>;

// Three elements of every container, its size and a write that adds one.
template <class C>
C Make() {
    if constexpr (kIsTable<C>) {
        C t;
        for (int k = 1; k <= 3; ++k) t.Insert(k, 10 * k);
        return t;
    } else if constexpr (kIsOneOf<C, cow_Btree<int, int>, cow_Map<int, int>>) {
        return C{{1, 10}, {2, 20}, {3, 30}};
    } else if constexpr (kIsOneOf<C, cow_String>) {
        return C("abc");
    } else if constexpr (kIsOneOf<C, cow_2DArray<int>>) {
        return C(1, 3, 2);
    } else {
        return C{1, 2, 3};
    }
}
template <class C>
std::size_t Size(C const& c) {
    if constexpr (kIsTable<C>) return static_cast<std::size_t>(c.GetCount());
    else return c.size();
}
template <class C>
void Write(C& c) {
    if constexpr (kIsTable<C>) c.Insert(7, 70);
    else if constexpr (kIsOneOf<C, cow_Btree<int, int>, cow_Map<int, int>>) c.insert_or_assign(7, 70);
    else if constexpr (kIsOneOf<C, cow_String>) c = C("g");
    else if constexpr (kIsOneOf<C, cow_FixedArray<int>>) c = C(1, 7);
    else if constexpr (kIsOneOf<C, cow_2DArray<int>>) c = C(1, 1, 7);
    else if constexpr (kIsOneOf<C, cow_1DArray<int>>) c.Get(c.GetSize()) = 7;
    else c.Append(7);
}
template <class C>
class Moves : public testing::Test {};
using Containers = testing::Types<cow_1DArray<int>, cow_1DArrayList<int>, cow_List<int>, cow_FixedArray<int>,
                                  cow_2DArray<int>, cow_Btree<int, int>, cow_Map<int, int>, omi_UintTable<long>,
                                  omi_IntTable<long>, cow_String>;
TYPED_TEST_SUITE(Moves, Containers, ::testing::internal::DefaultNameGenerator);

TYPED_TEST(Moves, StealWithoutCountsAndLeaveAUsableEmptyValue) {
    using C = TypeParam;
    static_assert(std::is_nothrow_move_constructible<C>::value && std::is_nothrow_move_assignable<C>::value &&
                  std::is_nothrow_swappable<C>::value);
    NoLeaks noLeaks;
    C source = Make<C>();
    C target = Make<C>();
    Write(target);
    std::size_t left[2], news;
    {
        AllocationScope scope;
        C moved(std::move(source));
        left[0] = Size(source);
        target = std::move(moved);
        left[1] = Size(moved);
        using std::swap;
        swap(target, source);
        C& alias = source;
        source = std::move(alias);
        news = scope.News();
    }
    // Nothing allocated, and each moved-from value empty: with no leak at the
    // end, no count was raised or lowered on the way.
    EXPECT_EQ(news, 0u);
    EXPECT_EQ(left[0] + left[1] + Size(target), 0u);
    EXPECT_EQ(Size(source), 3u);
    // The emptied value takes a write. (That it copies and takes a move is
    // the interpreters', whose copies go through moves too.)
    Write(target);
    EXPECT_EQ(Size(target), 1u);
}

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
    if constexpr (std::is_same<C, cow_1DArray<typename C::value_type>>::value) return c;
    else return c.GetArray();
}
template <class T>
T Value(int v) {
    if constexpr (std::is_same<T, int>::value) return v;
    else return T(std::to_string(v).c_str());
}

template <class C>
class StandardWrites : public testing::Test {};
using Sequences = testing::Types<cow_1DArray<int>, cow_1DArrayList<int>, cow_List<int>, cow_List<std::string>,
                                 cow_1DArrayList<cow_String>>;
TYPED_TEST_SUITE(StandardWrites, Sequences, ::testing::internal::DefaultNameGenerator);

TYPED_TEST(StandardWrites, AWriteUnsharesOneBlockAndAReadNone) {
    using T = typename TypeParam::value_type;
    NoLeaks noLeaks;
    std::vector<T> model;
    for (int i = 0; i < 100; ++i) model.push_back(Value<T>(i));
    TypeParam const source(model);
    int const blocks = 7;  // 100 elements in blocks of 16
    TypeParam copy = source;

    // Reads through the non-const copy: iterators, indexing, algorithms.
    std::vector<T> const read(copy.begin(), copy.end());
    EXPECT_TRUE(read == model && copy[0] == model[0] && copy.back() == model[99]);
    EXPECT_EQ(std::find(copy.begin(), copy.end(), model[70]) - copy.begin(), 70);
    EXPECT_EQ(ArrayOf(copy).GetTableShareCount(), 2);

    // Writes through an iterator (its proxy's operators too) and [] into one
    // block: one block copy.
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

    // A sort of a copy copies each block at most once: a block is two
    // objects (the block and its element run), and the table is no object.
    TypeParam reversed(model.rbegin(), model.rend());
    TypeParam sorted = reversed;
    AllocationScope scope;
    std::sort(sorted.begin(), sorted.end());
    EXPECT_LE(scope.News(), static_cast<std::size_t>(2 * blocks + 1));  // and the table's counter
    EXPECT_EQ(SharedBlocks(ArrayOf(sorted), ArrayOf(reversed)), 0);
}

}  // namespace
