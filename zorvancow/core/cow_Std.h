#ifndef ZORVANCOW_CORE_COW_STD_H
#define ZORVANCOW_CORE_COW_STD_H

// What the containers share for use like standard containers: a view of a
// contiguous run, the entry that tree and map iterators give, printing, hash
// mixing, and the failure of at(). cow_String's own operators, std::hash
// and printing are in core/cow_String.h.
//
// All of it is inline and none of it belongs to the library's exported
// interface.

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <iterator>
#include <ostream>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#if __has_include(<compare>)
#include <compare>
#endif

#include "zorvancow/core/cow_Element.h"
#include "zorvancow/core/cow_String.h"

// A view of `size()` elements in a row: what a block-wise walk hands out.
// Plain pointers, so standard algorithms run over it at the speed of an array.
template <class T>
class cow_Span {
public:
    using element_type = T;
    using value_type = std::remove_cv_t<T>;
    using size_type = std::size_t;
    using difference_type = std::ptrdiff_t;
    using pointer = T*;
    using reference = T&;
    using iterator = T*;

    constexpr cow_Span() = default;
    constexpr cow_Span(T* first_, std::size_t count_) : first(first_), count(count_) {}

    constexpr T* begin() const { return first; }
    constexpr T* end() const { return first + count; }
    constexpr T* data() const { return first; }
    constexpr std::size_t size() const { return count; }
    constexpr bool empty() const { return count == 0; }
    constexpr T& operator[](std::size_t i) const { return first[i]; }
    constexpr T& front() const { return first[0]; }
    constexpr T& back() const { return first[count - 1]; }

private:
    T* first = nullptr;
    std::size_t count = 0;
};

// The member types of an iterator that hands out its elements by value (a
// span of a block or a row, an entry of a tree or a map): `reference` and
// `value_type` are both that value, and operator-> gives `Arrow`.
template <class Category, class Value, class Arrow = void>
struct cow_ValueIteratorTypes {
    using iterator_category = Category;
    using iterator_concept = Category;
    using value_type = Value;
    using difference_type = std::ptrdiff_t;
    using pointer = Arrow;
    using reference = Value;
};

namespace cow_detail {
// The postfix steps of an iterator class `It` that has the prefix ones: the
// iterator as it was, after the step. `It` derives from PostfixIncrement<It>
// (forward iterators) or PostfixSteps<It> (bidirectional and random-access).
template <class It>
struct PostfixIncrement {
    friend It operator++(It& it, int) {
        It old = it;
        ++it;
        return old;
    }
};
template <class It>
struct PostfixSteps : PostfixIncrement<It> {
    friend It operator--(It& it, int) {
        It old = it;
        --it;
        return old;
    }
};
// The rest of a random-access iterator, from its own +=, ++, -- and the
// distance a - b: the postfix steps, -=, + and - by a count, and the order.
template <class It, class Difference = std::ptrdiff_t>
struct RandomAccessSteps : PostfixSteps<It> {
    friend It& operator-=(It& it, Difference n) { return it += -n; }
    friend It operator+(It it, Difference n) { return it += n; }
    friend It operator+(Difference n, It it) { return it += n; }
    friend It operator-(It it, Difference n) { return it += -n; }
    friend bool operator<(It const& a, It const& b) { return a - b < 0; }
    friend bool operator>(It const& a, It const& b) { return b - a < 0; }
    friend bool operator<=(It const& a, It const& b) { return !(b - a < 0); }
    friend bool operator>=(It const& a, It const& b) { return !(a - b < 0); }
};
}  // namespace cow_detail

// One entry of a tree or a map as its iterators give it: references to the
// key and the value held in the node. Bind it with structured bindings
// (`for (auto const& [key, value] : tree)`) or read `first` and `second`;
// it converts to a std::pair of copies. The references live as long as the
// node does (see each iterator for what invalidates it).
template <class K, class V>
struct cow_Entry {
    K const& first;
    V const& second;

    // A pair of copies, such as a std::map's std::pair<K const, V>.
    template <class A, class B,
              class = std::enable_if_t<std::is_constructible<A, K const&>::value &&
                                       std::is_constructible<B, V const&>::value>>
    operator std::pair<A, B>() const {
        return std::pair<A, B>(first, second);
    }
};

// What operator-> of an entry iterator gives: the entry, held by value.
template <class K, class V>
struct cow_EntryArrow {
    cow_Entry<K, V> entry;
    cow_Entry<K, V> const* operator->() const { return &entry; }
};

namespace cow_detail {
// begin and end of a range, as range-for finds them: members, or free
// functions found by argument-dependent lookup.
using std::begin;
using std::end;
template <class R>
auto Begin(R const& range) -> decltype(begin(range)) {
    return begin(range);
}
template <class R>
auto End(R const& range) -> decltype(end(range)) {
    return end(range);
}

// A range: anything with begin and end as above.
template <class R, class = void>
struct IsRange : std::false_type {};
template <class R>
struct IsRange<R, decltype(void(Begin(std::declval<R const&>())), void(End(std::declval<R const&>())))>
    : std::true_type {};

// An iterator: something std::iterator_traits knows a category for.
template <class I, class = void>
struct IsIterator : std::false_type {};
template <class I>
struct IsIterator<I, decltype(void(std::declval<typename std::iterator_traits<I>::iterator_category>()))>
    : std::true_type {};

// A constructor from a range, for a container `Self`: enabled for ranges
// other than Self itself, so that copying still goes to the copy constructor.
template <class R, class Self>
using EnableRange = std::enable_if_t<IsRange<R>::value && !std::is_same<std::decay_t<R>, Self>::value>;
template <class I>
using EnableIterator = std::enable_if_t<IsIterator<I>::value>;

// The length of [first, last) as an int, for a container made from it. A
// range of more elements than an int counts is refused in every build,
// before anything is allocated or written.
template <class It>
int RangeLength(It first, It last, char const* where) {
    auto const n = std::distance(first, last);
    ZORVANCOW_REQUIRE(n <= INT_MAX, where, "a range of more than 2147483647 elements", "%lld elements",
                      static_cast<long long>(n));
    return static_cast<int>(n);
}

// Whether std::hash<T> may be used.
template <class T, class = void>
struct IsHashable : std::false_type {};
template <class T>
struct IsHashable<T, decltype(void(std::declval<std::hash<T> const&>()(std::declval<T const&>())))>
    : std::is_default_constructible<std::hash<T>> {};

template <class T, class = void>
struct IsPrintable : std::false_type {};
template <class T>
struct IsPrintable<T, decltype(void(std::declval<std::ostream&>() << std::declval<T const&>()))> : std::true_type {};

// Mixes one more hash into a running hash of a sequence.
inline std::size_t HashMix(std::size_t seed, std::size_t value) {
    return seed ^ (value + 0x9e3779b97f4a7c15ull + (seed << 6) + (seed >> 2));
}

// The hash of a sequence: its length, then each element's std::hash.
template <class Range>
std::size_t HashSequence(Range const& range) {
    using T = std::decay_t<decltype(*Begin(range))>;
    std::size_t seed = static_cast<std::size_t>(std::distance(Begin(range), End(range)));
    for (auto it = Begin(range), stop = End(range); it != stop; ++it) seed = HashMix(seed, std::hash<T>()(*it));
    return seed;
}

// Prints `{a, b, c}`.
template <class Range>
std::ostream& PrintSequence(std::ostream& out, Range const& range) {
    out << '{';
    for (auto it = Begin(range), stop = End(range); it != stop; ++it) {
        if (it != Begin(range)) out << ", ";
        out << *it;
    }
    return out << '}';
}

// Prints `{k: v, k: v}` from a range of entries.
template <class Range>
std::ostream& PrintEntries(std::ostream& out, Range const& range) {
    out << '{';
    bool first = true;
    for (auto const& [key, value] : range) {
        if (!first) out << ", ";
        out << key << ": " << value;
        first = false;
    }
    return out << '}';
}

// The end of a failed at(): one line naming the class, the operation and the
// value, then abort(). The library throws nothing.
[[noreturn]] inline void AtFailed(char const* container, char const* what, long long value, long long size) {
    std::fprintf(stderr, "%s::at: %s %lld is outside 0..%lld\n", container, what, value, size - 1);
    std::abort();
}
[[noreturn]] inline void AtMissingKey(char const* container) {
    std::fprintf(stderr, "%s::at: the key is not held\n", container);
    std::abort();
}
}  // namespace cow_detail

// ---------------------------------------------------------------------------
// Sequences: the arrays, lists and fixed arrays mark themselves with
// cow_IsSequence, and get these operators:
//   == and != by content: the same length, and each pair of elements at one
//     address (a block both values share) or equal by cow_Element<T>::Equal;
//   <, <=, >, >= (and <=> under C++20): lexicographic by the elements' own <
//     (or <=>), for element types that have one;
//   << to a std::ostream as {1, 2, 3}, for element types that print.
// cow_FixedArray keeps its own == and !=, which have no address shortcut.

template <class C>
struct cow_IsSequence : std::false_type {};

namespace cow_detail {
template <class C>
using SequenceElement = typename C::value_type;
template <class C>
using EnableSequence = std::enable_if_t<cow_IsSequence<C>::value>;
template <class C>
using EnableOrderedSequence =
    std::enable_if_t<cow_IsSequence<C>::value && cow_detail::HasLess<SequenceElement<C>>::value>;

template <class C>
bool SequenceEqual(C const& a, C const& b) {
    if (a.size() != b.size()) return false;
    auto j = b.cbegin();
    for (auto i = a.cbegin(), stop = a.cend(); i != stop; ++i, ++j) {
        if (&*i != &*j && !cow_Element<SequenceElement<C>>::Equal(*i, *j)) return false;
    }
    return true;
}
template <class C>
bool SequenceLess(C const& a, C const& b) {
    return std::lexicographical_compare(a.cbegin(), a.cend(), b.cbegin(), b.cend());
}

// The std::hash of a sequence: usable when its elements have one.
struct DisabledHash {
    DisabledHash() = delete;
};
template <class C>
struct SequenceHasher {
    std::size_t operator()(C const& value) const { return HashSequence(value); }
};
template <class C>
using SequenceHash = std::conditional_t<IsHashable<SequenceElement<C>>::value, SequenceHasher<C>, DisabledHash>;
}  // namespace cow_detail

// Marks the class template `Sequence` (of one element type) as a sequence and
// gives it the std::hash of its elements; written once after the class.
#define ZORVANCOW_STD_SEQUENCE(Sequence)                                 \
    template <class T>                                                   \
    struct cow_IsSequence<Sequence<T>> : std::true_type {};              \
    namespace std {                                                      \
    template <class T>                                                   \
    struct hash<Sequence<T>> : cow_detail::SequenceHash<Sequence<T>> {}; \
    }

template <class C, class = cow_detail::EnableSequence<C>>
inline bool operator==(C const& a, C const& b) {
    return cow_detail::SequenceEqual(a, b);
}
template <class C, class = cow_detail::EnableSequence<C>>
inline bool operator!=(C const& a, C const& b) {
    return !cow_detail::SequenceEqual(a, b);
}
template <class C, class = cow_detail::EnableOrderedSequence<C>>
inline bool operator<(C const& a, C const& b) {
    return cow_detail::SequenceLess(a, b);
}
template <class C, class = cow_detail::EnableOrderedSequence<C>>
inline bool operator>(C const& a, C const& b) {
    return cow_detail::SequenceLess(b, a);
}
template <class C, class = cow_detail::EnableOrderedSequence<C>>
inline bool operator<=(C const& a, C const& b) {
    return !cow_detail::SequenceLess(b, a);
}
template <class C, class = cow_detail::EnableOrderedSequence<C>>
inline bool operator>=(C const& a, C const& b) {
    return !cow_detail::SequenceLess(a, b);
}
#if ZORVANCOW_THREE_WAY
template <class C>
    requires cow_IsSequence<C>::value && std::three_way_comparable<typename C::value_type>
inline auto operator<=>(C const& a, C const& b) {
    return std::lexicographical_compare_three_way(a.cbegin(), a.cend(), b.cbegin(), b.cend());
}
#endif
template <class C, std::enable_if_t<cow_IsSequence<C>::value &&
                                        cow_detail::IsPrintable<cow_detail::SequenceElement<C>>::value,
                                    int> = 0>
inline std::ostream& operator<<(std::ostream& out, C const& value) {
    return cow_detail::PrintSequence(out, value);
}

// Trees and maps mark themselves with cow_IsEntryRange and print as
// {key: value, key: value}, in their iterators' order.
template <class C>
struct cow_IsEntryRange : std::false_type {};

template <class C, std::enable_if_t<cow_IsEntryRange<C>::value, long> = 0>
inline std::ostream& operator<<(std::ostream& out, C const& value) {
    return cow_detail::PrintEntries(out, value);
}

// != of the trees and maps: the negation of their own ==.
template <class C, std::enable_if_t<cow_IsEntryRange<C>::value && cow_detail::HasEqual<C>::value, int> = 0>
inline bool operator!=(C const& a, C const& b) {
    return !(a == b);
}

#endif
