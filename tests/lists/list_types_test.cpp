// One behaviour table run over every element type the library exports lists of.

#include <gtest/gtest.h>

#include <climits>
#include <iterator>
#include <string>
#include <type_traits>
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

template <class T> std::enable_if_t<std::is_arithmetic_v<T>, double> Plain(T value) { return static_cast<double>(value); }
std::string Plain(atr_String const& value) { return value.GetCString(); }
std::string Plain(cow_String const& value) { return value.GetCString(); }

// The elements of a list (or any range) as plain values that compare and print.
template <class Range>
auto Contents(Range const& range) {
    std::vector<decltype(Plain(*std::begin(range)))> out;
    for (auto const& element : range) out.push_back(Plain(element));
    return out;
}

template <class T> class ListOf : public ::testing::Test {};
using ListTypes = ::testing::Types<int, unsigned int, bool, float, double, cow_String, atr_String>;
TYPED_TEST_SUITE(ListOf, ListTypes, ::testing::internal::DefaultNameGenerator);

TYPED_TEST(ListOf, SortOrdersByTheElementTypeIntoStorageOfItsOwn) {
    NoLeaks noLeaks;
    std::vector<TypeParam> const up = Ascending<TypeParam>();
    cow_List<TypeParam> list;  // prepended: several blocks and a moved head
    for (std::size_t i = 0; i < 9 * up.size(); ++i) list.Prepend(up[(i * 3 + i / up.size()) % up.size()]);
    cow_List<TypeParam> const before(list);
    auto const order = Contents(before);
    list.Sort();
    EXPECT_EQ(Contents(before), order) << "the copy keeps its order";
    decltype(Contents(list)) expected;
    for (TypeParam const& value : up) expected.insert(expected.end(), 9, Plain(value));
    EXPECT_EQ(Contents(list), expected);
    EXPECT_EQ(list.GetArray().GetHeadPosition(), 0) << "sorted into a fresh array";
    for (int s = 0; s < list.GetArray().GetCapacity(); ++s) EXPECT_LE(list.GetArray().GetBlockCount(s), 1);
}

}  // namespace
