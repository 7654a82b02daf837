#ifndef ZORVANCOW_SHAPES_COW_FIXEDARRAY_H
#define ZORVANCOW_SHAPES_COW_FIXEDARRAY_H

// An array whose length is fixed when it is made: one contiguous run of
// elements behind a counted handle, shared or copied as a whole.
//
// Copying a cow_FixedArray costs one count increment. The first write through
// a copy whose representation is shared copies the whole representation, all
// elements at once; later writes through the same value copy nothing. There
// is no finer unit of sharing: use cow_1DArray when writes should copy only a
// block. Elements that are strings share their texts with the elements they
// were copied from.
//
// Element reads go straight to the representation and touch no count, so
// they are as cheap as indexing a plain array through one more pointer.
// 0 <= i < GetSize() is the caller's duty; checked mode (core/cow_Check.h)
// stops on an index outside it in ConstGet, Get and the standard reads, and
// at() refuses one in every build.
//
// A move takes the representation without a count moving and leaves the
// source an empty array of size 0 that holds no representation (so the move
// allocates nothing and cannot throw). It reads as empty, copies, compares
// and is assigned like any other array; a new array made by the default
// constructor still holds its ten elements.

#include <algorithm>
#include <cstddef>
#include <initializer_list>

#include "zorvancow/core/cow_COW.h"
#include "zorvancow/core/cow_Check.h"
#include "zorvancow/core/cow_Element.h"
#include "zorvancow/core/cow_Export.h"
#include "zorvancow/core/cow_String.h"
#include "zorvancow/shapes/detail/cow_FixedArrayStd.h"

// The representation a cow_FixedArray points at: a length and one element
// run (cow_Element<T>). It is a plain owner with deep copies; the sharing
// lives in the handle of cow_FixedArray, which copies a representation only
// when a shared array is written.
//
// New elements are the element type's zero value: 0 for numbers, empty
// values without a text for strings.
template <class T>
struct ZORVANCOW_TYPE cow_FixedArrayRep {
    // `length` zero elements. A negative length counts as 0. Even 0 elements
    // get an allocation of their own, so `data` is never null.
    explicit cow_FixedArrayRep(int length);
    // A deep copy: the same length, a new allocation, each element copied
    // in order (strings share their texts, one count more each).
    cow_FixedArrayRep(cow_FixedArrayRep const& source);
    // Frees the elements; string elements give up their texts.
    ~cow_FixedArrayRep();

    // The one place where a representation changes length: takes a deep
    // copy of `source`, length included, then frees its own elements.
    // Assigning a representation to itself changes nothing and keeps `data`.
    cow_FixedArrayRep& operator=(cow_FixedArrayRep const& source);

    // Equal lengths, then equal elements in every place by
    // cow_Element<T>::Equal (numbers by ==, so a NaN is unequal to itself and
    // -0.0 equals +0.0; strings by bytes). Lengths that differ decide without looking at an
    // element. There is no shortcut for comparing a representation with
    // itself: an array holding a NaN is unequal to itself.
    bool operator==(cow_FixedArrayRep const& other) const;
    // The negation of operator==.
    bool operator!=(cow_FixedArrayRep const& other) const;

    int size;  // number of elements
    T* data;   // a run of `size` elements (cow_Element<T>), owned here
};

// A value array of fixed length with copy-on-write sharing of the whole.
template <class T>
class ZORVANCOW_TYPE cow_FixedArray {
public:
    // Ten zero elements: 0 for numbers, empty for strings. Ten is the zero
    // value that lists and maps of fixed arrays make for a fresh slot.
    cow_FixedArray();
    // `length` elements, each assigned `value` (strings share its text, one
    // count per element). A negative length gives an empty array. Costs one
    // representation, one element allocation and one counter.
    cow_FixedArray(int length, T const& value);
    // Shares the other array's representation: one increment, no element
    // touched, nothing allocated.
    cow_FixedArray(cow_FixedArray const& other) noexcept = default;
    // Takes the other array's representation; `other` is left empty (size 0).
    cow_FixedArray(cow_FixedArray&& other) noexcept = default;
    // Shares the other array's representation. The old one is freed when
    // this array was its last holder. Self-assignment is safe.
    cow_FixedArray& operator=(cow_FixedArray const& other) = default;
    // Takes the other array's representation, releasing this one's; `other`
    // is left empty (size 0).
    cow_FixedArray& operator=(cow_FixedArray&& other) noexcept = default;
    // Exchanges the two arrays' representations; no count moves.
    void swap(cow_FixedArray& other) noexcept { rep.swap(other.rep); }
    // One count less; the last array on a representation frees it.
    ~cow_FixedArray();

    // Same length and equal elements (see cow_FixedArrayRep::operator==).
    // An array compared with a copy of itself is walked in full.
    bool operator==(cow_FixedArray const& other) const;
    bool operator!=(cow_FixedArray const& other) const;

    // The number of elements, fixed for the life of the array.
    int GetSize() const { return rep.ConstGet() != nullptr ? rep.ConstGet()->size : 0; }
    // Reads element `i`, 0 <= i < GetSize(). Touches no count.
    T const& ConstGet(int i) const {
        ZORVANCOW_CHECK(i >= 0 && i < GetSize(), "cow_FixedArray::ConstGet", "index out of range", "index %d, size %d", i,
                        GetSize());
        return rep.ConstGet()->data[i];
    }
    // Write access to element `i`, 0 <= i < GetSize(). When the
    // representation is shared this first copies all elements for this array
    // alone; the reference stays valid until this array is assigned or
    // destroyed.
    T& Get(int i) {
        ZORVANCOW_CHECK(i >= 0 && i < GetSize(), "cow_FixedArray::Get", "index out of range", "index %d, size %d", i,
                        GetSize());
        return rep.Get().data[i];
    }

    // Inspection: the representation (to tell whether two arrays share it)
    // and how many arrays share it.
    cow_FixedArrayRep<T> const* GetRep() const { return rep.ConstGet(); }
    std::int32_t GetShareCount() const { return rep.GetShareCount(); }

    // Standard interface (shapes/detail/cow_FixedArrayStd.h). Iterators are
    // pointers into the representation, valid while this array holds it;
    // those of a non-const array write, and unshare the whole first.
    using value_type = T;
    using size_type = std::size_t;
    using difference_type = std::ptrdiff_t;
    using const_reference = T const&;
    using reference = T&;
    using const_iterator = T const*;
    using iterator = T*;
    // An array of exactly `values`.
    cow_FixedArray(std::initializer_list<T> values);
    // An array of the elements of [first, last) (forward iterators) or of a range.
    template <class It, class = cow_detail::EnableIterator<It>>
    cow_FixedArray(It first, It last);
    template <class R, class = cow_detail::EnableRange<R, cow_FixedArray>>
    explicit cow_FixedArray(R const& range);
    // Contiguous iterators over the elements.
    T const* begin() const { return rep.ConstGet() != nullptr ? rep.ConstGet()->data : nullptr; }
    T const* end() const { return begin() + GetSize(); }
    T const* cbegin() const { return begin(); }
    T const* cend() const { return end(); }
    T const* data() const { return begin(); }
    // Number of elements, and whether there are none.
    std::size_t size() const { return static_cast<std::size_t>(GetSize()); }
    bool empty() const { return GetSize() == 0; }
    // Element i; at() refuses an index past the end.
    T const& operator[](std::size_t i) const { return ConstGet(static_cast<int>(i)); }
    T const& at(std::size_t i) const;
    // The first and the last element of a non-empty array.
    T const& front() const { return ConstGet(0); }
    T const& back() const { return ConstGet(GetSize() - 1); }
    // The same on a non-const array, for writing: each makes the
    // representation private first, as Get does (copying every element when
    // it is shared, even if the caller only reads), so its pointers stay
    // valid until this array is assigned or destroyed. Read through a const
    // array (std::as_const, cbegin) to keep the sharing.
    T* begin() { return rep.Get().data; }
    T* end() { return begin() + GetSize(); }
    T* data() { return begin(); }
    T& operator[](std::size_t i) { return Get(static_cast<int>(i)); }
    T& at(std::size_t i) {
        static_cast<void>(static_cast<cow_FixedArray const&>(*this).at(i));
        return Get(static_cast<int>(i));
    }
    T& front() { return Get(0); }
    T& back() { return Get(GetSize() - 1); }

private:
    cow_COW<cow_FixedArrayRep<T>, cow_Direct<cow_FixedArrayRep<T>>> rep;
};

// For numbers the copies are one block move, as fast as copying a
// std::vector.
template <class T>
cow_FixedArrayRep<T>::cow_FixedArrayRep(int length)
    : size(length < 0 ? 0 : length), data(cow_Element<T>::NewRun(static_cast<std::size_t>(size))) {}

template <class T>
cow_FixedArrayRep<T>::cow_FixedArrayRep(cow_FixedArrayRep const& source)
    : size(source.size), data(cow_Element<T>::NewRunCopy(source.data, static_cast<std::size_t>(source.size))) {}

template <class T>
cow_FixedArrayRep<T>::~cow_FixedArrayRep() {
    cow_Element<T>::DeleteRun(data);
}

template <class T>
cow_FixedArrayRep<T>& cow_FixedArrayRep<T>::operator=(cow_FixedArrayRep const& source) {
    if (&source == this) return *this;
    T* copy = cow_Element<T>::NewRunCopy(source.data, static_cast<std::size_t>(source.size));
    cow_Element<T>::DeleteRun(data);
    data = copy;
    size = source.size;
    return *this;
}

template <class T>
bool cow_FixedArrayRep<T>::operator==(cow_FixedArrayRep const& other) const {
    if (size != other.size) return false;
    for (int i = 0; i < size; ++i) {
        if (!cow_Element<T>::Equal(data[i], other.data[i])) return false;
    }
    return true;
}

template <class T>
bool cow_FixedArrayRep<T>::operator!=(cow_FixedArrayRep const& other) const {
    return !(*this == other);
}

template <class T>
cow_FixedArray<T>::cow_FixedArray() : rep(cow_Allocate([] { return new cow_FixedArrayRep<T>(10); })) {}

template <class T>
cow_FixedArray<T>::cow_FixedArray(int length, T const& value)
    : rep(cow_Allocate([length] { return new cow_FixedArrayRep<T>(length); })) {
    // The handle is new and private, so Get copies nothing here.
    cow_FixedArrayRep<T>& fresh = rep.Get();
    cow_Element<T>::FillRun(fresh.data, static_cast<std::size_t>(fresh.size), value);
}

template <class T>
cow_FixedArray<T>::~cow_FixedArray() {}

template <class T>
bool cow_FixedArray<T>::operator==(cow_FixedArray const& other) const {
    // A moved-from array (no representation) equals any array of size 0.
    if (rep.ConstGet() == nullptr || other.rep.ConstGet() == nullptr) return GetSize() == 0 && other.GetSize() == 0;
    return *rep.ConstGet() == *other.rep.ConstGet();
}

template <class T>
bool cow_FixedArray<T>::operator!=(cow_FixedArray const& other) const {
    if (rep.ConstGet() == nullptr || other.rep.ConstGet() == nullptr) return !(*this == other);
    return *rep.ConstGet() != *other.rep.ConstGet();
}

template <class T>
inline cow_FixedArray<T>::cow_FixedArray(std::initializer_list<T> values)
    : cow_FixedArray(values.begin(), values.end()) {}

template <class T>
template <class It, class>
inline cow_FixedArray<T>::cow_FixedArray(It first, It last)
    : rep(cow_Allocate([&first, &last] {
          return new cow_FixedArrayRep<T>(cow_detail::RangeLength(first, last, "cow_FixedArray::cow_FixedArray"));
      })) {
    // The handle is new and private, so Get copies nothing here.
    T* data = rep.Get().data;
    for (; first != last; ++first) *data++ = *first;
}

template <class T>
template <class R, class>
inline cow_FixedArray<T>::cow_FixedArray(R const& range)
    : cow_FixedArray(cow_detail::Begin(range), cow_detail::End(range)) {}

template <class T>
inline T const& cow_FixedArray<T>::at(std::size_t i) const {
    if (i >= size()) cow_detail::AtFailed("cow_FixedArray", "index", static_cast<long long>(i), GetSize());
    return ConstGet(static_cast<int>(i));
}

template <class T>
inline void swap(cow_FixedArray<T>& a, cow_FixedArray<T>& b) noexcept {
    a.swap(b);
}

// A fixed array is a handle: it may move as bytes (cow_ElementBytewise).
template <class T>
struct cow_ElementBytewise<cow_FixedArray<T>> : std::true_type {};

#include "zorvancow/shapes/detail/cow_FixedArrayExports.h"

#endif
