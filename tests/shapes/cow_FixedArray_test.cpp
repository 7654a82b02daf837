// Fixed arrays: shared as a whole, copied as a whole at the first write,
// compared element by element with no identity shortcut.

#include "zorvancow/shapes/cow_FixedArray.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "support/AllocationCounter.h"
#include "zorvanstr/atr_String.h"

using testing_support::AllocationScope;

namespace {

TEST(FixedArray, LengthsFromTheConstructors) {
    EXPECT_EQ(cow_FixedArray<int>().GetSize(), 10);
    EXPECT_EQ(cow_FixedArray<double>().GetSize(), 10);

    cow_FixedArray<float> emptyA(0, 1.5f), emptyB(0, 2.5f);
    EXPECT_EQ(emptyA.GetSize(), 0);
    EXPECT_NE(emptyA.GetRep()->data, nullptr) << "even no elements get an allocation";
    EXPECT_TRUE(emptyA == emptyB);
    EXPECT_FALSE(emptyA != emptyB);

    // A negative length makes an empty array instead of a bad allocation.
    cow_FixedArray<int> negative(-7, 3);
    EXPECT_EQ(negative.GetSize(), 0);
    EXPECT_TRUE(negative == cow_FixedArray<int>(0, 9));
}

TEST(FixedArray, CopySharesAndFirstWriteCopiesEverything) {
    cow_FixedArray<int> source(1000, 7);
    cow_FixedArrayRep<int> const* original = source.GetRep();

    AllocationScope copyScope;
    cow_FixedArray<int> copy = source;
    EXPECT_EQ(copyScope.News(), 0u);
    EXPECT_EQ(copy.GetRep(), original);
    EXPECT_EQ(source.GetShareCount(), 2);

    AllocationScope writeScope;
    copy.Get(999) = 8;
    EXPECT_EQ(writeScope.News(), 3u) << "representation, elements and counter";
    EXPECT_NE(copy.GetRep(), original);
    EXPECT_EQ(source.GetRep(), original);
    EXPECT_EQ(source.GetShareCount(), 1);
    EXPECT_EQ(copy.GetShareCount(), 1);
    EXPECT_EQ(source.ConstGet(999), 7);
    for (int i = 0; i < 999; ++i) ASSERT_EQ(copy.ConstGet(i), 7) << i;
    EXPECT_EQ(copy.ConstGet(999), 8);

    int const* elements = copy.GetRep()->data;
    AllocationScope secondScope;
    copy.Get(0) = 1;
    EXPECT_EQ(secondScope.News(), 0u);
    EXPECT_EQ(copy.GetRep()->data, elements);

    // Assignment shares again, and frees the representation it let go of.
    AllocationScope assignScope;
    copy = source;
    EXPECT_EQ(assignScope.News(), 0u);
    EXPECT_EQ(assignScope.Deletes(), 3u);
    EXPECT_EQ(copy.GetRep(), original);
    cow_FixedArray<int> const& self = copy;
    copy = self;
    EXPECT_EQ(copy.GetShareCount(), 2);
    EXPECT_EQ(copy.GetRep(), original);
}

TEST(FixedArray, EqualityOfSizesThenElements) {
    cow_FixedArray<int> three(3, 1), four(4, 1);
    EXPECT_FALSE(three == four);
    EXPECT_TRUE(three != four);

    cow_FixedArray<int> other(3, 1);
    EXPECT_TRUE(three == other);
    other.Get(2) = 2;
    EXPECT_FALSE(three == other);
    EXPECT_TRUE(three != other);

    // No identity shortcut: a NaN makes an array unequal to itself and to
    // every copy of it.
    cow_FixedArray<float> withNan(4, 1.0f);
    withNan.Get(3) = std::numeric_limits<float>::quiet_NaN();
    cow_FixedArray<float> sameRep = withNan;
    EXPECT_FALSE(withNan == sameRep);
    EXPECT_TRUE(withNan != sameRep);
    EXPECT_FALSE(withNan == withNan);

    cow_FixedArray<double> positive(2, 0.0), negative(2, -0.0);
    EXPECT_TRUE(std::signbit(negative.ConstGet(1)));
    EXPECT_TRUE(positive == negative);
    EXPECT_FALSE(positive != negative);
}

TEST(FixedArray, StringsCompareByBytesAndShareTheirTexts) {
    long const textsAtStart = atr_GetLiveTexts();
    {
        cow_String word("word");
        cow_FixedArray<cow_String> words(4, word);
        EXPECT_EQ(word.GetShareCount(), 1 + 4);
        EXPECT_EQ(words.ConstGet(3).GetHeader(), word.GetHeader());

        cow_FixedArray<cow_String> copy = words;
        EXPECT_EQ(word.GetShareCount(), 1 + 4) << "a copy of the array touches no element";
        copy.Get(0) = cow_String("other");
        EXPECT_EQ(word.GetShareCount(), 1 + 4 + 3) << "the written copy shares the other three texts";
        EXPECT_EQ(words.ConstGet(0).GetHeader(), word.GetHeader());

        // Fresh string elements have no text; a null-header value equals "".
        cow_FixedArray<cow_String> defaults(2, cow_String());
        cow_FixedArray<cow_String> empties(2, cow_String(""));
        EXPECT_EQ(defaults.ConstGet(0).GetHeader(), nullptr);
        EXPECT_TRUE(defaults == empties);

        // Equal bytes in separate texts are equal.
        EXPECT_TRUE(cow_FixedArray<cow_String>(4, cow_String("word")) == words);
    }
    EXPECT_EQ(atr_GetLiveTexts(), textsAtStart);
}

TEST(FixedArray, RepresentationAssignmentIsTheOnlyResize) {
    cow_FixedArrayRep<cow_String> target(3);
    cow_FixedArrayRep<cow_String> source(5);
    cow_String text("shared");
    for (int i = 0; i < 5; ++i) source.data[i] = text;

    target = source;
    EXPECT_EQ(target.size, 5);
    EXPECT_NE(target.data, source.data);
    EXPECT_EQ(text.GetShareCount(), 1 + 5 + 5);
    EXPECT_TRUE(target == source);

    cow_String* before = target.data;
    cow_FixedArrayRep<cow_String> const& self = target;
    target = self;
    EXPECT_EQ(target.data, before);
    EXPECT_EQ(text.GetShareCount(), 1 + 5 + 5);

    cow_FixedArrayRep<cow_String> shorter(1);
    target = shorter;
    EXPECT_EQ(target.size, 1);
    EXPECT_EQ(text.GetShareCount(), 1 + 5);
}

}  // namespace
