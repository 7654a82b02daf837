#ifndef ZORVANCOW_SHAPES_COW_2DARRAYEXPORTS_H
#define ZORVANCOW_SHAPES_COW_2DARRAYEXPORTS_H

// What libzorvancow.so exports of the matrices (see core/cow_Export.h).

#include "zorvancow/shapes/cow_2DArray.h"

// Every element type alike: the handle on the representation, the
// representation's construction, copy and release, and the matrix's
// filling constructor.
#define ZORVANCOW_2DARRAY_ROWS(ROW, ...)                                                             \
    ZORVANCOW_HANDLE_SHARE_ROWS(ROW, cow_2DArrayRep<__VA_ARGS__>)                                    \
    ZORVANCOW_HANDLE_DELETE_ROWS(ROW, cow_2DArrayRep<__VA_ARGS__>)                                   \
    ZORVANCOW_HANDLE_RELEASE_ROWS(ROW, cow_2DArrayRep<__VA_ARGS__>)                                  \
    ZORVANCOW_HANDLE_REPLACE_ROWS(ROW, cow_2DArrayRep<__VA_ARGS__>)                                  \
    ROW(cow_2DArrayRep<__VA_ARGS__>::cow_2DArrayRep(int, int))                                       \
    ROW(cow_2DArrayRep<__VA_ARGS__>::cow_2DArrayRep(cow_2DArrayRep<__VA_ARGS__> const&))             \
    ROW(cow_2DArrayRep<__VA_ARGS__>::~cow_2DArrayRep())                                              \
    ROW(cow_2DArray<__VA_ARGS__>::cow_2DArray(int, int, __VA_ARGS__ const&))

#define ZORVANCOW_2DARRAY_EXPORTS(ROW)                                                               \
    ZORVANCOW_2DARRAY_ROWS(ROW, int)                                                                 \
    ZORVANCOW_2DARRAY_ROWS(ROW, float)                                                               \
    ZORVANCOW_2DARRAY_ROWS(ROW, double)                                                              \
    ZORVANCOW_2DARRAY_ROWS(ROW, cow_String)

ZORVANCOW_2DARRAY_EXPORTS(ZORVANCOW_EXTERN_ROW)

#endif
