// The blocked array beside std::vector and std::deque, 1,000,000 ints each.

#include "BenchPeers.h"

namespace {

constexpr int kSize = 1000000;

using Array = cow_1DArray<int>;
using Vector = std::vector<int>;
auto const kMs = benchmark::kMillisecond;
auto const kUs = benchmark::kMicrosecond;

// An array sized beforehand (blocks of 2^13), then written in order.
Array const& Sized() {
    return Once([] {
        Array a(kSize);
        for (int i = 0; i < kSize; ++i) a.Get(i) = i;
        return a;
    });
}

std::vector<int> const& RandomIndices() {
    return Once([] {
        std::vector<int> made = MakeRandomInts(7, kSize);
        for (int& i : made) i = static_cast<int>(static_cast<unsigned>(i) % kSize);
        return made;
    });
}

// The walk with cow_1DArrayIter, element by element with `Step` (Next, or
// the inline step inside a block, Advance).
template <cow_1DArrayIter<int>& (cow_1DArrayIter<int>::*Step)()>
long IterSum(Array const& a) {
    long sum = 0;
    cow_1DArrayIter<int> it(a);
    for (int end = a.GetEndPosition(); it.GetPosition() < end; (it.*Step)()) sum += it.ConstGet();
    return sum;
}

// The same walk a block at a time: the iterator hands out each block's
// storage, and the elements of a block are read as a plain array.
long IterBlockSum(Array const& a) {
    long sum = 0;
    cow_1DArrayIter<int> it(a);
    for (int end = a.GetEndPosition(); it.GetPosition() < end; it.NextBlock()) {
        int run = it.GetBlockLength() - it.GetOffset();
        if (run > end - it.GetPosition()) run = end - it.GetPosition();
        int const* data = it.GetBlockData() + it.GetOffset();
        for (int k = 0; k < run; ++k) sum += data[k];
    }
    return sum;
}

int const rows = [] {
    auto const vector = Counting<Vector, kSize>;
    // A copy, and a copy with one write through it: a table copy and one block copy.
    Row("BM_Copy_Cow1DArray", CopyCase(Sized, -1));
    Row("BM_Copy_StdVector", CopyCase(vector, -1));
    Row("BM_CopyThenWrite_Cow1DArray", CopyCase(Sized, kSize / 2));
    Row("BM_CopyThenWrite_StdVector", CopyCase(vector, kSize / 2));
    // Fills at the end, of a default array and of one sized beforehand (no
    // table growth), and at the front.
    Row("BM_FillAtEnd_Cow1DArray", FillCase<Array>(kSize))->Unit(kMs);
    Row("BM_FillAtEnd_Cow1DArraySized", [](benchmark::State& state) {
        for (auto _ : state) {
            Array sized(kSize);
            for (int i = 0; i < kSize; ++i) sized.Get(i) = i;
            benchmark::DoNotOptimize(sized);
        }
    })->Unit(kMs);
    Row("BM_FillAtEnd_StdVectorPushBack", FillCase<Vector>(kSize))->Unit(kMs);
    Row("BM_FrontGrowth_Cow1DArrayGetHead", FillCase<Array, true>(kSize))->Unit(kMs);
    Row("BM_FrontGrowth_StdDequePushFront", FillCase<std::deque<int>, true>(kSize))->Unit(kMs);
    // Walks and random reads of the sized array.
    Row("BM_Walk_Cow1DArrayIter", SumCase(Sized, IterSum<&cow_1DArrayIter<int>::Next>, 0))->Unit(kUs);
    Row("BM_Walk_Cow1DArrayIterAdvance", SumCase(Sized, IterSum<&cow_1DArrayIter<int>::Advance>, 0))->Unit(kUs);
    Row("BM_Walk_Cow1DArrayIterByBlock", SumCase(Sized, IterBlockSum, 0))->Unit(kUs);
    Row("BM_Walk_StdVectorRangeFor", SumCase(vector, RangeForSum(), 0))->Unit(kUs);
    Row("BM_RandomRead_Cow1DArrayConstGet", RandomReadCase<Array, RandomIndices>(Sized))->Unit(kUs);
    Row("BM_RandomRead_StdDequeIndex",
        RandomReadCase<std::deque<int>, RandomIndices>(Counting<std::deque<int>, kSize>))
        ->Unit(kUs);
    // Standard-interface walks: range-for over the array's iterators, and the
    // block-wise walk that hands std::accumulate one contiguous span per
    // block, each beside the same over a std::vector.
    Row("BM_RangeFor_Cow1DArray", SumCase(Sized, RangeForSum(), kSize))->Unit(kUs);
    Row("BM_RangeFor_Vector", SumCase(vector, RangeForSum(), kSize))->Unit(kUs);
    Row("BM_BlockAccumulate_Cow1DArray", SumCase(Sized, BlockSum(), kSize))->Unit(kUs);
    Row("BM_BlockAccumulate_Vector",
        SumCase(vector, [](Vector const& v) { return std::accumulate(v.begin(), v.end(), 0L); }, kSize))
        ->Unit(kUs);
    return 0;
}();

}  // namespace
