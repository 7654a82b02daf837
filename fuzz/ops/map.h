#ifndef ZORVANCOW_FUZZ_OPS_MAP_H
#define ZORVANCOW_FUZZ_OPS_MAP_H

// The operation interpreter of digital maps: maps from texts to lists of the
// element type and maps from int to the element type, four of each sharing
// nodes through copies, held snapshot iterators (plain and sorted) and list
// values handed from one map to another. After every operation each map is
// compared with a std::map model, lookups, depths and a node walk included,
// and each held snapshot with the model of the moment it was taken.

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "ops/Support.h"
#include "zorvancow/map/cow_Map.h"

namespace fuzz::map {

constexpr int kSlots = 4;
constexpr int kMaxList = 100;
constexpr std::size_t kMaxKeys = 64;

// How the two key types meet their models.
inline std::string ModelKey(cow_String const& key) { return key.GetCString(); }
inline int ModelKey(int key) { return key; }
inline cow_String MapKey(std::string const& key) { return cow_String(key.c_str()); }
inline int MapKey(int key) { return key; }

inline void PickKey(Input& in, std::string& key) { key = PickText(in); }
// Integer keys: small ones, ones that share many low bits (deep paths), and
// anything at all. A path is at most 32 levels whatever the keys.
inline void PickKey(Input& in, int& key) {
    switch (in.Below(3)) {
        case 0: key = in.Below(64) - 32; break;
        case 1: key = static_cast<int>(static_cast<std::uint32_t>(in.Below(16)) << (16 + in.Below(16))); break;
        default: key = static_cast<int>(in.Word());
    }
}

// The two value types, lists of elements and elements: made, written
// through Get (only this map may see it), and told empty.
inline void PickValue(Input& in, std::vector<int>& value) { value.assign(static_cast<std::size_t>(in.Below(6)), in.Below(100)); }
inline void PickValue(Input& in, int& value) { value = in.Below(1000); }
template <class T>
void MakeValue(cow_List<T>& list, std::vector<int> const& model) {
    for (int v : model) list.Append(Make<T>(v));
}
template <class T>
void MakeValue(T& value, int model) {
    value = Make<T>(model);
}
template <class T>
void Edit(cow_List<T>& list, std::vector<int>& model, Input& in) {
    int const value = in.Below(100), n = static_cast<int>(model.size());
    switch (in.Below(4)) {
        case 0:
            if (n >= kMaxList) break;
            list.Append(Make<T>(value));
            model.push_back(value);
            break;
        case 1:
            if (n >= kMaxList) break;
            list.Prepend(Make<T>(value));
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
            list.Get(i) = Make<T>(value);
            model[static_cast<std::size_t>(i)] = value;
    }
}
template <class T>
void Edit(T& value, int& model, Input& in) {
    value = Make<T>(model = in.Below(1000));
}

template <class K, class V, class MK, class MV>
struct Maps {
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
            FUZZ_CHECK(at != model.end() && Same(it.CurrentValue(), at->second));
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
        for (it.First(); !it.IsDone(); it.Next(), ++i)
            FUZZ_CHECK(i < keys.size() && ModelKey(it.CurrentKey()) == keys[i] &&
                       Same(it.CurrentValue(), model.at(keys[i])));
        FUZZ_CHECK(i == keys.size());
    }

    void CheckAll() {
        for (int s = 0; s < kSlots; ++s) {
            Map const& map = maps[s];
            FUZZ_CHECK(map.GetCount() == static_cast<int>(models[s].size()));
            FUZZ_CHECK((map.GetRoot().ConstGet() == nullptr) == models[s].empty());
            for (auto const& [key, value] : models[s]) {
                K const mapKey = MapKey(key);
                int const depth = map.GetDepth(mapKey);
                FUZZ_CHECK(Same(map.ConstGet(mapKey), value) && depth >= 0 && depth < static_cast<int>(models[s].size()));
            }
            cow_ConstMapIterator<K, V> walk(map);
            CheckWalk(walk, models[s]);
        }
        for (Snapshot& snapshot : snapshots) {
            if (snapshot.plain)
                CheckWalk(*snapshot.plain, snapshot.model);
            else
                CheckSorted(*snapshot.sorted, snapshot.model, snapshot.descending);
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
        int const op = in.Below(9);
        FUZZ_TRACE("step %d: map %d (from %d): op %d\n", CurrentStep(), a, b, op);
        switch (op) {
            case 0:
            case 1: {  // a new value, or one shared with another map
                MV value;
                PickValue(in, value);
                V mapValue;
                MakeValue(mapValue, value);
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
            case 3: {  // a write through Get to a held value
                auto at = model.find(key);
                if (at == model.end()) break;
                V& value = map.Get(mapKey);
                FUZZ_CHECK(!Map::IsAbsent(value));
                Edit(value, at->second, in);
                break;
            }
            case 4: {  // a read; a key not held reads as the empty value
                V const& value = map.ConstGet(mapKey);
                auto at = model.find(key);
                FUZZ_CHECK(Map::IsAbsent(value) == (at == model.end()));
                FUZZ_CHECK(Same(value, at != model.end() ? at->second : MV()));
                FUZZ_CHECK(map.IsMember(mapKey) == (at != model.end()));
                FUZZ_CHECK((map.GetDepth(mapKey) >= 0) == (at != model.end()));
                break;
            }
            case 5:
                map = maps[b];
                model = models[b];
                break;
            case 6: {  // take a snapshot, plain or sorted, dropping one when three are held
                if (snapshots.size() >= 3) snapshots.erase(snapshots.begin() + in.Below(3));
                Snapshot snapshot{nullptr, nullptr, in.Below(2) == 0, model};
                if (in.Below(2) == 0)
                    snapshot.plain = std::make_unique<cow_ConstMapIterator<K, V>>(map);
                else
                    snapshot.sorted = std::make_unique<cow_ConstMapSortedIt<K, V>>(map, snapshot.descending);
                snapshots.push_back(std::move(snapshot));
                break;
            }
            case 7: {
                cow_List<K> keys = cow_MapUtils<K, V>::cow_Keys(map);
                cow_List<V> values = cow_MapUtils<K, V>::cow_Values(map);
                FUZZ_CHECK(keys.GetCount() == static_cast<int>(model.size()) && values.GetCount() == keys.GetCount());
                Model read;
                for (int i = 0; i < keys.GetCount(); ++i) {
                    auto at = model.find(ModelKey(keys.ConstGet(i)));
                    FUZZ_CHECK(at != model.end() && Same(values.ConstGet(i), at->second));
                    FUZZ_CHECK(read.emplace(at->first, at->second).second);
                }
                break;
            }
            default: {
                bool const descending = in.Below(2) == 0;
                cow_ConstMapSortedIt<K, V> sorted(map, descending);
                CheckSorted(sorted, model, descending);
                if (!descending) {  // the default order is ascending
                    cow_ConstMapSortedIt<K, V> plain(map);
                    CheckSorted(plain, model, false);
                }
            }
        }
    }
};

// Both kinds of map side by side, each input step going to one of them.
template <class T>
struct Both {
    static constexpr int kSteps = 2000;
    Maps<cow_String, cow_List<T>, std::string, std::vector<int>> texts;
    Maps<int, T, int, int> numbers;
    bool textsLast = false;

    void Step(Input& in) {
        textsLast = in.Below(2) == 0;
        if (textsLast)
            texts.Step(in);
        else
            numbers.Step(in);
    }
    void CheckAll() {
        if (textsLast)
            texts.CheckAll();
        else
            numbers.CheckAll();
    }
};

inline void Run(std::uint8_t const* data, std::size_t size) { fuzz::Run<Both>(data, size); }

}  // namespace fuzz::map

#endif
