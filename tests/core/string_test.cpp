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

// -1, 0 or 1, never a byte difference; both ways round.
TEST(StringOrder, ByteOrderIsUnsignedAndPrefixFirst) {
    struct Row { char const* left; char const* right; int order; } const rows[] = {
        {"abc", "abcd", -1}, {"\xE4pfel", "z", 1}, {"\x80", "\x7F", 1},
        {"a", "zzzz", -1},   {"", "a", -1},         {"same", "same", 0}};
    for (Row const& row : rows) {
        EXPECT_EQ(cow_StringByteCompare(cow_String(row.left), cow_String(row.right)), row.order) << row.left;
        EXPECT_EQ(cow_StringByteCompare(cow_String(row.right), cow_String(row.left)), -row.order) << row.left;
    }
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
