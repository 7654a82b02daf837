#ifndef ZORVANCOW_ARRAYS_COW_BLOCKLENGTH_H
#define ZORVANCOW_ARRAYS_COW_BLOCKLENGTH_H

// The block length a blocked array (and so a cow_1DArrayList or a cow_List)
// is made with, for values that keep many versions.
//
// What one version of a large array costs is its block table plus the
// blocks its writes touch: about 8 bytes per block plus one block length of
// elements per block written. Short blocks make the table long, long blocks
// make each written block dear; the sum is smallest near sqrt(size).
//
// - cow_BlockLength() leaves the length to the growth rules, as a value made
//   without one: 16 elements for a list grown by Append, n/16 to n/8 for an
//   array made with size n.
// - cow_BlockLength(n) fixes it at n elements, a power of two from 16 to
//   2^30; anything else is refused in every build with one line on stderr.
// - cow_BlockLength::Balanced() starts at 16 (or near sqrt(n) when an
//   empty value grows to n at once) and keeps it near sqrt(size): when the
//   blocks in use would pass four times the block length, the array
//   re-blocks into blocks twice as long (or more, for a large jump). That
//   copies each element once, amortized O(1) per element as a vector's
//   doubling, into a new table and new blocks of its own: the old storage
//   stays untouched with its other holders. Shrinking keeps the length.
//
// The choice belongs to the value: copies, moves and assignments carry it,
// and it survives Grow(0), Clear, ClearAll and the other resets, which for a
// value made without one go back to the growth rules.
// Everything here is inline and nothing is exported.

#include <cstdint>

#include "zorvancow/core/cow_Check.h"

class cow_BlockLength {
public:
    // The growth rules' lengths, as for a value made without a length.
    cow_BlockLength() : rule(kGrowthRules) {}
    // Blocks of `length` elements: a power of two from 16 to 2^30.
    explicit cow_BlockLength(int length) : rule(ShiftOf(length)) {}
    // Blocks near sqrt(size), re-blocked as the value grows.
    static cow_BlockLength Balanced() { return cow_BlockLength(kBalancedRule, 0); }

    // Whether the length is left to the growth rules.
    bool IsGrowthRules() const { return rule == kGrowthRules; }
    // Whether the length follows the size.
    bool IsBalanced() const { return rule == kBalancedRule; }
    // The fixed length, or 0 for the growth rules and for Balanced().
    int GetLength() const { return rule > 0 ? 1 << rule : 0; }

    bool operator==(cow_BlockLength const& other) const { return rule == other.rule; }
    bool operator!=(cow_BlockLength const& other) const { return rule != other.rule; }

private:
    template <class T>
    friend class cow_1DArray;
    static constexpr std::int32_t kGrowthRules = 0;
    static constexpr std::int32_t kBalancedRule = -1;
    static constexpr int kLeast = 4;
    static constexpr int kMost = 30;

    cow_BlockLength(std::int32_t code, int) : rule(code) {}
    static std::int32_t ShiftOf(int length) {
        ZORVANCOW_REQUIRE(length >= (1 << kLeast) && length <= (1 << kMost) && (length & (length - 1)) == 0,
                          "cow_BlockLength::cow_BlockLength", "not a power of two from 16 to 1073741824",
                          "length %d", length);
        std::int32_t k = kLeast;
        while ((1 << k) != length) ++k;
        return k;
    }
    // The growth rules (0), a fixed shift (4 to 30) or balanced (-1): the
    // form the array keeps it in.
    std::int32_t rule;
};

#endif
