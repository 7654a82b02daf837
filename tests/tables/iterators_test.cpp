// The table iterators: ascending signed walks, both directions of the
// unsigned walk, skipping of empty blocks, and sorted mode.

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "support/AllocationCounter.h"
#include "zorvancow/tables/omi_IntTable.h"

namespace {

using Table = omi_IntTable<cow_String>;

std::vector<int> Keys(Table const& table) {
    std::vector<int> keys;
    omi_IntTableIterator<cow_String> it(table);
    for (it.First(); !it.IsDone(); it.Next()) keys.push_back(it.CurrentKey());
    return keys;
}

void Fill(Table& table, std::vector<int> const& keys) {
    for (int key : keys) table.Insert(key, cow_String(std::to_string(key).c_str()));
}

TEST(IntTableIterator, WalksInAscendingSignedOrder) {
    Table empty;
    omi_IntTableIterator<cow_String> none(empty);
    none.First();
    EXPECT_TRUE(none.IsDone());
    none.Last();
    EXPECT_TRUE(none.IsDone());

    Table mixed;
    Fill(mixed, {2, -1, 0, -3});
    omi_IntTableIterator<cow_String> it(mixed);
    std::vector<std::pair<int, std::string>> seen;
    for (it.First(); !it.IsDone(); it.Next()) seen.emplace_back(it.CurrentKey(), it.CurrentValue().GetCString());
    EXPECT_EQ(seen, (std::vector<std::pair<int, std::string>>{{-3, "-3"}, {-1, "-1"}, {0, "0"}, {2, "2"}}));
    it.Next();
    EXPECT_TRUE(it.IsDone()) << "Next on a finished walk stays done";
    it.First();
    EXPECT_EQ(it.CurrentKey(), -3) << "First starts the same walk again";
    EXPECT_EQ(it.GetRemaining(), 2);

    it.Last();
    ASSERT_FALSE(it.IsDone());
    EXPECT_EQ(it.CurrentKey(), 2);
    it.Next();
    EXPECT_TRUE(it.IsDone());

    Table negatives;
    Fill(negatives, {-5, INT_MIN, -1});
    EXPECT_EQ(Keys(negatives), (std::vector<int>{INT_MIN, -5, -1})) << "-2^31 comes back as itself";
    omi_IntTableIterator<cow_String> onlyNegative(negatives);
    onlyNegative.Last();
    EXPECT_TRUE(onlyNegative.IsDone()) << "Last looks at the non-negative half only";

    // The callback is kept but the walk is the plain one.
    omi_IntTableIterator<cow_String> withCallback(mixed, [](void const*, void const*) { return 0; });
    std::vector<int> keys;
    for (withCallback.First(); !withCallback.IsDone(); withCallback.Next()) keys.push_back(withCallback.CurrentKey());
    EXPECT_EQ(keys, (std::vector<int>{-3, -1, 0, 2}));
}

TEST(IntTableIterator, SkipsEmptyBlocksFarApart) {
    // Keys in distant table blocks and element blocks of both halves, with
    // the pointer arrays grown far past the last key still in use.
    std::vector<int> const keys = {-2000000000, -(5 << 20) - 3, -1048576, -1023, -1, 0, 1023, 1024,
                                   (3 << 20) + 17, 1000000000, INT_MAX - 1};
    Table table;
    Fill(table, keys);
    table.Insert(INT_MAX, cow_String("gone"));
    table.Remove(INT_MAX);
    table.Insert(-INT_MAX, cow_String("gone"));
    table.Remove(-INT_MAX);
    EXPECT_EQ(table.GetNonNegative().GetBlockCount(), 2048u);
    EXPECT_EQ(Keys(table), keys);
}

TEST(UintTableIterator, WalksBothWaysAndSortedModeUsesTheCallback) {
    omi_UintTable<cow_String> table;
    std::vector<unsigned int> const keys = {0, 1, 63, 64, 1u << 20, (1u << 20) + 5, 3000000000u, UINT32_MAX};
    for (unsigned int key : keys) table.Insert(key, cow_String(std::to_string(key).c_str()));

    omi_UintTableIterator<cow_String> plain(table);
    plain.Next();
    plain.Prev();
    std::vector<unsigned int> up, down;
    for (plain.First(); !plain.IsDone(); plain.Next()) {
        up.push_back(plain.CurrentKey());
        EXPECT_EQ(plain.CurrentValue().GetCString(), std::to_string(plain.CurrentKey()));
    }
    for (plain.Last(); !plain.IsDone(); plain.Prev()) down.push_back(plain.CurrentKey());
    EXPECT_EQ(up, keys);
    EXPECT_EQ(down, std::vector<unsigned int>(keys.rbegin(), keys.rend()));

    // Descending by key through the records the callback is handed.
    using Record = omi_UintTableIterator<cow_String>::SortedRecord;
    auto descending = [](void const* left, void const* right) {
        Record const* l = *static_cast<Record* const*>(left);
        Record const* r = *static_cast<Record* const*>(right);
        return l->key < r->key ? 1 : l->key > r->key ? -1 : 0;
    };
    testing_support::AllocationScope scope;
    {
        omi_UintTableIterator<cow_String> sorted(table, descending);
        sorted.Next();
        sorted.Prev();
        std::vector<unsigned int> seen;
        for (sorted.First(); !sorted.IsDone(); sorted.Next()) {
            seen.push_back(sorted.CurrentKey());
            EXPECT_EQ(sorted.CurrentValue().GetCString(), std::to_string(sorted.CurrentKey()));
        }
        EXPECT_EQ(seen, down);
        sorted.First();
        EXPECT_EQ(sorted.CurrentKey(), UINT32_MAX) << "the records are used again";
        sorted.Last();
        EXPECT_EQ(sorted.CurrentKey(), 0u);
        sorted.Prev();
        EXPECT_EQ(sorted.CurrentKey(), 1u);
        for (int i = 0; i < 20; ++i) sorted.Prev();
        EXPECT_FALSE(sorted.IsDone()) << "a sorted backward walk stops at the first record";
        EXPECT_EQ(sorted.CurrentKey(), UINT32_MAX);

        omi_UintTableIterator<cow_String> lastFirst(table, descending);
        lastFirst.Last();
        EXPECT_EQ(lastFirst.CurrentKey(), 0u) << "Last builds the records when none exist";
    }
    EXPECT_EQ(scope.News(), scope.Deletes()) << "records and walkers are freed";

    omi_UintTable<cow_String> empty;
    omi_UintTableIterator<cow_String> sortedEmpty(empty, descending);
    sortedEmpty.First();
    EXPECT_TRUE(sortedEmpty.IsDone());
    sortedEmpty.Last();
    EXPECT_TRUE(sortedEmpty.IsDone());
}

}  // namespace
