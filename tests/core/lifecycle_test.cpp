// Start and stop: the nesting count, the caller's int, the sibling order and
// the rows handed to the type registry.
//
// All cases run in one test, in order, because the library's start count is
// process-wide.

#include "zorvancow/core/cow_Lifecycle.h"

#include <gtest/gtest.h>

#include <cstring>

#include "zorvanbase/omni_Lifecycle.h"
#include "zorvanmem/mem_Heap.h"
#include "zorvanstr/atr_String.h"
#include "zorvantyp/typ_ArchCompTable.h"

namespace {

struct Snapshot {
    zorvan_LifecycleRecord mem, typ, omni, atr;
    int allocatorsMade;
    unsigned int registryEntries;
};

Snapshot Take() {
    return {mem_GetLifecycle(), typ_GetLifecycle(), omni_GetLifecycle(), atr_GetLifecycle(),
            atr_Allocator::GetMadeCount(), typ_ArchCompTable::GetEntryCount(26)};
}

TEST(Lifecycle, NestingOrderRowsAndRestart) {
    Snapshot before = Take();
    int caller = 40;

    // Two starts: only the first does work and raises the caller's int.
    cow_initialize(caller);
    EXPECT_EQ(caller, 41);
    cow_initialize(caller);
    EXPECT_EQ(caller, 41);
    Snapshot started = Take();
    EXPECT_EQ(started.mem.startCalls, before.mem.startCalls + 1);
    EXPECT_EQ(started.typ.startCalls, before.typ.startCalls + 1);
    EXPECT_EQ(started.omni.startCalls, before.omni.startCalls + 1);
    EXPECT_EQ(started.atr.startCalls, before.atr.startCalls + 1);
    EXPECT_EQ(started.mem.lastStartArgument, 41) << "siblings see the raised int";
    EXPECT_LT(started.mem.lastStartOrder, started.typ.lastStartOrder);
    EXPECT_LT(started.typ.lastStartOrder, started.omni.lastStartOrder);
    EXPECT_LT(started.omni.lastStartOrder, started.atr.lastStartOrder);

    // One allocator (4, 0, 0) alive, and the eight rows under key 26.
    EXPECT_EQ(started.allocatorsMade, before.allocatorsMade + 1);
    EXPECT_EQ(atr_Allocator::GetLiveCount(), 1);
    ASSERT_EQ(started.registryEntries, before.registryEntries + 1);
    typ_ArchCompEntry const* entry = typ_ArchCompTable::FindLatest(26);
    ASSERT_NE(entry, nullptr);
    ASSERT_EQ(entry->GetCount(), 8u);
    typ_Entry const* rows = entry->GetRows();
    EXPECT_EQ(rows[0].kind, 0u);
    EXPECT_EQ(rows[0].version, 0u);
    EXPECT_EQ(rows[0].name, nullptr);
    char const* names[] = {"cow_String", "cow_1DArrayListFloat", "cow_1DArrayListUint",
                           "cow_1DArrayListInt", "cow_1DArrayListString",
                           "cow_1DArrayListDouble", "atr_String"};
    for (int row = 1; row < 8; ++row) {
        EXPECT_EQ(rows[row].kind, 7u);
        EXPECT_EQ(rows[row].version, 1u);
        EXPECT_STREQ(rows[row].name, names[row - 1]);
    }

    // Two stops: only the second does work, in the reverse order.
    cow_finalize(caller);
    EXPECT_EQ(caller, 41);
    EXPECT_EQ(mem_GetLifecycle().stopCalls, before.mem.stopCalls);
    cow_finalize(caller);
    EXPECT_EQ(caller, 40);
    Snapshot stopped = Take();
    EXPECT_EQ(atr_Allocator::GetLiveCount(), 0);
    EXPECT_EQ(stopped.mem.stopCalls, before.mem.stopCalls + 1);
    EXPECT_EQ(stopped.atr.lastStopArgument, 40);
    EXPECT_LT(stopped.atr.lastStopOrder, stopped.omni.lastStopOrder);
    EXPECT_LT(stopped.omni.lastStopOrder, stopped.typ.lastStopOrder);
    EXPECT_LT(stopped.typ.lastStopOrder, stopped.mem.lastStopOrder);

    // A restart repeats everything: new sibling calls, a new allocator, a second entry.
    cow_initialize(caller);
    EXPECT_EQ(mem_GetLifecycle().startCalls, before.mem.startCalls + 2);
    EXPECT_EQ(atr_Allocator::GetMadeCount(), before.allocatorsMade + 2);
    EXPECT_EQ(typ_ArchCompTable::GetEntryCount(26), before.registryEntries + 2);
    cow_finalize(caller);
    EXPECT_EQ(caller, 40);

    // A stop with no start goes below zero and does nothing; the next start
    // only brings the count back to zero, again doing nothing.
    Snapshot idle = Take();
    cow_finalize(caller);
    cow_initialize(caller);
    EXPECT_EQ(caller, 40);
    Snapshot after = Take();
    EXPECT_EQ(after.mem.startCalls, idle.mem.startCalls);
    EXPECT_EQ(after.mem.stopCalls, idle.mem.stopCalls);
    EXPECT_EQ(after.allocatorsMade, idle.allocatorsMade);

    // And now a real start and stop work again.
    cow_initialize(caller);
    EXPECT_EQ(caller, 41);
    cow_finalize(caller);
    EXPECT_EQ(caller, 40);
}

}  // namespace
