// What two versions differ by, and what many versions cost: cow_Diff beside
// a compare that reads every element, and cow_Footprint of 1,000 versions.
// The two versions of each diff share all but the pieces their changes
// copied, as versions of one value do.

#include <utility>

#include "BenchPeers.h"
#include "zorvancow/history/cow_Diff.h"
#include "zorvancow/history/cow_Footprint.h"

namespace {

constexpr int kElements = 1000000;
constexpr int kChanges = 10;
auto const kUs = benchmark::kMicrosecond;
auto const kMs = benchmark::kMillisecond;

// A list of 1M ints appended one by one (blocks of 16, or balanced ones
// near the square root of the size), and a copy with 10 elements written.
template <bool Balanced>
std::pair<cow_List<int>, cow_List<int>> const& ListVersions() {
    return Once([] {
        cow_List<int> list = Balanced ? cow_List<int>(cow_BlockLength::Balanced()) : cow_List<int>();
        for (int i = 0; i < kElements; ++i) list.Append(i);
        cow_List<int> changed = list;
        std::mt19937 random(11);
        for (int k = 0; k < kChanges; ++k) changed.Get(static_cast<int>(random() % kElements)) = -1;
        return std::make_pair(list, changed);
    });
}

// Trees and maps of 1M random keys, and a copy 10 inserts and removals apart.
template <class Keyed>
std::pair<Keyed, Keyed> const& KeyedVersions() {
    return Once([] {
        std::vector<int> const keys = MakeRandomInts(42, kElements, 0x3fffffff);
        Keyed keyed;
        for (int key : keys) peer::Insert(keyed, key, key);
        Keyed changed = keyed;
        std::mt19937 random(12);
        for (int k = 0; k < kChanges / 2; ++k) {
            changed.Remove(keys[random() % keys.size()]);
            peer::Insert(changed, static_cast<int>(random() & 0x3fffffff), 1);
        }
        return std::make_pair(keyed, changed);
    });
}

template <bool Balanced>
void BM_Diff_CowList(benchmark::State& state) {
    auto const& [a, b] = ListVersions<Balanced>();
    for (auto _ : state) {
        int found = 0;
        cow_Diff(a, b, [&found](int) { ++found; });
        benchmark::DoNotOptimize(found);
    }
}
BENCHMARK(BM_Diff_CowList<false>)->Unit(kUs);
BENCHMARK(BM_Diff_CowList<true>)->Unit(kUs);

// The same answer from the lists' iterators, element by element.
template <bool Balanced>
void BM_CompareElementwise_CowList(benchmark::State& state) {
    auto const& [a, b] = ListVersions<Balanced>();
    for (auto _ : state) {
        int found = 0;
        auto x = a.begin();
        auto y = b.begin();
        for (int i = 0; i < a.GetCount(); ++i, ++x, ++y) found += *x != *y;
        benchmark::DoNotOptimize(found);
    }
}
BENCHMARK(BM_CompareElementwise_CowList<false>)->Unit(kUs);
BENCHMARK(BM_CompareElementwise_CowList<true>)->Unit(kUs);

template <class Keyed>
void BM_Diff(benchmark::State& state) {
    auto const& [a, b] = KeyedVersions<Keyed>();
    for (auto _ : state) {
        int found = 0;
        auto count = [&found](auto const&...) { ++found; };
        cow_Diff(a, b, count, count, count);
        benchmark::DoNotOptimize(found);
    }
}
BENCHMARK(BM_Diff<cow_Btree<int, int>>)->Unit(kUs);
BENCHMARK(BM_Diff<cow_Map<int, int>>)->Unit(kUs);

// A full walk compare of two trees: both in key order side by side.
void BM_WalkCompare_CowBtree(benchmark::State& state) {
    auto const& [a, b] = KeyedVersions<cow_Btree<int, int>>();
    for (auto _ : state) {
        int found = 0;
        auto x = a.begin(), y = b.begin();
        while (x != a.end() && y != b.end()) {
            if (x->first < y->first) ++found, ++x;
            else if (y->first < x->first) ++found, ++y;
            else found += x->second != y->second, ++x, ++y;
        }
        for (; x != a.end(); ++x) ++found;
        for (; y != b.end(); ++y) ++found;
        benchmark::DoNotOptimize(found);
    }
}
BENCHMARK(BM_WalkCompare_CowBtree)->Unit(kMs);

// A full walk compare of two maps: each one walked, every key looked up in
// the other.
void BM_WalkCompare_CowMap(benchmark::State& state) {
    auto const& [a, b] = KeyedVersions<cow_Map<int, int>>();
    for (auto _ : state) {
        int found = 0;
        for (auto const& entry : a) found += !b.IsMember(entry.first) || b.ConstGet(entry.first) != entry.second;
        for (auto const& entry : b) found += !a.IsMember(entry.first);
        benchmark::DoNotOptimize(found);
    }
}
BENCHMARK(BM_WalkCompare_CowMap)->Unit(kMs);

// 1,000 versions, each the one before with one element or key written:
// a list of 100,000 ints and a tree of 100,000 keys.
template <class Value>
std::vector<Value> const& History() {
    return Once([] {
        Value value;
        for (int i = 0; i < 100000; ++i) {
            if constexpr (std::is_same<Value, cow_List<int>>::value) value.Append(i);
            else value.InsertUnlessMember(i, i);
        }
        std::vector<Value> versions;
        std::mt19937 random(13);
        for (int v = 0; v < 1000; ++v) {
            int const i = static_cast<int>(random() % 100000);
            if constexpr (std::is_same<Value, cow_List<int>>::value) value.Get(i) = -v;
            else *value.Get(i) = -v;
            versions.push_back(value);
        }
        return versions;
    });
}

template <class Value>
void BM_Footprint1000Versions(benchmark::State& state) {
    auto const& versions = History<Value>();
    for (auto _ : state) benchmark::DoNotOptimize(cow_Footprint(versions.begin(), versions.end()).bytes);
}
BENCHMARK(BM_Footprint1000Versions<cow_List<int>>)->Unit(kMs);
BENCHMARK(BM_Footprint1000Versions<cow_Btree<int, int>>)->Unit(kMs);

// What a reader of every element of every version pays: the scale of a
// naive estimate that walks them all.
template <class Value>
void BM_Walk1000Versions(benchmark::State& state) {
    auto const& versions = History<Value>();
    for (auto _ : state) {
        long sum = 0;
        for (Value const& version : versions) {
            for (auto const& element : version) {
                if constexpr (std::is_same<Value, cow_List<int>>::value) sum += element;
                else sum += element.second;
            }
        }
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK(BM_Walk1000Versions<cow_List<int>>)->Unit(kMs);
BENCHMARK(BM_Walk1000Versions<cow_Btree<int, int>>)->Unit(kMs);

}  // namespace
