// omi_IntTable<cow_String> beside std::unordered_map<int, cow_String> and
// std::map<int, cow_String>: inserting a million keys (a dense run, and keys
// spread evenly over the whole 32-bit range), looking them up, and walking
// them in ascending order.
//
// With the default arguments (12, 10, 24) every spread key would sit alone
// in an element block of 1024 values (16 KiB each, 16 GiB in all), so the
// spread cases build their table with (20, 7, 1): a table block per 4096
// keys, element blocks of 32 values, pointer arrays only as long as needed.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <random>
#include <unordered_map>
#include <vector>

#include "zorvancow/tables/omi_IntTable.h"

namespace {

constexpr int kKeys = 1000000;

enum Spread { kDense = 0, kSpread = 1 };

enum Order { kAscending = 0, kInsertOrder = 1, kLookupOrder = 2 };

// The key set: 0 .. kKeys-1, or kKeys keys 4294 apart over the whole signed
// range. Inserts take them in one shuffled order and lookups in another, so
// that no container is looked up in the order its nodes were allocated.
std::vector<int> const& Keys(Spread spread, Order order) {
    static std::vector<int> sets[2][3];
    std::vector<int>& keys = sets[spread][order];
    if (keys.empty()) {
        keys.reserve(kKeys);
        for (int i = 0; i < kKeys; ++i)
            keys.push_back(spread == kDense ? i : static_cast<int>(0x80000000u + 4294u * static_cast<unsigned int>(i)));
        if (order != kAscending) std::shuffle(keys.begin(), keys.end(), std::mt19937(order == kInsertOrder ? 11 : 12));
    }
    return keys;
}

omi_IntTable<cow_String>* NewTable(Spread spread) {
    return spread == kDense ? new omi_IntTable<cow_String> : new omi_IntTable<cow_String>(20, 7, 1);
}

cow_String const& Value() {
    static cow_String const value("a value shared by every entry");
    return value;
}

// ---- insert ----

void BM_Insert_IntTable(benchmark::State& state) {
    auto const spread = static_cast<Spread>(state.range(0));
    std::vector<int> const& keys = Keys(spread, kInsertOrder);
    for (auto _ : state) {
        omi_IntTable<cow_String>* table = NewTable(spread);
        for (int key : keys) table->Insert(key, Value());
        benchmark::DoNotOptimize(table->GetCount());
        state.PauseTiming();
        delete table;
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * kKeys);
}

template <class Map>
void BM_Insert_Std(benchmark::State& state) {
    std::vector<int> const& keys = Keys(static_cast<Spread>(state.range(0)), kInsertOrder);
    for (auto _ : state) {
        auto* map = new Map;
        for (int key : keys) map->emplace(key, Value());
        benchmark::DoNotOptimize(map->size());
        state.PauseTiming();
        delete map;
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * kKeys);
}

// ---- look up ----

void BM_Find_IntTable(benchmark::State& state) {
    auto const spread = static_cast<Spread>(state.range(0));
    std::vector<int> const& keys = Keys(spread, kLookupOrder);
    omi_IntTable<cow_String>* table = NewTable(spread);
    for (int key : Keys(spread, kInsertOrder)) table->Insert(key, Value());
    for (auto _ : state) {
        std::int64_t total = 0;
        for (int key : keys) total += table->ConstGet(key)->GetLength();
        benchmark::DoNotOptimize(total);
    }
    delete table;
    state.SetItemsProcessed(state.iterations() * kKeys);
}

template <class Map>
void BM_Find_Std(benchmark::State& state) {
    auto const spread = static_cast<Spread>(state.range(0));
    std::vector<int> const& keys = Keys(spread, kLookupOrder);
    Map map;
    for (int key : Keys(spread, kInsertOrder)) map.emplace(key, Value());
    for (auto _ : state) {
        std::int64_t total = 0;
        for (int key : keys) total += map.find(key)->second.GetLength();
        benchmark::DoNotOptimize(total);
    }
    state.SetItemsProcessed(state.iterations() * kKeys);
}

// ---- ascending walk ----
// Both containers are filled in ascending key order, which lays the map's
// nodes out in walking order: its best case.

void BM_Walk_IntTable(benchmark::State& state) {
    auto const spread = static_cast<Spread>(state.range(0));
    omi_IntTable<cow_String>* table = NewTable(spread);
    for (int key : Keys(spread, kAscending)) table->Insert(key, Value());
    for (auto _ : state) {
        std::int64_t total = 0;
        omi_IntTableIterator<cow_String> it(*table);
        for (it.First(); !it.IsDone(); it.Next()) total += it.CurrentKey() + it.CurrentValue().GetLength();
        benchmark::DoNotOptimize(total);
    }
    delete table;
    state.SetItemsProcessed(state.iterations() * kKeys);
}

void BM_Walk_StdMap(benchmark::State& state) {
    std::map<int, cow_String> map;
    for (int key : Keys(static_cast<Spread>(state.range(0)), kAscending)) map.emplace(key, Value());
    for (auto _ : state) {
        std::int64_t total = 0;
        for (auto const& [key, value] : map) total += key + value.GetLength();
        benchmark::DoNotOptimize(total);
    }
    state.SetItemsProcessed(state.iterations() * kKeys);
}

using Unordered = std::unordered_map<int, cow_String>;
using Ordered = std::map<int, cow_String>;

BENCHMARK(BM_Insert_IntTable)->Arg(kDense)->Arg(kSpread)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(BM_Insert_Std, Unordered)->Arg(kDense)->Arg(kSpread)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(BM_Insert_Std, Ordered)->Arg(kDense)->Arg(kSpread)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Find_IntTable)->Arg(kDense)->Arg(kSpread)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(BM_Find_Std, Unordered)->Arg(kDense)->Arg(kSpread)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(BM_Find_Std, Ordered)->Arg(kDense)->Arg(kSpread)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Walk_IntTable)->Arg(kDense)->Arg(kSpread)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Walk_StdMap)->Arg(kDense)->Arg(kSpread)->Unit(benchmark::kMillisecond);

}  // namespace
