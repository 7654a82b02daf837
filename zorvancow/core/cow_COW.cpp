#include "zorvancow/core/cow_COW.h"

#include "zorvancow/core/cow_Check.h"

#include <cstdio>
#include <new>

// Every counter and every block of the blocked arrays comes from here.
void* cow_Counter::operator new(std::size_t size) {
    return cow_Allocate([size] { return ::operator new(size); });
}

void cow_Counter::operator delete(void* block) { ::operator delete(block); }

void cow_IntrusiveCountedBase::SetCounter(cow_Counter* newCounter) {
    if (counter != nullptr && counter != newCounter)
        std::fprintf(stderr, "ERROR: Resetting counter on cow_IntrusiveCountedBase\n");
    counter = newCounter;
}
