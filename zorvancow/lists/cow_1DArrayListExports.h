#ifndef ZORVANCOW_LISTS_COW_1DARRAYLISTEXPORTS_H
#define ZORVANCOW_LISTS_COW_1DARRAYLISTEXPORTS_H

// What libzorvancow.so exports of the array lists, and of the blocked arrays
// whose elements are array lists (see core/cow_Export.h).

#include "zorvancow/arrays/cow_1DArrayExports.h"
#include "zorvancow/lists/cow_1DArrayList.h"

// Every instantiation: editing, search, slices, the plain copy, the
// destructors of the list and of its iterator.
#define ZORVANCOW_1DARRAYLIST_ROWS(ROW, ...)                                                         \
    ROW(cow_1DArrayList<__VA_ARGS__>::~cow_1DArrayList())                                            \
    ROW(void cow_1DArrayList<__VA_ARGS__>::Append(cow_1DArrayList<__VA_ARGS__> const&))              \
    ROW(bool cow_1DArrayList<__VA_ARGS__>::Insert(int, __VA_ARGS__ const&))                          \
    ROW(bool cow_1DArrayList<__VA_ARGS__>::Remove(int))                                              \
    ROW(__VA_ARGS__ cow_1DArrayList<__VA_ARGS__>::Pop())                                             \
    ROW(void cow_1DArrayList<__VA_ARGS__>::ClearAll())                                               \
    ROW(int cow_1DArrayList<__VA_ARGS__>::FindFirst(__VA_ARGS__ const&) const)                       \
    ROW(bool cow_1DArrayList<__VA_ARGS__>::IsMember(__VA_ARGS__ const&) const)                       \
    ROW(void cow_1DArrayList<__VA_ARGS__>::RemoveMember(__VA_ARGS__ const&))                         \
    ROW(void cow_1DArrayList<__VA_ARGS__>::AppendUnlessMember(__VA_ARGS__ const&))                   \
    ROW(bool cow_1DArrayList<__VA_ARGS__>::IsEqual(cow_1DArrayList<__VA_ARGS__> const&) const)       \
    ROW(cow_1DArrayList<__VA_ARGS__> cow_1DArrayList<__VA_ARGS__>::Slice(int, int))                  \
    ROW(void cow_1DArrayList<__VA_ARGS__>::Slice(int, int, cow_1DArrayList<__VA_ARGS__>&) const)     \
    ROW(__VA_ARGS__* cow_1DArrayList<__VA_ARGS__>::GetCArray(int&) const)                            \
    ROW(cow_1DArrayListIter<__VA_ARGS__>::~cow_1DArrayListIter())

// The default constructor: lists of int, float and double.
#define ZORVANCOW_1DARRAYLIST_CONSTRUCT_ROWS(ROW, ...) ROW(cow_1DArrayList<__VA_ARGS__>::cow_1DArrayList())

// Appending one element and the search from the back: the nested lists.
#define ZORVANCOW_1DARRAYLIST_NESTED_ROWS(ROW, ...)                                                  \
    ROW(void cow_1DArrayList<__VA_ARGS__>::Append(__VA_ARGS__ const&))                               \
    ROW(int cow_1DArrayList<__VA_ARGS__>::FindLast(__VA_ARGS__ const&) const)

// A blocked array whose elements are array lists: everything an array
// exports, with the head removal and the table unsharing.
#define ZORVANCOW_1DARRAY_OF_LISTS_ROWS(ROW, ...)                                                    \
    ZORVANCOW_1DARRAY_ROWS(ROW, cow_1DArrayList<__VA_ARGS__>)                                        \
    ZORVANCOW_1DARRAY_STEP_ROWS(ROW, cow_1DArrayList<__VA_ARGS__>)                                   \
    ZORVANCOW_1DARRAY_ITER_RELEASE_ROWS(ROW, cow_1DArrayList<__VA_ARGS__>)                           \
    ZORVANCOW_1DARRAY_REMOVE_HEAD_ROWS(ROW, cow_1DArrayList<__VA_ARGS__>)                            \
    ZORVANCOW_1DARRAY_COPY_ROWS(ROW, cow_1DArrayList<__VA_ARGS__>)

#define ZORVANCOW_1DARRAYLIST_EXPORTS(ROW)                                                           \
    ZORVANCOW_1DARRAY_OF_LISTS_ROWS(ROW, int)                                                        \
    ZORVANCOW_1DARRAY_OF_LISTS_ROWS(ROW, float)                                                      \
    ZORVANCOW_1DARRAY_OF_LISTS_ROWS(ROW, double)                                                     \
    ZORVANCOW_1DARRAYLIST_ROWS(ROW, int)                                                             \
    ZORVANCOW_1DARRAYLIST_ROWS(ROW, unsigned int)                                                    \
    ZORVANCOW_1DARRAYLIST_ROWS(ROW, float)                                                           \
    ZORVANCOW_1DARRAYLIST_ROWS(ROW, double)                                                          \
    ZORVANCOW_1DARRAYLIST_ROWS(ROW, cow_String)                                                      \
    ZORVANCOW_1DARRAYLIST_ROWS(ROW, cow_1DArrayList<int>)                                            \
    ZORVANCOW_1DARRAYLIST_ROWS(ROW, cow_1DArrayList<float>)                                          \
    ZORVANCOW_1DARRAYLIST_ROWS(ROW, cow_1DArrayList<double>)                                         \
    ZORVANCOW_1DARRAYLIST_CONSTRUCT_ROWS(ROW, int)                                                   \
    ZORVANCOW_1DARRAYLIST_CONSTRUCT_ROWS(ROW, float)                                                 \
    ZORVANCOW_1DARRAYLIST_CONSTRUCT_ROWS(ROW, double)                                                \
    ZORVANCOW_1DARRAYLIST_NESTED_ROWS(ROW, cow_1DArrayList<int>)                                     \
    ZORVANCOW_1DARRAYLIST_NESTED_ROWS(ROW, cow_1DArrayList<float>)                                   \
    ZORVANCOW_1DARRAYLIST_NESTED_ROWS(ROW, cow_1DArrayList<double>)

ZORVANCOW_1DARRAYLIST_EXPORTS(ZORVANCOW_EXTERN_ROW)

#endif
