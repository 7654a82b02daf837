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
#include <type_traits>
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

using Table = omi_IntTable<cow_String>;

Table* NewTable(Spread spread) {
    return spread == kDense ? new omi_IntTable<cow_String> : new omi_IntTable<cow_String>(20, 7, 1);
}

cow_String const& Value() {
    static cow_String const value("a value shared by every entry");
    return value;
}

// The containers under test, made empty on the heap: the table with the
// arguments of its spread, the standard maps as they come.
template <class Map>
Map* New(Spread spread) {
    if constexpr (std::is_same<Map, Table>::value) {
        return NewTable(spread);
    } else {
        (void)spread;
        return new Map;
    }
}
void Put(Table& table, int key) { table.Insert(key, Value()); }
template <class Map> void Put(Map& map, int key) { map.emplace(key, Value()); }
std::int64_t LengthAt(Table const& table, int key) { return table.ConstGet(key)->GetLength(); }
template <class Map> std::int64_t LengthAt(Map const& map, int key) { return map.find(key)->second.GetLength(); }

// ---- insert ----

template <class Map>
void BM_Insert(benchmark::State& state) {
    auto const spread = static_cast<Spread>(state.range(0));
    std::vector<int> const& keys = Keys(spread, kInsertOrder);
    for (auto _ : state) {
        Map* map = New<Map>(spread);
        for (int key : keys) Put(*map, key);
        benchmark::DoNotOptimize(map);
        state.PauseTiming();
        delete map;
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * kKeys);
}

// ---- look up ----

template <class Map>
void BM_Find(benchmark::State& state) {
    auto const spread = static_cast<Spread>(state.range(0));
    std::vector<int> const& keys = Keys(spread, kLookupOrder);
    Map* map = New<Map>(spread);
    for (int key : Keys(spread, kInsertOrder)) Put(*map, key);
    for (auto _ : state) {
        std::int64_t total = 0;
        for (int key : keys) total += LengthAt(*map, key);
        benchmark::DoNotOptimize(total);
    }
    delete map;
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

// Each case for the dense keys (/0) and the spread ones (/1).
void Register(benchmark::internal::Benchmark* row) { row->Arg(kDense)->Arg(kSpread)->Unit(benchmark::kMillisecond); }
int const rows = [] {
    Register(benchmark::RegisterBenchmark("BM_Insert_IntTable", BM_Insert<Table>));
    Register(benchmark::RegisterBenchmark("BM_Insert_Std<Unordered>", BM_Insert<Unordered>));
    Register(benchmark::RegisterBenchmark("BM_Insert_Std<Ordered>", BM_Insert<Ordered>));
    Register(benchmark::RegisterBenchmark("BM_Find_IntTable", BM_Find<Table>));
    Register(benchmark::RegisterBenchmark("BM_Find_Std<Unordered>", BM_Find<Unordered>));
    Register(benchmark::RegisterBenchmark("BM_Find_Std<Ordered>", BM_Find<Ordered>));
    Register(benchmark::RegisterBenchmark("BM_Walk_IntTable", BM_Walk_IntTable));
    Register(benchmark::RegisterBenchmark("BM_Walk_StdMap", BM_Walk_StdMap));
    return 0;
}();

}  // namespace
