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

// How the two key types meet their models (ModelKey is shared).
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
    list = MakeList<cow_List<T>>(model);
}
template <class T>
void MakeValue(T& value, int model) {
    value = Make<T>(model);
}
template <class T>
void Edit(cow_List<T>& list, std::vector<int>& model, Input& in) {
    int const value = in.Below(100), n = static_cast<int>(model.size()), op = in.Below(4);
    if (op == 0 && n < kMaxList) {
        list.Append(Make<T>(value));
        model.push_back(value);
    } else if (op == 1 && n < kMaxList) {
        list.Prepend(Make<T>(value));
        model.insert(model.begin(), value);
    } else if (op == 2 && n > 0) {
        list.RemoveFirst();
        model.erase(model.begin());
    } else if (op == 3 && n > 0) {
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
    using Entries = std::vector<std::pair<MK, MV>>;  // a model in the order a sorted walk shows it

    Map maps[kSlots];
    Model models[kSlots];
    Snapshots<cow_ConstMapIterator<K, V>, Model, 2> plainWalks;
    Snapshots<cow_ConstMapSortedIt<K, V>, Entries, 2> sortedWalks;

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
    // The sorted walk: exactly the model's entries, in its order or reversed.
    static Entries Sorted(Model const& model, bool descending) {
        Entries entries(model.begin(), model.end());
        if (descending) std::reverse(entries.begin(), entries.end());
        return entries;
    }
    template <class Iterator>
    static void CheckSorted(Iterator&& it, Entries const& entries) {
        InOrder(it, entries, [](auto& at, auto const& entry) {
            return ModelKey(at.CurrentKey()) == entry.first && Same(at.CurrentValue(), entry.second);
        });
    }

    template <class F>
    void EachValue(F&& f) {
        for (int s = 0; s < kSlots; ++s) f(ReadBack<Model>(maps[s]), models[s]);
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
        for (auto& [it, model] : plainWalks.held) CheckWalk(*it, model);
        for (auto& [it, entries] : sortedWalks.held) CheckSorted(*it, entries);
        auto const [s, t] = DiffPair(kSlots);
        CheckDiff(maps[s], maps[t], models[s], models[t], true);
    }

    void Step(Input& in) {
        int const a = in.Below(kSlots), b = in.Below(kSlots);
        Map& map = maps[a];
        Model& model = models[a];
        MK key;
        PickKey(in, key);
        // Most removals and reads aim at a held key.
        if (!model.empty() && in.Below(3) != 0) key = NearKey(model, key);
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
                    auto from = std::next(models[b].begin(), in.Below(static_cast<int>(models[b].size())));
                    mapValue = maps[b].ConstGet(MapKey(from->first));
                    value = from->second;
                }
                if (model.size() >= kMaxKeys && model.count(key) == 0) break;
                if (op == 0) {
                    FUZZ_CHECK(map.Insert(mapKey, mapValue));
                } else {
                    auto const [at, added] = map.insert_or_assign(mapKey, mapValue);
                    FUZZ_CHECK(added == (model.count(key) == 0) && ModelKey(at->first) == key);
                }
                model[key] = value;
                break;
            }
            case 2:
                if (in.Below(2) == 0) FUZZ_CHECK(map.Remove(mapKey) == (model.count(key) == 1));
                else FUZZ_CHECK(map.erase(mapKey) == model.count(key));
                model.erase(key);
                break;
            case 3: {  // a write through Get of a held key, or of the position find gives
                auto at = model.find(key);
                if (at == model.end()) break;
                V& value = in.Below(2) == 0 ? map.Get(mapKey) : map.Get(map.find(mapKey));
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
            case 5:  // a hand-over keeps every key at its depth
                if (Share(maps, models, a, b))
                    for (auto const& [held, value] : model) FUZZ_CHECK(map.GetDepth(MapKey(held)) == maps[b].GetDepth(MapKey(held)));
                break;
            case 6: {  // take a snapshot, plain or sorted
                bool const descending = in.Below(2) == 0;
                if (in.Below(2) == 0)
                    plainWalks.Take(in, model, map);
                else
                    sortedWalks.Take(in, Sorted(model, descending), map, descending);
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
                CheckSorted(cow_ConstMapSortedIt<K, V>(map, descending), Sorted(model, descending));
                // the default order is ascending
                if (!descending) CheckSorted(cow_ConstMapSortedIt<K, V>(map), Sorted(model, false));
            }
        }
    }
};

// Both kinds of map side by side, each input step going to one of them.
template <class T>
struct Both {
    static constexpr int kSteps = 2000;
    using Texts = Maps<cow_String, cow_List<T>, std::string, std::vector<int>>;
    using Numbers = Maps<int, T, int, int>;
    Texts texts;
    Numbers numbers;
    bool textsLast = false;

    void Step(Input& in) {
        textsLast = in.Below(2) == 0;
        if (textsLast)
            texts.Step(in);
        else
            numbers.Step(in);
    }
    template <class F>
    void EachValue(F&& f) {
        texts.EachValue(f);
        numbers.EachValue(f);
    }
    void CheckAll() {
        if (textsLast)
            texts.CheckAll();
        else
            numbers.CheckAll();
    }
};

// Absent keys read a value that each thread makes once per value type and
// keeps: made here first, it is not taken for a leak of the stream.
// IsAbsent of a value no map gave makes both, the read and the write one.
template <class Maps>
void MakeAbsent() {
    typename Maps::Map::mapped_type const other{};
    static_cast<void>(Maps::Map::IsAbsent(other));
}
template <class... T>
void MakeAbsentValues() {
    (MakeAbsent<typename Both<T>::Texts>(), ...);
    (MakeAbsent<typename Both<T>::Numbers>(), ...);
}

inline void Run(std::uint8_t const* data, std::size_t size) {
    static bool const made = (MakeAbsentValues<int, cow_String, std::string, Brittle>(), true);
    static_cast<void>(made);
    fuzz::Run<Both>(data, size);
}

}  // namespace fuzz::map

#endif
