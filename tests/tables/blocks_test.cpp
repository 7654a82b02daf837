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
    EXPECT_EQ(bare.GetGrowBy(), 128u);
    bare.Set(130u << 4, 7);
    EXPECT_EQ(bare.GetBlockCount(), 256u) << "the smallest multiple of 128 above block 130";

    omi_BlockedArray<int> array(24, 2);
    array.Set(23u << 2, 1);
    EXPECT_EQ(array.GetBlockCount(), 24u) << "block 23 fits";
    array.Set(24u << 2, 2);
    EXPECT_EQ(array.GetBlockCount(), 48u) << "block 24 grows by a whole unit, not to 25";
    array.Grow(30);
    EXPECT_EQ(array.GetBlockCount(), 48u) << "Grow never shrinks";

    omi_BlockedArray<cow_String> strings(4, 3);
    EXPECT_EQ(strings.ConstGet(9), nullptr);
    strings.Set(9, cow_String("nine"));
    EXPECT_STREQ(strings.ConstGet(9)->GetCString(), "nine");
    for (unsigned int i = 8; i < 16; ++i) {
        if (i == 9) continue;
        EXPECT_EQ(strings.ConstGet(i)->GetHeader(), nullptr) << "place " << i << " holds a default";
    }
    EXPECT_FALSE(strings.HasElementBlock(0));

    strings.Clear();
    EXPECT_EQ(strings.GetBlockCount(), 4u) << "Clear keeps the pointer array";
    EXPECT_FALSE(strings.HasElementBlock(1));
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
        EXPECT_NE(copy.ConstGet(1), source.ConstGet(1)) << "element blocks do not";
        copy.Set(1, cow_String("uno"));
        source.Set(2, cow_String("two"));
        EXPECT_STREQ(source.ConstGet(1)->GetCString(), "one");
        EXPECT_EQ(copy.ConstGet(2)->GetHeader(), nullptr);

        // Different pointer array length: the target takes the source's shape.
        omi_BlockedArray<cow_String> longer(9, 5);
        longer.Set(200, cow_String("gone"));
        longer = source;
        EXPECT_EQ(longer.GetBlockCount(), 4u);
        EXPECT_EQ(longer.GetBlockShift(), 2u);
        EXPECT_STREQ(longer.ConstGet(13)->GetCString(), "thirteen");

        // Same length, other block size: blocks are dropped and remade.
        omi_BlockedArray<cow_String> wider(4, 4);
        wider.Set(3, cow_String("wide"));
        wider = source;
        EXPECT_EQ(wider.GetBlockSize(), 4u);
        EXPECT_STREQ(wider.ConstGet(2)->GetCString(), "two");

        // Same shape: a block missing in the source goes, one present is filled.
        omi_BlockedArray<cow_String> same(4, 2);
        same.Set(9, cow_String("nine"));
        same = source;
        EXPECT_FALSE(same.HasElementBlock(2));
        EXPECT_STREQ(same.ConstGet(1)->GetCString(), "one");
        same.Set(13, cow_String("changed"));
        EXPECT_STREQ(source.ConstGet(13)->GetCString(), "thirteen");

        same = *&same;
        EXPECT_STREQ(same.ConstGet(13)->GetCString(), "changed");
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

    // Sixteen places of 16 bytes: two full lines, default strings all zero.
    omi_BlockedArray<cow_String> strings(1, 4);
    strings.Set(0, cow_String());
    testing::internal::CaptureStdout();
    strings.Dump();
    std::string const zeros(32, '0');
    std::string line;
    for (int j = 0; j < 8; ++j) line += zeros + (j == 7 ? "\n" : "|");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Block indices= 0 - 15\n" + line + line + "\n");
}

TEST(UintTableBlock, InsertReportsNewIndexesAndCopiesAreIndependent) {
    omi_UintTableBlock<cow_String> block(24, 10);
    EXPECT_TRUE(block.Insert(5000, cow_String("first")));
    EXPECT_FALSE(block.Insert(5000, cow_String("second")));
    EXPECT_EQ(Text(block.ConstGet(5000)), "second") << "a present index still takes the value";
    EXPECT_EQ(block.GetBits().count, 1u);
    EXPECT_EQ(block.ConstGet(5001), nullptr) << "a default place is not an element";

    omi_UintTableBlock<cow_String> copy(block);
    EXPECT_TRUE(copy.Insert(7, cow_String("seven")));
    copy.Insert(5000, cow_String("changed"));
    EXPECT_EQ(block.ConstGet(7), nullptr);
    EXPECT_EQ(Text(block.ConstGet(5000)), "second");
    EXPECT_EQ(block.GetBits().count, 1u);

    copy.Clear();
    EXPECT_EQ(copy.GetBits().count, 0u);
    EXPECT_EQ(copy.ConstGet(5000), nullptr);
    EXPECT_EQ(copy.GetBlockCount(), block.GetBlockCount());
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

TEST(UintTable, CopiesAreDeep) {
    omi_UintTable<cow_String> source(16, 8, 4);
    source.Insert(3, cow_String("three"));
    source.Insert(0xABCD0000u, cow_String("high"));

    omi_UintTable<cow_String> copy(source);
    EXPECT_EQ(copy.GetBlockCount(), source.GetBlockCount());
    EXPECT_NE(copy.GetTableBlock(0), source.GetTableBlock(0));
    copy.Insert(4, cow_String("four"));
    copy.Remove(0xABCD0000u);
    source.Insert(3, cow_String("THREE"));
    EXPECT_EQ(Text(source.ConstGet(0xABCD0000u)), "high");
    EXPECT_EQ(source.ConstGet(4), nullptr);
    EXPECT_EQ(Text(copy.ConstGet(3)), "three");
    EXPECT_EQ(source.GetCount(), 2);
    EXPECT_EQ(copy.GetCount(), 2);
}

}  // namespace
