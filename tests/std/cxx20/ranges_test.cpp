// The containers under C++20: the iterator and range concepts hold, which is
// what the algorithms and views of std::ranges ask of a range, and <=>
// orders strings and sequences.

#include <gtest/gtest.h>

#include <version>

#if defined(__cpp_lib_ranges) && defined(__cpp_lib_three_way_comparison)

#include <cmath>
#include <compare>
#include <ranges>

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
