// The base sibling's blocked bit vector and its walker.

#include <gtest/gtest.h>

#include <cstdint>
#include <set>
#include <vector>

#include "zorvanbase/omi_BlkBitVect.h"
#include "support/NoLeaks.h"

namespace {

constexpr std::uint32_t kTop = UINT32_MAX;
constexpr std::uint32_t kFar = 1u << 20;

// Walks `bits` up from First and down from Last, each to the end, and
// expects exactly the members of `expected` in order, and a matching count.
void ExpectWalks(omi_BlkBitVect const& bits, std::set<std::uint32_t> const& expected) {
    std::vector<std::uint32_t> up, down;
    omi_BlkBitVectTrav upWalker(&bits), downWalker(&bits);
    std::uint32_t index = 0;
    for (bool more = upWalker.First(index); more; more = upWalker.Next(index)) up.push_back(index);
    for (bool more = downWalker.Last(index); more; more = downWalker.Prev(index)) down.push_back(index);
    EXPECT_EQ(up, std::vector<std::uint32_t>(expected.begin(), expected.end()));
    EXPECT_EQ(down, std::vector<std::uint32_t>(expected.rbegin(), expected.rend()));
    EXPECT_EQ(bits.count, expected.size());
}

// As the map and the tables use it: the count at its fixed offset, a copy
// that is a value of its own, equality by bits alone (not block sizes or
// emptied blocks), and walks over word and block edges, a long gap and the
// top index.
TEST(BlkBitVect, CopiesAreValuesAndWalksSeeTheSetBitsOnly) {
    testing_support::NoLeaks noLeaks;
    omi_BlkBitVect bits, coarse(12), fine(6), edges(13);
    EXPECT_EQ(reinterpret_cast<char const*>(&bits.count) - reinterpret_cast<char const*>(&bits), 40);
    for (std::uint32_t i : {0u, kFar}) bits.SetBit(i);
    omi_BlkBitVect copy(bits);
    copy.SetBit(5);
    coarse.SetBit(9);
    coarse = copy;
    copy.Clear();
    ExpectWalks(copy, {});
    ExpectWalks(bits, {0, kFar});
    ExpectWalks(coarse, {0, 5, kFar});
    for (std::uint32_t i : {0u, 100000u, kFar}) fine.SetBit(i);
    fine.UnsetBit(100000);
    EXPECT_TRUE(fine == bits && fine != coarse);

    std::set<std::uint32_t> const expected = {0, 63, 64, 127, 8191, 8192, 100000, 3000000000u, kTop};
    for (std::uint32_t i : expected) edges.SetBit(i);
    ExpectWalks(edges, expected);
}

}  // namespace
