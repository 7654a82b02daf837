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

TEST(BlkBitVect, CountStorageCopiesAndEquality) {
    testing_support::NoLeaks noLeaks;
    long const live = mem_GetLiveBlocks();
    {
        omi_BlkBitVect bits, coarse(12), fine(6);
        // Callers read the count in place, at a fixed offset.
        EXPECT_EQ(reinterpret_cast<char const*>(&bits.count) - reinterpret_cast<char const*>(&bits), 40);
        bits.UnsetBit(kTop);
        EXPECT_EQ(mem_GetLiveBlocks(), live) << "clearing a never-set bit allocates nothing";
        for (std::uint32_t i : {0u, kFar}) bits.SetBit(i);
        EXPECT_EQ(bits.GetUsedBlocks(), 2u) << "two bits far apart cost two blocks";

        omi_BlkBitVect copy(bits);
        copy.SetBit(5);
        coarse.SetBit(9);
        coarse = copy;
        coarse = *&coarse;
        copy.Clear();
        ExpectWalks(copy, {});
        ExpectWalks(bits, {0, kFar});
        ExpectWalks(coarse, {0, 5, kFar});

        // Equality looks at bits only, not at block sizes or emptied blocks.
        for (std::uint32_t i : {0u, 100000u, kFar}) fine.SetBit(i);
        fine.UnsetBit(100000);
        EXPECT_TRUE(fine == bits);
        EXPECT_TRUE(fine != coarse);
    }
}

TEST(BlkBitVectTrav, VisitsSetBitsOnlyAndFailsWithoutWriting) {
    omi_BlkBitVect bits(13);
    std::uint32_t index = 42;
    omi_BlkBitVectTrav none(&bits);
    EXPECT_FALSE(none.First(index) || none.Last(index) || none.Next(index));
    EXPECT_EQ(index, 42u) << "a failed step writes nothing";

    // Word and block edges, a long gap and the top index, in blocks large
    // enough to keep the pointer table small.
    std::set<std::uint32_t> const expected = {0, 63, 64, 127, 8191, 8192, 100000, 3000000000u, kTop};
    for (std::uint32_t i : expected) bits.SetBit(i);
    ExpectWalks(bits, expected);
}

}  // namespace
