#ifndef ZORVANCOW_ARRAYS_DETAIL_COW_ARRAYALGORITHMS_H
#define ZORVANCOW_ARRAYS_DETAIL_COW_ARRAYALGORITHMS_H

#include <algorithm>

#include "zorvancow/arrays/cow_1DArray.h"
#include "zorvancow/core/cow_Element.h"

namespace cow_detail {
// What the lists do to the elements of their array: moving elements to open
// or close a gap, searching by walking block by block, and element-wise
// equality. Each takes the array and the element count (from the head) to
// work on; the array's own IsEqual uses the equality over its whole size.
template <class T>
struct ArrayAlgorithms {
    // Moves the elements from `from` up to count - 1 one place up, from the
    // top down, so that slot `from` can take a new element. Both slots of
    // each move go through Get, so every block passed becomes private.
    static void OpenGap(cow_1DArray<T>& array, int count, int from) {
        for (int n = count; n > from; --n) {
            T const& source = array.Get(n - 1);
            array.Get(n) = source;
        }
    }

    // Removes element `at` of a list whose count has already been lowered
    // to `count`: moves the elements above it one place down and writes the
    // zero value into the slot that falls free. With `at` at or beyond the
    // count nothing moves and the last element is the one removed.
    static void CloseGap(cow_1DArray<T>& array, int count, int at) {
        for (int i = at; i < count; ++i) {
            T const& source = array.Get(i + 1);
            array.Get(i) = source;
        }
        cow_Element<T>::Clear(array.Get(count));
    }

    // Index of the first element equal to `value`, or -1. Walks a snapshot
    // of the array one block at a time, comparing inside a block without
    // going back to the table.
    static int Find(cow_1DArray<T> const& array, int count, T const& value) {
        cow_1DArrayIter<T> it(array);
        int const start = it.GetPosition();
        int const stop = start + count;
        while (it.GetPosition() < stop) {
            T const* data = it.GetBlockData();
            if (data == nullptr) return -1;  // a hole: nothing below the count was ever there
            int const offset = it.GetOffset();
            int const position = it.GetPosition();
            int run = it.GetBlockLength() - offset;
            if (run > stop - position) run = stop - position;
            T const* first = data + offset;
            T const* found = std::find_if(first, first + run, [&value](T const& element) {
                return cow_Element<T>::Equal(element, value);
            });
            if (found != first + run) return position + static_cast<int>(found - first) - start;
            it.NextBlock();
        }
        return -1;
    }

    // Element-wise equality of two lists of `count` elements each. Elements
    // at one address (a block both arrays share) count as equal unread, so a
    // NaN in a shared block equals itself. Creates absent blocks.
    static bool Equal(cow_1DArray<T> const& left, cow_1DArray<T> const& right, int count) {
        for (int i = 0; i < count; ++i) {
            T const& a = left.PartialArrayConstGet(i);
            T const& b = right.PartialArrayConstGet(i);
            if (&a != &b && !cow_Element<T>::Equal(a, b)) return false;
        }
        return true;
    }
};
}  // namespace cow_detail

#endif
