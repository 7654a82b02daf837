// The containers under C++20: the iterator and range concepts hold, the
// algorithms and views of std::ranges run over them, and <=> orders strings
// and sequences.

#include <gtest/gtest.h>

#include <version>

#if defined(__cpp_lib_ranges) && defined(__cpp_lib_three_way_comparison)

#include <algorithm>
#include <cmath>
#include <compare>
#include <iterator>
#include <ranges>
#include <vector>

#include "support/NoLeaks.h"
#include "zorvancow/zorvancow.h"

namespace {

// A non-const array or list writes through a proxy that its iterator holds,
// so its it[n] (a proxy of its own) is not the type of *it: to std::ranges it
// is bidirectional, and random-access when const.
static_assert(std::ranges::random_access_range<cow_1DArray<int> const> && std::ranges::sized_range<cow_1DArray<int>>);
static_assert(std::ranges::random_access_range<cow_List<cow_String> const> && std::ranges::common_range<cow_List<int>>);
static_assert(std::ranges::bidirectional_range<cow_1DArrayList<double>> &&
              std::ranges::output_range<cow_List<cow_String>, cow_String>);
static_assert(std::ranges::contiguous_range<cow_FixedArray<int>>);
static_assert(std::ranges::contiguous_range<cow_2DArray<int>>);
static_assert(std::ranges::random_access_range<cow_2DArrayRows<int>>);
static_assert(std::ranges::contiguous_range<cow_Span<int const>>);
static_assert(std::ranges::forward_range<cow_BlockRange<int>>);
static_assert(std::ranges::bidirectional_range<cow_Btree<cow_String, int>>);
static_assert(std::ranges::forward_range<cow_Map<cow_String, cow_String>>);
static_assert(std::ranges::forward_range<cow_MapSortedView<int, double>>);
static_assert(std::three_way_comparable<cow_String, std::strong_ordering>);
static_assert(std::three_way_comparable<cow_List<int>, std::strong_ordering>);
static_assert(std::three_way_comparable<cow_List<double>, std::partial_ordering>);

TEST(Ranges, AlgorithmsAndViewsOverEveryContainer) {
    testing_support::NoLeaks noLeaks;
    cow_List<int> list{5, 3, 8, 1};
    EXPECT_EQ(std::ranges::find(list, 8) - list.begin(), 2);

    cow_1DArray<int> array{1, 2, 3};
    cow_Btree<int, int> tree{{2, 20}, {1, 10}, {3, 30}};
    cow_Map<int, int> map{{4, 1}, {2, 1}, {9, 1}};
    EXPECT_EQ(std::ranges::count_if(map, [](auto entry) { return entry.first > 3; }), 2);
    EXPECT_EQ(std::ranges::prev(std::ranges::end(tree))->first, 3);
    // clang 14 cannot compile the views of this standard library at all.
#if !defined(__clang__) || __clang_major__ >= 16
    auto evens = list | std::views::filter([](int v) { return v % 2 == 0; });
    EXPECT_EQ(std::ranges::distance(evens), 1);
    auto squares = array | std::views::transform([](int v) { return v * v; }) | std::views::reverse;
    EXPECT_EQ(std::vector<int>(squares.begin(), squares.end()), (std::vector<int>{9, 4, 1}));
    std::vector<int> keys;
    for (auto const& [key, value] : tree | std::views::reverse) keys.push_back(key);
    EXPECT_EQ(keys, (std::vector<int>{3, 2, 1}));
    auto keysInOrder = map.Sorted() | std::views::transform([](auto entry) { return entry.first; });
    EXPECT_TRUE(std::ranges::is_sorted(keysInOrder));
#endif

    cow_FixedArray<int> fixed{3, 1, 2};
    EXPECT_EQ(std::ranges::min(fixed), 1);
    EXPECT_EQ(std::ranges::count(cow_2DArray<int>(2, 3, 7), 7), 6);
}

TEST(Ranges, ThreeWayComparison) {
    EXPECT_EQ(cow_String("a") <=> cow_String("b"), std::strong_ordering::less);
    EXPECT_EQ(cow_String("z") <=> cow_String("\xe4"), std::strong_ordering::less);
    EXPECT_EQ((cow_List<int>{1, 2} <=> cow_List<int>{1, 2}), std::strong_ordering::equal);
    EXPECT_EQ((cow_List<int>{1, 3} <=> cow_List<int>{1, 2, 9}), std::strong_ordering::greater);
    EXPECT_EQ((cow_List<double>{std::nan("")} <=> cow_List<double>{1.0}), std::partial_ordering::unordered);
    EXPECT_LT((cow_1DArray<cow_String>{cow_String("a")}), (cow_1DArray<cow_String>{cow_String("b")}));
}

}  // namespace

#else

TEST(Ranges, NeedsTheRangesLibrary) { GTEST_SKIP() << "this standard library has no ranges"; }

#endif
