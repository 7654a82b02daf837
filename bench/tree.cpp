// cow_Btree<int, int> beside std::map<int, int> (and Qt 5's QMap when the
// bench is built with Qt): insertion, lookup, copy plus one write, and a full
// in-order walk; then 16-letter string keys. Keys are random in [0, 2^30),
// inside the span where the integer key order is total. QMap copies by one
// count increment; the first insertion into a copy detaches it, copying
// every node.

#include <numeric>

#include "BenchPeers.h"

namespace {

constexpr int kKeys = 1000000;

std::vector<int> const& Keys() {
    return Once([] { return MakeRandomInts(42, kKeys, 0x3fffffff); });
}

// Lookups hit and miss: half the probes are inserted keys, half fresh ones.
// The lookup cases run for several passes: the first pass over a million
// nodes is cold and says more about the cache than about the container.
std::vector<int> const& Probes() {
    return Once([] {
        std::mt19937 random(7);
        std::vector<int> made(kKeys);
        std::vector<int> const& keys = Keys();
        for (int i = 0; i < kKeys; ++i)
            made[i] = i % 2 == 0 ? keys[random() % kKeys] : static_cast<int>(random() & 0x3fffffff);
        return made;
    });
}

using Tree = cow_Btree<int, int>;
using StdMap = std::map<int, int>;
using TextTree = cow_Btree<cow_String, int>;
using StdTextMap = std::map<std::string, int>;
Tree const& FilledTree() { return Filled<Tree, Keys>(); }
auto const kMs = benchmark::kMillisecond;
auto const kUs = benchmark::kMicrosecond;

// The same walk as BM_Walk_Btree by recursion over the node links, with no
// heap frames: the difference is what the iterator's frames cost.
long SumValues(Tree::Handle const* link) {
    if (link == nullptr) return 0;
    cow_BtreeNode<int, int> const* node = link->ConstGet();
    return SumValues(node->GetLeft()) + node->GetValue() + SumValues(node->GetRight());
}

// Standard-interface walk: std::accumulate over the container's iterators
// (key order, one entry per step).
template <class C>
auto AccumulateCase(C const& (*container)()) {
    return [container](benchmark::State& state) {
        C const& c = container();
        for (auto _ : state) {
            long sum = std::accumulate(c.begin(), c.end(), 0L,
                                       [](long total, auto const& entry) { return total + entry.second; });
            benchmark::DoNotOptimize(sum);
        }
        state.SetItemsProcessed(state.iterations() * peer::Size(c));
    };
}

int const rows = [] {
    Row("BM_Lookup_Btree", LookupCase<Tree, Probes>(FilledTree))->Unit(kMs)->MinTime(1.0);
    Row("BM_Lookup_StdMap", LookupCase<StdMap, Probes>(Filled<StdMap, Keys>))->Unit(kMs)->MinTime(1.0);
    // A copy of a 1,000,000-key container, one insertion into the copy, and
    // the copy's release.
    Row("BM_CopyAndInsert_Btree", CopyInsertCase(FilledTree, -1, true))->Unit(kUs);
    Row("BM_CopyAndInsert_StdMap", CopyInsertCase(Filled<StdMap, Keys>, -1, true))->Unit(kUs);
    // The sink idiom on 1,000,000 keys: hand over by move or by copy, write
    // one value, hand back.
    Row("BM_SinkMoveWrite_Btree", SinkCase<Tree, false>(FilledTree, [](Tree& t) { *t.Get(Keys()[0]) = -1; }));
    Row("BM_SinkCopyWrite_Btree", SinkCase<Tree, true>(FilledTree, [](Tree& t) { *t.Get(Keys()[0]) = -1; }));
    Row("BM_SinkMoveWrite_StdMap",
        SinkCase<StdMap, false>(Filled<StdMap, Keys>, [](StdMap& m) { m.find(Keys()[0])->second = -1; }));
    Row("BM_Walk_Btree", WalkCase<cow_BtreeIterator<int, int>>(FilledTree, true))->Unit(kMs);
    Row("BM_Walk_BtreeNoFrames", [](benchmark::State& state) {
        for (auto _ : state) benchmark::DoNotOptimize(SumValues(FilledTree().GetRoot()));
        state.SetItemsProcessed(state.iterations() * FilledTree().GetCount());
    })->Unit(kMs);
    Row("BM_Walk_StdMap", EntryWalkCase(Filled<StdMap, Keys>, true))->Unit(kMs);
    // Insertion is registered last: building and freeing two million-element
    // containers leaves the heap's free lists scattered. The lookup, copy and
    // walk cases use containers built earlier, in a heap that has not been
    // churned; in a churned heap a tree's handle and node come from different
    // free lists, and each level of a lookup then costs two cache misses
    // instead of one.
    Row("BM_Insert_Btree", InsertCase<Tree, Keys>(true))->Unit(kMs);
    Row("BM_Insert_StdMap", InsertCase<StdMap, Keys>(true))->Unit(kMs);
    // String keys: 200,000 random 16-letter keys, inserted, then looked up in
    // the order of insertion.
    TextRows<TextTree, cow_String>("BM_StringInsert_Btree", "BM_StringLookup_Btree");
    TextRows<StdTextMap, std::string>("BM_StringInsert_StdMap", "BM_StringLookup_StdMap");
    Row("BM_Accumulate_Btree", AccumulateCase(FilledTree))->Unit(kMs);
    Row("BM_Accumulate_StdMap", AccumulateCase(Filled<StdMap, Keys>))->Unit(kMs);
#ifdef ZORVANCOW_BENCH_QT
    using QIntMap = QMap<int, int>;
    Row("BM_Insert_QMap", InsertCase<QIntMap, Keys>(true))->Unit(kMs);
    Row("BM_Lookup_QMap", LookupCase<QIntMap, Probes>(Filled<QIntMap, Keys>))->Unit(kMs)->MinTime(1.0);
    Row("BM_CopyAndInsert_QMap", CopyInsertCase(Filled<QIntMap, Keys>, -1, true))->Unit(kUs);
    TextRows<QMap<QString, int>, QString>("BM_StringInsert_QMap", "BM_StringLookup_QMap");
#endif
    return 0;
}();

}  // namespace
