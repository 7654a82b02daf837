#ifndef ZORVANCOW_CORE_COW_ELEMENT_H
#define ZORVANCOW_CORE_COW_ELEMENT_H

#include <cstddef>
#include <cstring>
#include <type_traits>
#include <utility>

#include "zorvancow/core/cow_Check.h"
#include "zorvancow/core/cow_String.h"

// How the containers treat one element type: how a run of elements is made
// and copied, what its zero value is and when two elements are equal. Every
// block, array, list and fixed shape goes through this one place, so a new element type
// needs no new container code as long as it has a default constructor (its
// zero value) and an assignment (its copy).
//
// - Plain numbers and bool: storage is zero-filled bytes and runs copy by
//   bytes. Equality is the type's own ==, so for float and double a NaN
//   equals nothing, itself included, and -0.0 equals +0.0.
// - Strings: default elements have no header; a copy shares the text.
//   Equality is byte equality, never the natural order.
// - Containers (nested lists, trees, fixed arrays): default elements are
//   empty containers; a copy raises counts one level down. Equality is the
//   element's IsEqual where it has one, else its ==.
template <class T>
struct cow_Element {
    // True for the element types that live as plain bytes.
    static constexpr bool plain = std::is_trivially_copyable<T>::value;

    // Storage for n elements from array new: zero bytes for plain types,
    // default-constructed elements otherwise.
    static T* NewRun(int n) {
        T* run = cow_Allocate([n] { return new T[static_cast<std::size_t>(n)]; });
        if constexpr (plain) std::memset(static_cast<void*>(run), 0, sizeof(T) * static_cast<std::size_t>(n));
        return run;
    }

    // Copies n elements from src to dst, which already hold live elements.
    static void CopyRun(T* dst, T const* src, int n) {
        if constexpr (plain) {
            if (n > 0) std::memcpy(static_cast<void*>(dst), static_cast<void const*>(src), sizeof(T) * static_cast<std::size_t>(n));
        } else {
            for (int i = 0; i < n; ++i) dst[i] = src[i];
        }
    }

    // Writes the zero value over a slot, dropping what it referred to.
    static void Clear(T& slot) { slot = T(); }

    // Element equality of the searches and comparisons of the lists.
    static bool Equal(T const& a, T const& b) {
        if constexpr (std::is_base_of<atr_StringBase, T>::value) {
            return cow_StringByteCompare(a, b) == 0;
        } else if constexpr (HasIsEqual<T>::value) {
            return a.IsEqual(b);
        } else {
            return a == b;
        }
    }

private:
    template <class U, class = void>
    struct HasIsEqual : std::false_type {};
    template <class U>
    struct HasIsEqual<U, decltype(void(std::declval<U const&>().IsEqual(std::declval<U const&>())))>
        : std::true_type {};
};

#endif
