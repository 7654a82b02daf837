#include "zorvanbase/omni_Lifecycle.h"

#include "zorvanmem/mem_Heap.h"

namespace {
zorvan_LifecycleRecord lifecycle;
}

void omni_initialize(int& caller) { mem_RecordStart(lifecycle, caller); }

void omni_finalize(int& caller) { mem_RecordStop(lifecycle, caller); }

zorvan_LifecycleRecord const& omni_GetLifecycle() { return lifecycle; }
