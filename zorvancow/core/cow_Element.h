#ifndef ZORVANCOW_CORE_COW_ELEMENT_H
#define ZORVANCOW_CORE_COW_ELEMENT_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <type_traits>
#include <utility>

#include "zorvancow/core/cow_Check.h"
#include "zorvancow/core/cow_String.h"

// The element and key rules: how the containers make, copy, move, zero,
// compare and order one element type, and how the tree and the map order,
// compare and cut keys. Every family goes through this one place, so a new
// element type needs no container code of its own.
//
//   cow_Element<T>          element runs (make, copy, fill, destroy), zero,
//                           equality, and the one element sort
//   cow_ElementBytewise<T>  whether the sort may move elements as plain bytes
//   cow_ElementOrder<T>     the order of cow_List<T>::Sort
//   cow_KeyOrder<K>         the key order of cow_Btree<K, V>
//   cow_KeyBits<K>          key equality, sorted-walk order and digits of cow_Map<K, V>
//
// Each is a class template that a user may specialise for a type of their
// own. A type that none of the built-in rules covers fails to compile with a
// message naming the trait to specialise; it never compiles into a crash.

namespace cow_detail {
template <class T>
struct AlwaysFalse : std::false_type {};

template <class T, class = void>
struct HasLess : std::false_type {};
template <class T>
struct HasLess<T, decltype(void(std::declval<T const&>() < std::declval<T const&>()))> : std::true_type {};

template <class T, class = void>
struct HasEqual : std::false_type {};
template <class T>
struct HasEqual<T, decltype(void(std::declval<T const&>() == std::declval<T const&>()))> : std::true_type {};

template <class T, class = void>
struct HasIsEqual : std::false_type {};
template <class T>
struct HasIsEqual<T, decltype(void(std::declval<T const&>().IsEqual(std::declval<T const&>())))>
    : std::true_type {};

template <class T>
constexpr bool IsString = std::is_base_of<atr_StringBase, T>::value;

// The digit of a text at `depth`: the lowest bit of one byte, read from both
// ends inward (first byte, last byte, second, second to last, ...). Depth n,
// for n bytes, reads the middle byte again; deeper digits are 0, and an empty
// text reads its terminator at depth 0.
inline int TextBit(char const* text, std::int64_t length, int depth) {
    if (depth > length) return 0;
    auto const* bytes = reinterpret_cast<unsigned char const*>(text);
    std::int64_t const index = depth % 2 == 0 ? depth / 2 : length - 1 - (depth - 1) / 2;
    return bytes[index] & 1;
}
}  // namespace cow_detail

// Whether elements of T may be moved as plain bytes, as the element sort does:
// true for trivially copyable types and for the library's own counted values,
// whose few words hold pointers to counted storage that a move leaves as it
// is (each container family's header says so for its own values). Other
// types are moved with their own operations, with the same result.
// Specialise it to std::true_type only for a type that holds no pointer into
// itself and keeps no outside record of its address.
template <class T>
struct cow_ElementBytewise
    : std::integral_constant<bool, std::is_trivially_copyable<T>::value || cow_detail::IsString<T>> {};

namespace cow_detail {
// The two ways the element sort moves elements. Each gives: a hold for one
// element taken out of its slot, the element in a hold, putting a hold back,
// moving one element or a range from slot to slot, and a scratch run of n
// slots that frees itself.

// By bytes, for cow_ElementBytewise types: a slot moved from keeps dead
// bytes that a later move overwrites, and nothing is made or destroyed, so
// every element ends up in exactly one slot with its counts as they were.
template <class T>
struct ByteMoves {
    struct Hold {
        alignas(T) unsigned char bytes[sizeof(T)];
    };
    static Hold Take(T* from) {
        Hold hold;
        std::memcpy(hold.bytes, static_cast<void const*>(from), sizeof(T));
        return hold;
    }
    static T const& Held(Hold const& hold) { return *reinterpret_cast<T const*>(hold.bytes); }
    static void Put(T* to, Hold const& hold) { std::memcpy(static_cast<void*>(to), hold.bytes, sizeof(T)); }
    static void Move(T* to, T* from) { std::memcpy(static_cast<void*>(to), static_cast<void const*>(from), sizeof(T)); }
    static void MoveRange(T* to, T* from, int n) {
        if (n > 0) std::memcpy(static_cast<void*>(to), static_cast<void const*>(from), sizeof(T) * static_cast<std::size_t>(n));
    }
    // Raw storage: the slots only ever hold bytes moved in.
    struct Scratch {
        explicit Scratch(int n)
            : bytes(cow_Allocate([n] { return new unsigned char[sizeof(T) * static_cast<std::size_t>(n)]; })) {}
        ~Scratch() { delete[] bytes; }
        Scratch(Scratch const&) = delete;
        Scratch& operator=(Scratch const&) = delete;
        T* Slots() { return reinterpret_cast<T*>(bytes); }
        unsigned char* bytes;
    };
};

// By the element's own moves, for every other type: the scratch slots are
// live default elements, and each move is a move assignment.
template <class T>
struct OwnMoves;
}  // namespace cow_detail

// Making, copying, zeroing, comparing and sorting elements.
//
// - Plain numbers and bool: storage is zero-filled bytes and runs copy by
//   bytes. Equality is the type's own ==, so for float and double a NaN
//   equals nothing, itself included, and -0.0 equals +0.0.
// - Strings: default elements have no header; a copy shares the text.
//   Equality is byte equality, never the natural order.
// - Containers (nested lists, trees, fixed arrays) and user types: default
//   elements are value-initialised; a copy is the element's assignment
//   (for containers, counts rise one level down). Equality is the element's
//   IsEqual where it has one, else its ==.
//
// Element runs. Every run of elements in the library (array blocks, list
// buffers, shape representations, table blocks) is one array-new allocation
// made by NewRun, NewRunCopy or NewRunFrom and freed by DeleteRun (or an
// Owner); no family makes or deletes a run by itself. A run is handed over
// only once it is complete: when an element's copy throws, the run made so
// far is destroyed and freed, and the exception goes on to the caller.
template <class T>
struct cow_Element {
    static_assert(std::is_default_constructible<T>::value,
                  "cow_Element<T>: an element type needs a default constructor, which makes its zero value");
    static_assert(std::is_copy_assignable<T>::value,
                  "cow_Element<T>: an element type needs a copy assignment, which is how the containers copy it");

    // True for the element types that live as plain bytes: zero bytes are
    // their zero value and a byte copy is their copy.
    static constexpr bool plain = std::is_trivial<T>::value;

    // A new run of n zero elements: zero bytes for plain types,
    // value-initialised elements otherwise (the default constructor, after
    // zero bytes where the type has no constructor of its own). One
    // allocation, also for n = 0.
    static T* NewRun(std::size_t n) {
        return cow_Allocate([n] { return new T[n](); });
    }

    // A new run holding copies of the n elements at src. Plain types are
    // copied as bytes into storage that is not zeroed first.
    static T* NewRunCopy(T const* src, std::size_t n) {
        return Made(n, [src, n](T* run) { CopyRun(run, src, n); });
    }

    // A new run whose element i is a copy of read(i), read for i = 0, 1, ...,
    // n - 1 in that order, once each: the way to copy a run out of storage
    // that is not contiguous.
    template <class Read>
    static T* NewRunFrom(std::size_t n, Read&& read) {
        return Made(n, [&read, n](T* run) {
            for (std::size_t i = 0; i < n; ++i) run[i] = read(i);
        });
    }

    // Destroys the elements of a run from one of the NewRun functions and
    // frees it. Null does nothing.
    static void DeleteRun(T* run) { delete[] run; }

    // Owns a run until it is released, and deletes it with DeleteRun when the
    // owner goes first (a throw on the way).
    class Owner {
    public:
        explicit Owner(T* run_) : run(run_) {}
        ~Owner() { DeleteRun(run); }
        Owner(Owner const&) = delete;
        Owner& operator=(Owner const&) = delete;
        T* Get() const { return run; }
        // Gives the run up to the caller.
        T* Release() {
            T* given = run;
            run = nullptr;
            return given;
        }

    private:
        T* run;
    };

    // Copies n elements from src to dst, which already hold live elements.
    static void CopyRun(T* dst, T const* src, std::size_t n) {
        if constexpr (std::is_trivially_copyable<T>::value) {
            if (n > 0) std::memcpy(static_cast<void*>(dst), static_cast<void const*>(src), sizeof(T) * n);
        } else {
            for (std::size_t i = 0; i < n; ++i) dst[i] = src[i];
        }
    }

    // Assigns `value` to the n live elements at dst, in order.
    static void FillRun(T* dst, std::size_t n, T const& value) {
        for (std::size_t i = 0; i < n; ++i) dst[i] = value;
    }

    // Writes the zero value over a slot, dropping what it referred to.
    static void Clear(T& slot) { slot = T(); }

    // Element equality of the searches and comparisons of the lists and shapes.
    static bool Equal(T const& a, T const& b) {
        if constexpr (cow_detail::IsString<T>) {
            return cow_StringByteCompare(a, b) == 0;
        } else if constexpr (cow_detail::HasIsEqual<T>::value) {
            return a.IsEqual(b);
        } else if constexpr (cow_detail::HasEqual<T>::value) {
            return a == b;
        } else {
            static_assert(cow_detail::AlwaysFalse<T>::value,
                          "cow_Element<T>::Equal: the element type has neither IsEqual nor ==; give it an operator==");
            return false;
        }
    }

    // The library's one element sort: n elements in place by `compare`
    // (called with two elements, giving negative, 0 or positive as for
    // qsort). A stable merge sort: runs of 16 by insertion, then merges of
    // neighbouring runs back and forth through a scratch run of n slots
    // (none for n <= 16). Elements that may move as bytes
    // (cow_ElementBytewise) move as bytes, the others by their own moves;
    // the order is the same either way. Every step only picks which of two
    // elements goes first, so the outcome is a permutation of the input
    // whatever `compare` says, also when it is no strict order (a NaN): no
    // index ever leaves its run.
    template <class Compare>
    static void SortRun(T* data, int n, Compare compare) {
        using Moves = std::conditional_t<cow_ElementBytewise<T>::value, cow_detail::ByteMoves<T>, cow_detail::OwnMoves<T>>;
        int const run = 16;
        for (int lo = 0; lo < n; lo += run) {
            int const hi = lo + run < n ? lo + run : n;
            for (int i = lo + 1; i < hi; ++i) {
                int j = i;
                auto hold = Moves::Take(data + i);
                while (j > lo && compare(Moves::Held(hold), data[j - 1]) < 0) {
                    Moves::Move(data + j, data + j - 1);
                    --j;
                }
                Moves::Put(data + j, hold);
            }
        }
        if (n <= run) return;
        typename Moves::Scratch scratch(n);
        T* from = data;
        T* to = scratch.Slots();
        for (int size = run; size < n; size *= 2) {
            for (int lo = 0; lo < n; lo += 2 * size) {
                int const mid = lo + size < n ? lo + size : n;
                int const hi = lo + 2 * size < n ? lo + 2 * size : n;
                int i = lo, j = mid, k = lo;
                while (i < mid && j < hi) {
                    if (compare(from[j], from[i]) < 0) {
                        Moves::Move(to + k++, from + j++);
                    } else {
                        Moves::Move(to + k++, from + i++);
                    }
                }
                Moves::MoveRange(to + k, from + i, mid - i);
                k += mid - i;
                Moves::MoveRange(to + k, from + j, hi - j);
            }
            std::swap(from, to);
        }
        if (from != data) Moves::MoveRange(data, from, n);
    }

private:
    // Storage for n plain elements, left unset.
    static T* Allocate(std::size_t n) {
        static_assert(plain, "cow_Element<T>::Allocate: only plain elements may be left unset");
        return cow_Allocate([n] { return new T[n]; });
    }
    // A new run of n elements that `fill` gives their values. Plain types
    // skip the zeroing, since `fill` writes every element. When `fill`
    // throws, the run is deleted before the exception goes on.
    template <class Fill>
    static T* Made(std::size_t n, Fill&& fill) {
        T* run;
        if constexpr (plain) {
            run = Allocate(n);
        } else {
            run = NewRun(n);
        }
        Owner made(run);
        fill(made.Get());
        return made.Release();
    }
};

namespace cow_detail {
template <class T>
struct OwnMoves {
    using Hold = T;
    static T Take(T* from) { return T(std::move(*from)); }
    static T const& Held(T const& hold) { return hold; }
    static void Put(T* to, T& hold) { *to = std::move(hold); }
    static void Move(T* to, T* from) { *to = std::move(*from); }
    static void MoveRange(T* to, T* from, int n) { std::move(from, from + n, to); }
    // Live default elements, which the merges assign to.
    struct Scratch {
        explicit Scratch(int n) : run(cow_Element<T>::NewRun(static_cast<std::size_t>(n))) {}
        ~Scratch() { cow_Element<T>::DeleteRun(run); }
        Scratch(Scratch const&) = delete;
        Scratch& operator=(Scratch const&) = delete;
        T* Slots() { return run; }
        T* run;
    };
};

// The default value a moved-to tree holds (it answers absent keys): a new
// V() where making one cannot throw, else a copy of the source's, which for
// the library's containers is one count. Either way a default V, and the
// move stays noexcept for every element type the library knows.
template <class V>
struct NothrowFreshDefault
    : std::integral_constant<bool, std::is_nothrow_default_constructible<V>::value ||
                                       std::is_nothrow_copy_constructible<V>::value> {};
template <class V>
V FreshDefault(V const& source) noexcept(NothrowFreshDefault<V>::value) {
    if constexpr (std::is_nothrow_default_constructible<V>::value) {
        static_cast<void>(source);
        return V();
    } else {
        return source;
    }
}
}  // namespace cow_detail

// The order of cow_List<T>::Sort: negative, 0 or positive as `a` sorts
// before, with or after `b`.
// - cow_String: natural order while atr_getNaturalOrder() is on, bytes otherwise;
// - atr_String: unsigned bytes, always;
// - bool: the two bytes as unsigned numbers, so false sorts first;
// - numbers and other types with < and == (std::string, types of your own):
//   -1 if a < b, 0 if a == b, else 1 (a pair with a NaN gives 1 both ways;
//   -0.0 and +0.0 give 0).
template <class T>
struct cow_ElementOrder {
    static int Compare(T const& a, T const& b) {
        if constexpr (std::is_same<T, cow_String>::value) {
            return cow_StringOrderCompare(a, b);
        } else if constexpr (cow_detail::IsString<T>) {
            return cow_StringByteCompare(a, b);
        } else if constexpr (std::is_same<T, bool>::value) {
            unsigned char x, y;
            std::memcpy(&x, &a, 1);
            std::memcpy(&y, &b, 1);
            return x < y ? -1 : x == y ? 0 : 1;
        } else if constexpr (cow_detail::HasLess<T>::value && cow_detail::HasEqual<T>::value) {
            return a < b ? -1 : a == b ? 0 : 1;
        } else {
            static_assert(cow_detail::AlwaysFalse<T>::value,
                          "cow_ElementOrder<T>: no order for this element or tree key type; give it < and ==, or "
                          "specialise cow_ElementOrder<T> with static int Compare(T const&, T const&)");
            return 0;
        }
    }
};

// The key order of cow_Btree<K, V>: negative when `searched` orders before
// `nodeKey`, zero on a match, positive after. Only the sign is used.
// - int: the sign of the 32-bit difference with two's-complement wrap, so
//   the order is total only over keys less than 2^31 apart (nothing checks);
// - every other integral type: plain numeric order;
// - every other type: the element order, cow_ElementOrder<K> (cow_String by
//   cow_StringOrderCompare, natural order while the switch is on; atr_String
//   and std::string by unsigned bytes; a type of your own by its < and ==).
template <class K>
struct cow_KeyOrder {
    static std::int32_t Compare(K const& searched, K const& nodeKey) {
        if constexpr (std::is_same<K, int>::value) {
            return static_cast<std::int32_t>(static_cast<std::uint32_t>(searched) -
                                             static_cast<std::uint32_t>(nodeKey));
        } else if constexpr (std::is_integral<K>::value) {
            return searched < nodeKey ? -1 : nodeKey < searched ? 1 : 0;
        } else {
            return cow_ElementOrder<K>::Compare(searched, nodeKey);
        }
    }
};

// Keys of cow_Map<K, V>: equality (the map never orders keys), the order of
// the sorted walk, and the digit that picks the branch at each depth.
// - integral types: equality and order of the value (signed types signed);
//   the digit at depth d is bit d of the value, least significant first;
// - cow_String, atr_String, std::string: byte equality and unsigned byte
//   order, whatever the natural-order switch says; the digit is the lowest
//   bit of one byte, read from both ends of the text inward.
template <class K>
struct cow_KeyBits {
    static bool Equal(K const& left, K const& right) {
        if constexpr (cow_detail::IsString<K>) {
            return cow_StringByteCompare(left, right) == 0;
        } else {
            Check();
            return left == right;
        }
    }
    static bool Less(K const& left, K const& right) {
        if constexpr (cow_detail::IsString<K>) {
            return cow_StringByteCompare(left, right) < 0;
        } else {
            Check();
            return left < right;
        }
    }
    static int Bit(K const& key, int depth) {
        if constexpr (std::is_integral<K>::value) {
            using Bits = std::make_unsigned_t<K>;
            if (depth >= std::numeric_limits<Bits>::digits) return 0;
            return static_cast<int>((static_cast<Bits>(key) >> depth) & 1u);
        } else if constexpr (cow_detail::IsString<K>) {
            return cow_detail::TextBit(key.GetCString(), key.GetLength(), depth);
        } else if constexpr (std::is_same<K, std::string>::value) {
            return cow_detail::TextBit(key.c_str(), static_cast<std::int64_t>(key.size()), depth);
        } else {
            Check();
            return 0;
        }
    }

private:
    static void Check() {
        static_assert(std::is_integral<K>::value || std::is_same<K, std::string>::value,
                      "cow_KeyBits<K>: no map key rules for this key type; specialise cow_KeyBits<K> with static "
                      "Equal, Less and int Bit(K const&, int depth)");
    }
};

#endif
