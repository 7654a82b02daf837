#ifndef ZORVANCOW_SHAPES_DETAIL_COW_FIXEDARRAYSTD_H
#define ZORVANCOW_SHAPES_DETAIL_COW_FIXEDARRAYSTD_H

// The fixed array as a standard sequence: ordering, printing and std::hash
// (its == and != are its own; its constructors from values and ranges and
// at() are in shapes/cow_FixedArray.h).
//
// Its iterators are plain pointers to const elements of the representation
// it holds, so standard algorithms run at the speed of an array. They stay
// valid while that representation lives: assigning or destroying the array,
// and a Get on an array whose representation is shared (which moves this
// array to a copy), end their guarantee; a Get on an unshared array writes in
// place and the iterators see the new value.

#include <cstddef>
#include <initializer_list>
#include <iterator>

#include "zorvancow/core/cow_Export.h"
#include "zorvancow/core/cow_Std.h"

template <class T>
class ZORVANCOW_TYPE cow_FixedArray;

ZORVANCOW_STD_SEQUENCE(cow_FixedArray)

#endif
