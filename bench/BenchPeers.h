#ifndef ZORVANCOW_BENCH_BENCHPEERS_H
#define ZORVANCOW_BENCH_BENCHPEERS_H

// The peer table the benchmark programs share. `peer::` says how each
// container, ours and its standard-library peers (and Qt 5's, when the bench
// is built with Qt), does the few things the cases measure: append, read or
// write an element, take the first off, insert a key, test one, count. The
// case templates below run one loop over that table, so a row of a program
// is one registration: a name, a container type and its data, and a case and
// its peers always run the same loop.

#include <benchmark/benchmark.h>

#include <deque>
#include <map>
#include <numeric>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

#ifdef ZORVANCOW_BENCH_QT
#include <QHash>
#include <QList>
#include <QMap>
#include <QQueue>
#include <QString>
#include <QVector>
#endif

#include "zorvancow/arrays/cow_1DArray.h"
#include "zorvancow/lists/cow_1DArrayList.h"
#include "zorvancow/lists/cow_List.h"
#include "zorvancow/map/cow_Map.h"
#include "zorvancow/tree/cow_Btree.h"

namespace peer {

// Sequences: append at the end, read and write element i, take the first off.
template <class T> void Append(cow_List<T>& c, T const& v) { c.Append(v); }
template <class T> void Append(cow_1DArrayList<T>& c, T const& v) { c.Append(v); }
template <class T> void Append(cow_1DArray<T>& c, T const& v) { c.Get(c.GetSize()) = v; }
template <class T> void Append(std::vector<T>& c, T const& v) { c.push_back(v); }
template <class T> void Append(std::deque<T>& c, T const& v) { c.push_back(v); }
template <class T> T const& Read(cow_List<T> const& c, int i) { return c.ConstGet(i); }
template <class T> T const& Read(cow_1DArrayList<T> const& c, int i) { return c.ConstGet(i); }
template <class T> T const& Read(cow_1DArray<T> const& c, int i) { return c.PartialArrayConstGet(i); }
template <class T> T const& Read(std::vector<T> const& c, int i) { return c[static_cast<std::size_t>(i)]; }
template <class T> T const& Read(std::deque<T> const& c, int i) { return c[static_cast<std::size_t>(i)]; }
template <class C> auto& Write(C& c, int i) { return c.Get(i); }
template <class T> T& Write(std::vector<T>& c, int i) { return c[static_cast<std::size_t>(i)]; }
template <class T> void Prepend(cow_1DArray<T>& c, T const& v) { c.GetHead() = v; }
template <class T> void Prepend(std::deque<T>& c, T const& v) { c.push_front(v); }
template <class T> void RemoveFirst(cow_List<T>& c) { c.RemoveFirst(); }
template <class T> void RemoveFirst(std::deque<T>& c) { c.pop_front(); }

// Keyed containers: insert (a present key keeps or takes the value, as the
// container does), test, count.
template <class K, class V> void Insert(cow_Map<K, V>& m, K const& k, V const& v) { m.Insert(k, v); }
template <class K, class V> void Insert(cow_Btree<K, V>& m, K const& k, V const& v) { m.InsertUnlessMember(k, v); }
template <class K, class V> void Insert(std::map<K, V>& m, K const& k, V const& v) { m.emplace(k, v); }
template <class K, class V> void Insert(std::unordered_map<K, V>& m, K const& k, V const& v) { m.emplace(k, v); }
template <class K, class V> bool Has(cow_Map<K, V> const& m, K const& k) { return m.IsMember(k); }
template <class K, class V> bool Has(cow_Btree<K, V> const& m, K const& k) { return m.IsMember(k); }
template <class M, class K> bool Has(M const& m, K const& k) { return m.find(k) != m.end(); }
template <class C> long Size(C const& c) { return static_cast<long>(c.size()); }
// The value under a key, or 0 for a missing one.
template <class K> int Lookup(cow_Btree<K, int> const& m, K const& k) { return m.ConstGet(k); }
template <class M, class K> int Lookup(M const& m, K const& k) {
    auto found = m.find(k);
    return found != m.end() ? found->second : 0;
}

#ifdef ZORVANCOW_BENCH_QT
template <class T> void Append(QVector<T>& c, T const& v) { c.append(v); }
template <class T> void Append(QList<T>& c, T const& v) { c.append(v); }
template <class T> void Append(QQueue<T>& c, T const& v) { c.enqueue(v); }
template <class T> T const& Read(QVector<T> const& c, int i) { return c.at(i); }
template <class T> T const& Read(QList<T> const& c, int i) { return c.at(i); }
template <class T> T& Write(QVector<T>& c, int i) { return c[i]; }
template <class T> T& Write(QList<T>& c, int i) { return c[i]; }
template <class T> void RemoveFirst(QQueue<T>& c) { c.dequeue(); }
template <class K, class V> void Insert(QMap<K, V>& m, K const& k, V const& v) { m.insert(k, v); }
template <class K, class V> void Insert(QHash<K, V>& m, K const& k, V const& v) { m.insert(k, v); }
template <class K, class V> bool Has(QMap<K, V> const& m, K const& k) { return m.contains(k); }
template <class K, class V> bool Has(QHash<K, V> const& m, K const& k) { return m.contains(k); }
template <class K> int Lookup(QMap<K, int> const& m, K const& k) {
    auto found = m.constFind(k);
    return found != m.constEnd() ? found.value() : 0;
}
#endif

}  // namespace peer

// The value stored under a key: int keys map to themselves, texts to 1.
inline int ValueOf(int key) { return key; }
template <class K> int ValueOf(K const&) { return 1; }

// The value `make` returns, made once per call site (each lambda is a type).
template <class Make>
auto const& Once(Make make) {
    static auto const value = make();
    return value;
}

// `n` random ints from `seed`, each masked by `mask`.
inline std::vector<int> MakeRandomInts(unsigned seed, int n, unsigned mask = ~0u) {
    std::mt19937 random(seed);
    std::vector<int> made(static_cast<std::size_t>(n));
    for (int& value : made) value = static_cast<int>(random() & mask);
    return made;
}

// A container of type C holding `Keys()`, each under ValueOf(key), made once.
template <class C, auto Keys>
C const& Filled() {
    static C const made = [] {
        C c;
        for (auto const& key : Keys()) peer::Insert(c, key, ValueOf(key));
        return c;
    }();
    return made;
}

// A sequence of type C holding 0 .. N-1, appended one by one as a user
// fills it, made once.
template <class C, int N>
C const& Counting() {
    return Once([] {
        C c;
        for (int i = 0; i < N; ++i) peer::Append(c, i);
        return c;
    });
}

// The 200,000 random texts of 16 lowercase letters that the tree and map
// programs key by: as std::string, as cow_String and (with Qt) as QString.
constexpr int kStringKeys = 200000;

inline std::vector<std::string> const& RandomTexts() {
    return Once([] {
        std::mt19937 random(43);
        std::vector<std::string> made(kStringKeys);
        for (std::string& key : made) {
            key.resize(16);
            for (char& c : key) c = static_cast<char>('a' + random() % 26);
        }
        return made;
    });
}

template <class Text> Text MakeText(std::string const& text) { return Text(text.c_str()); }
#ifdef ZORVANCOW_BENCH_QT
template <> inline QString MakeText(std::string const& text) { return QString::fromLatin1(text.c_str()); }
#endif

template <class Text>
std::vector<Text> const& RandomTextsAs() {
    return Once([] {
        std::vector<Text> made;
        for (std::string const& text : RandomTexts()) made.push_back(MakeText<Text>(text));
        return made;
    });
}
template <>
inline std::vector<std::string> const& RandomTextsAs<std::string>() {
    return RandomTexts();
}

// ---- the cases, each over any container of the table

// Registers `run` under `name`: one row of a program.
template <class Run>
benchmark::internal::Benchmark* Row(char const* name, Run run) {
    return benchmark::RegisterBenchmark(name, run);
}

// Each iteration fills a new C: with 0 .. n-1 (sequences), or with every key
// of `Keys()`, each under ValueOf(key).
// With AtFront, each element goes in front of the others.
template <class C, bool AtFront = false>
auto FillCase(int n) {
    return [n](benchmark::State& state) {
        for (auto _ : state) {
            C c;
            if constexpr (AtFront) {
                for (int i = 0; i < n; ++i) peer::Prepend(c, i);
            } else {
                for (int i = 0; i < n; ++i) peer::Append(c, i);
            }
            benchmark::DoNotOptimize(c);
        }
    };
}

// Each iteration makes a queue of 16, then n times appends one element and
// takes one off the front.
template <class C>
auto QueueCase(int n) {
    return [n](benchmark::State& state) {
        for (auto _ : state) {
            C queue;
            for (int i = 0; i < 16; ++i) peer::Append(queue, i);
            for (int i = 0; i < n; ++i) {
                peer::Append(queue, i);
                peer::RemoveFirst(queue);
            }
            benchmark::DoNotOptimize(queue);
        }
    };
}
template <class C, auto Keys>
auto InsertCase(bool countItems = false) {
    return [countItems](benchmark::State& state) {
        auto const& keys = Keys();
        for (auto _ : state) {
            C c;
            for (auto const& key : keys) peer::Insert(c, key, ValueOf(key));
            benchmark::DoNotOptimize(peer::Size(c));
        }
        if (countItems) state.SetItemsProcessed(state.iterations() * static_cast<long>(keys.size()));
    };
}

// Each iteration looks at `Probes()` one by one with `probe(container, p)`
// and sums what it gives; `countItems` counts the probes as items.
template <class C, auto Probes, class Probe>
auto ProbeCase(C const& (*container)(), Probe probe, bool countItems) {
    return [container, probe, countItems](benchmark::State& state) {
        C const& c = container();
        auto const& probes = Probes();
        for (auto _ : state) {
            long sum = 0;
            for (auto const& p : probes) sum += probe(c, p);
            benchmark::DoNotOptimize(sum);
        }
        if (countItems) state.SetItemsProcessed(state.iterations() * static_cast<long>(probes.size()));
    };
}

// Counts the probed keys the container holds.
template <class C, auto Probes>
auto MemberCase(C const& (*container)()) {
    return ProbeCase<C, Probes>(container, [](C const& c, auto const& k) { return peer::Has(c, k) ? 1 : 0; }, false);
}
// Sums the values under the probed keys, 0 for a missing one.
template <class C, auto Probes>
auto LookupCase(C const& (*container)()) {
    return ProbeCase<C, Probes>(container, [](C const& c, int k) { return peer::Lookup(c, k); }, true);
}
// Sums the elements at the probed indices.
template <class C, auto Indices>
auto RandomReadCase(C const& (*container)()) {
    return ProbeCase<C, Indices>(container, [](C const& c, int i) { return peer::Read(c, i); }, false);
}

// A map keyed by 16-letter texts of type Text: the insertion of all of them
// into a new map, and the membership test of each in a full one.
template <class M, class Text>
void TextRows(char const* insertName, char const* memberName) {
    Row(insertName, InsertCase<M, RandomTextsAs<Text>>())->Unit(benchmark::kMillisecond);
    Row(memberName, MemberCase<M, RandomTextsAs<Text>>(Filled<M, RandomTextsAs<Text>>))->Unit(benchmark::kMillisecond);
}

// Each iteration copies the container, inserts `key` into the copy (from
// `key` downwards when `fresh`, so every insertion is new) and lets it go.
template <class C>
auto CopyInsertCase(C const& (*container)(), int key, bool fresh) {
    return [container, key, fresh](benchmark::State& state) {
        C const& source = container();
        int next = key;
        for (auto _ : state) {
            C copy = source;
            peer::Insert(copy, fresh ? next-- : key, fresh ? 0 : 1);
            benchmark::DoNotOptimize(peer::Size(copy));
        }
    };
}

// Each iteration copies `source`, writes element `write` of the copy when it
// is 0 or more, and lets the copy go.
template <class C>
auto CopyCase(C const& (*source)(), int write) {
    return [source, write](benchmark::State& state) {
        C const& original = source();
        for (auto _ : state) {
            C copy(original);
            if (write >= 0) peer::Write(copy, write) = -1;
            benchmark::DoNotOptimize(copy);
        }
    };
}

// The sink idiom: each iteration hands the held container to a sink (by
// move, or by copy with Copy), writes one element through the sink with
// `write`, and hands it back by move. After a move nothing is shared and the
// write is in place; after a copy the two share, and the write unshares.
template <class C, bool Copy, class Write>
auto SinkCase(C const& (*source)(), Write write) {
    return [source, write](benchmark::State& state) {
        C held = source();
        for (auto _ : state) {
            C sink = Copy ? C(held) : C(std::move(held));
            write(sink);
            held = std::move(sink);
            benchmark::DoNotOptimize(held);
        }
    };
}

// Each iteration walks the container with its own iterator type It
// (First, IsDone, Next) and sums the values; `items` > 0 counts them.
template <class It, class C>
auto WalkCase(C const& (*container)(), bool countItems) {
    return [container, countItems](benchmark::State& state) {
        C const& c = container();
        for (auto _ : state) {
            long sum = 0;
            It it(c);
            for (it.First(); !it.IsDone(); it.Next()) sum += it.CurrentValue();
            benchmark::DoNotOptimize(sum);
        }
        if (countItems) state.SetItemsProcessed(state.iterations() * peer::Size(c));
    };
}

// The same walk over a standard map's entries.
template <class M>
auto EntryWalkCase(M const& (*container)(), bool countItems) {
    return [container, countItems](benchmark::State& state) {
        M const& m = container();
        for (auto _ : state) {
            long sum = 0;
            for (auto const& entry : m) sum += entry.second;
            benchmark::DoNotOptimize(sum);
        }
        if (countItems) state.SetItemsProcessed(state.iterations() * peer::Size(m));
    };
}

// Each iteration sums every element with `sum(container)`; `items` > 0
// counts that many.
template <class C, class Sum>
auto SumCase(C const& (*source)(), Sum sum, long items) {
    return [source, sum, items](benchmark::State& state) {
        C const& c = source();
        for (auto _ : state) benchmark::DoNotOptimize(sum(c));
        if (items > 0) state.SetItemsProcessed(state.iterations() * items);
    };
}

// Sums by range-for, and by std::accumulate over each block of cow_Blocks.
struct RangeForSum {
    template <class C> long operator()(C const& c) const {
        long sum = 0;
        for (auto const& x : c) sum += x;
        return sum;
    }
};
struct BlockSum {
    template <class C> long operator()(C const& c) const {
        long sum = 0;
        for (cow_Span<int const> run : cow_Blocks(c)) sum = std::accumulate(run.begin(), run.end(), sum);
        return sum;
    }
};

#endif
