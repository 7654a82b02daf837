#ifndef ZORVANCOW_SHAPES_COW_FIXEDARRAYEXPORTS_H
#define ZORVANCOW_SHAPES_COW_FIXEDARRAYEXPORTS_H

// What libzorvancow.so exports of the fixed arrays (see core/cow_Export.h).
// The double arrays, which the maps hold, export their handle members only.

#include "zorvancow/shapes/cow_FixedArray.h"

// Every element type: the handle on the representation.
#define ZORVANCOW_FIXEDARRAY_HANDLE_ROWS(ROW, ...)                                                   \
    ZORVANCOW_HANDLE_SHARE_ROWS(ROW, cow_FixedArrayRep<__VA_ARGS__>)                                 \
    ZORVANCOW_HANDLE_DELETE_ROWS(ROW, cow_FixedArrayRep<__VA_ARGS__>)                                \
    ZORVANCOW_HANDLE_RELEASE_ROWS(ROW, cow_FixedArrayRep<__VA_ARGS__>)

// int, float and cow_String: the representation's copy, release and
// comparisons, the array's sized constructor and comparisons, and the
// handle's replacement of its representation.
#define ZORVANCOW_FIXEDARRAY_ROWS(ROW, ...)                                                          \
    ZORVANCOW_FIXEDARRAY_HANDLE_ROWS(ROW, __VA_ARGS__)                                               \
    ZORVANCOW_HANDLE_REPLACE_ROWS(ROW, cow_FixedArrayRep<__VA_ARGS__>)                               \
    ROW(cow_FixedArrayRep<__VA_ARGS__>::cow_FixedArrayRep(cow_FixedArrayRep<__VA_ARGS__> const&))    \
    ROW(cow_FixedArrayRep<__VA_ARGS__>::~cow_FixedArrayRep())                                        \
    ROW(cow_FixedArrayRep<__VA_ARGS__>& cow_FixedArrayRep<__VA_ARGS__>::operator=(                   \
        cow_FixedArrayRep<__VA_ARGS__> const&))                                                      \
    ROW(bool cow_FixedArrayRep<__VA_ARGS__>::operator==(cow_FixedArrayRep<__VA_ARGS__> const&) const) \
    ROW(bool cow_FixedArrayRep<__VA_ARGS__>::operator!=(cow_FixedArrayRep<__VA_ARGS__> const&) const) \
    ROW(cow_FixedArray<__VA_ARGS__>::cow_FixedArray(int, __VA_ARGS__ const&))                        \
    ROW(bool cow_FixedArray<__VA_ARGS__>::operator==(cow_FixedArray<__VA_ARGS__> const&) const)      \
    ROW(bool cow_FixedArray<__VA_ARGS__>::operator!=(cow_FixedArray<__VA_ARGS__> const&) const)

#define ZORVANCOW_FIXEDARRAY_EXPORTS(ROW)                                                            \
    ZORVANCOW_FIXEDARRAY_ROWS(ROW, int)                                                              \
    ZORVANCOW_HANDLE_ASSIGN_ROWS(ROW, cow_FixedArrayRep<int>)                                        \
    ROW(cow_FixedArray<int>::cow_FixedArray())                                                       \
    ROW(cow_FixedArray<int>::~cow_FixedArray())                                                      \
    ZORVANCOW_FIXEDARRAY_ROWS(ROW, float)                                                            \
    ZORVANCOW_FIXEDARRAY_ROWS(ROW, cow_String)                                                       \
    ROW(cow_FixedArrayRep<cow_String>::cow_FixedArrayRep(int))                                       \
    ZORVANCOW_FIXEDARRAY_HANDLE_ROWS(ROW, double)

ZORVANCOW_FIXEDARRAY_EXPORTS(ZORVANCOW_EXTERN_ROW)

#endif
