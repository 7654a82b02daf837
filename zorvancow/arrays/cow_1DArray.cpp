#include "zorvancow/arrays/cow_1DArray.h"
#include "zorvancow/arrays/detail/cow_ArrayAlgorithms.h"

// Same size, and each pair of elements either at one address (a shared
// block) or equal in value: the lists' element-wise equality over the whole
// extent. Reading creates absent blocks of both arrays.
template <>
bool cow_1DArray<int>::IsEqual(cow_1DArray<int> const& other) const {
    int const size = endPosition - head;
    return size == other.endPosition - other.head && cow_detail::ArrayAlgorithms<int>::Equal(*this, other, size);
}
