#ifndef ZORVANCOW_LISTS_COW_LIST_H
#define ZORVANCOW_LISTS_COW_LIST_H

// The general list: a count of its own on a blocked array, with work at both
// ends, insertion and removal by index, search, sort and difference.
//
// Taking the first element off and putting one in front move no element:
// the array keeps a head position that moves instead, so a cow_List serves as
// a queue or a stack at constant cost. Editing members give the list back so
// that calls chain: list.Append(1).Prepend(0).Append(2).
//
// Copying a list copies its count and shares the array's table (one
// increment). The first write through either copy gives the writer a table
// of its own and a private copy of the block written; all other blocks stay
// shared. Every slot from the count on holds the element's zero value.
//
// Element copy, equality and zero value come from cow_Element (see
// core/cow_Element.h), as for cow_1DArrayList. Indices and non-empty lists
// are the caller's duty; checked mode (core/cow_Check.h) stops on a negative
// index, an index past the array's size on a read (the array's size, not the
// count), an InsertAfter index outside -1..count and a removal from an
// empty list. Counts are plain integers, and even an
// equality test (which creates absent blocks) or a destruction touches them,
// so lists that share storage belong to one thread at a time.
//
// The per-element members (Append of one element, Prepend, RemoveFirst,
// ConstGet, Get, Position, IsMember) are defined inline, so that a caller
// compiles in the array's common case and its block-wise search.

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <type_traits>

#include "zorvancow/arrays/cow_1DArray.h"
#include "zorvancow/core/cow_Check.h"
#include "zorvancow/core/cow_Export.h"
#include "zorvancow/core/cow_String.h"
#include "zorvancow/lists/cow_1DArrayList.h"
#include "zorvancow/core/cow_Element.h"

template <class T>
class ZORVANCOW_TYPE cow_ListIter;

template <class T>
class ZORVANCOW_TYPE cow_List : public cow_ListSequence<cow_List<T>, T> {
public:
    // An empty list; allocates only its array's counter.
    cow_List() : count(0), array() {}
    // An empty list whose array has the given block length
    // (arrays/cow_BlockLength.h), e.g. cow_List<int> l(cow_BlockLength::Balanced());
    // Copies and moves carry it, and Clear keeps it.
    explicit cow_List(cow_BlockLength length) : count(0), array(length) {}
    // Shares the other's storage: copies the count, shares the table.
    cow_List(cow_List const& other) noexcept : count(other.count), array(other.array) {}
    // Takes the other's storage without a count moving; `other` is left an
    // empty list that allocates its counter at its first write.
    cow_List(cow_List&& other) noexcept : count(other.count), array(std::move(other.array)) { other.count = 0; }
    // Copies the count, then shares the other's array.
    cow_List& operator=(cow_List const& other) {
        count = other.count;
        array = other.array;
        return *this;
    }
    // Takes the other's storage, releasing this list's; `other` is left empty.
    cow_List& operator=(cow_List&& other) noexcept {
        cow_List taken(std::move(other));
        swap(taken);
        return *this;
    }
    // Exchanges the two lists' counts and storage; no count moves.
    void swap(cow_List& other) noexcept {
        std::swap(count, other.count);
        array.swap(other.array);
    }
    // Clears, then destroys the array. A list whose table is shared only
    // leaves that table to its other holders: one decrement, no allocation.
    ~cow_List();

    // Appends one element: one Get on the array.
    cow_List& Append(T const& value);
    // Appends the other list's elements one by one, after setting the
    // array's extent to the sum of both counts (a reservation: no element
    // below this count is touched; blocks wholly beyond the sum are let go,
    // and a sum of 0 resets the array). The other count is read once, so a
    // list appended to itself doubles.
    cow_List& Append(cow_List const& other);
    // Puts one element in front of the first: no element moves. Used as a
    // reverse queue (Prepend, then RemoveLast) on a table of
    // cow_1DArray::kQueueSlots slots or more whose elements fill a quarter
    // of it or less, the array's end first falls to the count when the
    // table would grow: the blocks behind the count go and the free slots
    // move in front again, so memory stays bounded.
    cow_List& Prepend(T const& value);
    // Puts `value` behind the element at `index` (-1 to count; -1 puts it
    // first, count and count - 1 both append). Elements above move one place
    // up through Get, making their blocks private. `value` is read after
    // the moves.
    cow_List& InsertAfter(int index, T const& value);
    // Removes the element at `index` (the last one when `index` is at or
    // beyond the count), moving the elements above one place down; the slot
    // that falls free gets the zero value. Needs a non-empty list.
    cow_List& RemoveIndex(int index);
    // Removes the first element without moving any: the head moves on, and
    // a block left behind is freed. Needs a non-empty list.
    cow_List& RemoveFirst();
    // Removes the last element, writing the zero value into its slot.
    // Needs a non-empty list.
    cow_List& RemoveLast();
    // Empties the list and resets its array; other holders of the old table
    // keep it. On a shared table this is constant time: no block is visited.
    cow_List& Clear();
    // Element i, read without unsharing (i below the array's size). Creates
    // an absent block, even in a shared table.
    T const& ConstGet(int i) const;
    // Write access to element i: unshares the table and the block even when
    // only read, and grows the array past its end; the count does not change.
    T& Get(int i);

    // Index (from the first element) of the first element equal to `value`,
    // or -1. Linear; a NaN is found nowhere.
    int Position(T const& value) const;
    // Whether some element equals `value`.
    bool IsMember(T const& value) const;
    // Removes the first element equal to `value`, if any.
    cow_List& Remove(T const& value);
    // Appends `value` unless an equal element is held.
    cow_List& AppendUnlessMember(T const& value);
    // Same count and element-wise equal; elements at one address count as
    // equal unread. The heads of the two arrays play no part.
    bool IsEqual(cow_List const& other) const;

    // Sorts ascending in place: the elements go to a buffer, are sorted
    // there, and come back into a new array of this list's own, which no
    // other list shares (other holders keep the old order). Elements that
    // compare equal may come out in any order; a NaN makes the order
    // unspecified but keeps every element. An empty list is left untouched.
    // Strings sort by natural order while atr_getNaturalOrder() is on (for
    // cow_String only; atr_String always sorts by bytes).
    cow_List& Sort();
    // The elements of this list that are not members of `other`, in this
    // list's order and with duplicates kept, in storage of their own. Costs
    // the product of the two lengths. This list is not changed.
    cow_List operator-(cow_List const& other);

    // Number of elements.
    int GetCount() const { return count; }
    // Inspection: the storage, to see what is shared and where the head is.
    cow_1DArray<T> const& GetArray() const { return array; }

    // Standard interface, with iterators, size, element access, push_back,
    // emplace_back and pop_back from arrays/detail/cow_BlockSequence.h, and the comparisons, printing and
    // std::hash of every sequence (core/cow_Std.h). Iterators of a const list
    // read only; those of a non-const list, and its operator[], at, front and
    // back, also write, making private only the blocks written into and never
    // unsharing on a read (arrays/detail/cow_BlockWriteIterator.h). None holds
    // a count: any other change of this list (Get, Append, removal, Clear,
    // Sort, assignment, destruction), and a copy of it taken while writing
    // iterators live, invalidates them, as a write to a std::vector does. For
    // a walk that survives writes, walk a copy (one increment), or use cow_ListIter.
    // A list of `values`, appended in order.
    cow_List(std::initializer_list<T> values) : cow_List(values.begin(), values.end()) {}
    // A list of the elements of [first, last), appended in order.
    template <class It, class = cow_detail::EnableIterator<It>>
    cow_List(It first, It last) : cow_List() {
        for (; first != last; ++first) Append(*first);
    }
    // A list of the elements of a range (a std::vector, another container).
    template <class R, class = cow_detail::EnableRange<R, cow_List>>
    explicit cow_List(R const& range) : cow_List(cow_detail::Begin(range), cow_detail::End(range)) {}

private:
    friend class cow_ListIter<T>;
    friend class cow_BlockSequence<cow_List, T>;
    friend class cow_ListSequence<cow_List, T>;
    static constexpr char const kSequenceName[] = "cow_List";
    cow_1DArray<T> const& SequenceArray() const { return array; }
    cow_1DArray<T>& SequenceArray() { return array; }
    int SequenceLength() const { return count; }
    T const& SequenceElement(int i) const { return ConstGet(i); }
    void SequenceRemoveLast() { RemoveLast(); }
    typedef cow_detail::ArrayAlgorithms<T> Algorithms;

    // The order of Sort: negative, 0 or positive as the element at `left`
    // sorts before, with or after the one at `right`.
    static int SortCmp(void const* left, void const* right);

    int count;
    cow_1DArray<T> array;
};

// Walks a list as it was when the iterator was made: it holds its own copy
// of the array, so writes to the list meanwhile go to private storage.
template <class T>
class ZORVANCOW_TYPE cow_ListIter : public cow_detail::ListWalk<T, cow_ListIter<T>> {
public:
    // Stands on the first element; the walk ends after the list's count of now.
    explicit cow_ListIter(cow_List<T> const& list)
        : cow_detail::ListWalk<T, cow_ListIter>(list.array, list.array.GetHeadPosition() + list.count) {}
    // Releases the iterator's copy of the array.
    ~cow_ListIter();
};

// The lengths of the shortest and of the longest string of a list, 0 for
// an empty list. A default string counts as length 0.
ZORVANCOW_API unsigned int GetLengthShortestString(cow_List<cow_String> const& list);
ZORVANCOW_API unsigned int GetLengthLongestString(cow_List<cow_String> const& list);

// ---------------------------------------------------------------------------

template <class T>
cow_List<T>::~cow_List() {
    // On a shared table the clear would end with this list on a counter and
    // a table of its own that the array then frees at once, while for the
    // other holders it only lowers the table count, which the array's own
    // release does too. So a shared list skips it: destroying a copy is one
    // decrement and allocates nothing. A sole holder clears as usual.
    if (array.GetTableShareCount() == 1) Clear();
}

// The count rises only once the element is stored: a copy that throws
// leaves the list as it was (the slot past the count may have become
// private, and keeps its zero value).
template <class T>
inline cow_List<T>& cow_List<T>::Append(T const& value) {
    array.Get(count) = value;
    ++count;
    return *this;
}

template <class T>
cow_List<T>& cow_List<T>::Append(cow_List const& other) {
    int const n = other.count;
    array.Grow(count + n);
    for (int i = 0; i < n; ++i) Append(other.array.PartialArrayConstGet(i));
    return *this;
}

template <class T>
inline cow_List<T>& cow_List<T>::Prepend(T const& value) {
    if (array.GetHeadPosition() == 0 && count > 0 && array.GetCapacity() >= cow_1DArray<T>::kQueueSlots) {
        // The next GetHead would grow the table when the blocks reach its
        // end. Blocks behind the count hold only removed elements' zero
        // values; with few enough blocks in use, they go instead, and
        // GetHead finds free slots to move in front.
        int const shift = array.GetShift();
        std::int64_t const used = ((std::int64_t{count} - 1) >> shift) + 1;
        std::int64_t const blockEnd = (std::int64_t{array.GetEndPosition()} + (std::int64_t{1} << shift) - 1) >> shift;
        if (blockEnd == array.GetCapacity() && 4 * used <= array.GetCapacity()) array.Grow(count);
    }
    T& first = array.GetHead();
    try {
        first = value;
    } catch (...) {
        // The new front slot goes again (GetHead left the table and its
        // block private), so the list is as it was.
        array.RemoveHead();
        throw;
    }
    ++count;
    return *this;
}

template <class T>
cow_List<T>& cow_List<T>::InsertAfter(int index, T const& value) {
    ZORVANCOW_CHECK(index >= -1 && index <= count, "cow_List::InsertAfter", "index out of range",
                    "index %d, count %d", index, count);
    if (index >= count - 1) return Append(value);
    Algorithms::OpenGap(array, count, index + 1);
    // The gap holds a copy of its old element, so the list counts it before
    // the store: a store that throws leaves that element twice, none lost.
    ++count;
    array.Get(index + 1) = value;
    return *this;
}

template <class T>
cow_List<T>& cow_List<T>::RemoveIndex(int index) {
    ZORVANCOW_CHECK(count > 0 && index >= 0, "cow_List::RemoveIndex", "needs a non-empty list and an index of 0 or more",
                    "index %d, count %d", index, count);
    --count;
    Algorithms::CloseGap(array, count, index);
    return *this;
}

template <class T>
inline cow_List<T>& cow_List<T>::RemoveFirst() {
    ZORVANCOW_CHECK(count > 0, "cow_List::RemoveFirst", "the list is empty", "count %d", count);
    // Get(0) also leaves the table and the first block private, which the
    // head step needs; the block is then freed when the head leaves it.
    cow_Element<T>::Clear(array.Get(0));
    array.RemoveHead();
    --count;
    return *this;
}

template <class T>
cow_List<T>& cow_List<T>::RemoveLast() {
    ZORVANCOW_CHECK(count > 0, "cow_List::RemoveLast", "the list is empty", "count %d", count);
    cow_Element<T>::Clear(array.Get(count - 1));
    --count;
    return *this;
}

template <class T>
cow_List<T>& cow_List<T>::Clear() {
    array.Grow(0);
    count = 0;
    return *this;
}

template <class T>
inline T const& cow_List<T>::ConstGet(int i) const {
    ZORVANCOW_CHECK(i >= 0 && i < array.GetSize(), "cow_List::ConstGet", "index out of range",
                    "index %d, count %d, array size %d", i, count, array.GetSize());
    return array.PartialArrayConstGet(i);
}

template <class T>
inline T& cow_List<T>::Get(int i) {
    ZORVANCOW_CHECK(i >= 0, "cow_List::Get", "negative index", "index %d, count %d", i, count);
    return array.Get(i);
}

template <class T>
inline int cow_List<T>::Position(T const& value) const {
    return Algorithms::Find(array, count, value);
}

template <class T>
inline bool cow_List<T>::IsMember(T const& value) const {
    return Position(value) >= 0;
}

template <class T>
cow_List<T>& cow_List<T>::Remove(T const& value) {
    int at = Position(value);
    if (at >= 0) RemoveIndex(at);
    return *this;
}

template <class T>
cow_List<T>& cow_List<T>::AppendUnlessMember(T const& value) {
    if (!IsMember(value)) Append(value);
    return *this;
}

template <class T>
bool cow_List<T>::IsEqual(cow_List const& other) const {
    return count == other.count && Algorithms::Equal(array, other.array, count);
}

template <class T>
int cow_List<T>::SortCmp(void const* left, void const* right) {
    return cow_ElementOrder<T>::Compare(*static_cast<T const*>(left), *static_cast<T const*>(right));
}

template <class T>
cow_List<T>& cow_List<T>::Sort() {
    int n = count;
    if (n == 0) return *this;
    // The buffer is an element run (cow_Element<T>), read from a walk.
    typename cow_Element<T>::Owner buffer([this, n] {
        cow_ListIter<T> it(*this);
        return cow_Element<T>::NewRunFrom(static_cast<std::size_t>(n), [&it](std::size_t i) -> T const& {
            if (i != 0) it.Next();
            return it.Current();
        });
    }());
    // The library's one element sort: numbers, strings and the library's
    // own containers move as bytes (cow_ElementBytewise), whose counts a move
    // leaves as they are; other element types move by their own moves. Each
    // element ends up exactly once in the buffer.
    cow_Element<T>::SortRun(buffer.Get(), n, [](T const& a, T const& b) { return SortCmp(&a, &b); });
    // The sorted array is complete before the old one is let go, and keeps
    // the block length.
    cow_1DArray<T> sorted(array.GetBlockLength());
    for (int i = 0; i < n; ++i) sorted.Get(i) = buffer.Get()[i];
    array = sorted;
    count = n;
    return *this;
}

template <class T>
cow_List<T> cow_List<T>::operator-(cow_List const& other) {
    cow_List result;
    for (cow_ListIter<T> it(*this); !it.IsDone(); it.Next()) {
        if (!other.IsMember(it.Current())) result.Append(it.Current());
    }
    return result;
}

template <class T>
inline cow_ListIter<T>::~cow_ListIter() {}

template <class T>
inline void swap(cow_List<T>& a, cow_List<T>& b) noexcept {
    a.swap(b);
}

// A list is a count and an array: it may move as bytes (cow_ElementBytewise).
template <class T>
struct cow_ElementBytewise<cow_List<T>> : std::true_type {};

#include "zorvancow/lists/detail/cow_ListExports.h"

ZORVANCOW_STD_SEQUENCE(cow_List)

#endif
