// Matrices: row-major storage, empty extents, sharing of the whole.

#include "zorvancow/shapes/cow_2DArray.h"

#include <gtest/gtest.h>

#include "support/AllocationCounter.h"
#include "zorvanstr/atr_String.h"

using testing_support::AllocationScope;

namespace {

TEST(TwoDArray, ZeroExtentsHoldNoElements) {
    cow_String value("never stored");
    AllocationScope scope;
    cow_2DArray<cow_String> noRows(0, 5, value);
    cow_2DArray<cow_String> noColumns(5, 0, value);
    EXPECT_EQ(scope.News(), 4u) << "a representation and a counter each, no elements";
    EXPECT_EQ(noRows.GetRep()->data, nullptr);
    EXPECT_EQ(noColumns.GetRep()->data, nullptr);
    EXPECT_EQ(noRows.GetRows(), 0);
    EXPECT_EQ(noRows.GetColumns(), 5);
    EXPECT_EQ(noColumns.GetRows(), 5);
    EXPECT_EQ(noColumns.GetColumns(), 0);
    EXPECT_EQ(value.GetShareCount(), 1);

    // Copying a representation without elements allocates none.
    cow_2DArray<cow_String> copy = noColumns;
    AllocationScope copyScope;
    cow_2DArrayRep<cow_String> duplicate(*copy.GetRep());
    EXPECT_EQ(copyScope.News(), 0u);
    EXPECT_EQ(duplicate.data, nullptr);
    EXPECT_EQ(duplicate.rows, 5);

    // Negative extents count as 0.
    cow_2DArray<int> negative(-2, 3, 1);
    EXPECT_EQ(negative.GetRows(), 0);
    EXPECT_EQ(negative.GetColumns(), 3);
    EXPECT_EQ(negative.GetRep()->data, nullptr);
}

TEST(TwoDArray, RowMajorLayout) {
    cow_2DArray<double> matrix(2, 3, 0.5);
    double const* memory = matrix.GetRep()->data;
    for (int i = 0; i < 6; ++i) EXPECT_EQ(memory[i], 0.5);

    matrix.Get(1, 0) = 4.0;
    matrix.Get(0, 2) = 3.0;
    EXPECT_EQ(matrix.GetRep()->data, memory) << "a sole matrix writes in place";
    EXPECT_EQ(memory[3], 4.0) << "(1, 0) is the fourth element";
    EXPECT_EQ(memory[2], 3.0);
    EXPECT_EQ(matrix.ConstGet(1, 0), 4.0);
    EXPECT_EQ(matrix.ConstGet(1, 1), 0.5);
}

TEST(TwoDArray, WriteToCopyLeavesSourceAndCopiesOnce) {
    cow_2DArray<int> source(3, 4, 1);
    cow_2DArray<int> copy = source;
    EXPECT_EQ(copy.GetRep(), source.GetRep());
    EXPECT_EQ(source.GetShareCount(), 2);

    AllocationScope first;
    copy.Get(2, 3) = 9;
    EXPECT_EQ(first.News(), 3u);
    EXPECT_NE(copy.GetRep(), source.GetRep());
    EXPECT_EQ(source.ConstGet(2, 3), 1);
    EXPECT_EQ(copy.ConstGet(2, 3), 9);
    EXPECT_EQ(copy.ConstGet(0, 0), 1);
    EXPECT_EQ(source.GetShareCount(), 1);

    AllocationScope second;
    copy.Get(0, 0) = 5;
    EXPECT_EQ(second.News(), 0u);
    EXPECT_EQ(source.ConstGet(0, 0), 1);
}

TEST(TwoDArray, StringMatrixSharesOneText) {
    long const textsAtStart = atr_GetLiveTexts();
    {
        cow_String cell("cell");
        cow_2DArray<cow_String> matrix(3, 4, cell);
        EXPECT_EQ(cell.GetShareCount(), 1 + 3 * 4);
        EXPECT_EQ(atr_GetLiveTexts(), textsAtStart + 1);

        cow_2DArray<cow_String> copy = matrix;
        copy.Get(1, 1) = cow_String("changed");
        EXPECT_EQ(cell.GetShareCount(), 1 + 12 + 11);
        EXPECT_EQ(matrix.ConstGet(1, 1).GetHeader(), cell.GetHeader());
        EXPECT_STREQ(copy.ConstGet(1, 1).GetCString(), "changed");
    }
    EXPECT_EQ(atr_GetLiveTexts(), textsAtStart);
}

TEST(TwoDArray, RepresentationAssignmentReshapes) {
    cow_2DArrayRep<int> target(2, 2);
    cow_2DArrayRep<int> source(3, 1);
    for (int i = 0; i < 3; ++i) source.data[i] = 10 + i;

    target = source;
    EXPECT_EQ(target.rows, 3);
    EXPECT_EQ(target.columns, 1);
    EXPECT_NE(target.data, source.data);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(target.data[i], 10 + i);

    int* before = target.data;
    cow_2DArrayRep<int> const& self = target;
    target = self;
    EXPECT_EQ(target.data, before);

    target = cow_2DArrayRep<int>(0, 4);
    EXPECT_EQ(target.data, nullptr);
    EXPECT_EQ(target.columns, 4);
}

}  // namespace
