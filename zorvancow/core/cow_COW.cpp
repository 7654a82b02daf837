#include "zorvancow/core/cow_COW.h"

#include <cstdio>
#include <new>

void* cow_Counter::operator new(std::size_t size) { return ::operator new(size); }

void cow_Counter::operator delete(void* block) { ::operator delete(block); }

void cow_IntrusiveCountedBase::SetCounter(cow_Counter* newCounter) {
    if (counter != nullptr && counter != newCounter)
        std::fprintf(stderr, "ERROR: Resetting counter on cow_IntrusiveCountedBase\n");
    counter = newCounter;
}
