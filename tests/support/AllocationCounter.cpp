#include "support/AllocationCounter.h"

#include <atomic>
#include <cstdio>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace {
// Atomic: the thread tests allocate on several threads at once.
std::atomic<std::size_t> newCalls{0};
std::atomic<std::size_t> deleteCalls{0};
// Bytes asked for and not yet freed: each block carries its size in a
// prefix of one max_align_t, so the pointer handed out keeps its alignment.
std::atomic<std::size_t> liveBytes{0};
constexpr std::size_t kPrefix = alignof(std::max_align_t);
// Fault injection, armed by one thread at a time (a death test's child).
std::atomic<std::size_t> failAt{0};  // the allocation number that throws; 0 for none
}

namespace testing_support {
std::size_t NewCalls() { return newCalls.load(std::memory_order_relaxed); }
std::size_t DeleteCalls() { return deleteCalls.load(std::memory_order_relaxed); }
std::size_t LiveBytes() { return liveBytes.load(std::memory_order_relaxed); }
void FailAllocation(std::size_t k) { failAt = k == 0 ? 0 : NewCalls() + k; }
}  // namespace testing_support

void* operator new(std::size_t size) {
    if (failAt.load() != 0 && newCalls.load() + 1 == failAt.load()) {
        failAt = 0;
        newCalls.fetch_add(1, std::memory_order_relaxed);
        throw std::bad_alloc();
    }
    newCalls.fetch_add(1, std::memory_order_relaxed);
    void* block = std::malloc(kPrefix + size);
    if (block == nullptr) {
        std::fputs("test operator new: out of memory\n", stderr);
        std::abort();
    }
    *static_cast<std::size_t*>(block) = size;
    liveBytes.fetch_add(size, std::memory_order_relaxed);
    return static_cast<char*>(block) + kPrefix;
}

void* operator new[](std::size_t size) { return operator new(size); }

void operator delete(void* block) noexcept {
    if (block == nullptr) return;
    deleteCalls.fetch_add(1, std::memory_order_relaxed);
    void* start = static_cast<char*>(block) - kPrefix;
    liveBytes.fetch_sub(*static_cast<std::size_t*>(start), std::memory_order_relaxed);
    std::free(start);
}

void operator delete[](void* block) noexcept { operator delete(block); }
void operator delete(void* block, std::size_t) noexcept { operator delete(block); }
void operator delete[](void* block, std::size_t) noexcept { operator delete(block); }
