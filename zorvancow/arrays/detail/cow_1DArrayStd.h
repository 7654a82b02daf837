#ifndef ZORVANCOW_ARRAYS_DETAIL_COW_1DARRAYSTD_H
#define ZORVANCOW_ARRAYS_DETAIL_COW_1DARRAYSTD_H

// The standard interface of the blocked array, shared with the lists that
// sit on it: a random-access iterator that steps inside a block and reads
// the table once per block, a block-wise walk that hands out contiguous
// spans. Its constructors from values and ranges are in arrays/cow_1DArray.h;
// the mutable iterator of a non-const value is in
// arrays/detail/cow_BlockWriteIterator.h.
//
// These iterators read only: they give const references and never unshare. They
// point into the blocks of the value they came from and do not hold a count,
// so any write to that value (Get, GetHead, RemoveHead, Grow, SetFromArray,
// assignment, destruction) invalidates them, as a write to a std::vector
// does. Writes to copies are harmless: a copy unshares before it writes. For
// a walk that survives writes to the walked value, copy the value first and
// walk the copy (one increment), or use cow_1DArrayIter, which does that.
//
// Reading an element that lies in a slot that was never created (a sized
// array that was never written there) creates its block, as
// PartialArrayConstGet does: the new block holds the default elements that
// the slot stood for.

#include <cstddef>
#include <initializer_list>
#include <iterator>

#include "zorvancow/arrays/detail/cow_BlockCursor.h"
#include "zorvancow/core/cow_Export.h"
#include "zorvancow/core/cow_Std.h"

template <class T>
class ZORVANCOW_TYPE cow_1DArray;

template <class T>
class cow_BlockIterator : public cow_detail::RandomAccessSteps<cow_BlockIterator<T>> {
public:
    using iterator_category = std::random_access_iterator_tag;
    using iterator_concept = std::random_access_iterator_tag;
    using value_type = T;
    using difference_type = std::ptrdiff_t;
    using pointer = T const*;
    using reference = T const&;

    // A singular iterator, equal to other singular ones and to the ends of empty values.
    cow_BlockIterator() = default;
    // On element `index` (0 to `count`) of `array`, whose walk ends after
    // element `count` - 1, counted from the head.
    cow_BlockIterator(cow_1DArray<T> const& array, int index, int count) : place(array, index, count) {}

    T const& operator*() const { return *place.Current(); }
    T const* operator->() const { return place.Current(); }
    T const& operator[](difference_type n) const { return *(*this + n); }

    cow_BlockIterator& operator++() {
        place.Increment();
        return *this;
    }
    cow_BlockIterator& operator--() {
        place.Decrement();
        return *this;
    }
    cow_BlockIterator& operator+=(difference_type n) {
        place.Seek(place.Index() + n);
        return *this;
    }
    friend difference_type operator-(cow_BlockIterator const& a, cow_BlockIterator const& b) {
        return a.place.Index() - b.place.Index();
    }

    // Two iterators on one value are equal when they stand on one element;
    // the end stands one past the last element, in the last element's block.
    friend bool operator==(cow_BlockIterator const& a, cow_BlockIterator const& b) {
        return a.place.Current() == b.place.Current();
    }
    friend bool operator!=(cow_BlockIterator const& a, cow_BlockIterator const& b) { return !(a == b); }

private:
    cow_detail::BlockPlace<T, cow_1DArray<T> const> place;
};

// A block-wise walk: the elements of an array or list as contiguous spans,
// one per block (the first and last ones partial). Each step reads the
// table once; inside a span, standard algorithms run over plain pointers:
//
//     for (cow_Span<int const> run : cow_Blocks(list)) sum = std::accumulate(run.begin(), run.end(), sum);
//
// It reads only, and is invalidated like the iterators above.
template <class T>
class cow_BlockRange {
public:
    class iterator : public cow_ValueIteratorTypes<std::forward_iterator_tag, cow_Span<T const>>,
                     public cow_detail::PostfixIncrement<iterator> {
    public:
        iterator() = default;
        iterator(cow_1DArray<T> const* array_, cow_detail::BlockCursor at_) : array(array_), at(at_) {}

        cow_Span<T const> operator*() const {
            return cow_Span<T const>(at.ReadBlockData(*array) + at.Offset(), static_cast<std::size_t>(at.Run()));
        }
        iterator& operator++() {
            at.NextRun();
            return *this;
        }
        friend bool operator==(iterator const& a, iterator const& b) { return a.at.Position() == b.at.Position(); }
        friend bool operator!=(iterator const& a, iterator const& b) { return a.at.Position() != b.at.Position(); }

    private:
        cow_1DArray<T> const* array = nullptr;
        cow_detail::BlockCursor at;
    };

    // The first `count` elements of `array`, counted from its head.
    cow_BlockRange(cow_1DArray<T> const& array_, int count_)
        : array(&array_), first(array_.GetHeadPosition(), array_.GetShift(), array_.GetHeadPosition() + count_) {}

    iterator begin() const { return iterator(array, first); }
    iterator end() const { return iterator(array, cow_detail::BlockCursor(first).MoveTo(first.Stop())); }

private:
    cow_1DArray<T> const* array;
    cow_detail::BlockCursor first;
};

// Calls `f(T const* data, std::size_t n)` once per run of contiguous
// elements of an array or list, in order.
template <class Container, class F>
void cow_ForEachBlock(Container const& container, F&& f) {
    for (cow_Span<typename Container::value_type const> run : cow_Blocks(container)) f(run.data(), run.size());
}

ZORVANCOW_STD_SEQUENCE(cow_1DArray)

#endif
