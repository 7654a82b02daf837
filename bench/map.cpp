// Digital maps against std::map and std::unordered_map (and Qt 5's QMap and
// QHash when the bench is built with Qt), each case beside its peers: bulk
// insert, membership, copy plus one write, and a sorted walk.

#include <benchmark/benchmark.h>

#include <map>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

#ifdef ZORVANCOW_BENCH_QT
#include <QHash>
#include <QMap>
#include <QString>
#endif

#include "BenchTexts.h"
#include "zorvancow/map/cow_Map.h"

namespace {

constexpr int kKeys = 1000000;

std::vector<int> const& RandomInts() {
    static std::vector<int> const keys = [] {
        std::mt19937 random(42);
        std::vector<int> made(kKeys);
        for (int& key : made) key = static_cast<int>(random());
        return made;
    }();
    return keys;
}

// Lookups: the inserted keys in another order.
std::vector<int> const& ProbeInts() {
    static std::vector<int> const keys = [] {
        std::vector<int> made = RandomInts();
        std::shuffle(made.begin(), made.end(), std::mt19937(7));
        return made;
    }();
    return keys;
}

cow_Map<int, int> const& CowIntMap() {
    static cow_Map<int, int> const map = [] {
        cow_Map<int, int> made;
        for (int key : RandomInts()) made.Insert(key, key);
        return made;
    }();
    return map;
}

std::map<int, int> const& StdIntMap() {
    static std::map<int, int> const map = [] {
        std::map<int, int> made;
        for (int key : RandomInts()) made[key] = key;
        return made;
    }();
    return map;
}

std::unordered_map<int, int> const& HashIntMap() {
    static std::unordered_map<int, int> const map = [] {
        std::unordered_map<int, int> made;
        for (int key : RandomInts()) made[key] = key;
        return made;
    }();
    return map;
}

// --- insert 1,000,000 random int keys

void BM_Insert_CowMap(benchmark::State& state) {
    for (auto _ : state) {
        cow_Map<int, int> map;
        for (int key : RandomInts()) map.Insert(key, key);
        benchmark::DoNotOptimize(map.GetCount());
    }
}
BENCHMARK(BM_Insert_CowMap)->Unit(benchmark::kMillisecond);

void BM_Insert_StdMap(benchmark::State& state) {
    for (auto _ : state) {
        std::map<int, int> map;
        for (int key : RandomInts()) map[key] = key;
        benchmark::DoNotOptimize(map.size());
    }
}
BENCHMARK(BM_Insert_StdMap)->Unit(benchmark::kMillisecond);

void BM_Insert_StdUnorderedMap(benchmark::State& state) {
    for (auto _ : state) {
        std::unordered_map<int, int> map;
        for (int key : RandomInts()) map[key] = key;
        benchmark::DoNotOptimize(map.size());
    }
}
BENCHMARK(BM_Insert_StdUnorderedMap)->Unit(benchmark::kMillisecond);

// --- membership of 1,000,000 random keys

void BM_IsMember_CowMap(benchmark::State& state) {
    auto const& map = CowIntMap();
    for (auto _ : state) {
        int found = 0;
        for (int key : ProbeInts()) found += map.IsMember(key) ? 1 : 0;
        benchmark::DoNotOptimize(found);
    }
}
BENCHMARK(BM_IsMember_CowMap)->Unit(benchmark::kMillisecond);

void BM_IsMember_StdMapFind(benchmark::State& state) {
    auto const& map = StdIntMap();
    for (auto _ : state) {
        int found = 0;
        for (int key : ProbeInts()) found += map.find(key) != map.end() ? 1 : 0;
        benchmark::DoNotOptimize(found);
    }
}
BENCHMARK(BM_IsMember_StdMapFind)->Unit(benchmark::kMillisecond);

void BM_IsMember_StdUnorderedMapFind(benchmark::State& state) {
    auto const& map = HashIntMap();
    for (auto _ : state) {
        int found = 0;
        for (int key : ProbeInts()) found += map.find(key) != map.end() ? 1 : 0;
        benchmark::DoNotOptimize(found);
    }
}
BENCHMARK(BM_IsMember_StdUnorderedMapFind)->Unit(benchmark::kMillisecond);

// --- copy a 1,000,000-key map and insert one key into the copy

void BM_CopyInsert_CowMap(benchmark::State& state) {
    auto const& map = CowIntMap();
    for (auto _ : state) {
        cow_Map<int, int> copy = map;
        copy.Insert(12345, 1);
        benchmark::DoNotOptimize(copy.GetCount());
    }
}
BENCHMARK(BM_CopyInsert_CowMap)->Unit(benchmark::kMicrosecond);

void BM_CopyInsert_StdMap(benchmark::State& state) {
    auto const& map = StdIntMap();
    for (auto _ : state) {
        std::map<int, int> copy = map;
        copy[12345] = 1;
        benchmark::DoNotOptimize(copy.size());
    }
}
BENCHMARK(BM_CopyInsert_StdMap)->Unit(benchmark::kMicrosecond);

void BM_CopyInsert_StdUnorderedMap(benchmark::State& state) {
    auto const& map = HashIntMap();
    for (auto _ : state) {
        std::unordered_map<int, int> copy = map;
        copy[12345] = 1;
        benchmark::DoNotOptimize(copy.size());
    }
}
BENCHMARK(BM_CopyInsert_StdUnorderedMap)->Unit(benchmark::kMicrosecond);

// --- walk 1,000,000 keys in key order (for cow_Map the sort is included)

void BM_SortedWalk_CowMap(benchmark::State& state) {
    auto const& map = CowIntMap();
    for (auto _ : state) {
        long sum = 0;
        cow_ConstMapSortedIt<int, int> it(map);
        for (it.First(); !it.IsDone(); it.Next()) sum += it.CurrentValue();
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK(BM_SortedWalk_CowMap)->Unit(benchmark::kMillisecond);

void BM_NodeWalk_CowMap(benchmark::State& state) {
    auto const& map = CowIntMap();
    for (auto _ : state) {
        long sum = 0;
        cow_ConstMapIterator<int, int> it(map);
        for (it.First(); !it.IsDone(); it.Next()) sum += it.CurrentValue();
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK(BM_NodeWalk_CowMap)->Unit(benchmark::kMillisecond);

void BM_SortedWalk_StdMap(benchmark::State& state) {
    auto const& map = StdIntMap();
    for (auto _ : state) {
        long sum = 0;
        for (auto const& entry : map) sum += entry.second;
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK(BM_SortedWalk_StdMap)->Unit(benchmark::kMillisecond);

// --- string keys: 200,000 random 16-letter keys

void BM_StringInsert_CowMap(benchmark::State& state) {
    auto const& keys = RandomCowTexts();
    for (auto _ : state) {
        cow_Map<cow_String, int> map;
        for (cow_String const& key : keys) map.Insert(key, 1);
        benchmark::DoNotOptimize(map.GetCount());
    }
}
BENCHMARK(BM_StringInsert_CowMap)->Unit(benchmark::kMillisecond);

void BM_StringInsert_StdMap(benchmark::State& state) {
    for (auto _ : state) {
        std::map<std::string, int> map;
        for (std::string const& key : RandomTexts()) map[key] = 1;
        benchmark::DoNotOptimize(map.size());
    }
}
BENCHMARK(BM_StringInsert_StdMap)->Unit(benchmark::kMillisecond);

void BM_StringInsert_StdUnorderedMap(benchmark::State& state) {
    for (auto _ : state) {
        std::unordered_map<std::string, int> map;
        for (std::string const& key : RandomTexts()) map[key] = 1;
        benchmark::DoNotOptimize(map.size());
    }
}
BENCHMARK(BM_StringInsert_StdUnorderedMap)->Unit(benchmark::kMillisecond);

void BM_StringIsMember_CowMap(benchmark::State& state) {
    auto const& keys = RandomCowTexts();
    cow_Map<cow_String, int> map;
    for (cow_String const& key : keys) map.Insert(key, 1);
    for (auto _ : state) {
        int found = 0;
        for (cow_String const& key : keys) found += map.IsMember(key) ? 1 : 0;
        benchmark::DoNotOptimize(found);
    }
}
BENCHMARK(BM_StringIsMember_CowMap)->Unit(benchmark::kMillisecond);

void BM_StringIsMember_StdMapFind(benchmark::State& state) {
    std::map<std::string, int> map;
    for (std::string const& key : RandomTexts()) map[key] = 1;
    for (auto _ : state) {
        int found = 0;
        for (std::string const& key : RandomTexts()) found += map.find(key) != map.end() ? 1 : 0;
        benchmark::DoNotOptimize(found);
    }
}
BENCHMARK(BM_StringIsMember_StdMapFind)->Unit(benchmark::kMillisecond);

void BM_StringIsMember_StdUnorderedMapFind(benchmark::State& state) {
    std::unordered_map<std::string, int> map;
    for (std::string const& key : RandomTexts()) map[key] = 1;
    for (auto _ : state) {
        int found = 0;
        for (std::string const& key : RandomTexts()) found += map.find(key) != map.end() ? 1 : 0;
        benchmark::DoNotOptimize(found);
    }
}
BENCHMARK(BM_StringIsMember_StdUnorderedMapFind)->Unit(benchmark::kMillisecond);

#ifdef ZORVANCOW_BENCH_QT
// Qt's maps: a copy is one count increment, and the first insertion into a
// copy detaches it, copying every entry.

template <class Q>
Q const& QIntMap() {
    static Q const map = [] {
        Q made;
        for (int key : RandomInts()) made.insert(key, key);
        return made;
    }();
    return map;
}

template <class Q>
void QInsert(benchmark::State& state) {
    for (auto _ : state) {
        Q map;
        for (int key : RandomInts()) map.insert(key, key);
        benchmark::DoNotOptimize(map.size());
    }
}
BENCHMARK_TEMPLATE(QInsert, QMap<int, int>)->Name("BM_Insert_QMap")->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(QInsert, QHash<int, int>)->Name("BM_Insert_QHash")->Unit(benchmark::kMillisecond);

template <class Q>
void QIsMember(benchmark::State& state) {
    Q const& map = QIntMap<Q>();
    for (auto _ : state) {
        int found = 0;
        for (int key : ProbeInts()) found += map.contains(key) ? 1 : 0;
        benchmark::DoNotOptimize(found);
    }
}
BENCHMARK_TEMPLATE(QIsMember, QMap<int, int>)->Name("BM_IsMember_QMapContains")->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(QIsMember, QHash<int, int>)->Name("BM_IsMember_QHashContains")->Unit(benchmark::kMillisecond);

template <class Q>
void QCopyInsert(benchmark::State& state) {
    Q const& map = QIntMap<Q>();
    for (auto _ : state) {
        Q copy = map;
        copy.insert(12345, 1);
        benchmark::DoNotOptimize(copy.size());
    }
}
BENCHMARK_TEMPLATE(QCopyInsert, QMap<int, int>)->Name("BM_CopyInsert_QMap")->Unit(benchmark::kMicrosecond);
BENCHMARK_TEMPLATE(QCopyInsert, QHash<int, int>)->Name("BM_CopyInsert_QHash")->Unit(benchmark::kMicrosecond);

BENCHMARK(QMapStringInsert)->Name("BM_StringInsert_QMap")->Unit(benchmark::kMillisecond);
BENCHMARK(QMapStringLookup)->Name("BM_StringIsMember_QMapContains")->Unit(benchmark::kMillisecond);
#endif

}  // namespace
