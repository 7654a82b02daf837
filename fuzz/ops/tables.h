#ifndef ZORVANCOW_FUZZ_OPS_TABLES_H
#define ZORVANCOW_FUZZ_OPS_TABLES_H

// The operation interpreter of radix tables: signed tables shared through
// cow_COW handles and plain unsigned tables copied deeply, four of each,
// made with construction arguments drawn from the input. After every
// operation each table is compared with a std::map model by lookups and by
// an ascending walk; walks in both directions and in sorted mode run on
// request.

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <map>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

#include "ops/Support.h"
#include "zorvancow/tables/omi_IntTable.h"

namespace fuzz::tables {

constexpr int kSlots = 4;
constexpr std::size_t kMaxKeys = 120;

// Construction arguments that keep every array small, since walks scan the
// pointer arrays and copies duplicate them: at most 2^12 table blocks, at
// most 2^12 element-block pointers in a table block, element blocks of at
// most 4096 values. A quarter of the tables take the defaults.
struct Arguments {
    unsigned int a, b, c;
};
inline Arguments PickArguments(Input& in) {
    if (in.Below(4) == 0) return {12, 10, 24};
    unsigned int const a = 8 + static_cast<unsigned int>(in.Below(5));
    unsigned int const lowest = 20 - a;
    unsigned int const e = lowest + static_cast<unsigned int>(in.Below(static_cast<int>(13 - lowest)));
    return {a, 32 - a - e, 1 + static_cast<unsigned int>(in.Below(64))};
}

// Keys in dense runs around places where key fields roll over, or anywhere.
inline unsigned int PickBits(Input& in) {
    static std::uint32_t const centres[] = {0u, 0xffffffffu, 0x80000000u, 0x7fffffffu, 1u << 20, 1u << 10, 1u << 12, 0xfff00000u};
    if (in.Below(4) == 0) return in.Word();
    return centres[in.Below(8)] + static_cast<std::uint32_t>(in.Below(81)) - 40u;
}

inline auto const SameEntry = [](auto& it, auto const& entry) {
    return it.CurrentKey() == entry.first && Number(it.CurrentValue()) == entry.second;
};

// A table walk (plain, ascending) and lookups against the model.
template <class Iterator, class Table, class Model>
void CheckTable(Table const& table, Model const& model) {
    FUZZ_CHECK(table.GetCount() == static_cast<int>(model.size()));
    InOrder(Iterator(table), model, SameEntry);
    for (auto const& [key, value] : model) {
        auto const* found = table.ConstGet(key);
        FUZZ_CHECK(found != nullptr && Number(*found) == value);
    }
}

// Insert (op 0) or remove (op 1) `key`, either table, beside its model.
template <class Table, class Model, class Key>
void Edit(Table& table, Model& model, Key key, int op, int value) {
    using T = std::decay_t<decltype(*table.ConstGet(key))>;
    if (op == 1) {
        FUZZ_CHECK(table.Remove(key) == (model.erase(key) == 1));
        FUZZ_CHECK(!table.IsMember(key));
    } else if (model.size() < kMaxKeys || model.count(key) != 0) {
        FUZZ_CHECK(table.Insert(key, Make<T>(value)) == (model.count(key) == 0));
        model[key] = value;
    }
}

template <class T>
struct Tables {
    static constexpr int kSteps = 1000;
    // The table of ints is the base library's own, not this library's: the
    // signed side holds texts then.
    using S = std::conditional_t<std::is_same<T, int>::value, cow_String, T>;
    using Table = omi_IntTable<S>;
    using Handle = cow_COW<Table>;
    using TableModel = std::map<int, int>;
    using Uint = omi_UintTable<T>;
    using UintModel = std::map<unsigned int, int>;
    using UintIterator = omi_UintTableIterator<T>;

    std::vector<Handle> handles;
    TableModel models[kSlots];
    std::unique_ptr<Uint> uints[kSlots];
    UintModel uintModels[kSlots];
    bool started = false;

    template <class Model, class Iterator, class Walked>
    static Model Read(Walked const& table) {
        Model model;
        Iterator it(table);
        for (it.First(); !it.IsDone(); it.Next()) model.emplace(it.CurrentKey(), Number(it.CurrentValue()));
        return model;
    }
    template <class F>
    void EachValue(F&& f) {
        if (!started) return;
        for (int s = 0; s < kSlots; ++s) {
            f(Read<TableModel, omi_IntTableIterator<S>>(*handles[static_cast<std::size_t>(s)].ConstGet()), models[s]);
            f(Read<UintModel, UintIterator>(*uints[s]), uintModels[s]);
        }
    }

    void CheckAll() {
        for (int s = 0; s < kSlots; ++s) {
            Table const& table = *handles[static_cast<std::size_t>(s)].ConstGet();
            TableModel const& model = models[s];
            CheckTable<omi_IntTableIterator<S>>(table, model);
            for (auto const& entry : model) FUZZ_CHECK(table.FindBlock(entry.first) != nullptr);
            // Last goes to the greatest key, and finds none without a non-negative one.
            omi_IntTableIterator<S> it(table);
            it.Last();
            FUZZ_CHECK(it.IsDone() == (model.lower_bound(0) == model.end()));
            FUZZ_CHECK(it.IsDone() || it.CurrentKey() == model.rbegin()->first);
            CheckTable<UintIterator>(*uints[s], uintModels[s]);
        }
    }

    // Sorted mode: by value, then by key.
    static int ByValueThenKey(void const* left, void const* right) {
        auto const* l = *static_cast<typename UintIterator::SortedRecord const* const*>(left);
        auto const* r = *static_cast<typename UintIterator::SortedRecord const* const*>(right);
        int const x = Number(*l->value), y = Number(*r->value);
        if (x != y) return x < y ? -1 : 1;
        return l->key < r->key ? -1 : l->key == r->key ? 0 : 1;
    }

    static void SortedWalk(Uint const& table, UintModel const& model) {
        std::vector<std::pair<int, unsigned int>> order;
        for (auto const& [key, value] : model) order.emplace_back(value, key);
        std::sort(order.begin(), order.end());
        InOrder(UintIterator(table, &ByValueThenKey), order, [](UintIterator& it, auto const& entry) {
            return it.CurrentKey() == entry.second && Number(it.CurrentValue()) == entry.first;
        });
    }

    void Start(Input& in) {
        for (int s = 0; s < kSlots; ++s) {
            Arguments const args = PickArguments(in);
            handles.emplace_back(new Table(args.a, args.b, args.c));
        }
        for (auto& table : uints) {
            Arguments const args = PickArguments(in);
            table = std::make_unique<Uint>(args.a, args.b, args.c);
        }
        started = true;
    }

    void Step(Input& in) {
        if (!started) Start(in);
        int const a = in.Below(kSlots), b = in.Below(kSlots);
        bool const signedSide = in.Below(2) == 0;
        unsigned int bits = PickBits(in);
        int const op = in.Below(6);
        if (op == 1 && in.Below(2) == 0)
            bits = signedSide ? static_cast<unsigned int>(NearKey(models[a], static_cast<int>(bits))) : NearKey(uintModels[a], bits);
        FUZZ_TRACE("step %d: %s %d (from %d): op %d, key %u\n", CurrentStep(), signedSide ? "table" : "uint", a, b, op, bits);
        if (signedSide) {
            TableModel& model = models[a];
            Handle& handle = handles[static_cast<std::size_t>(a)];
            int const key = static_cast<int>(bits);
            switch (op) {
                case 0:
                case 1: Edit(handle.Get(), model, key, op, in.Below(1000)); break;
                case 2:
                    handle = handles[static_cast<std::size_t>(b)];
                    model = models[b];
                    break;
                case 3: {  // a fresh table, possibly with other arguments
                    Arguments const args = PickArguments(in);
                    handle = Handle(new Table(args.a, args.b, args.c));
                    model.clear();
                    break;
                }
                default:
                    FUZZ_CHECK(handle.ConstGet()->IsMember(key) == (model.count(key) == 1));
            }
            FUZZ_CHECK((handle.ConstGet()->ConstGet(key) == nullptr) == (model.count(key) == 0));
        } else {
            Uint& table = *uints[a];
            UintModel& model = uintModels[a];
            switch (op) {
                case 0:
                case 1: Edit(table, model, bits, op, in.Below(50)); break;
                case 2:  // a deep copy; the two are independent from here on
                    uints[a] = std::make_unique<Uint>(*uints[b]);
                    model = uintModels[b];
                    break;
                case 3:
                    if (in.Below(2) == 0) {
                        table.Clear();
                        model.clear();
                    } else {
                        SortedWalk(table, model);
                    }
                    break;
                default:
                    Wander(UintIterator(table), model, in, SameEntry);
            }
        }
    }
};

inline void Run(std::uint8_t const* data, std::size_t size) { fuzz::Run<Tables>(data, size); }

}  // namespace fuzz::tables

#endif
