#ifndef ZORVANCOW_LISTS_DETAIL_COW_1DARRAYLISTSTD_H
#define ZORVANCOW_LISTS_DETAIL_COW_1DARRAYLISTSTD_H

// The standard interface of cow_1DArrayList beyond what it shares with the array
// (arrays/detail/cow_BlockSequence.h): its constructors from values, and
// std::hash. Comparisons and printing are those of every sequence
// (core/cow_Std.h).
//
// Iterators are random access over the elements, first to last, and read
// only: they never unshare. They point into the blocks of the list they came
// from and hold no count, so any write to that list (Get, Append, removal,
// Clear, Sort, assignment, destruction) invalidates them, as a write to a
// std::vector does. Writes to copies are harmless. For a walk that survives
// writes to the walked list, walk a copy (one increment), or use cow_1DArrayListIter.

#include <cstddef>
#include <initializer_list>
#include <iterator>

#include "zorvancow/arrays/cow_1DArray.h"
#include "zorvancow/core/cow_Std.h"

template <class T>
inline cow_1DArrayList<T>::cow_1DArrayList(std::initializer_list<T> values) : cow_1DArrayList(values.begin(), values.end()) {}

template <class T>
template <class It, class>
inline cow_1DArrayList<T>::cow_1DArrayList(It first, It last) : cow_1DArrayList() {
    for (; first != last; ++first) Append(*first);
}

template <class T>
template <class R, class>
inline cow_1DArrayList<T>::cow_1DArrayList(R const& range) : cow_1DArrayList(cow_detail::Begin(range), cow_detail::End(range)) {}

template <class T>
struct cow_IsSequence<cow_1DArrayList<T>> : std::true_type {};

namespace std {
template <class T>
struct hash<cow_1DArrayList<T>> : cow_detail::SequenceHash<cow_1DArrayList<T>> {};
}  // namespace std

#endif
