#ifndef ZORVANCOW_ARRAYS_DETAIL_COW_ARRAYALGORITHMS_H
#define ZORVANCOW_ARRAYS_DETAIL_COW_ARRAYALGORITHMS_H

#include <algorithm>

#include "zorvancow/arrays/cow_1DArray.h"
#include "zorvancow/arrays/detail/cow_BlockCursor.h"
#include "zorvancow/core/cow_Element.h"

namespace cow_detail {
// What the lists do to the elements of their array: moving elements to open
// or close a gap, searching by walking block by block, and element-wise
// equality (both walks on the array's block cursor, cow_BlockCursor.h). Each takes the array and the element count (from the head) to
// work on; the array's own IsEqual uses the equality over its whole size.
template <class T>
struct ArrayAlgorithms {
    // Moves the elements from `from` up to count - 1 one place up, from the
    // top down, so that slot `from` can take a new element. Both slots of
    // each move go through Get, so every block passed becomes private.
    // When an element's copy throws (a move, or unsharing a block) after the
    // first move, every element is still there and one of them twice (the
    // one whose move failed sits in both its slots, or what its assignment
    // left): `count` then rises by one to take in the slot on top, so that
    // no element is lost.
    static void OpenGap(cow_1DArray<T>& array, int& count, int from) {
        int n = count;
        try {
            for (; n > from; --n) {
                T const& source = array.Get(n - 1);
                array.Get(n) = source;
            }
        } catch (...) {
            if (n < count) ++count;
            throw;
        }
    }

    // Removes element `at` of a list whose count has already been lowered
    // to `count`: moves the elements above it one place down and writes the
    // zero value into the slot that falls free. With `at` at or beyond the
    // count nothing moves and the last element is the one removed. When an
    // element's copy throws during the moves (or while unsharing a block on
    // the way), `count` rises back by one: the
    // list keeps every element but the removed one, and one of them twice
    // (or, at the first move, the removed one as the assignment left it).
    static void CloseGap(cow_1DArray<T>& array, int& count, int at) {
        try {
            for (int i = at; i < count; ++i) {
                T const& source = array.Get(i + 1);
                array.Get(i) = source;
            }
            cow_Element<T>::Clear(array.Get(count));
        } catch (...) {
            ++count;
            throw;
        }
    }

    // Index of the first element equal to `value`, or -1. Walks the array
    // one block at a time, comparing inside a block without going back to
    // the table. A pure read: no block is created and no count moves.
    static int Find(cow_1DArray<T> const& array, int count, T const& value) {
        int const head = array.GetHeadPosition();
        for (BlockCursor at = Walk(array, count); !at.Done(); at.NextRun()) {
            T const* data = at.BlockData(array);
            if (data == nullptr) return -1;  // a hole: nothing below the count was ever there
            T const* first = data + at.Offset();
            T const* last = first + at.Run();
            T const* found = std::find_if(first, last, [&value](T const& element) {
                return cow_Element<T>::Equal(element, value);
            });
            if (found != last) return at.Position() + static_cast<int>(found - first) - head;
        }
        return -1;
    }

    // Element-wise equality of two lists of `count` elements each. Elements
    // at one address (a block both arrays share) count as equal unread, so a
    // NaN in a shared block equals itself. Creates the absent blocks of both
    // arrays up to the first difference, as their const reads do.
    static bool Equal(cow_1DArray<T> const& left, cow_1DArray<T> const& right, int count) {
        // Both walks go by the shorter of their two runs, so that each step
        // stays inside one block of either array.
        BlockCursor a = Walk(left, count);
        BlockCursor b = Walk(right, count);
        while (!a.Done()) {
            int const run = a.Run() < b.Run() ? a.Run() : b.Run();
            T const* x = a.ReadBlockData(left) + a.Offset();
            T const* y = b.ReadBlockData(right) + b.Offset();
            if (x != y) {
                for (int k = 0; k < run; ++k) {
                    if (!cow_Element<T>::Equal(x[k], y[k])) return false;
                }
            }
            a.MoveTo(a.Position() + run);
            b.MoveTo(b.Position() + run);
        }
        return true;
    }

private:
    // The first `count` elements of `array`, from its head.
    static BlockCursor Walk(cow_1DArray<T> const& array, int count) {
        int const head = array.GetHeadPosition();
        return BlockCursor(head, array.GetShift(), head + count);
    }
};
}  // namespace cow_detail

#endif
