#ifndef ZORVANCOW_LISTS_COW_1DARRAYLIST_H
#define ZORVANCOW_LISTS_COW_1DARRAYLIST_H

// The array list: an element count of its own on a blocked array.
//
// The array gives indexed storage in counted blocks, sharing and growth; the
// list adds the number of elements, appending, insertion and removal by
// index, search by value and extraction of a range or a plain C array.
// Copying a list copies its count and shares the array's table (one
// increment); a write then unshares the table and the one block written.
//
// The array's extent is a high-water mark that the count does not follow:
// after removals the array reaches beyond the count, and every slot from the
// count on holds the element's zero value (0, +0.0, false, an empty string or
// an empty container). Only ClearAll gives that storage back.
//
// Element copy, equality and zero value come from cow_Element (see
// core/cow_Element.h): plain numbers compare with == (a NaN equals nothing, -0.0
// equals +0.0), strings by bytes, nested lists by IsEqual.
//
// Indices and non-empty lists are the caller's duty; checked mode
// (core/cow_Check.h) stops on a negative index, a read past the array's size
// (the array's size, not the count), an Insert index outside 0..count, a
// removal from an empty list, a negative Slice start and a list appended to
// itself. Counts are plain integers: even copying or destroying a list
// writes one, so lists that share storage belong to one thread at a time.
//
// Append of one element, FindFirst and IsMember are defined inline, so that
// a caller compiles in the array's common case and the block-wise search.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <initializer_list>

#include "zorvancow/arrays/cow_1DArray.h"
#include "zorvancow/core/cow_Check.h"
#include "zorvancow/core/cow_Export.h"
#include "zorvancow/arrays/detail/cow_ArrayAlgorithms.h"
#include "zorvancow/lists/detail/cow_ListWalk.h"

template <class T>
class ZORVANCOW_TYPE cow_1DArrayListIter;

// A growable sequence with its own count on a blocked array whose head stays
// at 0. Also a value type of trees and maps, and an element of lists.
template <class T>
class ZORVANCOW_TYPE cow_1DArrayList : public cow_ListSequence<cow_1DArrayList<T>, T> {
public:
    // An empty list; allocates only its array's counter.
    cow_1DArrayList();
    // An empty list whose array has the given block length
    // (arrays/cow_BlockLength.h). Copies and moves carry it, and ClearAll
    // keeps it.
    explicit cow_1DArrayList(cow_BlockLength length) : count(0), array(length) {}
    // Shares the other's storage: copies the count, shares the array's
    // table. No element is copied.
    cow_1DArrayList(cow_1DArrayList const& other) noexcept : count(other.count), array(other.array) {}
    // Takes the other's storage without a count moving; `other` is left an
    // empty list that allocates its counter at its first write.
    cow_1DArrayList(cow_1DArrayList&& other) noexcept : count(other.count), array(std::move(other.array)) {
        other.count = 0;
    }
    // Copies the count, then shares the other's array.
    cow_1DArrayList& operator=(cow_1DArrayList const& other) {
        count = other.count;
        array = other.array;
        return *this;
    }
    // Takes the other's storage, releasing this list's; `other` is left empty.
    cow_1DArrayList& operator=(cow_1DArrayList&& other) noexcept {
        cow_1DArrayList taken(std::move(other));
        swap(taken);
        return *this;
    }
    // Exchanges the two lists' counts and storage; no count moves.
    void swap(cow_1DArrayList& other) noexcept {
        std::swap(count, other.count);
        array.swap(other.array);
    }
    // Destroys the array: the last holder of the table releases its blocks.
    ~cow_1DArrayList();

    // Appends one element: one Get on the array.
    void Append(T const& value);
    // Appends the other list's elements one by one. When the other list is
    // longer, the array's extent is first set to its count (a reservation:
    // no element below this list's count is touched, and blocks wholly
    // beyond it are let go). The count to copy is read once, so a list
    // appended to itself doubles.
    void Append(cow_1DArrayList const& other);
    // Puts `value` in front of the element at `index` (0 to count),
    // moving the elements above one place up through Get: every block from
    // `index` on becomes private. `value` is read after the moves. Always true.
    bool Insert(int index, T const& value);
    // Removes the element at `index` (the last one when `index` is at or
    // beyond the count), moving the elements above one place down, and
    // writes the zero value into the slot that falls free. Every block from
    // `index` on becomes private. Needs a non-empty list. Always true.
    bool Remove(int index);
    // Removes the last element and gives a copy of it. Needs a non-empty list.
    T Pop();
    // Empties the list with a new array of its own, of the same block
    // length; other holders of the old storage keep it.
    void ClearAll();
    // Index of the first element equal to `value`, or the count when none.
    // Linear; copies the array handle for the length of the walk.
    int FindFirst(T const& value) const;
    // Index of the last element equal to `value`, or the count when none,
    // like FindFirst's not-found answer. Linear, from the back.
    int FindLast(T const& value) const;
    // Whether some element equals `value`.
    bool IsMember(T const& value) const;
    // Removes the first element equal to `value`, if any.
    void RemoveMember(T const& value);
    // Appends `value` unless an equal element is held; then nothing changes
    // and nothing is unshared.
    void AppendUnlessMember(T const& value);
    // Same count and element-wise equal; elements at one address count as
    // equal unread.
    bool IsEqual(cow_1DArrayList const& other) const;
    // A new list of the elements from `start` (0 or more unless the range
    // is empty) up to but not including `stop`, which is clamped to the
    // count. The result has a table and blocks of its own; strings and
    // nested arrays in it share through their own counts. Changes nothing here.
    cow_1DArrayList Slice(int start, int stop);
    // The same range as Slice(start, stop), given in `out`, whose former
    // content it replaces.
    void Slice(int start, int stop, cow_1DArrayList& out) const;
    // A copy of the elements as a plain array of `size` (set to the count)
    // elements from array new (an element run of cow_Element<T>), which the
    // caller frees with delete[]. With no elements it is an allocation of
    // none, not null.
    T* GetCArray(int& size) const;

    // Number of elements.
    int GetCount() const { return count; }
    // Element i, read without unsharing (i below the array's size).
    T const& ConstGet(int i) const {
        ZORVANCOW_CHECK(i >= 0 && i < array.GetSize(), "cow_1DArrayList::ConstGet", "index out of range",
                        "index %d, count %d, array size %d", i, count, array.GetSize());
        return array.PartialArrayConstGet(i);
    }
    // Write access to element i: unshares its block and the table, grows the
    // array past its end; the count does not change.
    T& Get(int i) {
        ZORVANCOW_CHECK(i >= 0, "cow_1DArrayList::Get", "negative index", "index %d, count %d", i, count);
        return array.Get(i);
    }
    // Inspection: the storage, to see what is shared.
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
    // a walk that survives writes, walk a copy (one increment), or use cow_1DArrayListIter.
    // A list of `values`, appended in order.
    cow_1DArrayList(std::initializer_list<T> values) : cow_1DArrayList(values.begin(), values.end()) {}
    // A list of the elements of [first, last), appended in order.
    template <class It, class = cow_detail::EnableIterator<It>>
    cow_1DArrayList(It first, It last) : cow_1DArrayList() {
        for (; first != last; ++first) Append(*first);
    }
    // A list of the elements of a range (a std::vector, another container).
    template <class R, class = cow_detail::EnableRange<R, cow_1DArrayList>>
    explicit cow_1DArrayList(R const& range) : cow_1DArrayList(cow_detail::Begin(range), cow_detail::End(range)) {}

private:
    friend class cow_1DArrayListIter<T>;
    friend class cow_BlockSequence<cow_1DArrayList, T>;
    friend class cow_ListSequence<cow_1DArrayList, T>;
    static constexpr char const kSequenceName[] = "cow_1DArrayList";
    cow_1DArray<T> const& SequenceArray() const { return array; }
    cow_1DArray<T>& SequenceArray() { return array; }
    int SequenceLength() const { return count; }
    T const& SequenceElement(int i) const { return ConstGet(i); }
    void SequenceRemoveLast() { Remove(count - 1); }
    typedef cow_detail::ArrayAlgorithms<T> Algorithms;

    int count;
    cow_1DArray<T> array;
};

// Walks an array list as it was when the iterator was made: it holds its own
// copy of the array, so writes to the list meanwhile go to private storage.
template <class T>
class ZORVANCOW_TYPE cow_1DArrayListIter : public cow_detail::ListWalk<T, cow_1DArrayListIter<T>> {
public:
    // Stands on element 0; the walk ends at the list's count of now.
    explicit cow_1DArrayListIter(cow_1DArrayList<T> const& list)
        : cow_detail::ListWalk<T, cow_1DArrayListIter>(list.array, list.count) {}
    // Releases the iterator's copy of the array.
    ~cow_1DArrayListIter();
};

// ---------------------------------------------------------------------------

template <class T>
cow_1DArrayList<T>::cow_1DArrayList() : count(0), array() {}

template <class T>
cow_1DArrayList<T>::~cow_1DArrayList() {}

template <class T>
inline void cow_1DArrayList<T>::Append(T const& value) {
    // The count rises only once the element is stored.
    array.Get(count) = value;
    ++count;
}

template <class T>
void cow_1DArrayList<T>::Append(cow_1DArrayList const& other) {
    // The count is read once, so a list appended to itself doubles.
    int const n = other.count;
    if (n > count) array.Grow(n);
    for (int i = 0; i < n; ++i) {
        T const& value = other.array.PartialArrayConstGet(i);
        array.Get(count) = value;
        ++count;
    }
}

template <class T>
bool cow_1DArrayList<T>::Insert(int index, T const& value) {
    ZORVANCOW_CHECK(index >= 0 && index <= count, "cow_1DArrayList::Insert", "index out of range",
                    "index %d, count %d", index, count);
    if (index == count) {
        Append(value);
        return true;
    }
    Algorithms::OpenGap(array, count, index);
    // Counted before the store, as cow_List::InsertAfter does.
    ++count;
    array.Get(index) = value;
    return true;
}

template <class T>
bool cow_1DArrayList<T>::Remove(int index) {
    ZORVANCOW_CHECK(count > 0 && index >= 0, "cow_1DArrayList::Remove",
                    "needs a non-empty list and an index of 0 or more", "index %d, count %d", index, count);
    --count;
    Algorithms::CloseGap(array, count, index);
    return true;
}

template <class T>
T cow_1DArrayList<T>::Pop() {
    ZORVANCOW_CHECK(count > 0, "cow_1DArrayList::Pop", "the list is empty", "count %d", count);
    T last = array.Get(count - 1);
    Remove(count - 1);
    return last;
}

template <class T>
void cow_1DArrayList<T>::ClearAll() {
    array = cow_1DArray<T>(array.GetBlockLength());
    count = 0;
}

template <class T>
inline int cow_1DArrayList<T>::FindFirst(T const& value) const {
    int found = Algorithms::Find(array, count, value);
    return found < 0 ? count : found;
}

template <class T>
int cow_1DArrayList<T>::FindLast(T const& value) const {
    for (int i = count - 1; i >= 0; --i) {
        if (cow_Element<T>::Equal(array.PartialArrayConstGet(i), value)) return i;
    }
    return count;
}

template <class T>
inline bool cow_1DArrayList<T>::IsMember(T const& value) const {
    return FindFirst(value) < count;
}

template <class T>
void cow_1DArrayList<T>::RemoveMember(T const& value) {
    int at = FindFirst(value);
    if (at < count) Remove(at);
}

template <class T>
void cow_1DArrayList<T>::AppendUnlessMember(T const& value) {
    if (!IsMember(value)) Append(value);
}

template <class T>
bool cow_1DArrayList<T>::IsEqual(cow_1DArrayList const& other) const {
    return count == other.count && Algorithms::Equal(array, other.array, count);
}

template <class T>
cow_1DArrayList<T> cow_1DArrayList<T>::Slice(int start, int stop) {
    cow_1DArrayList result;
    Slice(start, stop, result);
    return result;
}

template <class T>
void cow_1DArrayList<T>::Slice(int start, int stop, cow_1DArrayList& out) const {
    ZORVANCOW_CHECK(start >= 0 || start >= stop || start >= count, "cow_1DArrayList::Slice", "negative start",
                    "start %d, stop %d, count %d", start, stop, count);
    cow_1DArrayList result;
    if (stop > count) stop = count;
    for (int i = start; i < stop; ++i) {
        T const& value = array.PartialArrayConstGet(i);
        result.array.Get(result.count) = value;
        ++result.count;
    }
    out = result;
}

template <class T>
T* cow_1DArrayList<T>::GetCArray(int& size) const {
    size = count;
    return cow_Element<T>::NewRunFrom(static_cast<std::size_t>(count), [this](std::size_t i) -> T const& {
        return array.PartialArrayConstGet(static_cast<int>(i));
    });
}

template <class T>
inline cow_1DArrayListIter<T>::~cow_1DArrayListIter() {}

template <class T>
inline void swap(cow_1DArrayList<T>& a, cow_1DArrayList<T>& b) noexcept {
    a.swap(b);
}

// A list is a count and an array: it may move as bytes (cow_ElementBytewise).
template <class T>
struct cow_ElementBytewise<cow_1DArrayList<T>> : std::true_type {};

#include "zorvancow/lists/detail/cow_1DArrayListExports.h"

ZORVANCOW_STD_SEQUENCE(cow_1DArrayList)

#endif
