// Digital maps against std::map and std::unordered_map (and Qt 5's QMap and
// QHash when the bench is built with Qt), each case beside its peers: bulk
// insert, membership, copy plus one write, and a sorted walk; then 16-letter
// string keys. Qt's maps copy by one count increment, and the first insertion
// into a copy detaches it, copying every entry.

#include <algorithm>

#include "BenchPeers.h"

namespace {

constexpr int kKeys = 1000000;

std::vector<int> const& Ints() {
    return Once([] { return MakeRandomInts(42, kKeys); });
}

// Lookups: the inserted keys in another order.
std::vector<int> const& Probes() {
    return Once([] {
        std::vector<int> made = Ints();
        std::shuffle(made.begin(), made.end(), std::mt19937(7));
        return made;
    });
}

using CowMap = cow_Map<int, int>;
using StdMap = std::map<int, int>;
using HashMap = std::unordered_map<int, int>;
using CowTextMap = cow_Map<cow_String, int>;
using StdTextMap = std::map<std::string, int>;
using HashTextMap = std::unordered_map<std::string, int>;
auto const kMs = benchmark::kMillisecond;
auto const kUs = benchmark::kMicrosecond;

int const rows = [] {
    // Insert 1,000,000 random int keys.
    Row("BM_Insert_CowMap", InsertCase<CowMap, Ints>())->Unit(kMs);
    Row("BM_Insert_StdMap", InsertCase<StdMap, Ints>())->Unit(kMs);
    Row("BM_Insert_StdUnorderedMap", InsertCase<HashMap, Ints>())->Unit(kMs);
    // Membership of 1,000,000 random keys.
    Row("BM_IsMember_CowMap", MemberCase<CowMap, Probes>(Filled<CowMap, Ints>))->Unit(kMs);
    Row("BM_IsMember_StdMapFind", MemberCase<StdMap, Probes>(Filled<StdMap, Ints>))->Unit(kMs);
    Row("BM_IsMember_StdUnorderedMapFind", MemberCase<HashMap, Probes>(Filled<HashMap, Ints>))->Unit(kMs);
    // Copy a 1,000,000-key map and insert one key into the copy.
    Row("BM_CopyInsert_CowMap", CopyInsertCase(Filled<CowMap, Ints>, 12345, false))->Unit(kUs);
    Row("BM_CopyInsert_StdMap", CopyInsertCase(Filled<StdMap, Ints>, 12345, false))->Unit(kUs);
    Row("BM_CopyInsert_StdUnorderedMap", CopyInsertCase(Filled<HashMap, Ints>, 12345, false))->Unit(kUs);
    // Walk 1,000,000 keys in key order (for cow_Map the sort is included).
    Row("BM_SortedWalk_CowMap", WalkCase<cow_ConstMapSortedIt<int, int>>(Filled<CowMap, Ints>, false))->Unit(kMs);
    Row("BM_NodeWalk_CowMap", WalkCase<cow_ConstMapIterator<int, int>>(Filled<CowMap, Ints>, false))->Unit(kMs);
    Row("BM_SortedWalk_StdMap", EntryWalkCase(Filled<StdMap, Ints>, false))->Unit(kMs);
    // String keys: 200,000 random 16-letter keys.
    TextRows<CowTextMap, cow_String>("BM_StringInsert_CowMap", "BM_StringIsMember_CowMap");
    TextRows<StdTextMap, std::string>("BM_StringInsert_StdMap", "BM_StringIsMember_StdMapFind");
    TextRows<HashTextMap, std::string>("BM_StringInsert_StdUnorderedMap", "BM_StringIsMember_StdUnorderedMapFind");
#ifdef ZORVANCOW_BENCH_QT
    using QIntMap = QMap<int, int>;
    using QIntHash = QHash<int, int>;
    Row("BM_Insert_QMap", InsertCase<QIntMap, Ints>())->Unit(kMs);
    Row("BM_Insert_QHash", InsertCase<QIntHash, Ints>())->Unit(kMs);
    Row("BM_IsMember_QMapContains", MemberCase<QIntMap, Probes>(Filled<QIntMap, Ints>))->Unit(kMs);
    Row("BM_IsMember_QHashContains", MemberCase<QIntHash, Probes>(Filled<QIntHash, Ints>))->Unit(kMs);
    Row("BM_CopyInsert_QMap", CopyInsertCase(Filled<QIntMap, Ints>, 12345, false))->Unit(kUs);
    Row("BM_CopyInsert_QHash", CopyInsertCase(Filled<QIntHash, Ints>, 12345, false))->Unit(kUs);
    TextRows<QMap<QString, int>, QString>("BM_StringInsert_QMap", "BM_StringIsMember_QMapContains");
#endif
    return 0;
}();

}  // namespace
