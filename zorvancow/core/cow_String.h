#ifndef ZORVANCOW_CORE_COW_STRING_H
#define ZORVANCOW_CORE_COW_STRING_H

// The library's text value and the two string comparisons.
//
// A cow_String is two words on a counted, read-only text: copying it costs
// one increment, and no write ever unshares it. A default value has no header
// and reads as the empty text; it equals a value made from "".
//
// Which comparison orders what:
//   cow_StringByteCompare - every string equality in the library, the order
//       of atr_String tree keys and of sorted lists of atr_String, and sorted
//       map walks of any string key;
//   cow_StringOrderCompare - the order of cow_String tree keys and of sorted
//       lists of cow_String: natural order while atr_getNaturalOrder() is on.

#include <cstddef>
#include <functional>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#if __has_include(<compare>)
#include <compare>
#endif

#include "zorvancow/core/cow_Export.h"
#include "zorvanmem/aio_ostream.h"
#include "zorvanstr/atr_String.h"

// C++20's three-way comparison, where both the compiler and the standard
// library have it: cow_String and the sequences (core/cow_Std.h) then
// offer <=>.
#if defined(__cpp_impl_three_way_comparison) && defined(__cpp_lib_three_way_comparison)
#define ZORVANCOW_THREE_WAY 1
#else
#define ZORVANCOW_THREE_WAY 0
#endif

class ZORVANCOW_TYPE cow_String : public atr_StringBase {
public:
    // The empty value: no header, nothing allocated.
    cow_String() = default;
    // Shares the other's text: one increment, nothing allocated.
    cow_String(cow_String const& other) noexcept : atr_StringBase(other) {}
    // Takes the other's text without a count moving; `other` is left the
    // empty value (no header).
    cow_String(cow_String&& other) noexcept { swap(other); }
    cow_String& operator=(cow_String const& other) = default;
    // Takes the other's text, giving up this one's; `other` is left empty.
    cow_String& operator=(cow_String&& other) noexcept {
        cow_String taken(std::move(other));
        swap(taken);
        return *this;
    }
    // Exchanges the two values' texts; no count moves.
    void swap(cow_String& other) noexcept {
        std::swap(text, other.text);
        std::swap(header, other.header);
    }
    // A value with its own copy of `source`; the caller may free `source` at once.
    explicit cow_String(char const* source) : atr_StringBase(source) {}

    // Standard interface (the operators and std::hash follow the class):
    // A value with its own copy of `source`, up to its first zero byte.
    explicit cow_String(std::string_view source) : atr_StringBase(std::string(source).c_str()) {}
    // The text as a view, valid while this value or a copy sharing its text lives.
    operator std::string_view() const { return std::string_view(GetCString(), static_cast<std::size_t>(GetLength())); }
    // A std::string copy of the text.
    explicit operator std::string() const { return std::string(GetCString(), static_cast<std::size_t>(GetLength())); }
    // The text, its length, and whether it is empty.
    char const* c_str() const { return GetCString(); }
    std::size_t size() const { return static_cast<std::size_t>(GetLength()); }
    bool empty() const { return GetLength() == 0; }
};

inline void swap(cow_String& a, cow_String& b) noexcept { a.swap(b); }

// Unsigned byte-wise order: -1, 0 or +1. A prefix sorts first (its terminator
// is the lower byte), bytes 0x80 and above sort after ASCII, and a text ends at
// its first zero byte. No length shortcut, no locale.
inline int cow_StringByteCompare(atr_StringBase const& left, atr_StringBase const& right) {
    auto const* l = reinterpret_cast<unsigned char const*>(left.GetCString());
    auto const* r = reinterpret_cast<unsigned char const*>(right.GetCString());
    for (;; ++l, ++r) {
        if (*l != *r) return *l < *r ? -1 : 1;
        if (*l == 0) return 0;
    }
}

// strnatcmp's result when atr_getNaturalOrder() is non-zero, read at every
// call; otherwise cow_StringByteCompare. Only the sign matters.
inline int cow_StringOrderCompare(atr_StringBase const& left, atr_StringBase const& right) {
    if (atr_getNaturalOrder() != 0) return strnatcmp(left.GetCString(), right.GetCString());
    return cow_StringByteCompare(left, right);
}

// Prints the text (the empty text for a default value) and nothing else.
ZORVANCOW_API aio_ostream& operator<<(aio_ostream& stream, cow_String const& value);

// ---------------------------------------------------------------------------
// cow_String as a standard value: == and < by unsigned bytes (the string
// equality of the whole library; the natural-order switch plays no part),
// std::hash of the text, and printing of the text.

inline bool operator==(cow_String const& a, cow_String const& b) { return cow_StringByteCompare(a, b) == 0; }
inline bool operator!=(cow_String const& a, cow_String const& b) { return cow_StringByteCompare(a, b) != 0; }
inline bool operator<(cow_String const& a, cow_String const& b) { return cow_StringByteCompare(a, b) < 0; }
inline bool operator>(cow_String const& a, cow_String const& b) { return cow_StringByteCompare(a, b) > 0; }
inline bool operator<=(cow_String const& a, cow_String const& b) { return cow_StringByteCompare(a, b) <= 0; }
inline bool operator>=(cow_String const& a, cow_String const& b) { return cow_StringByteCompare(a, b) >= 0; }
// Against any text: a std::string, a std::string_view or a literal.
inline bool operator==(cow_String const& a, std::string_view b) { return static_cast<std::string_view>(a) == b; }
inline bool operator!=(cow_String const& a, std::string_view b) { return static_cast<std::string_view>(a) != b; }
#if !ZORVANCOW_THREE_WAY
inline bool operator==(std::string_view a, cow_String const& b) { return a == static_cast<std::string_view>(b); }
inline bool operator!=(std::string_view a, cow_String const& b) { return a != static_cast<std::string_view>(b); }
#endif
#if ZORVANCOW_THREE_WAY
inline std::strong_ordering operator<=>(cow_String const& a, cow_String const& b) {
    return cow_StringByteCompare(a, b) <=> 0;
}
#endif

// The text, nothing else (no quotes, no line end); a default value prints nothing.
inline std::ostream& operator<<(std::ostream& out, cow_String const& value) {
    return out << value.GetCString();
}

namespace std {
// The hash of the text: equal strings (by bytes) hash alike, and a string
// hashes as the std::string_view of its text does.
template <>
struct hash<cow_String> {
    std::size_t operator()(cow_String const& value) const noexcept {
        return std::hash<std::string_view>()(static_cast<std::string_view>(value));
    }
};
}  // namespace std

#endif
