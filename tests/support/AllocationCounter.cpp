#include "support/AllocationCounter.h"

#include <cstdio>
#include <cstdlib>
#include <new>

namespace {
std::size_t newCalls = 0;
std::size_t deleteCalls = 0;
std::size_t failAt = 0;  // the allocation number that throws; 0 for none
int paused = 0;
std::size_t pausedCalls = 0;
}

namespace testing_support {
std::size_t NewCalls() { return newCalls; }
std::size_t DeleteCalls() { return deleteCalls; }
void FailAllocation(std::size_t k) { failAt = k == 0 ? 0 : newCalls + k; }
std::size_t FaultCandidates() { return newCalls - pausedCalls; }
FaultPause::FaultPause() { ++paused; }
FaultPause::~FaultPause() { --paused; }
}  // namespace testing_support

void* operator new(std::size_t size) {
    if (paused != 0) {
        // Not counted as an allocation of the code under test.
        ++pausedCalls;
        if (failAt != 0) ++failAt;
    } else if (newCalls + 1 == failAt) {
        failAt = 0;
        ++newCalls;
        throw std::bad_alloc();
    }
    ++newCalls;
    void* block = std::malloc(size == 0 ? 1 : size);
    if (block == nullptr) {
        std::fputs("test operator new: out of memory\n", stderr);
        std::abort();
    }
    return block;
}

void* operator new[](std::size_t size) { return operator new(size); }

void operator delete(void* block) noexcept {
    if (block == nullptr) return;
    ++deleteCalls;
    std::free(block);
}

void operator delete[](void* block) noexcept { operator delete(block); }
void operator delete(void* block, std::size_t) noexcept { operator delete(block); }
void operator delete[](void* block, std::size_t) noexcept { operator delete(block); }
