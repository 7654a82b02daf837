// The lists beside std::deque and std::vector.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <deque>
#include <numeric>
#include <random>
#include <vector>

#include "zorvancow/lists/cow_List.h"

namespace {

constexpr int kCount = 1000000;

// A queue: each step appends one element and takes one off the front.
void BM_Queue_CowList(benchmark::State& state) {
    for (auto _ : state) {
        cow_List<int> queue;
        for (int i = 0; i < 16; ++i) queue.Append(i);
        for (int i = 0; i < kCount; ++i) {
            queue.Append(i);
            queue.RemoveFirst();
        }
        benchmark::DoNotOptimize(queue);
    }
}
BENCHMARK(BM_Queue_CowList)->Unit(benchmark::kMillisecond);

void BM_Queue_StdDeque(benchmark::State& state) {
    for (auto _ : state) {
        std::deque<int> queue;
        for (int i = 0; i < 16; ++i) queue.push_back(i);
        for (int i = 0; i < kCount; ++i) {
            queue.push_back(i);
            queue.pop_front();
        }
        benchmark::DoNotOptimize(queue);
    }
}
BENCHMARK(BM_Queue_StdDeque)->Unit(benchmark::kMillisecond);

std::vector<int> RandomValues() {
    std::mt19937 rng(11);
    std::vector<int> values(kCount);
    for (int& v : values) v = static_cast<int>(rng());
    return values;
}

void BM_Sort_CowList(benchmark::State& state) {
    std::vector<int> values = RandomValues();
    cow_List<int> source;
    for (int v : values) source.Append(v);
    for (auto _ : state) {
        cow_List<int> list(source);
        list.Sort();
        benchmark::DoNotOptimize(list);
    }
}
BENCHMARK(BM_Sort_CowList)->Unit(benchmark::kMillisecond);

void BM_Sort_StdSortVector(benchmark::State& state) {
    std::vector<int> values = RandomValues();
    for (auto _ : state) {
        std::vector<int> v(values);
        std::sort(v.begin(), v.end());
        benchmark::DoNotOptimize(v.data());
    }
}
BENCHMARK(BM_Sort_StdSortVector)->Unit(benchmark::kMillisecond);

// Looks for a value that is absent: a walk over all elements.
void BM_Position_CowList(benchmark::State& state) {
    cow_List<int> list;
    for (int i = 0; i < kCount; ++i) list.Append(i);
    for (auto _ : state) benchmark::DoNotOptimize(list.Position(-1));
}
BENCHMARK(BM_Position_CowList)->Unit(benchmark::kMicrosecond);

void BM_Position_StdFindVector(benchmark::State& state) {
    std::vector<int> v(kCount);
    for (int i = 0; i < kCount; ++i) v[i] = i;
    for (auto _ : state) benchmark::DoNotOptimize(std::find(v.begin(), v.end(), -1));
}
BENCHMARK(BM_Position_StdFindVector)->Unit(benchmark::kMicrosecond);

void BM_CopyAndAppend_CowList(benchmark::State& state) {
    cow_List<int> list;
    for (int i = 0; i < kCount; ++i) list.Append(i);
    for (auto _ : state) {
        cow_List<int> copy(list);
        copy.Append(1);
        benchmark::DoNotOptimize(copy);
    }
}
BENCHMARK(BM_CopyAndAppend_CowList)->Unit(benchmark::kMicrosecond);

void BM_CopyAndAppend_StdVector(benchmark::State& state) {
    std::vector<int> v(kCount);
    for (int i = 0; i < kCount; ++i) v[i] = i;
    for (auto _ : state) {
        std::vector<int> copy(v);
        copy.push_back(1);
        benchmark::DoNotOptimize(copy.data());
    }
}
BENCHMARK(BM_CopyAndAppend_StdVector)->Unit(benchmark::kMicrosecond);

}  // namespace

// Standard-interface walk: range-for over a list of 1,000,000 ints grown by
// Append, beside the same loop over a std::vector.
namespace {

void BM_RangeFor_CowList(benchmark::State& state) {
    cow_List<int> list;
    for (int i = 0; i < kCount; ++i) list.Append(i);
    for (auto _ : state) {
        long sum = 0;
        for (int x : list) sum += x;
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * kCount);
}
BENCHMARK(BM_RangeFor_CowList)->Unit(benchmark::kMicrosecond);

void BM_RangeFor_ListVector(benchmark::State& state) {
    std::vector<int> v(kCount);
    std::iota(v.begin(), v.end(), 0);
    for (auto _ : state) {
        long sum = 0;
        for (int x : v) sum += x;
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * kCount);
}
BENCHMARK(BM_RangeFor_ListVector)->Unit(benchmark::kMicrosecond);

void BM_BlockAccumulate_CowList(benchmark::State& state) {
    cow_List<int> list;
    for (int i = 0; i < kCount; ++i) list.Append(i);
    for (auto _ : state) {
        long sum = 0;
        for (cow_Span<int const> run : cow_Blocks(list)) sum = std::accumulate(run.begin(), run.end(), sum);
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * kCount);
}
BENCHMARK(BM_BlockAccumulate_CowList)->Unit(benchmark::kMicrosecond);

}  // namespace
