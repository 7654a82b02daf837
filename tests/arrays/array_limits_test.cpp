// Where positions meet the limits of an int, and what checked mode refuses.

#include <gtest/gtest.h>

#include <climits>

#include "support/NoLeaks.h"
#include "zorvancow/arrays/cow_1DArray.h"

namespace {

using testing_support::NoLeaks;

TEST(BlockedArrayLimits, FrontGrowthOfAHugeSizedArrayKeepsPositionsInRange) {
    NoLeaks noLeaks;
    // Blocks of 2^27 elements: the table has 16 free slots, but only 7 of
    // them fit in front of the array before the end position would pass
    // the largest int. Bool elements keep the one new block at 128 MiB.
    cow_1DArray<bool> a(1 << 30);
    ASSERT_EQ(a.GetShift(), 27);
    ASSERT_EQ(a.GetCapacity(), 24);
    a.GetHead() = true;
    EXPECT_EQ(a.GetSize(), (1 << 30) + 1);
    EXPECT_EQ(a.GetHeadPosition(), (7 << 27) - 1);
    EXPECT_EQ(a.GetEndPosition(), INT_MAX - (1 << 27) + 1);
    EXPECT_TRUE(a.PartialArrayConstGet(0));
    // The next calls step the head back inside the free slots.
    a.GetHead() = false;
    EXPECT_EQ(a.GetHeadPosition(), (7 << 27) - 2);
    EXPECT_TRUE(a.PartialArrayConstGet(1));
}

TEST(BlockedArrayLimitsDeathTest, PositionsPastTheLargestIntAreRefusedInEveryBuild) {
    EXPECT_DEATH(cow_1DArray<bool>(INT_MAX).GetHead(),
                 "cow_1DArray::GetHead: the end position would pass 2147483647 \\(end 2147483647\\)");
    cow_1DArray<int> a;
    a.Get(5) = 1;
    a.RemoveHead();  // head 1
    EXPECT_DEATH(a.Get(INT_MAX), "cow_1DArray::Get: the position would pass 2147483647 \\(index 2147483647, head 1\\)");
    EXPECT_DEATH(a.Grow(INT_MAX), "cow_1DArray::Grow: the end position would pass 2147483647");
}

#if ZORVANCOW_CHECKED
TEST(BlockedArrayCheckedDeathTest, PreconditionsStopWithOneLine) {
    cow_1DArray<int> a(4);
    EXPECT_DEATH(a.Get(-1), "^cow_1DArray::Get: negative index \\(index -1, size 4\\)\n");
    EXPECT_DEATH(a.PartialArrayConstGet(4), "cow_1DArray::PartialArrayConstGet: index out of range \\(index 4, size 4\\)");
    cow_1DArray<int> none;
    EXPECT_DEATH(none.PartialArrayConstGet(0), "cow_1DArray::PartialArrayConstGet: index out of range \\(index 0, size 0\\)");
    EXPECT_DEATH(none.RemoveHead(), "cow_1DArray::RemoveHead: needs a non-empty array on a private table");
    cow_1DArray<int> shared(a);
    EXPECT_DEATH(a.RemoveHead(), "RemoveHead: .* \\(size 4, table shared by 2\\)");
    EXPECT_DEATH(a.SetFromArray(nullptr, -1), "cow_1DArray::SetFromArray: needs a count of 0 or more");
}
#endif

}  // namespace
