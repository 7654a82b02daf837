// The signed table: the sign rule, FindBlock, deep copies and sharing
// through a cow_COW handle, including the base sibling's table of ints.

#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "support/AllocationCounter.h"
#include "zorvancow/tables/omi_IntTable.h"
#include "zorvanstr/atr_String.h"

namespace {

using Table = omi_IntTable<cow_String>;
using Handle = cow_COW<Table>;

std::string Text(cow_String const* value) { return value != nullptr ? value->GetCString() : "<absent>"; }

TEST(IntTable, SignRuleSplitsKeysBetweenHalves) {
    Table table;
    for (int key : {0, -1, 1, INT_MIN, INT_MAX, 123456789, -987654321})
        EXPECT_EQ(table.FindBlock(key), nullptr) << "a new table has no block for " << key;

    EXPECT_TRUE(table.Insert(0, cow_String("zero")));
    EXPECT_TRUE(table.Insert(-1, cow_String("minus one")));
    EXPECT_EQ(table.FindBlock(0), table.GetNonNegative().GetTableBlock(0));
    EXPECT_EQ(table.FindBlock(-1), table.GetNegative().GetTableBlock(0));
    EXPECT_TRUE(table.GetNegative().IsMember(1)) << "-1 lives under its magnitude";
    EXPECT_FALSE(table.GetNonNegative().IsMember(1));
    EXPECT_EQ(table.FindBlock(1), table.FindBlock(0)) << "one range, whether or not the key is in it";

    EXPECT_TRUE(table.Insert(INT_MIN, cow_String("min")));
    EXPECT_EQ(table.GetNegative().GetBlockCount(), 2112u) << "magnitude 2^31 is table block 2048";
    EXPECT_NE(table.FindBlock(INT_MIN), nullptr);
    EXPECT_TRUE(table.Insert(INT_MAX, cow_String("max")));
    EXPECT_EQ(Text(table.ConstGet(INT_MIN)), "min");
    EXPECT_EQ(Text(table.ConstGet(INT_MAX)), "max");
    EXPECT_EQ(Text(table.ConstGet(-1)), "minus one");
    EXPECT_EQ(table.ConstGet(1), nullptr);
    EXPECT_EQ(table.GetCount(), 4);

    EXPECT_TRUE(table.Remove(INT_MIN));
    EXPECT_EQ(table.FindBlock(INT_MIN), nullptr) << "its table block goes with it";

    Table custom(16, 8, 4);
    for (omi_UintTable<cow_String> const* half : {&custom.GetNegative(), &custom.GetNonNegative()}) {
        EXPECT_EQ(half->GetKeyShift(), 16u);
        EXPECT_EQ(half->GetElementShift(), 8u);
        EXPECT_EQ(half->GetBlockPointers(), 4u);
    }
    custom.Insert(-5, cow_String("x"));
    EXPECT_EQ(custom.FindBlock(-5)->GetBlockCount(), 4u);
    EXPECT_EQ(custom.FindBlock(-5)->GetBlockSize(), 256u);
}

TEST(IntTable, HandleCopiesTheWholeTableOnceAtTheFirstWrite) {
    long const texts = atr_GetLiveTexts();
    testing_support::AllocationScope scope;
    {
        Handle first(new Table);
        first.Get().Insert(-7, cow_String("minus seven"));
        first.Get().Insert(7, cow_String("seven"));
        Handle second = first;
        EXPECT_EQ(first.GetShareCount(), 2);

        Table const* before = first.ConstGet();
        Table& written = second.Get();
        EXPECT_NE(&written, before) << "the writer gets its own table";
        EXPECT_EQ(first.ConstGet(), before) << "the other keeps the old one";
        EXPECT_EQ(first.GetShareCount(), 1);
        EXPECT_EQ(second.GetShareCount(), 1);
        EXPECT_NE(written.FindBlock(-7), before->FindBlock(-7)) << "both halves are copied deeply";
        EXPECT_NE(written.FindBlock(7), before->FindBlock(7));
        EXPECT_EQ(written.ConstGet(7)->GetHeader(), before->ConstGet(7)->GetHeader()) << "texts stay shared";

        written.Insert(-7, cow_String("changed"));
        written.Remove(7);
        written.Insert(8, cow_String("eight"));
        EXPECT_EQ(Text(first.ConstGet()->ConstGet(-7)), "minus seven");
        EXPECT_EQ(Text(first.ConstGet()->ConstGet(7)), "seven");
        EXPECT_FALSE(first.ConstGet()->IsMember(8));

        Table* own = &first.Get();
        EXPECT_EQ(own, before) << "the sole holder's Get copies nothing";

        Handle fromReference(*second.ConstGet());
        EXPECT_NE(fromReference.ConstGet(), second.ConstGet());
        EXPECT_EQ(Text(fromReference.ConstGet()->ConstGet(8)), "eight");

        Table* copied = second.ConstGet()->Copy();
        second = copied;
        EXPECT_EQ(second.ConstGet(), copied);
        EXPECT_EQ(second.GetShareCount(), 1);
    }
    EXPECT_EQ(scope.News(), scope.Deletes()) << "the last handle frees both halves and all blocks";
    EXPECT_EQ(atr_GetLiveTexts(), texts);
}

TEST(IntTable, BaseTableOfIntsSharesThroughTheSameHandle) {
    long const live = omi_IntTable<int>::GetLiveCount();
    {
        cow_COW<omi_IntTable<int>> first(new omi_IntTable<int>);
        first.Get().Insert(-3, 30);
        cow_COW<omi_IntTable<int>> second = first;
        EXPECT_EQ(omi_IntTable<int>::GetLiveCount(), live + 1);
        second.Get().Insert(-3, 31);
        second.Get().Insert(4, 40);
        EXPECT_EQ(omi_IntTable<int>::GetLiveCount(), live + 2);
        EXPECT_EQ(*first.ConstGet()->ConstGet(-3), 30);
        EXPECT_FALSE(first.ConstGet()->IsMember(4));
        EXPECT_EQ(*second.ConstGet()->ConstGet(-3), 31);
    }
    EXPECT_EQ(omi_IntTable<int>::GetLiveCount(), live) << "destroyed through the virtual destructor";
}

}  // namespace
