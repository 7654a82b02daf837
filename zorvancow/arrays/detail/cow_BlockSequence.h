#ifndef ZORVANCOW_ARRAYS_DETAIL_COW_BLOCKSEQUENCE_H
#define ZORVANCOW_ARRAYS_DETAIL_COW_BLOCKSEQUENCE_H

// The standard read interface that the blocked array and the two lists on it
// share: member types, random-access iterators, size and element access.
//
// `Sequence` is the class itself (cow_1DArray<T>, cow_1DArrayList<T>,
// cow_List<T>). It befriends this base and hands it, through private members,
// the array that holds its elements (SequenceArray), how many there are
// counted from the head (SequenceLength), element i as its own checked read
// gives it (SequenceElement), and its name for at()'s message (kSequenceName).
//
// The base has no fields, so it changes no layout, and everything in it is
// inline and exported nowhere. Iterators read only and are invalidated by any
// write to the value they came from (see arrays/detail/cow_1DArrayStd.h).

#include <cstddef>

#include "zorvancow/core/cow_Export.h"
#include "zorvancow/core/cow_Std.h"

template <class T>
class ZORVANCOW_TYPE cow_1DArray;
template <class T>
class cow_BlockIterator;
template <class T>
class cow_BlockRange;

template <class Sequence, class T>
class cow_BlockSequence {
public:
    using value_type = T;
    using size_type = std::size_t;
    using difference_type = std::ptrdiff_t;
    using const_reference = T const&;
    using reference = T const&;
    using const_iterator = cow_BlockIterator<T>;
    using iterator = cow_BlockIterator<T>;

    // Random-access iterators over the elements, first to last.
    cow_BlockIterator<T> cbegin() const { return cow_BlockIterator<T>(Array(), 0, Length()); }
    cow_BlockIterator<T> cend() const { return cow_BlockIterator<T>(Array(), Length(), Length()); }
    // Number of elements, and whether there are none.
    std::size_t size() const { return static_cast<std::size_t>(Length()); }
    bool empty() const { return Length() <= 0; }
    // Element i, read as by the class's own const read; at() refuses an index
    // past the end with one line and abort().
    T const& operator[](std::size_t i) const { return Self().SequenceElement(static_cast<int>(i)); }
    T const& at(std::size_t i) const {
        if (i >= size()) cow_detail::AtFailed(Sequence::kSequenceName, "index", static_cast<long long>(i), Length());
        return (*this)[i];
    }
    // The first and the last element of a non-empty value.
    T const& front() const { return (*this)[0]; }
    T const& back() const { return (*this)[size() - 1]; }

    template <class S, class U>
    friend cow_BlockRange<U> cow_Blocks(cow_BlockSequence<S, U> const& value);

protected:
    cow_BlockSequence() = default;

private:
    Sequence const& Self() const { return static_cast<Sequence const&>(*this); }
    cow_1DArray<T> const& Array() const { return Self().SequenceArray(); }
    int Length() const { return Self().SequenceLength(); }
};

// The block-wise walk of an array or list: its elements as contiguous spans,
// one per block (arrays/detail/cow_1DArrayStd.h).
template <class Sequence, class T>
cow_BlockRange<T> cow_Blocks(cow_BlockSequence<Sequence, T> const& value) {
    return cow_BlockRange<T>(value.Array(), value.Length());
}

#endif
