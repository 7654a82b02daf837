// The base sibling's blocked bit vector and its walker.

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <set>
#include <vector>

#include "zorvanbase/omi_BlkBitVect.h"
#include "zorvanmem/mem_Heap.h"

namespace {

constexpr std::uint32_t kTop = UINT32_MAX;

std::vector<std::uint32_t> WalkUp(omi_BlkBitVect const& bits) {
    std::vector<std::uint32_t> seen;
    omi_BlkBitVectTrav walker(&bits);
    std::uint32_t index = 0;
    for (bool more = walker.First(index); more; more = walker.Next(index)) seen.push_back(index);
    return seen;
}

std::vector<std::uint32_t> WalkDown(omi_BlkBitVect const& bits) {
    std::vector<std::uint32_t> seen;
    omi_BlkBitVectTrav walker(&bits);
    std::uint32_t index = 0;
    for (bool more = walker.Last(index); more; more = walker.Prev(index)) seen.push_back(index);
    return seen;
}

TEST(BlkBitVect, CountStorageAndCopies) {
    long const live = mem_GetLiveBlocks();
    {
        omi_BlkBitVect bits;
        // Callers read the count in place, at a fixed offset.
        EXPECT_EQ(reinterpret_cast<char const*>(&bits.count) - reinterpret_cast<char const*>(&bits), 40);
        bits.UnsetBit(kTop);
        EXPECT_EQ(mem_GetLiveBlocks(), live) << "clearing a never-set bit allocates nothing";
        bits.SetBit(0);
        bits.SetBit(0);
        bits.SetBit(kTop);
        EXPECT_EQ(bits.count, 2u) << "setting a set bit does not count twice";
        EXPECT_EQ(bits.GetUsedBlocks(), 2u) << "two bits far apart cost two blocks";
        bits.UnsetBit(0);
        bits.UnsetBit(0);
        EXPECT_EQ(bits.count, 1u);
        EXPECT_FALSE(bits.TestBit(0));
        EXPECT_TRUE(bits.TestBit(kTop));

        omi_BlkBitVect copy(bits);
        copy.SetBit(5);
        omi_BlkBitVect coarse(12);
        coarse.SetBit(9);
        coarse = copy;
        coarse = *&coarse;
        copy.Clear();
        EXPECT_EQ(copy.count, 0u);
        EXPECT_EQ(copy.GetUsedBlocks(), 0u);
        EXPECT_FALSE(bits.TestBit(5));
        EXPECT_EQ(WalkUp(coarse), (std::vector<std::uint32_t>{5, kTop}));

        // Equality looks at bits only, not at block sizes or emptied blocks.
        omi_BlkBitVect fine(6), wide(14);
        fine.SetBit(100000);
        fine.SetBit(1);
        fine.UnsetBit(1);
        wide.SetBit(100000);
        EXPECT_TRUE(fine == wide);
        wide.SetBit(2);
        EXPECT_TRUE(fine != wide);
    }
    EXPECT_EQ(mem_GetLiveBlocks(), live);
}

TEST(BlkBitVectTrav, VisitsSetBitsOnlyInBothDirections) {
    omi_BlkBitVect bits;
    omi_BlkBitVectTrav emptyWalker(&bits);
    std::uint32_t index = 42;
    EXPECT_FALSE(emptyWalker.First(index));
    EXPECT_FALSE(emptyWalker.Last(index));
    EXPECT_FALSE(emptyWalker.Next(index));
    EXPECT_EQ(index, 42u) << "a failed step writes nothing";

    // Word and block edges, a long gap, an emptied block and the top index.
    std::vector<std::uint32_t> const expected = {0, 63, 64, 127, 511, 512, 100000, 3000000000u, kTop};
    for (std::uint32_t i : expected) bits.SetBit(i);
    bits.SetBit(40000);
    bits.UnsetBit(40000);
    EXPECT_EQ(WalkUp(bits), expected);
    EXPECT_EQ(WalkDown(bits), std::vector<std::uint32_t>(expected.rbegin(), expected.rend()));

    omi_BlkBitVectTrav walker(&bits);
    ASSERT_TRUE(walker.Next(index)) << "a new walker's Next starts at the first bit";
    EXPECT_EQ(index, 0u);
    EXPECT_FALSE(walker.Prev(index));
    EXPECT_TRUE(walker.Next(index));
    EXPECT_EQ(index, 63u) << "a failed Prev leaves the walker where it was";
    ASSERT_TRUE(walker.Last(index));
    EXPECT_FALSE(walker.Next(index));
    ASSERT_TRUE(walker.Prev(index));
    EXPECT_EQ(index, 3000000000u);

    omi_BlkBitVectTrav backwards(&bits);
    ASSERT_TRUE(backwards.Prev(index)) << "a new walker's Prev starts at the last bit";
    EXPECT_EQ(index, kTop);
}

TEST(BlkBitVect, RandomChangesMatchASetModel) {
    long const live = mem_GetLiveBlocks();
    std::mt19937 random(20261123);
    for (std::uint32_t shift : {6u, 9u, 13u}) {
        omi_BlkBitVect bits(shift);
        std::set<std::uint32_t> model;
        std::vector<std::pair<omi_BlkBitVect, std::set<std::uint32_t>>> snapshots;
        for (int step = 0; step < 4000; ++step) {
            // Half the indexes in a dense run, half spread over 2^26 bits.
            std::uint32_t index = step % 2 == 0 ? random() % 5000 : static_cast<std::uint32_t>(random() >> 6);
            if (random() % 3 == 0 && !model.empty()) index = *model.lower_bound(index % (*model.rbegin() + 1));
            if (random() % 3 == 0) {
                bits.UnsetBit(index);
                model.erase(index);
            } else {
                bits.SetBit(index);
                model.insert(index);
            }
            ASSERT_EQ(bits.count, model.size());
            ASSERT_EQ(bits.TestBit(index), model.count(index) == 1);
            if (step % 500 == 0) snapshots.emplace_back(bits, model);
        }
        std::vector<std::uint32_t> const ascending(model.begin(), model.end());
        EXPECT_EQ(WalkUp(bits), ascending);
        EXPECT_EQ(WalkDown(bits), std::vector<std::uint32_t>(model.rbegin(), model.rend()));
        for (auto const& [copy, expected] : snapshots) {
            EXPECT_EQ(WalkUp(copy), std::vector<std::uint32_t>(expected.begin(), expected.end()));
            EXPECT_EQ(copy.count, expected.size());
        }
    }
    EXPECT_EQ(mem_GetLiveBlocks(), live);
}

}  // namespace
