#ifndef ZORVANMEM_MEM_HEAP_H
#define ZORVANMEM_MEM_HEAP_H

// Stand-in for the heap sibling. The blocked arrays keep their block tables
// in this storage; every other allocation of the library uses the global
// operator new. None of these calls returns null: when the system has no
// memory left the stand-in writes one line to standard error and aborts.

#include <cstddef>

#include "zorvan_export.h"
#include "zorvan_lifecycle.h"

extern "C" {
// A block of `size` bytes, content unspecified.
ZORVAN_EXPORT void* mem_Malloc(std::size_t size);
// Moves `block` to `size` bytes, keeping the old content up to the smaller
// size. A null `block` acts as mem_Malloc. A size of 0 keeps a live block of
// minimal size, so the result may go to mem_Realloc or mem_Free later.
ZORVAN_EXPORT void* mem_Realloc(void* block, std::size_t size);
// Frees a block from mem_Malloc or mem_Realloc; null does nothing.
ZORVAN_EXPORT void mem_Free(void* block);
}

ZORVAN_EXPORT void mem_initialize(int& caller);
ZORVAN_EXPORT void mem_finalize(int& caller);

// Observation for tests: mem_ blocks not yet freed.
ZORVAN_EXPORT long mem_GetLiveBlocks();
// Start and stop calls seen so far.
ZORVAN_EXPORT zorvan_LifecycleRecord const& mem_GetLifecycle();
// Notes a start or stop call in `record`, stamped from the one clock that
// orders the start and stop calls of all four stand-ins.
ZORVAN_EXPORT void mem_RecordStart(zorvan_LifecycleRecord& record, int caller);
ZORVAN_EXPORT void mem_RecordStop(zorvan_LifecycleRecord& record, int caller);

#endif
