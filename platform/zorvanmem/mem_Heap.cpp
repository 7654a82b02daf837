#include "zorvanmem/mem_Heap.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>

namespace {

// Atomic, like the heap it counts: blocks come and go on any thread.
std::atomic<long> liveBlocks{0};
std::atomic<long> callClock{0};
zorvan_LifecycleRecord lifecycle;

[[noreturn]] void OutOfMemory(std::size_t size) {
    std::fprintf(stderr, "zorvanmem: out of memory allocating %zu bytes\n", size);
    std::abort();
}

}  // namespace

extern "C" void* mem_Malloc(std::size_t size) {
    void* block = std::malloc(size == 0 ? 1 : size);
    if (block == nullptr) OutOfMemory(size);
    liveBlocks.fetch_add(1, std::memory_order_relaxed);
    return block;
}

extern "C" void* mem_Realloc(void* block, std::size_t size) {
    if (block == nullptr) return mem_Malloc(size);
    // realloc(p, 0) may free p and return null; keep one byte instead so the
    // caller's table pointer stays a live block.
    void* moved = std::realloc(block, size == 0 ? 1 : size);
    if (moved == nullptr) OutOfMemory(size);
    return moved;
}

extern "C" void mem_Free(void* block) {
    if (block == nullptr) return;
    liveBlocks.fetch_sub(1, std::memory_order_relaxed);
    std::free(block);
}

void mem_initialize(int& caller) { mem_RecordStart(lifecycle, caller); }

void mem_finalize(int& caller) { mem_RecordStop(lifecycle, caller); }

long mem_GetLiveBlocks() { return liveBlocks.load(std::memory_order_relaxed); }

zorvan_LifecycleRecord const& mem_GetLifecycle() { return lifecycle; }

void mem_RecordStart(zorvan_LifecycleRecord& record, int caller) {
    ++record.startCalls;
    record.lastStartOrder = ++callClock;
    record.lastStartArgument = caller;
}

void mem_RecordStop(zorvan_LifecycleRecord& record, int caller) {
    ++record.stopCalls;
    record.lastStopOrder = ++callClock;
    record.lastStopArgument = caller;
}
