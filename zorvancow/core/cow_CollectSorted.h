#ifndef ZORVANCOW_CORE_COW_COLLECTSORTED_H
#define ZORVANCOW_CORE_COW_COLLECTSORTED_H

// The one way the sorted walks (cow_ConstMapSortedIt, the sorted mode of the
// table iterators) put entries in order: `collect` returns a fresh array of
// `count` pointers, one to each entry of a plain walk, and qsort orders that
// array by `order`. As for qsort, `order` gets the addresses of two array
// entries, so it reads through two levels of pointer; only the pointers move,
// never a key or a value. Returns the sorted array.

#include <cstddef>
#include <cstdlib>

namespace cow_detail {
template <class Collect>
auto CollectSorted(std::size_t count, int (*order)(void const*, void const*), Collect collect) {
    auto entries = collect();
    std::qsort(static_cast<void*>(entries), count, sizeof *entries, order);
    return entries;
}
}  // namespace cow_detail

#endif
