// The blocked array beside std::vector and std::deque, 1,000,000 ints each.

#include <benchmark/benchmark.h>

#include <deque>
#include <numeric>
#include <random>
#include <vector>

#include "zorvancow/arrays/cow_1DArray.h"

namespace {

constexpr int kSize = 1000000;

cow_1DArray<int> MakeArray() {
    cow_1DArray<int> a(kSize);
    for (int i = 0; i < kSize; ++i) a.Get(i) = i;
    return a;
}

std::vector<int> MakeVector() {
    std::vector<int> v(kSize);
    for (int i = 0; i < kSize; ++i) v[i] = i;
    return v;
}

void BM_Copy_Cow1DArray(benchmark::State& state) {
    cow_1DArray<int> a = MakeArray();
    for (auto _ : state) {
        cow_1DArray<int> copy(a);
        benchmark::DoNotOptimize(copy);
    }
}
BENCHMARK(BM_Copy_Cow1DArray);

void BM_Copy_StdVector(benchmark::State& state) {
    std::vector<int> v = MakeVector();
    for (auto _ : state) {
        std::vector<int> copy(v);
        benchmark::DoNotOptimize(copy.data());
    }
}
BENCHMARK(BM_Copy_StdVector);

// A copy and one write through it: a table copy and one block copy.
void BM_CopyThenWrite_Cow1DArray(benchmark::State& state) {
    cow_1DArray<int> a = MakeArray();
    for (auto _ : state) {
        cow_1DArray<int> copy(a);
        copy.Get(kSize / 2) = -1;
        benchmark::DoNotOptimize(copy);
    }
}
BENCHMARK(BM_CopyThenWrite_Cow1DArray);

void BM_CopyThenWrite_StdVector(benchmark::State& state) {
    std::vector<int> v = MakeVector();
    for (auto _ : state) {
        std::vector<int> copy(v);
        copy[kSize / 2] = -1;
        benchmark::DoNotOptimize(copy.data());
    }
}
BENCHMARK(BM_CopyThenWrite_StdVector);

void BM_FillAtEnd_Cow1DArray(benchmark::State& state) {
    for (auto _ : state) {
        cow_1DArray<int> a;
        for (int i = 0; i < kSize; ++i) a.Get(i) = i;
        benchmark::DoNotOptimize(a);
    }
}
BENCHMARK(BM_FillAtEnd_Cow1DArray)->Unit(benchmark::kMillisecond);

// The same fill into an array sized beforehand: no table growth.
void BM_FillAtEnd_Cow1DArraySized(benchmark::State& state) {
    for (auto _ : state) {
        cow_1DArray<int> sized(kSize);
        for (int i = 0; i < kSize; ++i) sized.Get(i) = i;
        benchmark::DoNotOptimize(sized);
    }
}
BENCHMARK(BM_FillAtEnd_Cow1DArraySized)->Unit(benchmark::kMillisecond);

void BM_FillAtEnd_StdVectorPushBack(benchmark::State& state) {
    for (auto _ : state) {
        std::vector<int> v;
        for (int i = 0; i < kSize; ++i) v.push_back(i);
        benchmark::DoNotOptimize(v.data());
    }
}
BENCHMARK(BM_FillAtEnd_StdVectorPushBack)->Unit(benchmark::kMillisecond);

void BM_FrontGrowth_Cow1DArrayGetHead(benchmark::State& state) {
    for (auto _ : state) {
        cow_1DArray<int> a;
        for (int i = 0; i < kSize; ++i) a.GetHead() = i;
        benchmark::DoNotOptimize(a);
    }
}
BENCHMARK(BM_FrontGrowth_Cow1DArrayGetHead)->Unit(benchmark::kMillisecond);

void BM_FrontGrowth_StdDequePushFront(benchmark::State& state) {
    for (auto _ : state) {
        std::deque<int> d;
        for (int i = 0; i < kSize; ++i) d.push_front(i);
        benchmark::DoNotOptimize(d);
    }
}
BENCHMARK(BM_FrontGrowth_StdDequePushFront)->Unit(benchmark::kMillisecond);

void BM_Walk_Cow1DArrayIter(benchmark::State& state) {
    cow_1DArray<int> a = MakeArray();
    for (auto _ : state) {
        long sum = 0;
        cow_1DArrayIter<int> it(a);
        for (int end = a.GetEndPosition(); it.GetPosition() < end; it.Next()) sum += it.ConstGet();
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK(BM_Walk_Cow1DArrayIter)->Unit(benchmark::kMicrosecond);

// The same walk with the inline step inside a block.
void BM_Walk_Cow1DArrayIterAdvance(benchmark::State& state) {
    cow_1DArray<int> a = MakeArray();
    for (auto _ : state) {
        long sum = 0;
        cow_1DArrayIter<int> it(a);
        for (int end = a.GetEndPosition(); it.GetPosition() < end; it.Advance()) sum += it.ConstGet();
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK(BM_Walk_Cow1DArrayIterAdvance)->Unit(benchmark::kMicrosecond);

// The same walk a block at a time: the iterator hands out each block's
// storage, and the elements of a block are read as a plain array.
void BM_Walk_Cow1DArrayIterByBlock(benchmark::State& state) {
    cow_1DArray<int> a = MakeArray();
    for (auto _ : state) {
        long sum = 0;
        cow_1DArrayIter<int> it(a);
        for (int end = a.GetEndPosition(); it.GetPosition() < end; it.NextBlock()) {
            int run = it.GetBlockLength() - it.GetOffset();
            if (run > end - it.GetPosition()) run = end - it.GetPosition();
            int const* data = it.GetBlockData() + it.GetOffset();
            for (int k = 0; k < run; ++k) sum += data[k];
        }
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK(BM_Walk_Cow1DArrayIterByBlock)->Unit(benchmark::kMicrosecond);

void BM_Walk_StdVectorRangeFor(benchmark::State& state) {
    std::vector<int> v = MakeVector();
    for (auto _ : state) {
        long sum = 0;
        for (int x : v) sum += x;
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK(BM_Walk_StdVectorRangeFor)->Unit(benchmark::kMicrosecond);

std::vector<int> RandomIndices() {
    std::mt19937 rng(7);
    std::vector<int> indices(kSize);
    for (int& i : indices) i = static_cast<int>(rng() % kSize);
    return indices;
}

void BM_RandomRead_Cow1DArrayConstGet(benchmark::State& state) {
    cow_1DArray<int> a = MakeArray();
    std::vector<int> indices = RandomIndices();
    for (auto _ : state) {
        long sum = 0;
        for (int i : indices) sum += a.PartialArrayConstGet(i);
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK(BM_RandomRead_Cow1DArrayConstGet)->Unit(benchmark::kMicrosecond);

void BM_RandomRead_StdDequeIndex(benchmark::State& state) {
    std::vector<int> v = MakeVector();
    std::deque<int> d(v.begin(), v.end());
    std::vector<int> indices = RandomIndices();
    for (auto _ : state) {
        long sum = 0;
        for (int i : indices) sum += d[static_cast<std::size_t>(i)];
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK(BM_RandomRead_StdDequeIndex)->Unit(benchmark::kMicrosecond);

}  // namespace

// Standard-interface walks: range-for over the array's iterators, and the
// block-wise walk that hands std::accumulate one contiguous span per block,
// each beside the same loop over a std::vector.
namespace {

void BM_RangeFor_Cow1DArray(benchmark::State& state) {
    cow_1DArray<int> a = MakeArray();
    for (auto _ : state) {
        long sum = 0;
        for (int x : a) sum += x;
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * kSize);
}
BENCHMARK(BM_RangeFor_Cow1DArray)->Unit(benchmark::kMicrosecond);

void BM_RangeFor_Vector(benchmark::State& state) {
    std::vector<int> v = MakeVector();
    for (auto _ : state) {
        long sum = 0;
        for (int x : v) sum += x;
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * kSize);
}
BENCHMARK(BM_RangeFor_Vector)->Unit(benchmark::kMicrosecond);

void BM_BlockAccumulate_Cow1DArray(benchmark::State& state) {
    cow_1DArray<int> a = MakeArray();
    for (auto _ : state) {
        long sum = 0;
        for (cow_Span<int const> run : cow_Blocks(a)) sum = std::accumulate(run.begin(), run.end(), sum);
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * kSize);
}
BENCHMARK(BM_BlockAccumulate_Cow1DArray)->Unit(benchmark::kMicrosecond);

void BM_BlockAccumulate_Vector(benchmark::State& state) {
    std::vector<int> v = MakeVector();
    for (auto _ : state) {
        long sum = std::accumulate(v.begin(), v.end(), 0L);
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * kSize);
}
BENCHMARK(BM_BlockAccumulate_Vector)->Unit(benchmark::kMicrosecond);

}  // namespace
