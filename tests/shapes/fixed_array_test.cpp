// Fixed arrays: shared as a whole, copied as a whole at the first write,
// compared element by element with no identity shortcut.

#include "zorvancow/shapes/cow_FixedArray.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

#include "support/AllocationCounter.h"
#include "zorvanstr/atr_String.h"

using testing_support::AllocationScope;

namespace {

TEST(FixedArray, FirstWriteCopiesEverythingAndSecondNothing) {
    cow_FixedArray<int> const ten;
    EXPECT_EQ(std::count(ten.begin(), ten.end(), 0), 10) << "ten zeros by default";

    // How many elements hold each text across the representations is the
    // interpreter's; these are the allocations.
    cow_FixedArray<cow_String> source(1000, cow_String("word"));
    AllocationScope copyScope;
    cow_FixedArray<cow_String> copy = source;
    EXPECT_EQ(copyScope.News(), 0u);
    EXPECT_EQ(copy.GetRep(), source.GetRep());

    AllocationScope writeScope;
    copy.Get(999) = cow_String();
    EXPECT_EQ(writeScope.News(), 3u) << "representation, elements and counter";

    AllocationScope secondScope;
    copy.Get(0) = cow_String();
    EXPECT_EQ(secondScope.News(), 0u);
}

// Sizes then elements, by the element's ==: no identity shortcut, so a NaN
// makes an array unequal to itself and to every copy of it. (Equality
// against a model is the interpreter's.)
TEST(FixedArray, EqualityGoesByTheElementsOperator) {
    cow_FixedArray<float> withNan(4, 1.0f);
    withNan.Get(3) = std::numeric_limits<float>::quiet_NaN();
    cow_FixedArray<float> sameRep = withNan;
    EXPECT_TRUE(!(withNan == sameRep) && withNan != sameRep);
    EXPECT_TRUE(cow_FixedArray<double>(2, 0.0) == cow_FixedArray<double>(2, -0.0));
    EXPECT_FALSE(cow_FixedArray<double>(2, 0.0) != cow_FixedArray<double>(2, -0.0));
}

TEST(FixedArray, RepresentationAssignmentIsTheOnlyResize) {
    cow_String text("shared");
    cow_FixedArrayRep<cow_String> target(3), source(5), shorter(1);
    for (int i = 0; i < 5; ++i) source.data[i] = text;

    target = source;
    EXPECT_EQ(target.size, 5);
    EXPECT_EQ(text.GetShareCount(), 1 + 5 + 5) << "elements of its own";
    cow_String* before = target.data;
    target = *&target;
    EXPECT_EQ(target.data, before) << "self-assignment keeps the elements";

    target = shorter;
    EXPECT_EQ(target.size, 1);
    EXPECT_EQ(text.GetShareCount(), 1 + 5) << "the old elements are released";
}

}  // namespace
