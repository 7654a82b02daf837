#include "zorvancow/arrays/cow_1DArray.h"

// Same size, and each pair of elements either at one address (a shared
// block) or equal in value. Reading creates absent blocks of both arrays.
template <>
bool cow_1DArray<int>::IsEqual(cow_1DArray<int> const& other) const {
    int size = end - head;
    if (size != other.end - other.head) return false;
    for (int i = 0; i < size; ++i) {
        int const& mine = PartialArrayConstGet(i);
        int const& theirs = other.PartialArrayConstGet(i);
        if (&mine != &theirs && mine != theirs) return false;
    }
    return true;
}
