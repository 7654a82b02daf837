#include "zorvancow/core/cow_Lifecycle.h"
#include "zorvancow/core/cow_Check.h"

#include "zorvanbase/omni_Lifecycle.h"
#include "zorvanmem/mem_Heap.h"
#include "zorvanstr/atr_String.h"
#include "zorvantyp/typ_ArchCompTable.h"

namespace {

// Plain data only: the library builds no static object at load.
int initCount = 0;
atr_Allocator* allocator = nullptr;

constexpr unsigned short archCompKey = 26;
constexpr unsigned int archCompRowCount = 8;
typ_Entry const archCompRows[archCompRowCount] = {
    {0, 0, nullptr},
    {7, 1, "cow_String"},
    {7, 1, "cow_1DArrayListFloat"},
    {7, 1, "cow_1DArrayListUint"},
    {7, 1, "cow_1DArrayListInt"},
    {7, 1, "cow_1DArrayListString"},
    {7, 1, "cow_1DArrayListDouble"},
    {7, 1, "atr_String"},
};

}  // namespace

void cow_initialize(int& caller) {
    if (initCount++ != 0) return;
    ++caller;
    mem_initialize(caller);
    typ_initialize(caller);
    omni_initialize(caller);
    atr_initialize(caller);
    allocator = cow_Allocate([] { return new atr_Allocator(4, 0, 0); });
    typ_ArchCompTable::InsertEntry(archCompKey, typ_ArchCompEntry(archCompRows, archCompRowCount));
}

void cow_finalize(int& caller) {
    if (--initCount != 0) return;
    --caller;
    // The pointer is left as it is: only the next start replaces it.
    delete allocator;
    atr_finalize(caller);
    omni_finalize(caller);
    typ_finalize(caller);
    mem_finalize(caller);
}
