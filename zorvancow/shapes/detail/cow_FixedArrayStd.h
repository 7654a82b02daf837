#ifndef ZORVANCOW_SHAPES_DETAIL_COW_FIXEDARRAYSTD_H
#define ZORVANCOW_SHAPES_DETAIL_COW_FIXEDARRAYSTD_H

// The standard interface of the fixed array: the members declared in its
// class, ordering, printing and std::hash (its == and != are its own).
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

#include "zorvancow/core/cow_Std.h"

template <class T>
inline cow_FixedArray<T>::cow_FixedArray(std::initializer_list<T> values)
    : cow_FixedArray(values.begin(), values.end()) {}

template <class T>
template <class It, class>
inline cow_FixedArray<T>::cow_FixedArray(It first, It last)
    : rep(new cow_FixedArrayRep<T>(static_cast<int>(std::distance(first, last)))) {
    // The handle is new and private, so Get copies nothing here.
    T* data = rep.Get().data;
    for (; first != last; ++first) *data++ = *first;
}

template <class T>
template <class R, class>
inline cow_FixedArray<T>::cow_FixedArray(R const& range)
    : cow_FixedArray(cow_detail::Begin(range), cow_detail::End(range)) {}

template <class T>
inline T const& cow_FixedArray<T>::at(std::size_t i) const {
    if (i >= size()) cow_detail::AtFailed("cow_FixedArray", "index", static_cast<long long>(i), GetSize());
    return ConstGet(static_cast<int>(i));
}

ZORVANCOW_STD_SEQUENCE(cow_FixedArray)

#endif
