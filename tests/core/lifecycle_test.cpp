// Start and stop: the nesting count, the caller's int, the sibling order and
// the rows handed to the type registry.
//
// All cases run in one test, in order, because the library's start count is
// process-wide.

#include "zorvancow/core/cow_Lifecycle.h"

#include <gtest/gtest.h>

#include "zorvanbase/omni_Lifecycle.h"
#include "zorvanmem/mem_Heap.h"
#include "zorvanstr/atr_String.h"
#include "zorvantyp/typ_ArchCompTable.h"

namespace {

struct Snapshot {
    zorvan_LifecycleRecord sibling[4];  // in start order: mem, typ, omni, atr
    int allocatorsMade;
    unsigned int registryEntries;
};

Snapshot Take() {
    return {{mem_GetLifecycle(), typ_GetLifecycle(), omni_GetLifecycle(), atr_GetLifecycle()},
            atr_Allocator::GetMadeCount(), typ_ArchCompTable::GetEntryCount(26)};
}

TEST(Lifecycle, NestingOrderRowsAndRestart) {
    Snapshot before = Take();
    int caller = 40;

    // Two starts: only the first does work and raises the caller's int, which
    // the siblings see; they start in the order above.
    cow_initialize(caller);
    EXPECT_EQ(caller, 41);
    cow_initialize(caller);
    EXPECT_EQ(caller, 41);
    Snapshot started = Take();
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(started.sibling[i].startCalls, before.sibling[i].startCalls + 1) << i;
        EXPECT_EQ(started.sibling[i].lastStartArgument, 41) << i;
    }
    for (int i = 1; i < 4; ++i) EXPECT_LT(started.sibling[i - 1].lastStartOrder, started.sibling[i].lastStartOrder) << i;

    // One allocator (4, 0, 0) alive, and the eight rows under key 26: an
    // empty row 0, then kind 7, version 1 and these names.
    EXPECT_EQ(started.allocatorsMade, before.allocatorsMade + 1);
    EXPECT_EQ(atr_Allocator::GetLiveCount(), 1);
    ASSERT_EQ(started.registryEntries, before.registryEntries + 1);
    typ_ArchCompEntry const* entry = typ_ArchCompTable::FindLatest(26);
    ASSERT_NE(entry, nullptr);
    ASSERT_EQ(entry->GetCount(), 8u);
    typ_Entry const* rows = entry->GetRows();
    EXPECT_TRUE(rows[0].kind == 0u && rows[0].version == 0u && rows[0].name == nullptr);
    char const* names[] = {"cow_String", "cow_1DArrayListFloat", "cow_1DArrayListUint",
                           "cow_1DArrayListInt", "cow_1DArrayListString",
                           "cow_1DArrayListDouble", "atr_String"};
    for (int row = 1; row < 8; ++row) {
        EXPECT_TRUE(rows[row].kind == 7u && rows[row].version == 1u) << row;
        EXPECT_STREQ(rows[row].name, names[row - 1]);
    }

    // Two stops: only the second does work, lowering the int first and
    // stopping the siblings in the reverse order.
    cow_finalize(caller);
    EXPECT_EQ(caller, 41);
    EXPECT_EQ(mem_GetLifecycle().stopCalls, before.sibling[0].stopCalls);
    cow_finalize(caller);
    EXPECT_EQ(caller, 40);
    Snapshot stopped = Take();
    EXPECT_EQ(atr_Allocator::GetLiveCount(), 0);
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(stopped.sibling[i].stopCalls, before.sibling[i].stopCalls + 1) << i;
        EXPECT_EQ(stopped.sibling[i].lastStopArgument, 40) << i;
    }
    for (int i = 1; i < 4; ++i) EXPECT_GT(stopped.sibling[i - 1].lastStopOrder, stopped.sibling[i].lastStopOrder) << i;

    // A restart repeats everything: new sibling calls, a new allocator, a second entry.
    cow_initialize(caller);
    EXPECT_EQ(mem_GetLifecycle().startCalls, before.sibling[0].startCalls + 2);
    EXPECT_EQ(atr_Allocator::GetMadeCount(), before.allocatorsMade + 2);
    EXPECT_EQ(typ_ArchCompTable::GetEntryCount(26), before.registryEntries + 2);
    cow_finalize(caller);

    // A stop with no start goes below zero and does nothing; the next start
    // only brings the count back to zero, again doing nothing. After that a
    // real start and stop work again.
    Snapshot idle = Take();
    cow_finalize(caller);
    cow_initialize(caller);
    EXPECT_EQ(caller, 40);
    Snapshot after = Take();
    EXPECT_EQ(after.sibling[0].startCalls, idle.sibling[0].startCalls);
    EXPECT_EQ(after.sibling[0].stopCalls, idle.sibling[0].stopCalls);
    EXPECT_EQ(after.allocatorsMade, idle.allocatorsMade);
    cow_initialize(caller);
    EXPECT_EQ(caller, 41);
    cow_finalize(caller);
    EXPECT_EQ(caller, 40);
}

}  // namespace
