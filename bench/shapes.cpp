// Fixed-shape arrays against std::vector: a copy is a count increment, and
// the first write after a copy is one full copy of the elements.

#include <benchmark/benchmark.h>

#include <vector>

#include "zorvancow/shapes/cow_2DArray.h"
#include "zorvancow/shapes/cow_FixedArray.h"

namespace {

constexpr int elementCount = 1000000;

void BM_FixedArrayCopy(benchmark::State& state) {
    cow_FixedArray<double> source(elementCount, 1.5);
    for (auto _ : state) {
        cow_FixedArray<double> copy = source;
        benchmark::DoNotOptimize(copy);
    }
}
BENCHMARK(BM_FixedArrayCopy);

void BM_VectorCopy(benchmark::State& state) {
    std::vector<double> source(elementCount, 1.5);
    for (auto _ : state) {
        std::vector<double> copy = source;
        benchmark::DoNotOptimize(copy.data());
    }
}
BENCHMARK(BM_VectorCopy);

// Copy, then write one element: the write copies all million elements.
void BM_FixedArrayFirstWrite(benchmark::State& state) {
    cow_FixedArray<double> source(elementCount, 1.5);
    for (auto _ : state) {
        cow_FixedArray<double> copy = source;
        copy.Get(0) = 2.5;
        benchmark::DoNotOptimize(copy.GetRep()->data);
    }
}
BENCHMARK(BM_FixedArrayFirstWrite);

// The same for a 1000 x 1000 matrix.
void BM_2DArrayFirstWrite(benchmark::State& state) {
    cow_2DArray<double> source(1000, 1000, 1.5);
    for (auto _ : state) {
        cow_2DArray<double> copy = source;
        copy.Get(0, 0) = 2.5;
        benchmark::DoNotOptimize(copy.GetRep()->data);
    }
}
BENCHMARK(BM_2DArrayFirstWrite);

// Reading every element, through the handle and straight from a vector.
void BM_FixedArrayRead(benchmark::State& state) {
    cow_FixedArray<double> source(elementCount, 1.5);
    for (auto _ : state) {
        double sum = 0;
        for (int i = 0; i < source.GetSize(); ++i) sum += source.ConstGet(i);
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK(BM_FixedArrayRead);

void BM_VectorRead(benchmark::State& state) {
    std::vector<double> source(elementCount, 1.5);
    for (auto _ : state) {
        double sum = 0;
        for (double value : source) sum += value;
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK(BM_VectorRead);

}  // namespace
