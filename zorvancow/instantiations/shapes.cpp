// The fixed-shape arrays the library holds. The fixed arrays export member
// by member: for each element type only what its users link against, and
// nothing of the double arrays, which the maps of fixed arrays make for
// themselves. The matrices export, for all four element types, the members
// defined outside their class bodies. Export goes member by member because an
// explicitly instantiated class would export its inline reads too.

#include "zorvancow/shapes/cow_2DArray.h"
#include "zorvancow/shapes/cow_FixedArray.h"

ZORVANCOW_INSTANTIATE_COW(cow_FixedArrayRep<int>);
ZORVANCOW_INSTANTIATE_COW(cow_FixedArrayRep<float>);
ZORVANCOW_INSTANTIATE_COW(cow_FixedArrayRep<double>);
ZORVANCOW_INSTANTIATE_COW(cow_FixedArrayRep<cow_String>);

template ZORVANCOW_API cow_FixedArrayRep<int>::cow_FixedArrayRep(cow_FixedArrayRep<int> const&);
template ZORVANCOW_API cow_FixedArrayRep<int>::~cow_FixedArrayRep();
template ZORVANCOW_API cow_FixedArrayRep<int>& cow_FixedArrayRep<int>::operator=(cow_FixedArrayRep<int> const&);
template ZORVANCOW_API bool cow_FixedArrayRep<int>::operator==(cow_FixedArrayRep<int> const&) const;
template ZORVANCOW_API bool cow_FixedArrayRep<int>::operator!=(cow_FixedArrayRep<int> const&) const;

template ZORVANCOW_API cow_FixedArrayRep<float>::cow_FixedArrayRep(cow_FixedArrayRep<float> const&);
template ZORVANCOW_API cow_FixedArrayRep<float>::~cow_FixedArrayRep();
template ZORVANCOW_API cow_FixedArrayRep<float>& cow_FixedArrayRep<float>::operator=(cow_FixedArrayRep<float> const&);
template ZORVANCOW_API bool cow_FixedArrayRep<float>::operator==(cow_FixedArrayRep<float> const&) const;
template ZORVANCOW_API bool cow_FixedArrayRep<float>::operator!=(cow_FixedArrayRep<float> const&) const;

template ZORVANCOW_API cow_FixedArrayRep<cow_String>::cow_FixedArrayRep(int);
template ZORVANCOW_API cow_FixedArrayRep<cow_String>::cow_FixedArrayRep(cow_FixedArrayRep<cow_String> const&);
template ZORVANCOW_API cow_FixedArrayRep<cow_String>::~cow_FixedArrayRep();
template ZORVANCOW_API cow_FixedArrayRep<cow_String>& cow_FixedArrayRep<cow_String>::operator=(
    cow_FixedArrayRep<cow_String> const&);
template ZORVANCOW_API bool cow_FixedArrayRep<cow_String>::operator==(cow_FixedArrayRep<cow_String> const&) const;
template ZORVANCOW_API bool cow_FixedArrayRep<cow_String>::operator!=(cow_FixedArrayRep<cow_String> const&) const;

template ZORVANCOW_API cow_FixedArray<int>::cow_FixedArray();
template ZORVANCOW_API cow_FixedArray<int>::cow_FixedArray(int, int const&);
template ZORVANCOW_API cow_FixedArray<int>::~cow_FixedArray();
template ZORVANCOW_API bool cow_FixedArray<int>::operator==(cow_FixedArray<int> const&) const;
template ZORVANCOW_API bool cow_FixedArray<int>::operator!=(cow_FixedArray<int> const&) const;

template ZORVANCOW_API cow_FixedArray<float>::cow_FixedArray(int, float const&);
template ZORVANCOW_API bool cow_FixedArray<float>::operator==(cow_FixedArray<float> const&) const;
template ZORVANCOW_API bool cow_FixedArray<float>::operator!=(cow_FixedArray<float> const&) const;

template ZORVANCOW_API cow_FixedArray<cow_String>::cow_FixedArray(int, cow_String const&);
template ZORVANCOW_API bool cow_FixedArray<cow_String>::operator==(cow_FixedArray<cow_String> const&) const;
template ZORVANCOW_API bool cow_FixedArray<cow_String>::operator!=(cow_FixedArray<cow_String> const&) const;

ZORVANCOW_INSTANTIATE_COW(cow_2DArrayRep<int>);
ZORVANCOW_INSTANTIATE_COW(cow_2DArrayRep<float>);
ZORVANCOW_INSTANTIATE_COW(cow_2DArrayRep<double>);
ZORVANCOW_INSTANTIATE_COW(cow_2DArrayRep<cow_String>);

template ZORVANCOW_API cow_2DArrayRep<int>::cow_2DArrayRep(int, int);
template ZORVANCOW_API cow_2DArrayRep<int>::cow_2DArrayRep(cow_2DArrayRep<int> const&);
template ZORVANCOW_API cow_2DArrayRep<int>::~cow_2DArrayRep();
template ZORVANCOW_API cow_2DArray<int>::cow_2DArray(int, int, int const&);

template ZORVANCOW_API cow_2DArrayRep<float>::cow_2DArrayRep(int, int);
template ZORVANCOW_API cow_2DArrayRep<float>::cow_2DArrayRep(cow_2DArrayRep<float> const&);
template ZORVANCOW_API cow_2DArrayRep<float>::~cow_2DArrayRep();
template ZORVANCOW_API cow_2DArray<float>::cow_2DArray(int, int, float const&);

template ZORVANCOW_API cow_2DArrayRep<double>::cow_2DArrayRep(int, int);
template ZORVANCOW_API cow_2DArrayRep<double>::cow_2DArrayRep(cow_2DArrayRep<double> const&);
template ZORVANCOW_API cow_2DArrayRep<double>::~cow_2DArrayRep();
template ZORVANCOW_API cow_2DArray<double>::cow_2DArray(int, int, double const&);

template ZORVANCOW_API cow_2DArrayRep<cow_String>::cow_2DArrayRep(int, int);
template ZORVANCOW_API cow_2DArrayRep<cow_String>::cow_2DArrayRep(cow_2DArrayRep<cow_String> const&);
template ZORVANCOW_API cow_2DArrayRep<cow_String>::~cow_2DArrayRep();
template ZORVANCOW_API cow_2DArray<cow_String>::cow_2DArray(int, int, cow_String const&);
