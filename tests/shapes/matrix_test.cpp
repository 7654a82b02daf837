// Matrices: row-major storage, empty extents (however large the other), sharing
// of the whole.

#include "zorvancow/shapes/cow_2DArray.h"

#include <gtest/gtest.h>

#include <utility>

#include "support/AllocationCounter.h"
#include "zorvanstr/atr_String.h"

using testing_support::AllocationScope;

namespace {

TEST(TwoDArray, ExtentsCopiesAndReshapingAssignment) {
    long const textsAtStart = atr_GetLiveTexts();
    cow_String value("cell");
    struct Case { int rows, columns, keptRows; } const cases[] = {
        {0, 5, 0}, {5, 0, 5}, {-2, 3, 0}, {3, 4, 3}, {0, 1 << 30, 0}};
    for (Case const& c : cases) {
        int const cells = c.keptRows * c.columns;
        AllocationScope scope;
        cow_2DArray<cow_String> matrix(c.rows, c.columns, value);
        EXPECT_EQ(scope.News(), cells == 0 ? 2u : 3u) << "a representation, a counter and any elements";
        EXPECT_EQ(std::make_pair(matrix.GetRows(), matrix.GetColumns()), std::make_pair(c.keptRows, c.columns));
        EXPECT_EQ(value.GetShareCount(), 1 + cells) << "every cell holds the one text";
        EXPECT_EQ(atr_GetLiveTexts(), textsAtStart + 1);

        cow_2DArrayRep<cow_String> duplicate(*matrix.GetRep()), assigned(2, 2);
        assigned = duplicate;
        assigned = *&assigned;
        EXPECT_EQ(assigned.data == nullptr, cells == 0);
        EXPECT_EQ(std::make_pair(assigned.rows, assigned.columns), std::make_pair(c.keptRows, c.columns));
        EXPECT_EQ(value.GetShareCount(), 1 + 3 * cells) << "the matrix, its copy and the reshaped one";
    }
}

TEST(TwoDArray, RowMajorAndCopiedWholeAtTheFirstWrite) {
    cow_2DArray<int> source(2, 3, 1);
    cow_2DArray<int> copy = source;
    AllocationScope first;
    copy.Get(1, 0) = 9;
    EXPECT_EQ(first.News(), 3u) << "representation, elements and counter";
    EXPECT_EQ(copy.GetRep()->data[3], 9) << "(1, 0) is the fourth element";

    AllocationScope second;
    copy.Get(0, 2) = 5;
    EXPECT_EQ(second.News(), 0u);
    EXPECT_EQ(copy.GetRep()->data[2], 5);
}

}  // namespace
