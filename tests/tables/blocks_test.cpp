// Table blocks and the unsigned table: growth, lazy element blocks, deep
// copies, removal and the dump format.

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "support/AllocationCounter.h"
#include "zorvancow/tables/omi_IntTable.h"
#include "zorvanstr/atr_String.h"

namespace {

std::string Text(cow_String const* value) { return value != nullptr ? value->GetCString() : "<absent>"; }

TEST(BlockedArray, GrowsInWholeUnitsAndMakesBlocksOnFirstStore) {
    omi_BlockedArray<int> bare(0, 4);
    EXPECT_EQ(bare.GetBlockCount(), 0u);
    bare.Set(130u << 4, 7);
    EXPECT_EQ(bare.GetBlockCount(), 256u) << "the smallest multiple of 128 above block 130";

    omi_BlockedArray<int> array(24, 2);
    array.Set(23u << 2, 1);
    EXPECT_EQ(array.GetBlockCount(), 24u) << "block 23 fits";
    array.Set(24u << 2, 2);
    EXPECT_EQ(array.GetBlockCount(), 48u) << "block 24 grows by a whole unit, not to 25";

    omi_BlockedArray<cow_String> strings(4, 3);
    strings.Set(9, cow_String("nine"));
    EXPECT_EQ(strings.ConstGet(8)->GetHeader(), nullptr) << "the rest of a new block holds defaults";
    EXPECT_EQ(strings.ConstGet(15)->GetHeader(), nullptr);
    strings.Clear();
    EXPECT_EQ(strings.GetBlockCount(), 4u) << "Clear keeps the pointer array";
    EXPECT_EQ(strings.ConstGet(9), nullptr);
    strings.Set(10, cow_String("ten"));
    EXPECT_EQ(strings.ConstGet(9)->GetHeader(), nullptr) << "a new block after Clear starts from defaults";
}

TEST(BlockedArray, CopiesAndAssignmentsAreDeepInAllThreeShapes) {
    long const texts = atr_GetLiveTexts();
    testing_support::AllocationScope scope;
    {
        omi_BlockedArray<cow_String> source(4, 2);
        source.Set(1, cow_String("one"));
        source.Set(13, cow_String("thirteen"));
        omi_BlockedArray<cow_String> copy(source);
        EXPECT_EQ(copy.ConstGet(1)->GetHeader(), source.ConstGet(1)->GetHeader()) << "texts stay shared";
        copy.Set(1, cow_String("uno"));
        source.Set(2, cow_String("two"));
        EXPECT_EQ(Text(source.ConstGet(1)), "one");
        EXPECT_EQ(copy.ConstGet(2)->GetHeader(), nullptr);

        // Other pointer array length, other block size, same shape.
        omi_BlockedArray<cow_String> longer(9, 5), wider(4, 4), same(4, 2);
        longer.Set(200, cow_String("gone"));
        wider.Set(3, cow_String("wide"));
        same.Set(9, cow_String("nine"));
        for (omi_BlockedArray<cow_String>* target : {&longer, &wider, &same}) {
            *target = source;
            EXPECT_EQ(target->GetBlockCount(), 4u);
            EXPECT_EQ(target->GetBlockSize(), 4u);
            EXPECT_FALSE(target->HasElementBlock(2)) << "no block where the source has none";
            EXPECT_EQ(Text(target->ConstGet(2)), "two");
            target->Set(13, cow_String("changed"));
            EXPECT_EQ(Text(source.ConstGet(13)), "thirteen");
        }
        same = *&same;
        EXPECT_EQ(Text(same.ConstGet(13)), "changed");
    }
    EXPECT_EQ(scope.News(), scope.Deletes());
    EXPECT_EQ(atr_GetLiveTexts(), texts);
}

TEST(BlockedArray, DumpPrintsEachBlocksBytes) {
    omi_BlockedArray<int> empty(8, 3);
    testing::internal::CaptureStdout();
    empty.Dump();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");

    omi_BlockedArray<std::uint32_t> array(0, 3);
    array.Set(9, 0x04030201u);
    array.Set(2u << 3, 0xffu);
    testing::internal::CaptureStdout();
    array.Dump();
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "Block indices= 8 - 15\n"
              "00000000|01020304|00000000|00000000|00000000|00000000|00000000|00000000\n"
              "\n"
              "Block indices= 16 - 23\n"
              "ff000000|00000000|00000000|00000000|00000000|00000000|00000000|00000000\n"
              "\n");
}

TEST(UintTable, PointerArrayGrowsInUnitsOf64) {
    omi_UintTable<cow_String> table;
    EXPECT_EQ(table.GetKeyShift(), 20u);
    EXPECT_EQ(table.GetKeyMask(), (1u << 20) - 1);
    EXPECT_EQ(table.GetElementShift(), 10u);
    cow_String value("v");
    table.Insert(0, value);
    table.Insert((1u << 21) - 1, value);
    EXPECT_EQ(table.GetBlockCount(), 2u) << "keys below 2^21 need no growth";
    table.Insert(1u << 21, value);
    EXPECT_EQ(table.GetBlockCount(), 64u) << "block 2 grows to 64, not 3";
    table.Insert(64u << 20, value);
    EXPECT_EQ(table.GetBlockCount(), 128u);
    table.Insert(UINT32_MAX, value);
    EXPECT_EQ(table.GetBlockCount(), 4096u);
    EXPECT_EQ(table.GetCount(), 5);
    EXPECT_EQ(table.GetTableBlock(4095)->GetBlockCount(), 1032u) << "block 1023 in units of 24";
    EXPECT_TRUE(table.IsMember(0));
    EXPECT_TRUE(table.IsMember(UINT32_MAX));
    EXPECT_FALSE(table.IsMember(UINT32_MAX - 1));

    table.Clear();
    EXPECT_EQ(table.GetCount(), 0);
    EXPECT_EQ(table.GetBlockCount(), 4096u);
    EXPECT_EQ(table.GetTableBlock(0), nullptr);
    EXPECT_TRUE(table.Insert(UINT32_MAX, value));
}

TEST(UintTable, RemovalKeepsStaleValuesAndFreesEmptiedBlocks) {
    long const texts = atr_GetLiveTexts();
    {
        omi_UintTable<cow_String> table;
        {
            testing_support::AllocationScope scope;
            EXPECT_FALSE(table.Remove(5u << 20)) << "past the pointer array";
            EXPECT_EQ(scope.News(), 0u);
        }
        EXPECT_TRUE(table.Insert(10, cow_String("ten")));
        EXPECT_TRUE(table.Insert(11, cow_String("eleven")));
        EXPECT_FALSE(table.Remove(12));
        ASSERT_NE(table.GetTableBlock(0), nullptr) << "an absent key keeps its table block";

        EXPECT_TRUE(table.Remove(10));
        EXPECT_FALSE(table.Remove(10));
        EXPECT_EQ(table.ConstGet(10), nullptr);
        omi_BlockedArray<cow_String> const& store = *table.GetTableBlock(0);
        EXPECT_EQ(Text(store.ConstGet(10)), "ten") << "the removed value stays in place";

        EXPECT_TRUE(table.Remove(11));
        EXPECT_EQ(table.GetTableBlock(0), nullptr) << "the last key takes its table block along";
        EXPECT_EQ(atr_GetLiveTexts(), texts) << "and the stale values with it";

        EXPECT_TRUE(table.Insert(11, cow_String("again")));
        EXPECT_EQ(table.GetTableBlock(0)->omi_BlockedArray<cow_String>::ConstGet(10)->GetHeader(), nullptr)
            << "a new table block holds defaults around the key";

        EXPECT_TRUE(table.Remove(11));
        EXPECT_TRUE(table.Insert(11, cow_String("third")));
        EXPECT_EQ(table.GetCount(), 1);
        EXPECT_FALSE(table.Insert(11, cow_String("fourth")));
        EXPECT_EQ(table.GetCount(), 1);
        EXPECT_EQ(Text(table.ConstGet(11)), "fourth");
    }
    EXPECT_EQ(atr_GetLiveTexts(), texts);
}

}  // namespace
