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
// std::bad_alloc; 0 disarms.
void FailAllocation(std::size_t k);

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
