#ifndef ZORVANCOW_LISTS_DETAIL_COW_SORTBUFFER_H
#define ZORVANCOW_LISTS_DETAIL_COW_SORTBUFFER_H

// The sort behind cow_List::Sort, on a plain buffer of elements.

#include <cstddef>
#include <cstring>

#include "zorvancow/core/cow_Check.h"
#include "zorvancow/core/cow_Element.h"

namespace cow_detail {
// Sorts n elements in place by `compare` (which gets two element addresses,
// as qsort's does): a stable merge sort over runs of 16 sorted by insertion,
// with a scratch buffer of n elements. Elements that may move as bytes
// (cow_ElementBytewise) move as bytes; the others with their own moves.
template <class T>
void SortBuffer(T* buffer, int n, int (*compare)(void const*, void const*)) {
    if constexpr (!cow_ElementBytewise<T>::value) {
        // Elements that must not move as bytes take the same sort with their own moves.
        cow_Element<T>::SortRun(buffer, n, [compare](T const& a, T const& b) { return compare(&a, &b); });
        return;
    }
    // Every step only picks which of two elements goes first, so the
    // outcome is a permutation of the input whatever SortCmp says, also
    // when it is no strict order (a NaN): no index ever leaves its run.
    // Equal elements keep their order, which is more than Sort promises.
    constexpr std::size_t width = sizeof(T);
    auto* data = reinterpret_cast<unsigned char*>(buffer);
    auto at = [](unsigned char* base, int i) { return base + static_cast<std::size_t>(i) * width; };

    // Runs of up to 16 by insertion.
    int const run = 16;
    alignas(T) unsigned char hold[sizeof(T)];
    for (int lo = 0; lo < n; lo += run) {
        int hi = lo + run < n ? lo + run : n;
        for (int i = lo + 1; i < hi; ++i) {
            int j = i;
            std::memcpy(hold, at(data, i), width);
            while (j > lo && compare(hold, at(data, j - 1)) < 0) {
                std::memcpy(at(data, j), at(data, j - 1), width);
                --j;
            }
            std::memcpy(at(data, j), hold, width);
        }
    }
    if (n <= run) return;

    // Then merges of neighbouring runs, back and forth between the buffer
    // and the scratch space.
    auto* scratch = cow_Allocate([n] { return new unsigned char[static_cast<std::size_t>(n) * width]; });
    unsigned char* from = data;
    unsigned char* to = scratch;
    for (int size = run; size < n; size *= 2) {
        for (int lo = 0; lo < n; lo += 2 * size) {
            int mid = lo + size < n ? lo + size : n;
            int hi = lo + 2 * size < n ? lo + 2 * size : n;
            int i = lo, j = mid, k = lo;
            while (i < mid && j < hi) {
                if (compare(at(from, j), at(from, i)) < 0) {
                    std::memcpy(at(to, k++), at(from, j++), width);
                } else {
                    std::memcpy(at(to, k++), at(from, i++), width);
                }
            }
            if (i < mid) std::memcpy(at(to, k), at(from, i), static_cast<std::size_t>(mid - i) * width);
            k += mid - i;
            if (j < hi) std::memcpy(at(to, k), at(from, j), static_cast<std::size_t>(hi - j) * width);
        }
        unsigned char* swap = from;
        from = to;
        to = swap;
    }
    if (from != data) std::memcpy(data, from, static_cast<std::size_t>(n) * width);
    delete[] scratch;
}
}  // namespace cow_detail

#endif
