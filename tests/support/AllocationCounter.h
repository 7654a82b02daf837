#ifndef ZORVAN_TESTS_ALLOCATION_COUNTER_H
#define ZORVAN_TESTS_ALLOCATION_COUNTER_H

// Every test program replaces the global operator new with one that counts,
// so that a test can prove "this copy allocates nothing" or "this write made
// exactly one object".

#include <cstddef>

namespace testing_support {

// Global operator new calls and operator delete calls (of non-null pointers)
// since the program started.
std::size_t NewCalls();
std::size_t DeleteCalls();
// Bytes of the global operator new's blocks not yet freed, as asked for.
std::size_t LiveBytes();

// Fault injection: the k-th operator new call from now on (k >= 1) throws
// std::bad_alloc, as the standard operator new does when memory runs out;
// 0 disarms. Calls made while a FaultPause lives (the test's own
// bookkeeping) are not counted towards k.
void FailAllocation(std::size_t k);
// operator new calls so far outside any FaultPause.
std::size_t FaultCandidates();
struct FaultPause {
    FaultPause();
    ~FaultPause();
    FaultPause(FaultPause const&) = delete;
    FaultPause& operator=(FaultPause const&) = delete;
};

// Counts the allocations made while it lives.
class AllocationScope {
public:
    AllocationScope() : newAtStart(NewCalls()), deleteAtStart(DeleteCalls()) {}
    std::size_t News() const { return NewCalls() - newAtStart; }
    std::size_t Deletes() const { return DeleteCalls() - deleteAtStart; }

private:
    std::size_t newAtStart;
    std::size_t deleteAtStart;
};

}  // namespace testing_support

#endif
