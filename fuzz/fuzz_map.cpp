// Digital maps under random operations: maps from strings to lists of int
// and maps from int to int, several of each sharing nodes through copies,
// live snapshot iterators (plain and sorted) and list values handed from one
// map to another. After every operation each map is compared with a std::map
// model; each snapshot, when walked, with the model of the moment it was
// taken.

#include <algorithm>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "FuzzSupport.h"
#include "zorvancow/map/cow_Map.h"

namespace {

using fuzz::Input;

constexpr int kSlots = 4;
constexpr int kMaxList = 100;
constexpr std::size_t kMaxKeys = 64;

// How the two key and value types meet their models.
std::string ModelKey(cow_String const& key) { return key.GetCString(); }
int ModelKey(int key) { return key; }
cow_String MapKey(std::string const& key) { return cow_String(key.c_str()); }
int MapKey(int key) { return key; }

bool Same(cow_List<int> const& list, std::vector<int> const& model) {
    if (list.GetCount() != static_cast<int>(model.size())) return false;
    for (int i = 0; i < list.GetCount(); ++i)
        if (list.ConstGet(i) != model[static_cast<std::size_t>(i)]) return false;
    return true;
}
bool Same(int value, int model) { return value == model; }

cow_List<int> MapValue(std::vector<int> const& model) {
    cow_List<int> list;
    for (int v : model) list.Append(v);
    return list;
}
int MapValue(int model) { return model; }

void PickKey(Input& in, std::string& key) { key = fuzz::PickText(in); }
// Integer keys: small ones, ones that share many low bits (deep paths), and
// anything at all. A path is at most 32 levels whatever the keys.
void PickKey(Input& in, int& key) {
    switch (in.Below(3)) {
        case 0: key = in.Below(64) - 32; break;
        case 1: key = static_cast<int>(static_cast<std::uint32_t>(in.Below(16)) << (16 + in.Below(16))); break;
        default: key = static_cast<int>(in.Word());
    }
}
void PickValue(Input& in, std::vector<int>& value) { value.assign(static_cast<std::size_t>(in.Below(6)), in.Below(100)); }
void PickValue(Input& in, int& value) { value = in.Below(1000); }

// A write through Get to a held value: only this map may see it.
void Edit(cow_List<int>& list, std::vector<int>& model, Input& in) {
    int const value = in.Below(100);
    int const n = static_cast<int>(model.size());
    switch (in.Below(4)) {
        case 0:
            if (n >= kMaxList) break;
            list.Append(value);
            model.push_back(value);
            break;
        case 1:
            if (n >= kMaxList) break;
            list.Prepend(value);
            model.insert(model.begin(), value);
            break;
        case 2:
            if (n == 0) break;
            list.RemoveFirst();
            model.erase(model.begin());
            break;
        default:
            if (n == 0) break;
            int const i = in.Below(n);
            list.Get(i) = value;
            model[static_cast<std::size_t>(i)] = value;
    }
}
void Edit(int& value, int& model, Input& in) { value = model = in.Below(1000); }

bool IsEmptyValue(cow_List<int> const& list) { return list.GetCount() == 0; }
bool IsEmptyValue(int value) { return value == 0; }

template <class K, class V, class MK, class MV>
struct Family {
    using Map = cow_Map<K, V>;
    using Model = std::map<MK, MV>;

    struct Snapshot {
        std::unique_ptr<cow_ConstMapIterator<K, V>> plain;
        std::unique_ptr<cow_ConstMapSortedIt<K, V>> sorted;
        bool descending;
        Model model;
    };

    Map maps[kSlots];
    Model models[kSlots];
    std::vector<Snapshot> snapshots;

    // The node walk: every entry once, in no key order.
    static void CheckWalk(cow_ConstMapIterator<K, V>& it, Model const& model) {
        std::map<MK, bool> seen;
        for (it.First(); !it.IsDone(); it.Next()) {
            MK const key = ModelKey(it.CurrentKey());
            auto at = model.find(key);
            FUZZ_CHECK(at != model.end());
            FUZZ_CHECK(Same(it.CurrentValue(), at->second));
            FUZZ_CHECK(seen.emplace(key, true).second);
        }
        FUZZ_CHECK(seen.size() == model.size());
    }
    // The sorted walk: exactly the model's keys, in its order or reversed.
    static void CheckSorted(cow_ConstMapSortedIt<K, V>& it, Model const& model, bool descending) {
        std::vector<MK> keys;
        for (auto const& entry : model) keys.push_back(entry.first);
        if (descending) std::reverse(keys.begin(), keys.end());
        std::size_t i = 0;
        for (it.First(); !it.IsDone(); it.Next(), ++i) {
            FUZZ_CHECK(i < keys.size());
            FUZZ_CHECK(ModelKey(it.CurrentKey()) == keys[i]);
            FUZZ_CHECK(Same(it.CurrentValue(), model.at(keys[i])));
        }
        FUZZ_CHECK(i == keys.size());
    }

    void CheckAll() {
        for (int s = 0; s < kSlots; ++s) {
            Map const& map = maps[s];
            FUZZ_CHECK(map.GetCount() == static_cast<int>(models[s].size()));
            FUZZ_CHECK((map.GetRoot().ConstGet() == nullptr) == models[s].empty());
            for (auto const& [key, value] : models[s]) {
                K const mapKey = MapKey(key);
                FUZZ_CHECK(Same(map.ConstGet(mapKey), value));
                int const depth = map.GetDepth(mapKey);
                FUZZ_CHECK(depth >= 0 && depth < static_cast<int>(models[s].size()));
            }
            cow_ConstMapIterator<K, V> walk(map);
            CheckWalk(walk, models[s]);
        }
    }

    void Step(Input& in) {
        int const a = in.Below(kSlots), b = in.Below(kSlots);
        Map& map = maps[a];
        Model& model = models[a];
        MK key;
        PickKey(in, key);
        // Most removals and reads aim at a held key.
        if (!model.empty() && in.Below(3) != 0) {
            auto at = model.lower_bound(key);
            key = at == model.end() ? model.begin()->first : at->first;
        }
        K const mapKey = MapKey(key);
        int const op = in.Below(10);
        FUZZ_TRACE("map %d (from %d): op %d\n", a, b, op);
        switch (op) {
            case 0:
            case 1: {  // a new value, or one shared with another map
                MV value;
                PickValue(in, value);
                V mapValue = MapValue(value);
                if (!models[b].empty() && in.Below(2) == 0) {
                    auto from = models[b].begin();
                    std::advance(from, in.Below(static_cast<int>(models[b].size())));
                    mapValue = maps[b].ConstGet(MapKey(from->first));
                    value = from->second;
                }
                if (model.size() >= kMaxKeys && model.count(key) == 0) break;
                FUZZ_CHECK(map.Insert(mapKey, mapValue));
                model[key] = value;
                break;
            }
            case 2:
                FUZZ_CHECK(map.Remove(mapKey) == (model.erase(key) == 1));
                break;
            case 3: {
                V& value = map.Get(mapKey);
                auto at = model.find(key);
                FUZZ_CHECK(Map::IsAbsent(value) == (at == model.end()));
                if (at != model.end()) {
                    Edit(value, at->second, in);
                } else {
                    // A miss gives scratch storage of this thread: writing to
                    // it reaches no map. Empty it again so it holds nothing.
                    FUZZ_CHECK(IsEmptyValue(value));
                    MV scratch{};
                    Edit(value, scratch, in);
                    value = V();
                }
                break;
            }
            case 4: {
                V const& value = map.ConstGet(mapKey);
                auto at = model.find(key);
                FUZZ_CHECK(Map::IsAbsent(value) == (at == model.end()));
                FUZZ_CHECK(at != model.end() ? Same(value, at->second) : IsEmptyValue(value));
                FUZZ_CHECK(map.IsMember(mapKey) == (at != model.end()));
                FUZZ_CHECK((map.GetDepth(mapKey) >= 0) == (at != model.end()));
                break;
            }
            case 5:
                map = maps[b];
                model = models[b];
                break;
            case 6:
            case 7:
                if (snapshots.size() < 3) {
                    Snapshot snapshot;
                    snapshot.descending = in.Below(2) == 0;
                    if (op == 6)
                        snapshot.plain = std::make_unique<cow_ConstMapIterator<K, V>>(map);
                    else
                        snapshot.sorted = std::make_unique<cow_ConstMapSortedIt<K, V>>(map, snapshot.descending);
                    snapshot.model = model;
                    snapshots.push_back(std::move(snapshot));
                } else {
                    std::size_t const w = static_cast<std::size_t>(in.Below(3));
                    Snapshot& snapshot = snapshots[w];
                    if (snapshot.plain)
                        CheckWalk(*snapshot.plain, snapshot.model);
                    else
                        CheckSorted(*snapshot.sorted, snapshot.model, snapshot.descending);
                    // Walked once, a snapshot may be walked again.
                    if (in.Below(2) == 0) snapshots.erase(snapshots.begin() + static_cast<long>(w));
                }
                break;
            case 8: {
                cow_List<K> keys = cow_MapUtils<K, V>::cow_Keys(map);
                cow_List<V> values = cow_MapUtils<K, V>::cow_Values(map);
                FUZZ_CHECK(keys.GetCount() == static_cast<int>(model.size()));
                FUZZ_CHECK(values.GetCount() == keys.GetCount());
                Model read;
                for (int i = 0; i < keys.GetCount(); ++i) {
                    auto at = model.find(ModelKey(keys.ConstGet(i)));
                    FUZZ_CHECK(at != model.end());
                    FUZZ_CHECK(Same(values.ConstGet(i), at->second));
                    FUZZ_CHECK(read.emplace(at->first, at->second).second);
                }
                break;
            }
            default: {
                bool const descending = in.Below(2) == 0;
                cow_ConstMapSortedIt<K, V> sorted(map, descending);
                CheckSorted(sorted, model, descending);
            }
        }
    }
};

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    fuzz::StartLibrary();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    fuzz::LiveCounters const counters;
    {
        Input in(data, size);
        Family<cow_String, cow_List<int>, std::string, std::vector<int>> strings;
        Family<int, int, int, int> numbers;
        for (int step = 0; step < 2000 && !in.Done(); ++step) {
            if (in.Below(2) == 0) {
                strings.Step(in);
                strings.CheckAll();
            } else {
                numbers.Step(in);
                numbers.CheckAll();
            }
        }
    }
    counters.ExpectBack();
    return 0;
}
