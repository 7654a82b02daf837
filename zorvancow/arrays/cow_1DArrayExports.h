#ifndef ZORVANCOW_ARRAYS_COW_1DARRAYEXPORTS_H
#define ZORVANCOW_ARRAYS_COW_1DARRAYEXPORTS_H

// What libzorvancow.so exports of the blocked arrays (see core/cow_Export.h).
// The element types that are containers of later families (lists, trees)
// take these rows in their own export headers.

#include "zorvancow/arrays/cow_1DArray.h"

// Every element type: the block, the array and the iterator's constructor.
#define ZORVANCOW_1DARRAY_ROWS(ROW, ...)                                                             \
    ROW(cow_1DArrayBlock<__VA_ARGS__>::cow_1DArrayBlock(int))                                        \
    ROW(cow_1DArrayBlock<__VA_ARGS__>::cow_1DArrayBlock(int, __VA_ARGS__ const*))                    \
    ROW(cow_1DArrayBlock<__VA_ARGS__>::~cow_1DArrayBlock())                                          \
    ROW(cow_1DArray<__VA_ARGS__>::cow_1DArray())                                                     \
    ROW(cow_1DArray<__VA_ARGS__>::cow_1DArray(int))                                                  \
    ROW(cow_1DArray<__VA_ARGS__>::cow_1DArray(cow_1DArray<__VA_ARGS__> const&))                      \
    ROW(cow_1DArray<__VA_ARGS__>::~cow_1DArray())                                                    \
    ROW(cow_1DArray<__VA_ARGS__>& cow_1DArray<__VA_ARGS__>::operator=(cow_1DArray<__VA_ARGS__> const&)) \
    ROW(__VA_ARGS__& cow_1DArray<__VA_ARGS__>::Get(int))                                             \
    ROW(__VA_ARGS__ const& cow_1DArray<__VA_ARGS__>::PartialArrayConstGet(int) const)                \
    ROW(__VA_ARGS__& cow_1DArray<__VA_ARGS__>::FullArrayGet(int))                                    \
    ROW(bool cow_1DArray<__VA_ARGS__>::Grow(int))                                                    \
    ROW(__VA_ARGS__& cow_1DArray<__VA_ARGS__>::GetHead())                                            \
    ROW(void cow_1DArray<__VA_ARGS__>::SetFromArray(__VA_ARGS__ const*, int))                        \
    ROW(cow_1DArrayIter<__VA_ARGS__>::cow_1DArrayIter(cow_1DArray<__VA_ARGS__> const&))

// The iterator's steps: every element type but cow_Btree<int, int>.
#define ZORVANCOW_1DARRAY_STEP_ROWS(ROW, ...)                                                        \
    ROW(cow_1DArrayIter<__VA_ARGS__>& cow_1DArrayIter<__VA_ARGS__>::First())                         \
    ROW(cow_1DArrayIter<__VA_ARGS__>& cow_1DArrayIter<__VA_ARGS__>::Next())

// The iterator's destructor: atr_String and the array lists.
#define ZORVANCOW_1DARRAY_ITER_RELEASE_ROWS(ROW, ...)                                                \
    ROW(cow_1DArrayIter<__VA_ARGS__>::~cow_1DArrayIter())

// The head removal: the array lists and the trees.
#define ZORVANCOW_1DARRAY_REMOVE_HEAD_ROWS(ROW, ...) ROW(void cow_1DArray<__VA_ARGS__>::RemoveHead())

// The table unsharing: the array lists.
#define ZORVANCOW_1DARRAY_COPY_ROWS(ROW, ...) ROW(void cow_1DArray<__VA_ARGS__>::CopyArray())

// The scalar and string element types.
#define ZORVANCOW_1DARRAY_EXPORTS(ROW)                                                               \
    ZORVANCOW_1DARRAY_ROWS(ROW, int)                                                                 \
    ZORVANCOW_1DARRAY_ROWS(ROW, unsigned int)                                                        \
    ZORVANCOW_1DARRAY_ROWS(ROW, float)                                                               \
    ZORVANCOW_1DARRAY_ROWS(ROW, double)                                                              \
    ZORVANCOW_1DARRAY_ROWS(ROW, bool)                                                                \
    ZORVANCOW_1DARRAY_ROWS(ROW, cow_String)                                                          \
    ZORVANCOW_1DARRAY_ROWS(ROW, atr_String)                                                          \
    ZORVANCOW_1DARRAY_STEP_ROWS(ROW, int)                                                            \
    ZORVANCOW_1DARRAY_STEP_ROWS(ROW, unsigned int)                                                   \
    ZORVANCOW_1DARRAY_STEP_ROWS(ROW, float)                                                          \
    ZORVANCOW_1DARRAY_STEP_ROWS(ROW, double)                                                         \
    ZORVANCOW_1DARRAY_STEP_ROWS(ROW, bool)                                                           \
    ZORVANCOW_1DARRAY_STEP_ROWS(ROW, cow_String)                                                     \
    ZORVANCOW_1DARRAY_STEP_ROWS(ROW, atr_String)                                                     \
    ZORVANCOW_1DARRAY_ITER_RELEASE_ROWS(ROW, atr_String)

// Element-wise equality exists for int arrays only; it is an ordinary
// function, defined in arrays/cow_1DArray.cpp.
template <>
ZORVANCOW_API bool cow_1DArray<int>::IsEqual(cow_1DArray<int> const& other) const;

ZORVANCOW_1DARRAY_EXPORTS(ZORVANCOW_EXTERN_ROW)

#endif
