// The radix tables piece by piece: blocked arrays and their dump, growth and
// removal in the unsigned table, the sign rule of the signed table, both
// iterators, and the limits of the arguments and keys. (Contents through
// shared handles are the interpreter's.)

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <climits>
#include <cstdint>
#include <fstream>
#include <string>
#include <vector>

#include "support/NoLeaks.h"
#include "zorvancow/tables/omi_IntTable.h"
#include "zorvanstr/atr_String.h"

namespace {

using Table = omi_IntTable<cow_String>;
using testing_support::NoLeaks;

std::string Text(cow_String const* value) { return value != nullptr ? value->GetCString() : "<absent>"; }

void Fill(Table& table, std::vector<int> const& keys) {
    for (int key : keys) table.Insert(key, cow_String(std::to_string(key).c_str()));
}

// The keys a signed walk visits from First, through the callback constructor
// when `order` is given.
std::vector<int> Keys(Table const& table, int (*order)(void const*, void const*) = nullptr) {
    std::vector<int> keys;
    omi_IntTableIterator<cow_String> it(table, order);
    for (it.First(); !it.IsDone(); it.Next()) keys.push_back(it.CurrentKey());
    return keys;
}

TEST(BlockedArray, AssignmentIsDeepInAllThreeShapes) {
    NoLeaks noLeaks;  // last out: after the arrays
    omi_BlockedArray<cow_String> source(4, 2);
    source.Set(2, cow_String("two")), source.Set(13, cow_String("thirteen"));
    // Other pointer array length, other block size, same shape.
    omi_BlockedArray<cow_String> longer(9, 5), wider(4, 4), same(4, 2);
    longer.Set(200, cow_String("gone")), wider.Set(3, cow_String("wide")), same.Set(9, cow_String("nine"));
    for (omi_BlockedArray<cow_String>* target : {&longer, &wider, &same}) {
        *target = source;
        *target = *target;
        EXPECT_EQ(target->GetBlockCount() * 10 + target->GetBlockSize(), 44u);
        EXPECT_FALSE(target->HasElementBlock(2)) << "no block where the source has none";
        EXPECT_EQ(Text(target->ConstGet(2)), "two");
        target->Set(13, cow_String("changed"));
        EXPECT_EQ(Text(source.ConstGet(13)), "thirteen");
    }
}

TEST(BlockedArray, DumpPrintsEachBlocksBytesWithDefaultsAround) {
    omi_BlockedArray<std::uint32_t> array(0, 3);
    array.Set(9, 0x04030201u);
    array.Set(2u << 3, 0xffu);
    testing::internal::CaptureStdout();
    array.Dump();
    EXPECT_EQ(array.GetBlockCount(), 128u) << "a pointer array without a length grows in units of 128";
    array.Clear();
    EXPECT_EQ(array.GetBlockCount(), 128u) << "Clear keeps the pointer array";
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
    struct Step { unsigned int key, blocks; } const steps[] = {
        {0, 2}, {(1u << 21) - 1, 2}, {1u << 21, 64}, {64u << 20, 128}, {UINT32_MAX, 4096}};
    for (Step const& step : steps) {
        table.Insert(step.key, cow_String("v"));
        EXPECT_EQ(table.GetBlockCount(), step.blocks) << step.key;
    }
    EXPECT_EQ(table.GetTableBlock(4095)->GetBlockCount(), 1032u) << "element block 1023 in units of 24";

    // With a = 32 every key has its own table block (what is refused beyond
    // the limits is in std/refusals_test.cpp).
    NoLeaks noLeaks;
    omi_UintTable<cow_String> single(32, 0, 0);
    EXPECT_TRUE(single.Insert(5000, cow_String("v")));
    EXPECT_EQ(single.GetBlockCount(), 5056u);
    EXPECT_TRUE(single.Remove(5000));
}

TEST(UintTable, RemovalKeepsStaleValuesAndFreesEmptiedBlocks) {
    long const texts = atr_GetLiveTexts();
    omi_UintTable<cow_String> table;
    table.Insert(10, cow_String("ten"));
    table.Insert(11, cow_String("eleven"));
    EXPECT_TRUE(table.Remove(10));
    EXPECT_EQ(Text(table.GetTableBlock(0)->omi_BlockedArray<cow_String>::ConstGet(10)), "ten")
        << "the removed value stays in place";

    EXPECT_TRUE(table.Remove(11));
    EXPECT_EQ(table.GetTableBlock(0), nullptr) << "the last key takes its table block along";
    EXPECT_EQ(atr_GetLiveTexts(), texts) << "and the stale values with it";
    EXPECT_TRUE(table.Insert(11, cow_String("again")));
    EXPECT_EQ(table.GetTableBlock(0)->omi_BlockedArray<cow_String>::ConstGet(10)->GetHeader(), nullptr)
        << "a new table block holds defaults around the key";
}

TEST(IntTable, SignRuleSplitsKeysBetweenHalvesOfTheGivenWidths) {
    Table table;
    EXPECT_EQ(table.FindBlock(INT_MIN), nullptr) << "past the pointer array";
    Fill(table, {0, -1, INT_MIN});
    EXPECT_EQ(table.FindBlock(1), table.GetNonNegative().GetTableBlock(0)) << "the key's range, key or not";
    EXPECT_EQ(table.FindBlock(-1), table.GetNegative().GetTableBlock(0));
    EXPECT_TRUE(table.GetNegative().IsMember(1)) << "-1 lives under its magnitude";
    EXPECT_EQ(table.GetNegative().GetBlockCount(), 2112u) << "magnitude 2^31 is table block 2048";
    EXPECT_EQ(table.FindBlock(INT_MIN), table.GetNegative().GetTableBlock(2048));

    // Both halves take the given field widths.
    Table custom(16, 8, 4);
    Fill(custom, {-5, 5});
    for (omi_UintTable<cow_String> const* half : {&custom.GetNegative(), &custom.GetNonNegative()}) {
        EXPECT_EQ(half->GetKeyShift(), 16u);
        EXPECT_EQ(half->GetTableBlock(0)->GetBlockCount(), 4u);
        EXPECT_EQ(half->GetTableBlock(0)->GetBlockSize(), 256u);
    }
}

TEST(IntTableIterator, WalksSignedKeysInAscendingOrder) {
    Table mixed;
    Fill(mixed, {2, -1, 0, INT_MIN, -3});
    EXPECT_EQ(Keys(mixed), (std::vector<int>{INT_MIN, -3, -1, 0, 2})) << "-2^31 comes back as itself";
    EXPECT_EQ(Keys(mixed, [](void const*, void const*) { return 0; }), Keys(mixed))
        << "the callback is kept but the walk is the plain one";

    omi_IntTableIterator<cow_String> it(mixed);
    it.Last();
    it.Next();
    it.Next();
    EXPECT_TRUE(it.IsDone()) << "Next on a finished walk stays done";
    it.First();
    EXPECT_EQ(it.CurrentKey(), INT_MIN) << "First starts the same walk again";
    EXPECT_EQ(it.GetRemaining(), 3) << "the negative keys, the current one included";
}

// Walks both ways and the sorted walk against a model are the interpreter's;
// these are the ends of a sorted walk, which go by its records.
TEST(UintTableIterator, SortedModeEndsGoByTheRecords) {
    omi_UintTable<cow_String> table, empty;
    for (unsigned int key : {0u, 1u, 64u, 3000000000u, UINT32_MAX}) table.Insert(key, cow_String("v"));
    // Descending by key through the records the callback is handed.
    using Record = omi_UintTableIterator<cow_String>::SortedRecord;
    auto descending = [](void const* left, void const* right) {
        auto key = [](void const* entry) { return (*static_cast<Record* const*>(entry))->key; };
        return key(left) < key(right) ? 1 : key(left) > key(right) ? -1 : 0;
    };
    NoLeaks noLeaks;  // the sorted records go with their iterators
    omi_UintTableIterator<cow_String> plain(table), sorted(table, descending), lastFirst(table, descending);
    plain.Next(), plain.Prev(), sorted.Next(), sorted.Prev();  // before a First, both do nothing
    sorted.First();
    EXPECT_EQ(sorted.CurrentKey(), UINT32_MAX);
    sorted.Last();
    EXPECT_EQ(sorted.CurrentKey(), 0u) << "the records are used again";
    sorted.Prev();
    EXPECT_EQ(sorted.CurrentKey(), 1u);
    for (int i = 0; i < 20; ++i) sorted.Prev();
    EXPECT_FALSE(sorted.IsDone()) << "a sorted backward walk stops at the first record";
    EXPECT_EQ(sorted.CurrentKey(), UINT32_MAX);
    lastFirst.Last();
    EXPECT_EQ(lastFirst.CurrentKey(), 0u) << "Last builds the records when none exist";
    omi_UintTableIterator<cow_String> sortedEmpty(empty, descending);
    sortedEmpty.Last();
    EXPECT_TRUE(sortedEmpty.IsDone());
}

// Limits this process's address space to what it maps now plus `extra`
// bytes, so that a huge allocation fails at once instead of paging.
void LimitAddressSpace(unsigned long long extra) {
    std::ifstream status("/proc/self/status");
    std::string field;
    while (status >> field && field != "VmSize:") continue;
    unsigned long long kib = 0;
    status >> kib;
    rlimit limit{kib * 1024 + extra, kib * 1024 + extra};
    setrlimit(RLIMIT_AS, &limit);
}

TEST(TableLimitsDeathTest, AKeyAtTheTopOfTheRangeGrowsTheArrayWithoutWrapping) {
    // With a = 32 the table block number is the key itself. For a key near
    // 2^32 the next multiple of 64 does not fit 32 bits; the array must
    // then ask for (nearly) 2^32 pointers, 32 GiB, which fails here, and
    // not wrap to an array of none and write past it.
    EXPECT_DEATH(
        {
            LimitAddressSpace(1ull << 30);
            omi_UintTable<cow_String> table(32, 0, 1);
            table.Insert(0xFFFFFFC0u, cow_String());
        },
        "out of memory");
}

}  // namespace
