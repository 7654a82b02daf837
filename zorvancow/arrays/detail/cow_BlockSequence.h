#ifndef ZORVANCOW_ARRAYS_DETAIL_COW_BLOCKSEQUENCE_H
#define ZORVANCOW_ARRAYS_DETAIL_COW_BLOCKSEQUENCE_H

// The standard interface that the blocked array and the two lists on it
// share: member types, random-access iterators, size and element access,
// reading on a const value and reading or writing on a non-const one
// (arrays/detail/cow_BlockWriteIterator.h tells what a write unshares).
//
// `Sequence` is the class itself (cow_1DArray<T>, cow_1DArrayList<T>,
// cow_List<T>). It befriends this base and hands it, through private members,
// the array that holds its elements (SequenceArray, const and not), how
// many there are counted from the head (SequenceLength), element i as its own checked read
// gives it (SequenceElement), and its name for at()'s message (kSequenceName).
//
// The base has no fields, so it changes no layout, and everything in it is
// inline and exported nowhere. Iterators are invalidated by any change of
// the value's extent (see arrays/detail/cow_1DArrayStd.h).

#include <cstddef>
#include <cstdio>
#include <utility>

#include "zorvancow/arrays/detail/cow_BlockWriteIterator.h"
#include "zorvancow/core/cow_Check.h"
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
    using reference = cow_ElementRef<T>;
    using const_iterator = cow_BlockIterator<T>;
    using iterator = cow_BlockWriteIterator<T>;

    // Random-access iterators over the elements, first to last. Those of a
    // const value read only; those of a non-const value also write, making
    // private the blocks they write into and nothing else.
    cow_BlockIterator<T> cbegin() const { return cow_BlockIterator<T>(Array(), 0, Length()); }
    cow_BlockIterator<T> cend() const { return cow_BlockIterator<T>(Array(), Length(), Length()); }
    cow_BlockIterator<T> begin() const { return cbegin(); }
    cow_BlockIterator<T> end() const { return cend(); }
    cow_BlockWriteIterator<T> begin() { return cow_BlockWriteIterator<T>(WritableArray(), 0, Length()); }
    cow_BlockWriteIterator<T> end() { return cow_BlockWriteIterator<T>(WritableArray(), Length(), Length()); }
    // Number of elements, and whether there are none.
    std::size_t size() const { return static_cast<std::size_t>(Length()); }
    bool empty() const { return Length() <= 0; }
    // Element i (below size()), read as by the class's own const read. In
    // checked mode an index at or past size() stops with a message naming
    // operator[], front or back. at() refuses it in every build.
    T const& operator[](std::size_t i) const {
        CheckIndex("operator[]", i);
        return Self().SequenceElement(static_cast<int>(i));
    }
    T const& at(std::size_t i) const {
        AtIndex(i);
        return Self().SequenceElement(static_cast<int>(i));
    }
    // The first and the last element of a non-empty value.
    T const& front() const {
        CheckNotEmpty("front");
        return Self().SequenceElement(0);
    }
    T const& back() const {
        CheckNotEmpty("back");
        return Self().SequenceElement(Length() - 1);
    }
    // The same on a non-const value: a reference that reads without
    // unsharing and, when written, makes the element's block private first.
    cow_ElementRef<T> operator[](std::size_t i) {
        CheckIndex("operator[]", i);
        return ElementRef(static_cast<int>(i));
    }
    cow_ElementRef<T> at(std::size_t i) {
        AtIndex(i);
        return ElementRef(static_cast<int>(i));
    }
    cow_ElementRef<T> front() {
        CheckNotEmpty("front");
        return ElementRef(0);
    }
    cow_ElementRef<T> back() {
        CheckNotEmpty("back");
        return ElementRef(Length() - 1);
    }

    template <class S, class U>
    friend cow_BlockRange<U> cow_Blocks(cow_BlockSequence<S, U> const& value);

protected:
    cow_BlockSequence() = default;

private:
    Sequence const& Self() const { return static_cast<Sequence const&>(*this); }
    cow_1DArray<T> const& Array() const { return Self().SequenceArray(); }
    cow_1DArray<T>& WritableArray() { return static_cast<Sequence&>(*this).SequenceArray(); }
    int Length() const { return Self().SequenceLength(); }
    cow_ElementRef<T> ElementRef(int i) { return cow_ElementRef<T>(WritableArray(), i, Length()); }
    // The index is tested as given, before it is narrowed to an int.
    void CheckIndex(char const* operation, std::size_t i) const {
        static_cast<void>(operation), static_cast<void>(i);
        ZORVANCOW_CHECK(i < size(), cow_detail::CheckWhere(Sequence::kSequenceName, operation).text,
                        "index out of range", "index %zu, size %d", i, Length());
    }
    void CheckNotEmpty(char const* operation) const {
        static_cast<void>(operation);
        ZORVANCOW_CHECK(Length() > 0, cow_detail::CheckWhere(Sequence::kSequenceName, operation).text,
                        "the value is empty", "size %d", Length());
    }
    void AtIndex(std::size_t i) const {
        if (i >= size()) cow_detail::AtFailed(Sequence::kSequenceName, "index", static_cast<long long>(i), Length());
    }
};

// The usual sequence members of the two lists, so that std::back_inserter
// and the like work: Append of one element, Append of an element made from
// `args` (giving a reference to it), and removal of the last element (which
// gets the zero value; needs a non-empty list). `List` adds to the hooks
// above its Append, GetCount and SequenceRemoveLast (its own removal of the
// last element).
template <class List, class T>
class cow_ListSequence : public cow_BlockSequence<List, T> {
public:
    void push_back(T const& value) { Self().Append(value); }
    template <class... Args>
    cow_ElementRef<T> emplace_back(Args&&... args) {
        Self().Append(T(std::forward<Args>(args)...));
        return this->back();
    }
    void pop_back() {
        ZORVANCOW_CHECK(Self().GetCount() > 0, cow_detail::CheckWhere(List::kSequenceName, "pop_back").text,
                        "the list is empty", "count %d", Self().GetCount());
        Self().SequenceRemoveLast();
    }

protected:
    cow_ListSequence() = default;

private:
    List& Self() { return static_cast<List&>(*this); }
};

// The block-wise walk of an array or list: its elements as contiguous spans,
// one per block (arrays/detail/cow_1DArrayStd.h).
template <class Sequence, class T>
cow_BlockRange<T> cow_Blocks(cow_BlockSequence<Sequence, T> const& value) {
    return cow_BlockRange<T>(value.Array(), value.Length());
}

#endif
