// Every container used the way a C++17 programmer uses a standard one:
// range-for, standard algorithms over its iterators, the usual names,
// initializer lists and ranges, operators, hashing, printing, and cow_String
// next to std::string.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>
#include <sstream>
#include <string>
#include <vector>

#include "support/NoLeaks.h"
#include "zorvancow/zorvancow.h"

namespace {

template <class C>
std::string Printed(C const& value) {
    std::ostringstream out;
    out << value;
    return out.str();
}

TEST(StandardSequences, ConstructionOperatorsHashAndPrinting) {
    testing_support::NoLeaks noLeaks;
    cow_List<int> list{1, 2, 3};
    cow_List<int> fromVector(std::vector<int>{1, 2, 3});
    cow_1DArray<int> array{1, 2, 3};
    cow_FixedArray<int> fixed{1, 2, 3};
    EXPECT_EQ(list, fromVector);
    EXPECT_LT(list, (cow_List<int>{1, 2, 4}));
    EXPECT_NE(array, (cow_1DArray<int>{1, 2}));
    cow_List<double> nanList{std::nan("")};
    EXPECT_EQ(nanList, nanList);  // list equality: one storage, the same element
    EXPECT_NE(nanList, cow_List<double>{std::nan("")});

    EXPECT_EQ(Printed(list), "{1, 2, 3}");
    EXPECT_EQ(Printed(cow_List<cow_List<int>>{list, {}}), "{{1, 2, 3}, {}}");
    EXPECT_EQ(Printed(cow_1DArrayList<cow_String>{cow_String("a"), cow_String()}), "{a, }");
    EXPECT_EQ(std::hash<cow_List<int>>()(list), std::hash<cow_List<int>>()(fromVector));
    EXPECT_EQ(std::hash<cow_FixedArray<int>>()(fixed), std::hash<cow_1DArray<int>>()(array));

    cow_2DArray<int> matrix(3, 4, 1);
    matrix.Get(2, 3) = 5;
    std::vector<int> rowSums;
    for (cow_Span<int const> row : matrix.Rows()) rowSums.push_back(std::accumulate(row.begin(), row.end(), 0));
    EXPECT_EQ(rowSums, (std::vector<int>{4, 4, 8}));
}

TEST(StandardMap, SnapshotWalksSortedViewsAndFind) {
    testing_support::NoLeaks noLeaks;
    cow_Map<int, int> map{{5, 50}, {3, 30}, {6, 60}, {1, 10}, {7, 70}, {2, 20}, {4, 40}, {0, 0}};
    std::vector<int> walk;
    for (auto const& entry : map) {
        walk.push_back(entry.first);
        map.Remove(entry.first);  // the walk goes over the snapshot taken at begin()
    }
    EXPECT_EQ(walk, (std::vector<int>{5, 6, 4, 0, 2, 3, 1, 7}));  // the node walk's order
    EXPECT_TRUE(map.empty());

    cow_Map<cow_String, int> strings{{cow_String("b"), 1}, {cow_String("ab"), 2}, {cow_String("a"), 3}};
    EXPECT_EQ(Printed(strings.Sorted()), "{a: 3, ab: 2, b: 1}");
    EXPECT_EQ(Printed(strings.Sorted(true)), "{b: 1, ab: 2, a: 3}");
    auto found = strings.find(cow_String("ab"));
    ASSERT_NE(found, strings.end());
    EXPECT_EQ(found->second, 2);
    // find stands where a whole walk meets the key, and walks on from there.
    auto inWalk = std::find_if(strings.begin(), strings.end(), [](auto entry) { return entry.first == "ab"; });
    EXPECT_EQ(std::distance(found, strings.end()), std::distance(inWalk, strings.end()));

    cow_Map<int, int> copy(std::map<int, int>{{1, 1}, {2, 2}});
    cow_Map<int, int> other{{2, 2}, {1, 1}};
    EXPECT_EQ(copy, other);
    other.Insert(2, 3);
    EXPECT_NE(copy, other);
    EXPECT_EQ((std::map<int, int>(other.begin(), other.end())), (std::map<int, int>{{1, 1}, {2, 3}}));
    // A tree from a std::map, and from a list where the first of equal keys wins.
    cow_Btree<std::string, int> fromMap(std::map<std::string, int>{{"b", 2}, {"a", 1}});
    EXPECT_EQ(Printed(fromMap), "{a: 1, b: 2}");
    EXPECT_EQ(fromMap, (cow_Btree<std::string, int>{{"a", 1}, {"b", 2}, {"a", 9}}));
    // A walk holds the tree like any copy, and gives it back.
    {
        auto it = other.begin();
        EXPECT_EQ(other.GetRoot().GetShareCount(), 2);
    }
    EXPECT_EQ(other.GetRoot().GetShareCount(), 1);
}

TEST(StandardString, ConversionsComparisonsAndHash) {
    testing_support::NoLeaks noLeaks;
    std::string text = "z\xe4";
    cow_String value(text);
    std::string_view view = value;
    EXPECT_TRUE(view == text && static_cast<std::string>(value) == text && value == text && "z\xe4" == value);
    EXPECT_EQ(cow_String(), cow_String(""));
    EXPECT_LT(cow_String("z"), value);  // unsigned bytes
    atr_setNaturalOrder(1);
    EXPECT_LT(cow_String("a10"), cow_String("a9"));  // == and < never use natural order
    atr_setNaturalOrder(0);
    EXPECT_EQ(std::hash<cow_String>()(value), std::hash<std::string_view>()(text));
    EXPECT_EQ(Printed(value), text);
    EXPECT_TRUE(value.size() == 2u && cow_String().empty());
}

}  // namespace
