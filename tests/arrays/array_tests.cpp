#include <gtest/gtest.h>

#include <climits>
#include <deque>
#include <random>
#include <vector>

#include "support/AllocationCounter.h"
#include "zorvancow/arrays/cow_1DArray.h"

namespace {

using testing_support::AllocationScope;

// Fills elements [0, n) through Get with value base + i.
void Fill(cow_1DArray<int>& a, int n, int base = 0) {
    for (int i = 0; i < n; ++i) a.Get(i) = base + i;
}

TEST(BlockedArray, SizedConstructionPicksBlockLengthFromTheFloatExponent) {
    struct Row {
        int n, shift, capacity;
    } rows[] = {{-7, 4, 16},      {0, 4, 16},         {255, 4, 16},       {256, 5, 24},
                {257, 5, 25},     {384, 5, 28},       {511, 5, 32},       {512, 6, 24},
                {1000, 6, 32},    {65536, 13, 24},    {100000, 13, 29},   {1000000, 16, 32},
                {16777217, 21, 24}, {INT_MAX, 28, 24}};
    long liveBefore = mem_GetLiveBlocks();
    for (Row const& row : rows) {
        AllocationScope scope;
        cow_1DArray<int> a(row.n);
        EXPECT_EQ(a.GetShift(), row.shift) << row.n;
        EXPECT_EQ(a.GetCapacity(), row.capacity) << row.n;
        EXPECT_EQ(a.GetSize(), row.n);
        EXPECT_EQ(scope.News(), 1u) << "only the counter comes from operator new";
        EXPECT_EQ(mem_GetLiveBlocks(), liveBefore + 1) << "and the table from mem_Malloc";
        for (int s = 0; s < a.GetCapacity(); ++s) EXPECT_EQ(a.GetBlock(s), nullptr);
    }
    EXPECT_EQ(mem_GetLiveBlocks(), liveBefore);
}

TEST(BlockedArray, WriteThroughCopyUnsharesTableAndOneBlock) {
    cow_1DArray<int> a(40);
    Fill(a, 40);
    cow_1DArray<int> b(a);
    ASSERT_EQ(a.GetTableShareCount(), 2);
    for (int s = 0; s < 3; ++s) EXPECT_EQ(a.GetBlockCount(s), 1);

    b.Get(20) = -1;
    EXPECT_NE(a.GetTableCounter(), b.GetTableCounter());
    EXPECT_EQ(a.GetTableShareCount(), 1);
    EXPECT_EQ(b.GetTableShareCount(), 1);
    EXPECT_EQ(a.GetBlock(0), b.GetBlock(0));
    EXPECT_EQ(a.GetBlock(2), b.GetBlock(2));
    EXPECT_EQ(a.GetBlockCount(0), 2);
    EXPECT_EQ(a.GetBlockCount(2), 2);
    EXPECT_NE(a.GetBlock(1), b.GetBlock(1));
    EXPECT_EQ(a.GetBlockCount(1), 1);
    EXPECT_EQ(b.GetBlockCount(1), 1);
    EXPECT_EQ(a.PartialArrayConstGet(20), 20);
    EXPECT_EQ(b.PartialArrayConstGet(20), -1);
    EXPECT_EQ(b.PartialArrayConstGet(21), 21) << "the copied block keeps its other elements";

    AllocationScope scope;
    b.Get(17) = -2;
    EXPECT_EQ(scope.News(), 0u) << "a second write into the private block copies nothing";

    // Destroying b lowers the shared blocks back to one holder.
    b = cow_1DArray<int>();
    EXPECT_EQ(a.GetBlockCount(0), 1);
    EXPECT_EQ(a.GetBlockCount(2), 1);
    EXPECT_EQ(a.PartialArrayConstGet(17), 17);
}

TEST(BlockedArray, GrowthByGetFromDefaultAndSizedArrays) {
    cow_1DArray<int> a;
    EXPECT_EQ(a.GetCapacity(), 0);
    a.Get(0) = 5;
    EXPECT_EQ(a.GetShift(), 4);
    EXPECT_EQ(a.GetCapacity(), 17);
    a.Get(271) = 6;
    EXPECT_EQ(a.GetCapacity(), 17);
    a.Get(272) = 7;
    EXPECT_EQ(a.GetCapacity(), 34);
    EXPECT_EQ(a.GetSize(), 273);
    EXPECT_EQ(a.GetBlock(1), nullptr) << "skipped slots stay empty";
    EXPECT_EQ(a.PartialArrayConstGet(0), 5);
    EXPECT_EQ(a.PartialArrayConstGet(271), 6);

    cow_1DArray<int> b(1000);
    b.Get(1000) = 1;
    EXPECT_EQ(b.GetCapacity(), 32);
    EXPECT_EQ(b.GetSize(), 1001);
    b.Get(2048) = 2;
    EXPECT_EQ(b.GetCapacity(), 49);

    cow_1DArray<int> c(10);
    c.Get(10 + 99) = 3;
    EXPECT_EQ(c.GetSize(), 110);
    int blocks = 0;
    for (int s = 0; s < c.GetCapacity(); ++s) blocks += c.GetBlock(s) != nullptr;
    EXPECT_EQ(blocks, 1);
}

TEST(BlockedArray, ConstReadFillsASharedSlotWithoutUnsharing) {
    cow_1DArray<double> a(100);
    cow_1DArray<double> b(a);
    AllocationScope scope;
    EXPECT_EQ(b.PartialArrayConstGet(50), 0.0);
    EXPECT_EQ(scope.News(), 2u) << "one block and its element storage";
    EXPECT_EQ(a.GetTableCounter(), b.GetTableCounter());
    EXPECT_EQ(a.GetTableShareCount(), 2);
    ASSERT_NE(a.GetBlock(3), nullptr) << "the block is seen through every array on the table";
    EXPECT_EQ(a.GetBlockCount(3), 1);
    EXPECT_EQ(&a.PartialArrayConstGet(50), &b.PartialArrayConstGet(50));

    // String blocks: default elements have no header; a copied block
    // shares the texts, and every text is released at the end.
    long textsBefore = atr_GetLiveTexts();
    {
        cow_1DArray<cow_String> s1(20);
        EXPECT_EQ(s1.PartialArrayConstGet(19).GetHeader(), nullptr);
        s1.Get(0) = cow_String("alpha");
        cow_1DArray<cow_String> s2(s1);
        s2.Get(1) = cow_String("beta");
        EXPECT_EQ(s1.PartialArrayConstGet(0).GetHeader(), s2.PartialArrayConstGet(0).GetHeader());
        EXPECT_EQ(s1.PartialArrayConstGet(0).GetShareCount(), 2);
        EXPECT_EQ(s1.PartialArrayConstGet(1).GetHeader(), nullptr);
    }
    EXPECT_EQ(atr_GetLiveTexts(), textsBefore);
}

TEST(BlockedArray, GrowResetAndShrinkKeepEveryCount) {
    long liveBefore = mem_GetLiveBlocks();
    {
        cow_1DArray<int> a(40);
        Fill(a, 40);
        cow_1DArray<int> b(a);
        b.Grow(0);
        EXPECT_EQ(b.GetCapacity(), 0);
        EXPECT_EQ(b.GetShift(), 0);
        EXPECT_EQ(b.GetSize(), 0);
        EXPECT_EQ(b.GetHeadPosition(), 0);
        EXPECT_EQ(a.GetSize(), 40);
        for (int s = 0; s < 3; ++s) EXPECT_EQ(a.GetBlockCount(s), 1);
        EXPECT_EQ(a.PartialArrayConstGet(39), 39);
        b.Grow(1);
        EXPECT_EQ(b.GetShift(), 4);
        EXPECT_EQ(b.GetCapacity(), 17);

        // Shrinking a copy lets go of the blocks beyond its new end only.
        cow_1DArray<int> c(a);
        c.Grow(17);
        EXPECT_EQ(c.GetCapacity(), 16);
        EXPECT_EQ(c.GetBlock(2), nullptr);
        EXPECT_EQ(a.GetBlockCount(2), 1);
        EXPECT_EQ(a.GetBlockCount(1), 2);
        EXPECT_EQ(c.PartialArrayConstGet(16), 16);
        // Growing again finds default elements where the old block was.
        c.Grow(40);
        EXPECT_EQ(c.PartialArrayConstGet(39), 0);
        EXPECT_EQ(c.PartialArrayConstGet(20), 20) << "the kept partial block is untouched";
        EXPECT_EQ(a.PartialArrayConstGet(39), 39);
    }
    EXPECT_EQ(mem_GetLiveBlocks(), liveBefore);
}

TEST(BlockedArray, GetHeadMovesTheTableAndKeepsOffsets) {
    cow_1DArray<int> sized(0);
    sized.GetHead() = 9;
    EXPECT_EQ(sized.GetHeadPosition(), 255);
    EXPECT_EQ(sized.GetEndPosition(), 256);
    EXPECT_EQ(sized.GetSize(), 1);
    EXPECT_NE(sized.GetBlock(15), nullptr);

    // 272 calls on a default array fill its 17 slots exactly.
    cow_1DArray<int> a;
    for (int k = 0; k < 272; ++k) a.GetHead() = k;
    EXPECT_EQ(a.GetHeadPosition(), 0);
    EXPECT_EQ(a.GetEndPosition(), 272);
    EXPECT_EQ(a.GetCapacity(), 17);
    std::vector<cow_1DArrayBlock<int> const*> before;
    for (int s = 0; s < 17; ++s) before.push_back(a.GetBlock(s));
    a.GetHead() = 272;
    EXPECT_EQ(a.GetCapacity(), 34);
    EXPECT_EQ(a.GetHeadPosition(), 271);
    EXPECT_EQ(a.GetEndPosition(), 544);
    EXPECT_EQ(a.GetSize(), 273);
    for (int s = 0; s < 17; ++s) EXPECT_EQ(a.GetBlock(s + 17), before[s]) << "blocks move by pointer";
    for (int i = 0; i < 273; ++i) ASSERT_EQ(a.PartialArrayConstGet(i), 272 - i);

    // The next move shifts 34 used slots by 17: source and target overlap.
    for (int k = 273; k < 544; ++k) a.GetHead() = k;
    EXPECT_EQ(a.GetHeadPosition(), 0);
    before.clear();
    for (int s = 0; s < 34; ++s) before.push_back(a.GetBlock(s));
    a.GetHead() = 544;
    EXPECT_EQ(a.GetCapacity(), 51);
    for (int s = 0; s < 34; ++s) ASSERT_EQ(a.GetBlock(s + 17), before[s]);
    for (int i = 0; i < 545; ++i) ASSERT_EQ(a.PartialArrayConstGet(i), 544 - i);

    // A short array moves its blocks to the back; elements keep their offsets.
    cow_1DArray<int> b;
    Fill(b, 5, 100);
    auto const* block = b.GetBlock(0);
    int const* third = &b.PartialArrayConstGet(2);
    b.GetHead() = 99;
    EXPECT_EQ(b.GetSize(), 6);
    EXPECT_EQ(b.GetBlock(16), block);
    EXPECT_EQ(b.GetBlock(0), nullptr);
    EXPECT_EQ(&b.PartialArrayConstGet(3), third);
    for (int i = 0; i < 6; ++i) EXPECT_EQ(b.PartialArrayConstGet(i), 99 + i);

    // Through a copy: the copy's table moves, the source keeps its layout.
    cow_1DArray<int> c(b);
    c.GetHead() = 98;
    EXPECT_EQ(b.GetSize(), 6);
    EXPECT_EQ(b.PartialArrayConstGet(0), 99);
    EXPECT_EQ(c.PartialArrayConstGet(0), 98);
    EXPECT_EQ(c.PartialArrayConstGet(1), 99);
}

TEST(BlockedArray, RemoveHeadFreesABlockOnlyWhenTheHeadLeavesIt) {
    cow_1DArray<int> a;
    Fill(a, 40);
    auto const* first = a.GetBlock(0);
    for (int k = 0; k < 15; ++k) a.RemoveHead();
    EXPECT_EQ(a.GetBlock(0), first);
    EXPECT_EQ(a.GetEndPosition(), 40);
    a.RemoveHead();
    EXPECT_EQ(a.GetBlock(0), nullptr);
    EXPECT_EQ(a.GetHeadPosition(), 16);
    EXPECT_EQ(a.GetSize(), 24);
    EXPECT_EQ(a.PartialArrayConstGet(0), 16);

    // Stepping back over the boundary creates a new block in the empty slot.
    a.GetHead() = -1;
    ASSERT_NE(a.GetBlock(0), nullptr);
    EXPECT_EQ(a.PartialArrayConstGet(0), -1);
    EXPECT_EQ(a.GetBlock(0)->GetData()[0], 0) << "a fresh block, not the old one";
}

TEST(BlockedArray, SetFromArrayRunsPerBlock) {
    std::vector<int> src(40);
    for (int i = 0; i < 40; ++i) src[i] = i * 3;

    cow_1DArray<int> sized(40);
    AllocationScope scope;
    sized.SetFromArray(src.data(), 40);
    EXPECT_EQ(scope.News(), 6u) << "three runs, three blocks";
    EXPECT_EQ(sized.GetSize(), 40);

    cow_1DArray<int> zero(0);
    zero.SetFromArray(src.data(), 40);
    EXPECT_EQ(zero.GetSize(), 33);

    cow_1DArray<int> fresh;
    fresh.SetFromArray(src.data(), 40);
    EXPECT_EQ(fresh.GetSize(), 40);
    EXPECT_EQ(fresh.GetShift(), 4);
    for (int i = 0; i < 40; ++i) {
        EXPECT_EQ(sized.PartialArrayConstGet(i), i * 3);
        EXPECT_EQ(fresh.PartialArrayConstGet(i), i * 3);
        if (i < 33) {
            EXPECT_EQ(zero.PartialArrayConstGet(i), i * 3);
        }
    }

    // Strings are assigned, sharing their text.
    cow_String texts[2] = {cow_String("x"), cow_String("y")};
    cow_1DArray<cow_String> strings;
    strings.SetFromArray(texts, 2);
    EXPECT_EQ(texts[1].GetShareCount(), 2);
    EXPECT_EQ(strings.PartialArrayConstGet(1).GetHeader(), texts[1].GetHeader());
}

TEST(BlockedArray, IsEqualUsesAddressesForSharedBlocks) {
    cow_1DArray<int> a;
    Fill(a, 40);
    cow_1DArray<int> b(a);
    EXPECT_TRUE(a.IsEqual(b));
    b.Get(30) = -1;
    EXPECT_FALSE(a.IsEqual(b)) << "first block shared, a later one differs";
    cow_1DArray<int> c;
    Fill(c, 40);
    EXPECT_TRUE(a.IsEqual(c));
    c.Get(40) = 40;
    EXPECT_FALSE(a.IsEqual(c));
    EXPECT_TRUE(cow_1DArray<int>().IsEqual(cow_1DArray<int>()));
}

TEST(BlockedArrayIter, WalksASnapshotAndStopsAtHolesAndTheEnd) {
    cow_1DArray<int> empty;
    cow_1DArrayIter<int> onEmpty(empty);
    EXPECT_EQ(onEmpty.GetLimit(), 0);
    EXPECT_EQ(onEmpty.GetBlockLength(), 1);
    EXPECT_EQ(onEmpty.GetPosition(), 0);
    EXPECT_EQ(onEmpty.GetBlockData(), nullptr);

    cow_1DArray<int> untouched(100);
    cow_1DArrayIter<int> onUntouched(untouched);
    EXPECT_EQ(onUntouched.GetLimit(), 0);
    EXPECT_EQ(onUntouched.GetBlockData(), nullptr);

    // First block present, second absent: a hole with position below limit.
    cow_1DArray<int> sparse(100);
    for (int i = 0; i < 16; ++i) sparse.Get(i) = i;
    sparse.Get(40) = 40;
    cow_1DArrayIter<int> walk(sparse);
    EXPECT_EQ(walk.GetLimit(), 100);
    for (int i = 0; i < 15; ++i) {
        EXPECT_EQ(walk.ConstGet(), i);
        walk.Next();
    }
    EXPECT_EQ(walk.ConstGet(), 15);
    walk.Next();
    EXPECT_EQ(walk.GetBlockData(), nullptr);
    EXPECT_LT(walk.GetPosition(), walk.GetLimit());
    walk.First();
    EXPECT_EQ(walk.GetPosition(), 0);
    EXPECT_EQ(walk.ConstGet(), 0);

    // End of a partly used block: the block pointer stays, position tells.
    cow_1DArray<int> partial;
    Fill(partial, 20, 1000);
    cow_1DArrayIter<int> tail(partial);
    int sum = 0;
    for (; tail.GetPosition() < 20; tail.Next()) sum += tail.ConstGet();
    EXPECT_EQ(sum, 20 * 1000 + 190);
    EXPECT_NE(tail.GetBlockData(), nullptr);
    // End of a full last block: the block pointer turns null.
    cow_1DArray<int> full;
    Fill(full, 32);
    cow_1DArrayIter<int> fullTail(full);
    for (int i = 0; i < 32; ++i) fullTail.Next();
    EXPECT_EQ(fullTail.GetBlockData(), nullptr);

    // A moved head: position and offset start inside a block.
    cow_1DArray<int> moved;
    Fill(moved, 10);
    moved.RemoveHead();
    moved.RemoveHead();
    moved.RemoveHead();
    cow_1DArrayIter<int> fromHead(moved);
    EXPECT_EQ(fromHead.GetPosition(), 3);
    EXPECT_EQ(fromHead.GetOffset(), 3);
    EXPECT_EQ(fromHead.ConstGet(), 3);
    // Removals that leave size 0 with end above 0: nothing to read.
    cow_1DArray<int> drained;
    Fill(drained, 3);
    for (int k = 0; k < 3; ++k) drained.RemoveHead();
    cow_1DArrayIter<int> onDrained(drained);
    EXPECT_EQ(onDrained.GetBlockData(), nullptr);

    // Snapshot: writes to the source after the iterator was made.
    cow_1DArray<int> source;
    Fill(source, 40);
    auto const* shared = source.GetBlock(1);
    {
        cow_1DArrayIter<int> snap(source);
        EXPECT_EQ(source.GetTableShareCount(), 2);
        source.Get(20) = -20;
        source.Get(41) = -41;
        int i = 0;
        for (; snap.GetPosition() < snap.GetLimit(); snap.Next(), ++i) ASSERT_EQ(snap.ConstGet(), i);
        EXPECT_EQ(i, 40);
        EXPECT_EQ(source.PartialArrayConstGet(20), -20);
        EXPECT_EQ(snap.GetArray().GetBlock(1), shared);
    }
    EXPECT_EQ(source.GetTableShareCount(), 1);
    EXPECT_EQ(source.GetBlockCount(0), 1) << "the iterator's table let go of the shared blocks";
}

// Several arrays sharing through copies, assignments and iterators, each
// checked against a deque after every operation.
TEST(BlockedArrayModel, RandomOperationsNeverLeakBetweenCopies) {
    long liveBefore = mem_GetLiveBlocks();
    std::size_t newsBefore = testing_support::NewCalls() - testing_support::DeleteCalls();
    {
        std::mt19937 rng(20261123);
        constexpr int kArrays = 5;
        std::vector<cow_1DArray<int>> arrays;
        std::vector<std::deque<int>> models(kArrays);
        for (int k = 0; k < kArrays; ++k) arrays.emplace_back(k == 0 ? cow_1DArray<int>() : cow_1DArray<int>(k * 50));
        for (int k = 1; k < kArrays; ++k) models[k].assign(k * 50, 0);
        std::vector<cow_1DArrayIter<int>> iters;
        std::vector<std::deque<int>> iterModels;
        int next = 1;

        // Positions that enter the extent by growth hold whatever their block
        // held beyond the old end (an element written by an earlier run, or
        // kept by a shrink), and default elements where no block exists.
        auto adopt = [&](int k, int from) {
            cow_1DArray<int>& a = arrays[k];
            models[k].resize(a.GetSize(), 0);
            for (int i = from; i < a.GetSize(); ++i) {
                int p = a.GetHeadPosition() + i;
                auto const* block = a.GetBlock(p >> a.GetShift());
                models[k][i] = block != nullptr ? block->GetData()[p - ((p >> a.GetShift()) << a.GetShift())] : 0;
            }
        };

        auto check = [&](int k) {
            cow_1DArray<int>& a = arrays[k];
            ASSERT_EQ(a.GetSize(), static_cast<int>(models[k].size()));
            for (int i = 0; i < a.GetSize(); ++i) ASSERT_EQ(a.PartialArrayConstGet(i), models[k][i]) << i;
        };

        for (int step = 0; step < 20000; ++step) {
            int k = static_cast<int>(rng() % kArrays);
            cow_1DArray<int>& a = arrays[k];
            std::deque<int>& m = models[k];
            int size = static_cast<int>(m.size());
            switch (rng() % 10) {
                case 0:
                case 1: {  // write inside or just past the end
                    int i = static_cast<int>(rng() % static_cast<unsigned>(size + 20));
                    a.Get(i) = next;
                    if (i >= size) adopt(k, size);
                    m[i] = next++;
                    break;
                }
                case 2: {  // copy another array
                    int from = static_cast<int>(rng() % kArrays);
                    arrays[k] = arrays[from];
                    models[k] = models[from];
                    break;
                }
                case 3: {
                    a.GetHead() = next;
                    m.push_front(next++);
                    // When the table was full the extent also reaches the
                    // next block boundary.
                    adopt(k, static_cast<int>(m.size()));
                    break;
                }
                case 4:
                    if (size > 0) {  // the list's way to drop the first element
                        a.Get(0) = 0;
                        a.RemoveHead();
                        m.pop_front();
                    }
                    break;
                case 5: {  // grow, shrink or reset
                    int n = static_cast<int>(rng() % static_cast<unsigned>(size + 40));
                    if (rng() % 8 == 0) n = 0;
                    a.Grow(n);
                    if (n < size) m.resize(n);
                    adopt(k, size < n ? size : n);
                    break;
                }
                case 6:
                    if (a.GetShift() == 0 || a.GetHeadPosition() % (1 << a.GetShift()) == 0) {
                        std::vector<int> src(rng() % 70);
                        for (int& v : src) v = next++;
                        a.SetFromArray(src.data(), static_cast<int>(src.size()));
                        // The tail of the last run may lie beyond the end.
                        adopt(k, size);
                        for (std::size_t i = 0; i < m.size() && i < src.size(); ++i) m[i] = src[i];
                    }
                    break;
                case 7:
                    iters.emplace_back(a);
                    iterModels.push_back(m);
                    if (iters.size() > 4) {
                        iters.erase(iters.begin());
                        iterModels.erase(iterModels.begin());
                    }
                    break;
                case 8: {  // a const read of an untouched element must read as the model
                    if (size > 0) {
                        int i = static_cast<int>(rng() % static_cast<unsigned>(size));
                        ASSERT_EQ(a.PartialArrayConstGet(i), m[i]);
                    }
                    break;
                }
                case 9: {  // walk every live iterator: its snapshot must hold
                    for (std::size_t j = 0; j < iters.size(); ++j) {
                        cow_1DArrayIter<int>& it = iters[j];
                        it.First();
                        cow_1DArray<int> const& snap = it.GetArray();
                        int stop = snap.GetEndPosition();
                        if (it.GetLimit() == 0) continue;
                        std::size_t i = 0;
                        for (; it.GetPosition() < stop; it.Next(), ++i) {
                            if (it.GetBlockData() == nullptr) {
                                ASSERT_EQ(iterModels[j][i], 0) << "a hole reads as a default element";
                            } else {
                                ASSERT_EQ(it.ConstGet(), iterModels[j][i]);
                            }
                        }
                        ASSERT_EQ(i, iterModels[j].size());
                    }
                    break;
                }
            }
            for (int j = 0; j < kArrays; ++j) check(j);
            if (HasFatalFailure()) return;
        }
    }
    EXPECT_EQ(mem_GetLiveBlocks(), liveBefore);
    EXPECT_EQ(testing_support::NewCalls() - testing_support::DeleteCalls(), newsBefore);
}

}  // namespace
