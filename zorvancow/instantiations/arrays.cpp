// The blocked arrays the library holds, for each element type.

#include "zorvancow/arrays/cow_1DArray.h"

template class cow_1DArrayBlock<int>;
template class cow_1DArrayBlock<unsigned int>;
template class cow_1DArrayBlock<float>;
template class cow_1DArrayBlock<double>;
template class cow_1DArrayBlock<bool>;
template class cow_1DArrayBlock<cow_String>;
template class cow_1DArrayBlock<atr_String>;

template class cow_1DArray<int>;
template class cow_1DArray<unsigned int>;
template class cow_1DArray<float>;
template class cow_1DArray<double>;
template class cow_1DArray<bool>;
template class cow_1DArray<cow_String>;
template class cow_1DArray<atr_String>;

template class cow_1DArrayIter<int>;
template class cow_1DArrayIter<unsigned int>;
template class cow_1DArrayIter<float>;
template class cow_1DArrayIter<double>;
template class cow_1DArrayIter<bool>;
template class cow_1DArrayIter<cow_String>;
template class cow_1DArrayIter<atr_String>;

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
