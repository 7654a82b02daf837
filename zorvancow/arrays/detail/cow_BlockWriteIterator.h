#ifndef ZORVANCOW_ARRAYS_DETAIL_COW_BLOCKWRITEITERATOR_H
#define ZORVANCOW_ARRAYS_DETAIL_COW_BLOCKWRITEITERATOR_H

// Writing through the standard interface of a blocked array or list: the
// mutable iterator of a non-const value and the element reference that it,
// operator[], at(), front() and back() hand out.
//
// A write unshares at block grain, exactly as the value's own Get does: a
// shared table is copied (pointers only), then the one block written is
// created or copied; every other block stays shared. A read never unshares.
// Telling the two apart needs a reference that sees which one happens, so
// the element comes as a small proxy, cow_ElementRef<T>, rather than a T&:
//
//   - read it (it converts to T const&, compares, prints): nothing is copied;
//   - assign to it (=, +=, ++, swap, ...), or take Get() for a T&: the block
//     is made private first.
//
// The iterator keeps its proxy inside itself and operator* gives a reference
// to it, so `for (auto& x : list) x += 1;` and the algorithms that assign
// through `*it` (std::sort, std::fill, std::reverse, std::copy into it) work.
// A free swap of two proxies swaps the elements, so std::iter_swap does too.
// The iterator remembers that its current block is private: the test is made
// once when it enters a block, and a write into a block it has made private
// goes straight to the element. A sort of a copy therefore copies each block
// at most once, and a write through one iterator of a copy copies one block.
// A block that is still shared may be copied under the iterator by a write
// through another one, so a read there looks the slot up again (three loads
// per element): a walk that only reads a shared value is faster on the
// const value (std::as_const, cbegin/cend), whose iterator reads in place.
//
// Like the read iterators, it holds no count and is invalidated by any change
// of the value's extent or storage by other means (Append, removal, Grow,
// Sort, assignment, destruction). One more rule comes with the cached test:
// copying the value makes its storage shared again, so take iterators anew
// after a copy; a write through an iterator taken before it would reach the
// copy too (checked mode stops such a write). Writes through several
// iterators of one value at once are fine: each sees what the others wrote.
//
// `auto x = *it` and `auto x = list[i]` give a proxy, not a copy of the
// element; write `T x = *it` for a copy. operator-> reads only; for a member
// write take Get(). Everything here is inline and exported nowhere.

#include <cstddef>
#include <iterator>
#include <type_traits>
#include <utility>

#include "zorvancow/arrays/detail/cow_BlockCursor.h"
#include "zorvancow/core/cow_Check.h"
#include "zorvancow/core/cow_Export.h"
#include "zorvancow/core/cow_Std.h"

template <class T>
class ZORVANCOW_TYPE cow_1DArray;
template <class T>
class cow_BlockIterator;
template <class T>
class cow_BlockWriteIterator;
template <class Sequence, class T>
class cow_BlockSequence;

// A reference to one element of a blocked array or list: reads without
// unsharing, writes after making the element's block private. It stands for
// the element, so assigning one proxy to another copies the value.
template <class T>
class cow_ElementRef : private cow_detail::BlockPlace<T, cow_1DArray<T>> {
    using Place = cow_detail::BlockPlace<T, cow_1DArray<T>>;

public:
    // The element, read: no count changes and nothing is copied.
    T const& ConstGet() const {
        if (!writable) Refresh();
        return *current;
    }
    operator T const&() const { return ConstGet(); }
    // The element, for writing: makes its block private (a shared table and
    // block are copied, as Get does), once per block for this reference.
    T& Get() const {
        if (!writable) MakeWritable();
        ZORVANCOW_CHECK(at.IsPrivate(*array), "cow_BlockWriteIterator::operator*",
                        "write through an iterator taken before the value was copied", "index %d",
                        static_cast<int>(this->Index()));
        return const_cast<T&>(*current);
    }

    // Assignment writes the element; the proxy keeps standing on it.
    cow_ElementRef const& operator=(cow_ElementRef const& other) const {
        T const& value = other.ConstGet();
        Get() = value;
        return *this;
    }
    cow_ElementRef const& operator=(T const& value) const {
        Get() = value;
        return *this;
    }
    cow_ElementRef const& operator=(T&& value) const {
        Get() = std::move(value);
        return *this;
    }
    cow_ElementRef(cow_ElementRef const&) = default;

    template <class U>
    cow_ElementRef const& operator+=(U&& u) const {
        Get() += std::forward<U>(u);
        return *this;
    }
    template <class U>
    cow_ElementRef const& operator-=(U&& u) const {
        Get() -= std::forward<U>(u);
        return *this;
    }
    template <class U>
    cow_ElementRef const& operator*=(U&& u) const {
        Get() *= std::forward<U>(u);
        return *this;
    }
    template <class U>
    cow_ElementRef const& operator/=(U&& u) const {
        Get() /= std::forward<U>(u);
        return *this;
    }
    template <class U>
    cow_ElementRef const& operator%=(U&& u) const {
        Get() %= std::forward<U>(u);
        return *this;
    }
    template <class U>
    cow_ElementRef const& operator&=(U&& u) const {
        Get() &= std::forward<U>(u);
        return *this;
    }
    template <class U>
    cow_ElementRef const& operator|=(U&& u) const {
        Get() |= std::forward<U>(u);
        return *this;
    }
    template <class U>
    cow_ElementRef const& operator^=(U&& u) const {
        Get() ^= std::forward<U>(u);
        return *this;
    }
    cow_ElementRef const& operator++() const {
        ++Get();
        return *this;
    }
    cow_ElementRef const& operator--() const {
        --Get();
        return *this;
    }
    T operator++(int) const { return Get()++; }
    T operator--(int) const { return Get()--; }

    // Swaps the two elements (not the proxies), each block made private once.
    // Found by argument-dependent lookup, so std::iter_swap, std::sort and
    // std::reverse exchange values.
    // The overload for lvalues matters: std::swap would take it otherwise,
    // and swap two proxies through a copy that stands on a's element.
    friend void swap(cow_ElementRef& a, cow_ElementRef& b) { SwapValues(a, b); }
    friend void swap(cow_ElementRef const& a, cow_ElementRef const& b) { SwapValues(a, b); }

    // Comparisons read the element, so that the algorithms that compare
    // through the iterator (sort, find, lower_bound) see values.
    friend bool operator==(cow_ElementRef const& a, cow_ElementRef const& b) { return a.ConstGet() == b.ConstGet(); }
    friend bool operator!=(cow_ElementRef const& a, cow_ElementRef const& b) { return !(a.ConstGet() == b.ConstGet()); }
    friend bool operator<(cow_ElementRef const& a, cow_ElementRef const& b) { return a.ConstGet() < b.ConstGet(); }
    friend bool operator>(cow_ElementRef const& a, cow_ElementRef const& b) { return b.ConstGet() < a.ConstGet(); }
    friend bool operator<=(cow_ElementRef const& a, cow_ElementRef const& b) { return !(b.ConstGet() < a.ConstGet()); }
    friend bool operator>=(cow_ElementRef const& a, cow_ElementRef const& b) { return !(a.ConstGet() < b.ConstGet()); }
#define ZORVANCOW_ELEMENT_REF_COMPARE(op)                                                                \
    template <class U, class = std::enable_if_t<!std::is_same<std::decay_t<U>, cow_ElementRef>::value>> \
    friend auto operator op(cow_ElementRef const& a, U const& b)->decltype(std::declval<T const&>() op b) { \
        return a.ConstGet() op b;                                                                        \
    }                                                                                                    \
    template <class U, class = std::enable_if_t<!std::is_same<std::decay_t<U>, cow_ElementRef>::value>> \
    friend auto operator op(U const& a, cow_ElementRef const& b)->decltype(a op std::declval<T const&>()) { \
        return a op b.ConstGet();                                                                        \
    }
    ZORVANCOW_ELEMENT_REF_COMPARE(==)
    ZORVANCOW_ELEMENT_REF_COMPARE(!=)
    ZORVANCOW_ELEMENT_REF_COMPARE(<)
    ZORVANCOW_ELEMENT_REF_COMPARE(>)
    ZORVANCOW_ELEMENT_REF_COMPARE(<=)
    ZORVANCOW_ELEMENT_REF_COMPARE(>=)
#undef ZORVANCOW_ELEMENT_REF_COMPARE

    friend std::ostream& operator<<(std::ostream& out, cow_ElementRef const& ref) { return out << ref.ConstGet(); }

private:
    friend class cow_BlockWriteIterator<T>;
    template <class Sequence, class U>
    friend class cow_BlockSequence;

    cow_ElementRef() = default;
    static void SwapValues(cow_ElementRef const& a, cow_ElementRef const& b) {
        // Making b's block private copies only a shared block, never a's,
        // which is private by now: `first` stays valid.
        T& first = a.Get();
        T& second = b.Get();
        using std::swap;
        swap(first, second);
    }
    cow_ElementRef(cow_1DArray<T>& array_, std::ptrdiff_t index, int count) : Place(array_, index, count) {}
    // Stands where `other` stands (the iterator's assignment; operator=
    // above writes values instead).
    void Rebind(cow_ElementRef const& other) { Place::operator=(other); }

    // A block that this reference has not made private may have been copied
    // since it was entered, by a write through another reference: read the
    // slot again (three loads; the next write here takes the full test).
    void Refresh() const {
        T const* base = at.ReadBlockData(*array);
        if (base != BlockBase()) Rebase(base);
    }
    void MakeWritable() const {
        Rebase(at.WriteBlockData(*array));
        writable = true;
    }

    using Place::array;
    using Place::at;
    using Place::BlockBase;
    using Place::current;
    using Place::Rebase;
    using Place::writable;
};

// The random-access iterator of a non-const array or list: reads like
// cow_BlockIterator, writes through cow_ElementRef (see above). It converts
// to the read iterator, and compares with it.
template <class T>
class cow_BlockWriteIterator : public cow_detail::RandomAccessSteps<cow_BlockWriteIterator<T>> {
public:
    using iterator_category = std::random_access_iterator_tag;
    using iterator_concept = std::random_access_iterator_tag;
    using value_type = T;
    using difference_type = std::ptrdiff_t;
    using pointer = T const*;
    using reference = cow_ElementRef<T>&;

    // A singular iterator, equal to other singular ones and to the ends of empty values.
    cow_BlockWriteIterator() = default;
    // On element `index` (0 to `count`) of `array`, whose walk ends after
    // element `count` - 1, counted from the head.
    cow_BlockWriteIterator(cow_1DArray<T>& array, int index, int count) : ref(array, index, count) {}
    cow_BlockWriteIterator(cow_BlockWriteIterator const& other) : ref(other.ref) {}
    cow_BlockWriteIterator& operator=(cow_BlockWriteIterator const& other) {
        ref.Rebind(other.ref);
        return *this;
    }

    // The element, as a reference that lives in this iterator: valid until
    // the iterator moves or dies.
    cow_ElementRef<T>& operator*() const { return ref; }
    T const* operator->() const { return &ref.ConstGet(); }
    // Element n from here, as a reference of its own.
    cow_ElementRef<T> operator[](difference_type n) const { return *(*this + n); }

    cow_BlockWriteIterator& operator++() {
        ref.Increment();
        return *this;
    }
    cow_BlockWriteIterator& operator--() {
        ref.Decrement();
        return *this;
    }
    cow_BlockWriteIterator& operator+=(difference_type n) {
        ref.Seek(Index() + n);
        return *this;
    }
    friend difference_type operator-(cow_BlockWriteIterator const& a, cow_BlockWriteIterator const& b) {
        return a.Index() - b.Index();
    }

    // Two iterators stand on one element when they are in one slot at one
    // offset: their element pointers may differ while one of them still
    // holds a block that the other has since copied.
    friend bool operator==(cow_BlockWriteIterator const& a, cow_BlockWriteIterator const& b) {
        return a.ToBlockEnd() == b.ToBlockEnd() && a.Slot() == b.Slot();
    }
    friend bool operator!=(cow_BlockWriteIterator const& a, cow_BlockWriteIterator const& b) { return !(a == b); }

    // The read iterator on the same element.
    operator cow_BlockIterator<T>() const {
        if (ref.array == nullptr) return cow_BlockIterator<T>();
        return cow_BlockIterator<T>(*ref.array, static_cast<int>(Index()), ref.at.Stop() - ref.head);
    }

private:
    std::ptrdiff_t Index() const { return ref.Index(); }
    std::ptrdiff_t ToBlockEnd() const { return ref.ToBlockEnd(); }
    int Slot() const { return ref.Slot(); }

    mutable cow_ElementRef<T> ref;
};

#endif
