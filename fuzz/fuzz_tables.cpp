// Radix tables under random operations: signed tables of strings shared
// through cow_COW handles, and plain unsigned tables of int copied deeply,
// each made with construction arguments drawn from the input. After every
// operation each table is compared with a std::map model by lookups and by
// an ascending walk; walks in both directions and in sorted mode run on
// request.

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <map>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "FuzzSupport.h"
#include "zorvancow/tables/omi_IntTable.h"

namespace {

using fuzz::Input;

using Table = omi_IntTable<cow_String>;
using Handle = cow_COW<Table>;
using TableModel = std::map<int, std::string>;
using Uint = omi_UintTable<int>;
using UintModel = std::map<unsigned int, int>;

constexpr int kSlots = 4;
constexpr std::size_t kMaxKeys = 100;

// Construction arguments that keep every array small, since walks scan the
// pointer arrays and copies duplicate them: at most 2^12 table blocks, at
// most 2^12 element-block pointers in a table block, element blocks of at
// most 4096 values.
struct Arguments {
    unsigned int a, b, c;
};
Arguments PickArguments(Input& in) {
    if (in.Below(4) == 0) return {12, 10, 24};
    unsigned int const a = 8 + static_cast<unsigned int>(in.Below(5));
    unsigned int const lowest = 20 - a;
    unsigned int const e = lowest + static_cast<unsigned int>(in.Below(static_cast<int>(13 - lowest)));
    return {a, 32 - a - e, 1 + static_cast<unsigned int>(in.Below(64))};
}

// Keys in dense runs around places where key fields roll over, or anywhere.
unsigned int PickBits(Input& in) {
    static std::uint32_t const centres[] = {0u, 0xffffffffu, 0x80000000u, 0x7fffffffu, 1u << 20, 1u << 10, 1u << 12};
    if (in.Below(4) == 0) return in.Word();
    return centres[in.Below(7)] + static_cast<std::uint32_t>(in.Below(81)) - 40u;
}

void CheckTable(Table const& table, TableModel const& model) {
    FUZZ_CHECK(table.GetCount() == static_cast<int>(model.size()));
    omi_IntTableIterator<cow_String> it(table);
    auto expected = model.begin();
    for (it.First(); !it.IsDone(); it.Next(), ++expected) {
        FUZZ_CHECK(expected != model.end());
        FUZZ_CHECK(it.CurrentKey() == expected->first);
        FUZZ_CHECK(expected->second == it.CurrentValue().GetCString());
    }
    FUZZ_CHECK(expected == model.end());
    for (auto const& [key, text] : model) {
        cow_String const* value = table.ConstGet(key);
        FUZZ_CHECK(value != nullptr && text == value->GetCString());
        FUZZ_CHECK(table.FindBlock(key) != nullptr);
    }
    // Last goes to the greatest non-negative key.
    it.Last();
    auto nonNegative = model.lower_bound(0);
    FUZZ_CHECK(it.IsDone() == (nonNegative == model.end()));
    FUZZ_CHECK(it.IsDone() || it.CurrentKey() == model.rbegin()->first);
}

void CheckUint(Uint const& table, UintModel const& model) {
    FUZZ_CHECK(table.GetCount() == static_cast<int>(model.size()));
    omi_UintTableIterator<int> it(table);
    auto expected = model.begin();
    for (it.First(); !it.IsDone(); it.Next(), ++expected) {
        FUZZ_CHECK(expected != model.end());
        FUZZ_CHECK(it.CurrentKey() == expected->first);
        FUZZ_CHECK(it.CurrentValue() == expected->second);
    }
    FUZZ_CHECK(expected == model.end());
    for (auto const& [key, value] : model) {
        int const* found = table.ConstGet(key);
        FUZZ_CHECK(found != nullptr && *found == value);
    }
}

// Sorted mode: by value, then by key.
int ByValueThenKey(void const* left, void const* right) {
    auto const* l = *static_cast<omi_UintTableIterator<int>::SortedRecord const* const*>(left);
    auto const* r = *static_cast<omi_UintTableIterator<int>::SortedRecord const* const*>(right);
    if (*l->value != *r->value) return *l->value < *r->value ? -1 : 1;
    return l->key < r->key ? -1 : l->key == r->key ? 0 : 1;
}

// A plain walk with a change of direction at random points.
void Wander(Uint const& table, UintModel const& model, Input& in) {
    omi_UintTableIterator<int> it(table);
    auto at = model.begin();
    if (in.Below(2) == 0) {
        it.First();
    } else {
        it.Last();
        at = model.empty() ? model.end() : std::prev(model.end());
    }
    for (int steps = in.Below(40); steps > 0; --steps) {
        FUZZ_CHECK(it.IsDone() == (at == model.end()));
        if (it.IsDone()) break;
        FUZZ_CHECK(it.CurrentKey() == at->first && it.CurrentValue() == at->second);
        if (in.Below(2) == 0) {
            it.Next();
            ++at;
        } else {
            it.Prev();
            at = at == model.begin() ? model.end() : std::prev(at);
        }
    }
}

void SortedWalk(Uint const& table, UintModel const& model) {
    std::vector<std::pair<int, unsigned int>> order;
    for (auto const& [key, value] : model) order.emplace_back(value, key);
    std::sort(order.begin(), order.end());
    omi_UintTableIterator<int> it(table, &ByValueThenKey);
    std::size_t i = 0;
    for (it.First(); !it.IsDone(); it.Next(), ++i) {
        FUZZ_CHECK(i < order.size());
        FUZZ_CHECK(it.CurrentKey() == order[i].second && it.CurrentValue() == order[i].first);
    }
    FUZZ_CHECK(i == order.size());
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    fuzz::StartLibrary();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    fuzz::LiveCounters const counters;
    {
        Input in(data, size);
        std::vector<Handle> handles;
        std::vector<TableModel> models(kSlots);
        for (int s = 0; s < kSlots; ++s) {
            Arguments const args = PickArguments(in);
            handles.emplace_back(new Table(args.a, args.b, args.c));
        }
        std::unique_ptr<Uint> uints[kSlots];
        UintModel uintModels[kSlots];
        for (auto& table : uints) {
            Arguments const args = PickArguments(in);
            table = std::make_unique<Uint>(args.a, args.b, args.c);
        }

        for (int step = 0; step < 1000 && !in.Done(); ++step) {
            int const a = in.Below(kSlots), b = in.Below(kSlots);
            bool const signedSide = in.Below(2) == 0;
            unsigned int bits = PickBits(in);
            int const op = in.Below(6);
            FUZZ_TRACE("%s %d (from %d): op %d, key %u\n", signedSide ? "table" : "uint", a, b, op, bits);
            if (signedSide) {
                TableModel& model = models[static_cast<std::size_t>(a)];
                int key = static_cast<int>(bits);
                if (!model.empty() && op == 1 && in.Below(2) == 0) {
                    auto at = model.lower_bound(key);
                    key = at == model.end() ? model.begin()->first : at->first;
                }
                switch (op) {
                    case 0: {
                        if (model.size() >= kMaxKeys && model.count(key) == 0) break;
                        std::string const text = fuzz::PickText(in);
                        bool const added = handles[static_cast<std::size_t>(a)].Get().Insert(key, cow_String(text.c_str()));
                        FUZZ_CHECK(added == (model.count(key) == 0));
                        model[key] = text;
                        break;
                    }
                    case 1:
                        FUZZ_CHECK(handles[static_cast<std::size_t>(a)].Get().Remove(key) == (model.erase(key) == 1));
                        break;
                    case 2:
                        handles[static_cast<std::size_t>(a)] = handles[static_cast<std::size_t>(b)];
                        model = models[static_cast<std::size_t>(b)];
                        break;
                    case 3: {  // a fresh table, possibly with other arguments
                        Arguments const args = PickArguments(in);
                        handles[static_cast<std::size_t>(a)] = Handle(new Table(args.a, args.b, args.c));
                        model.clear();
                        break;
                    }
                    default: {
                        Table const& table = *handles[static_cast<std::size_t>(a)].ConstGet();
                        FUZZ_CHECK(table.IsMember(key) == (model.count(key) == 1));
                        FUZZ_CHECK((table.ConstGet(key) == nullptr) == (model.count(key) == 0));
                    }
                }
            } else {
                Uint& table = *uints[a];
                UintModel& model = uintModels[a];
                if (!model.empty() && op == 1 && in.Below(2) == 0) {
                    auto at = model.lower_bound(bits);
                    bits = at == model.end() ? model.begin()->first : at->first;
                }
                switch (op) {
                    case 0: {
                        if (model.size() >= kMaxKeys && model.count(bits) == 0) break;
                        int const value = in.Below(50);
                        FUZZ_CHECK(table.Insert(bits, value) == (model.count(bits) == 0));
                        model[bits] = value;
                        break;
                    }
                    case 1:
                        FUZZ_CHECK(table.Remove(bits) == (model.erase(bits) == 1));
                        FUZZ_CHECK(!table.IsMember(bits));
                        break;
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
                        Wander(table, model, in);
                }
            }
            for (int s = 0; s < kSlots; ++s) {
                CheckTable(*handles[static_cast<std::size_t>(s)].ConstGet(), models[static_cast<std::size_t>(s)]);
                CheckUint(*uints[s], uintModels[s]);
            }
        }
    }
    counters.ExpectBack();
    return 0;
}
