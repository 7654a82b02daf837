// String values: sharing of texts, the byte order, and printing. The order
// that follows the natural-order switch is checked where lists sort and trees
// order strings.

#include "zorvancow/core/cow_String.h"

#include <gtest/gtest.h>

#include <cstdio>

#include "support/NoLeaks.h"

namespace {

TEST(StringValue, CopiesShareOneTextAndTheLastFreesIt) {
    testing_support::NoLeaks noLeaks;
    long deletes = atr_GetDeleteCalls();
    {
        cow_String a("shared");
        cow_String b = a;
        cow_String c;
        c = b;
        EXPECT_EQ(a.GetHeader(), c.GetHeader());
        EXPECT_EQ(a.GetLength(), 6);

        // Self-assignment and assignment between copies keep the count.
        cow_String& alias = c;
        c = alias;
        c = a;
        EXPECT_EQ(a.GetShareCount(), 3);

        cow_String sole("alone");
        cow_String& soleAlias = sole;
        sole = soleAlias;  // at count 1: nothing freed
        EXPECT_EQ(sole.GetShareCount(), 1);
        EXPECT_STREQ(sole.GetCString(), "alone");
        EXPECT_EQ(atr_GetDeleteCalls(), deletes);
    }
    EXPECT_EQ(atr_GetDeleteCalls(), deletes + 2) << "one Delete per text";
}

TEST(StringValue, NullHeaderReadsAsTheOneEmptyText) {
    cow_String a;
    atr_String b;
    EXPECT_EQ(a.GetHeader(), nullptr);
    EXPECT_EQ(a.GetShareCount(), 0);
    EXPECT_EQ(a.GetCString(), b.GetCString()) << "one shared empty text";
    EXPECT_EQ(a.GetLength(), 0);
    EXPECT_NE(cow_String("").GetHeader(), nullptr);
    EXPECT_EQ(cow_StringByteCompare(a, b), 0);
    EXPECT_EQ(cow_StringByteCompare(a, cow_String("")), 0);
}

TEST(StringOrder, ByteOrderIsUnsignedAndPrefixFirst) {
    EXPECT_EQ(cow_StringByteCompare(cow_String("abc"), cow_String("abcd")), -1);
    EXPECT_EQ(cow_StringByteCompare(cow_String("abcd"), cow_String("abc")), 1);
    EXPECT_EQ(cow_StringByteCompare(cow_String("\xE4pfel"), cow_String("z")), 1);
    EXPECT_EQ(cow_StringByteCompare(cow_String("\x80"), cow_String("\x7F")), 1);
    EXPECT_EQ(cow_StringByteCompare(cow_String("a"), cow_String("zzzz")), -1) << "never a byte difference";
    EXPECT_EQ(cow_StringByteCompare(cow_String(""), cow_String("a")), -1);
    EXPECT_EQ(cow_StringByteCompare(cow_String("same"), cow_String("same")), 0);
}

TEST(StringValue, PrintWritesTheTextOnly) {
    char buffer[64] = {};
    std::FILE* file = fmemopen(buffer, sizeof buffer, "w");
    ASSERT_NE(file, nullptr);
    {
        aio_ostream stream(file);
        aio_ostream& result = stream << cow_String("ab") << cow_String() << cow_String("c");
        EXPECT_EQ(&result, &stream);
    }
    std::fclose(file);
    EXPECT_STREQ(buffer, "abc");
}

}  // namespace
