// cow_Btree<int, int> beside std::map<int, int> (and Qt 5's QMap when the
// bench is built with Qt): insertion, lookup, copy plus one write, and a full
// in-order walk; then 16-letter string keys. Keys are random in [0, 2^30), inside
// the span where the integer key order is total.

#include <benchmark/benchmark.h>

#include <map>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#ifdef ZORVANCOW_BENCH_QT
#include <QMap>
#include <QString>
#endif

#include "BenchTexts.h"
#include "zorvancow/tree/cow_Btree.h"

namespace {

constexpr int kKeys = 1000000;

std::vector<int> const& RandomKeys() {
    static std::vector<int> const keys = [] {
        std::mt19937 random(42);
        std::vector<int> made(kKeys);
        for (int& key : made) key = static_cast<int>(random() & 0x3fffffff);
        return made;
    }();
    return keys;
}

// Lookups hit and miss: half the probes are inserted keys, half fresh ones.
// The lookup cases run for several passes: the first pass over a million
// nodes is cold and says more about the cache than about the container.
std::vector<int> const& Probes() {
    static std::vector<int> const probes = [] {
        std::mt19937 random(7);
        std::vector<int> made(kKeys);
        std::vector<int> const& keys = RandomKeys();
        for (int i = 0; i < kKeys; ++i)
            made[i] = i % 2 == 0 ? keys[random() % kKeys] : static_cast<int>(random() & 0x3fffffff);
        return made;
    }();
    return probes;
}

cow_Btree<int, int> const& FilledTree() {
    static cow_Btree<int, int> const tree = [] {
        cow_Btree<int, int> made;
        for (int key : RandomKeys()) made.InsertUnlessMember(key, key);
        return made;
    }();
    return tree;
}

std::map<int, int> const& FilledMap() {
    static std::map<int, int> const map = [] {
        std::map<int, int> made;
        for (int key : RandomKeys()) made.emplace(key, key);
        return made;
    }();
    return map;
}

void BM_Lookup_Btree(benchmark::State& state) {
    cow_Btree<int, int> const& tree = FilledTree();
    std::vector<int> const& probes = Probes();
    for (auto _ : state) {
        long sum = 0;
        for (int key : probes) sum += tree.ConstGet(key);
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * kKeys);
}
BENCHMARK(BM_Lookup_Btree)->Unit(benchmark::kMillisecond)->MinTime(1.0);

void BM_Lookup_StdMap(benchmark::State& state) {
    std::map<int, int> const& map = FilledMap();
    std::vector<int> const& probes = Probes();
    for (auto _ : state) {
        long sum = 0;
        for (int key : probes) {
            auto found = map.find(key);
            if (found != map.end()) sum += found->second;
        }
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * kKeys);
}
BENCHMARK(BM_Lookup_StdMap)->Unit(benchmark::kMillisecond)->MinTime(1.0);

// A copy of a 1,000,000-key container, one insertion into the copy, and the
// copy's release.
void BM_CopyAndInsert_Btree(benchmark::State& state) {
    cow_Btree<int, int> const& tree = FilledTree();
    int key = -1;
    for (auto _ : state) {
        cow_Btree<int, int> copy = tree;
        copy.InsertUnlessMember(key--, 0);
        benchmark::DoNotOptimize(copy.GetCount());
    }
}
BENCHMARK(BM_CopyAndInsert_Btree)->Unit(benchmark::kMicrosecond);

void BM_CopyAndInsert_StdMap(benchmark::State& state) {
    std::map<int, int> const& map = FilledMap();
    int key = -1;
    for (auto _ : state) {
        std::map<int, int> copy = map;
        copy.emplace(key--, 0);
        benchmark::DoNotOptimize(copy.size());
    }
}
BENCHMARK(BM_CopyAndInsert_StdMap)->Unit(benchmark::kMicrosecond);

void BM_Walk_Btree(benchmark::State& state) {
    cow_Btree<int, int> const& tree = FilledTree();
    for (auto _ : state) {
        long sum = 0;
        cow_BtreeIterator<int, int> it(tree);
        for (it.First(); !it.IsDone(); it.Next()) sum += it.CurrentValue();
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * tree.GetCount());
}
BENCHMARK(BM_Walk_Btree)->Unit(benchmark::kMillisecond);

// The same walk by recursion over the node links, with no heap frames: the
// difference to BM_Walk_Btree is what the iterator's frames cost.
long SumValues(cow_Btree<int, int>::Handle const* link) {
    if (link == nullptr) return 0;
    cow_BtreeNode<int, int> const* node = link->ConstGet();
    return SumValues(node->GetLeft()) + node->GetValue() + SumValues(node->GetRight());
}

void BM_Walk_BtreeNoFrames(benchmark::State& state) {
    cow_Btree<int, int> const& tree = FilledTree();
    for (auto _ : state) benchmark::DoNotOptimize(SumValues(tree.GetRoot()));
    state.SetItemsProcessed(state.iterations() * tree.GetCount());
}
BENCHMARK(BM_Walk_BtreeNoFrames)->Unit(benchmark::kMillisecond);

void BM_Walk_StdMap(benchmark::State& state) {
    std::map<int, int> const& map = FilledMap();
    for (auto _ : state) {
        long sum = 0;
        for (auto const& entry : map) sum += entry.second;
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<long>(map.size()));
}
BENCHMARK(BM_Walk_StdMap)->Unit(benchmark::kMillisecond);

// Insertion runs last: building and freeing two million-element containers
// leaves the heap's free lists scattered. The lookup, copy and walk cases use
// containers built earlier, in a heap that has not been churned; in a churned
// heap a tree's handle and node come from different free lists, and each
// level of a lookup then costs two cache misses instead of one.
void BM_Insert_Btree(benchmark::State& state) {
    std::vector<int> const& keys = RandomKeys();
    for (auto _ : state) {
        cow_Btree<int, int> tree;
        for (int key : keys) tree.InsertUnlessMember(key, key);
        benchmark::DoNotOptimize(tree.GetCount());
    }
    state.SetItemsProcessed(state.iterations() * kKeys);
}
BENCHMARK(BM_Insert_Btree)->Unit(benchmark::kMillisecond);

void BM_Insert_StdMap(benchmark::State& state) {
    std::vector<int> const& keys = RandomKeys();
    for (auto _ : state) {
        std::map<int, int> map;
        for (int key : keys) map.emplace(key, key);
        benchmark::DoNotOptimize(map.size());
    }
    state.SetItemsProcessed(state.iterations() * kKeys);
}
BENCHMARK(BM_Insert_StdMap)->Unit(benchmark::kMillisecond);

// --- string keys: 200,000 random 16-letter keys, inserted, then looked up
// in the order of insertion

void BM_StringInsert_Btree(benchmark::State& state) {
    auto const& keys = RandomCowTexts();
    for (auto _ : state) {
        cow_Btree<cow_String, int> tree;
        for (cow_String const& key : keys) tree.InsertUnlessMember(key, 1);
        benchmark::DoNotOptimize(tree.GetCount());
    }
}
BENCHMARK(BM_StringInsert_Btree)->Unit(benchmark::kMillisecond);

void BM_StringInsert_StdMap(benchmark::State& state) {
    for (auto _ : state) {
        std::map<std::string, int> map;
        for (std::string const& key : RandomTexts()) map.emplace(key, 1);
        benchmark::DoNotOptimize(map.size());
    }
}
BENCHMARK(BM_StringInsert_StdMap)->Unit(benchmark::kMillisecond);

void BM_StringLookup_Btree(benchmark::State& state) {
    auto const& keys = RandomCowTexts();
    cow_Btree<cow_String, int> tree;
    for (cow_String const& key : keys) tree.InsertUnlessMember(key, 1);
    for (auto _ : state) {
        int found = 0;
        for (cow_String const& key : keys) found += tree.IsMember(key) ? 1 : 0;
        benchmark::DoNotOptimize(found);
    }
}
BENCHMARK(BM_StringLookup_Btree)->Unit(benchmark::kMillisecond);

void BM_StringLookup_StdMap(benchmark::State& state) {
    std::map<std::string, int> map;
    for (std::string const& key : RandomTexts()) map.emplace(key, 1);
    for (auto _ : state) {
        int found = 0;
        for (std::string const& key : RandomTexts()) found += map.find(key) != map.end() ? 1 : 0;
        benchmark::DoNotOptimize(found);
    }
}
BENCHMARK(BM_StringLookup_StdMap)->Unit(benchmark::kMillisecond);

#ifdef ZORVANCOW_BENCH_QT
// QMap: a copy is one count increment; the first insertion into a copy
// detaches it, copying every node.
QMap<int, int> const& FilledQMap() {
    static QMap<int, int> const map = [] {
        QMap<int, int> made;
        for (int key : RandomKeys()) made.insert(key, key);
        return made;
    }();
    return map;
}

void BM_Insert_QMap(benchmark::State& state) {
    std::vector<int> const& keys = RandomKeys();
    for (auto _ : state) {
        QMap<int, int> map;
        for (int key : keys) map.insert(key, key);
        benchmark::DoNotOptimize(map.size());
    }
    state.SetItemsProcessed(state.iterations() * kKeys);
}
BENCHMARK(BM_Insert_QMap)->Unit(benchmark::kMillisecond);

void BM_Lookup_QMap(benchmark::State& state) {
    QMap<int, int> const& map = FilledQMap();
    std::vector<int> const& probes = Probes();
    for (auto _ : state) {
        long sum = 0;
        for (int key : probes) {
            auto found = map.constFind(key);
            if (found != map.constEnd()) sum += found.value();
        }
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * kKeys);
}
BENCHMARK(BM_Lookup_QMap)->Unit(benchmark::kMillisecond)->MinTime(1.0);

void BM_CopyAndInsert_QMap(benchmark::State& state) {
    QMap<int, int> const& map = FilledQMap();
    int key = -1;
    for (auto _ : state) {
        QMap<int, int> copy = map;
        copy.insert(key--, 0);
        benchmark::DoNotOptimize(copy.size());
    }
}
BENCHMARK(BM_CopyAndInsert_QMap)->Unit(benchmark::kMicrosecond);

BENCHMARK(QMapStringInsert)->Name("BM_StringInsert_QMap")->Unit(benchmark::kMillisecond);
BENCHMARK(QMapStringLookup)->Name("BM_StringLookup_QMap")->Unit(benchmark::kMillisecond);
#endif

}  // namespace

// Standard-interface walk: std::accumulate over the tree's iterators (key
// order, one entry per step) beside the same over std::map.
namespace {

void BM_Accumulate_Btree(benchmark::State& state) {
    cow_Btree<int, int> const& tree = FilledTree();
    for (auto _ : state) {
        long sum = std::accumulate(tree.begin(), tree.end(), 0L,
                                   [](long total, cow_Entry<int, int> entry) { return total + entry.second; });
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * tree.GetCount());
}
BENCHMARK(BM_Accumulate_Btree)->Unit(benchmark::kMillisecond);

void BM_Accumulate_StdMap(benchmark::State& state) {
    std::map<int, int> const& map = FilledMap();
    for (auto _ : state) {
        long sum = std::accumulate(map.begin(), map.end(), 0L,
                                   [](long total, std::pair<int const, int> const& entry) { return total + entry.second; });
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<long>(map.size()));
}
BENCHMARK(BM_Accumulate_StdMap)->Unit(benchmark::kMillisecond);

}  // namespace
