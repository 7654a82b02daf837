// One behaviour table run over every element type the library exports lists of.

#include <gtest/gtest.h>

#include <climits>
#include <vector>

#include "support/NoLeaks.h"
#include "zorvancow/lists/cow_List.h"

namespace {

using testing_support::NoLeaks;

// Values in ascending order with the ends of each type's range (strings go by bytes while natural order is off).
template <class T> std::vector<T> Ascending() { return {T(-1.5), T(0), T(2.5), T(1e30)}; }
template <> std::vector<int> Ascending() { return {INT_MIN, -1, 0, 1, INT_MAX}; }
template <> std::vector<unsigned int> Ascending() { return {0u, 1u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}; }
template <> std::vector<bool> Ascending() { return {false, true}; }
template <> std::vector<cow_String> Ascending() { return {cow_String(""), cow_String("A"), cow_String("a10"), cow_String("a9"), cow_String("\xE4")}; }
template <> std::vector<atr_String> Ascending() { return {atr_String(""), atr_String("A"), atr_String("a10"), atr_String("a9"), atr_String("\xE4")}; }

template <class T> class ListOf : public ::testing::Test {};
using ListTypes = ::testing::Types<int, unsigned int, bool, float, double, cow_String, atr_String>;
TYPED_TEST_SUITE(ListOf, ListTypes, ::testing::internal::DefaultNameGenerator);

// Copies keep their order (the interpreter's); the sorted list holds the
// values in the element type's order, in a fresh array.
TYPED_TEST(ListOf, SortOrdersByTheElementTypeIntoStorageOfItsOwn) {
    NoLeaks noLeaks;
    std::vector<TypeParam> const up = Ascending<TypeParam>();
    cow_List<TypeParam> list;  // prepended: several blocks and a moved head
    for (std::size_t i = 0; i < 9 * up.size(); ++i) list.Prepend(up[(i * 3 + i / up.size()) % up.size()]);
    cow_List<TypeParam> const before(list);  // a copy that keeps the unsorted storage
    list.Sort();
    for (int i = 0; i < list.GetCount(); ++i)
        EXPECT_TRUE(cow_Element<TypeParam>::Equal(list.ConstGet(i), up[static_cast<std::size_t>(i / 9)])) << i;
    EXPECT_EQ(list.GetArray().GetHeadPosition(), 0) << "sorted into a fresh array";
    for (int s = 0; s < list.GetArray().GetCapacity(); ++s) EXPECT_LE(list.GetArray().GetBlockCount(s), 1);
}

}  // namespace
