// Shapes whose element count does not fit an int, and what checked mode
// refuses.

#include <gtest/gtest.h>

#include "support/FaultInjection.h"
#include "zorvancow/shapes/cow_2DArray.h"
#include "zorvancow/shapes/cow_FixedArray.h"

namespace {

TEST(ShapeLimitsDeathTest, AShapeWhoseProductOverflowsIsRefusedInEveryBuild) {
    EXPECT_DEATH(cow_2DArray<int>(65536, 65537, 0),
                 "^cow_2DArray::cow_2DArray: rows x columns overflows int \\(65536 x 65537\\)\n");
    EXPECT_DEATH(cow_2DArray<cow_String>(2, 1 << 30, cow_String()), "rows x columns overflows int \\(2 x 1073741824\\)");
    // The largest product that fits is a legal shape; with a 0 extent
    // nothing is allocated however large the other one is.
    cow_2DArray<double> wide(0, 1 << 30, 1.0);
    EXPECT_EQ(wide.GetRep()->data, nullptr);
    EXPECT_EQ(wide.GetColumns(), 1 << 30);
}

#if ZORVANCOW_CHECKED
TEST(ShapeCheckedDeathTest, IndicesOutsideTheShapeStopWithOneLine) {
    cow_FixedArray<int> fixed(3, 7);
    EXPECT_DEATH(fixed.Get(3), "^cow_FixedArray::Get: index out of range \\(index 3, size 3\\)\n");
    EXPECT_DEATH(fixed.ConstGet(-1), "cow_FixedArray::ConstGet: index out of range \\(index -1, size 3\\)");
    cow_2DArray<float> matrix(2, 3, 0.5f);
    EXPECT_DEATH(matrix.Get(0, 3), "cow_2DArray::Get: index out of range \\(row 0, column 3, shape 2 x 3\\)");
    EXPECT_DEATH(matrix.ConstGet(2, 0), "cow_2DArray::ConstGet: index out of range \\(row 2, column 0, shape 2 x 3\\)");
    EXPECT_EQ(matrix.ConstGet(1, 2), 0.5f);
}
#endif

TEST(ShapeFaultInjectionDeathTest, EveryFailedAllocationEndsInOneLine) {
    testing_support::ExpectEveryAllocationFailureAborts([] {
        cow_String const text("cell");
        cow_FixedArray<cow_String> row(6, text);
        cow_FixedArray<cow_String> copy = row;
        copy.Get(2) = cow_String();
        cow_FixedArray<int> numbers;
        cow_FixedArray<int> other = numbers;
        other.Get(0) = 1;
        cow_2DArray<cow_String> grid(3, 4, text);
        cow_2DArray<cow_String> edited = grid;
        edited.Get(2, 3) = cow_String();
        testing_support::FaultPause pause;
        EXPECT_NE(row, copy);
    });
}

}  // namespace
