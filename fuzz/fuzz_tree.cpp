// Trees under random operations: trees of trees (string keys, each value an
// int tree), several of them sharing nodes through copies, heap copies and
// values handed from one tree to another. After every operation each tree is
// compared with a std::map of std::maps, walked both ways, and its shape is
// checked: keys in order, no stored depth below the exact one.

#include <cstdint>
#include <iterator>
#include <map>
#include <string>

#include "FuzzSupport.h"
#include "zorvancow/tree/cow_Btree.h"

namespace {

using fuzz::Input;

using Inner = cow_Btree<int, int>;
using Outer = cow_Btree<cow_String, Inner>;
using InnerModel = std::map<int, int>;
using OuterModel = std::map<std::string, InnerModel>;

constexpr int kSlots = 4;
constexpr int kMaxInner = 32;
constexpr std::size_t kMaxOuter = 48;

// Inner keys stay far inside the 2^31 span that integer keys of one tree
// must keep.
int PickInnerKey(Input& in) {
    if (in.Below(8) != 0) return in.Below(200) - 100;
    return static_cast<int>(in.Word() >> 3) - (1 << 28);
}

int ModelKey(int key) { return key; }
std::string ModelKey(cow_String const& key) { return key.GetCString(); }

// Checks key order and stored depths below `link` (keys read as the model
// orders them); returns the exact height, -1 for an empty subtree.
template <class Handle, class Key>
int CheckShape(Handle const* link, Key const* low, Key const* high) {
    if (link == nullptr) return -1;
    auto const* node = link->ConstGet();
    FUZZ_CHECK(node != nullptr);
    Key const key(ModelKey(node->GetKey()));
    FUZZ_CHECK(low == nullptr || *low < key);
    FUZZ_CHECK(high == nullptr || key < *high);
    int const l = CheckShape(node->GetLeft(), low, &key);
    int const r = CheckShape(node->GetRight(), &key, high);
    int const exact = 1 + (l > r ? l : r);
    FUZZ_CHECK(exact == 0 ? node->GetMaxDepth() == 0 : node->GetMaxDepth() >= exact);
    return exact;
}

void CheckInner(Inner const& tree, InnerModel const& model) {
    FUZZ_CHECK(tree.GetCount() == static_cast<int>(model.size()));
    FUZZ_CHECK((tree.GetRoot() == nullptr) == model.empty());
    cow_BtreeIterator<int, int> it(tree);
    auto expected = model.begin();
    for (it.First(); !it.IsDone(); it.Next(), ++expected) {
        FUZZ_CHECK(expected != model.end());
        FUZZ_CHECK(it.CurrentKey() == expected->first);
        FUZZ_CHECK(it.CurrentValue() == expected->second);
    }
    FUZZ_CHECK(expected == model.end());
    CheckShape<Inner::Handle, int>(tree.GetRoot(), nullptr, nullptr);
}

void CheckOuter(Outer const& tree, OuterModel const& model) {
    FUZZ_CHECK(tree.GetCount() == static_cast<int>(model.size()));
    FUZZ_CHECK((tree.GetRoot() == nullptr) == model.empty());
    cow_BtreeIterator<cow_String, Inner> it(tree);
    auto expected = model.begin();
    for (it.First(); !it.IsDone(); it.Next(), ++expected) {
        FUZZ_CHECK(expected != model.end());
        FUZZ_CHECK(expected->first == it.CurrentKey().GetCString());
        CheckInner(it.CurrentValue(), expected->second);
    }
    FUZZ_CHECK(expected == model.end());
    auto back = model.rbegin();
    for (it.Last(); !it.IsDone(); it.Previous(), ++back) {
        FUZZ_CHECK(back != model.rend());
        FUZZ_CHECK(back->first == it.CurrentKey().GetCString());
    }
    FUZZ_CHECK(back == model.rend());
    CheckShape<Outer::Handle, std::string>(tree.GetRoot(), nullptr, nullptr);
}

Inner MakeInner(Input& in, InnerModel& model) {
    Inner tree;
    for (int n = in.Below(12); n > 0; --n) {
        int const key = PickInnerKey(in), value = in.Below(1000);
        FUZZ_CHECK(tree.InsertUnlessMember(key, value) == model.emplace(key, value).second);
    }
    return tree;
}

// Writes through one inner tree reached by Get: the change must stay in it.
void EditInner(Inner& tree, InnerModel& model, Input& in) {
    int const key = PickInnerKey(in), value = in.Below(1000);
    switch (in.Below(4)) {
        case 0:
            if (static_cast<int>(model.size()) >= kMaxInner) break;
            FUZZ_CHECK(tree.InsertUnlessMember(key, value) == model.emplace(key, value).second);
            break;
        case 1: {
            // Remove a present key most of the time, so that removals with
            // two children and successor moves are common.
            int target = key;
            if (!model.empty() && in.Below(4) != 0) {
                auto at = model.lower_bound(key);
                target = at == model.end() ? model.begin()->first : at->first;
            }
            FUZZ_CHECK(tree.Remove(target) == (model.erase(target) == 1));
            break;
        }
        case 2: {
            int* found = tree.Get(key);
            auto at = model.find(key);
            FUZZ_CHECK((found != nullptr) == (at != model.end()));
            if (found != nullptr) *found = at->second = value;
            break;
        }
        default:
            FUZZ_CHECK(tree.IsMember(key) == (model.count(key) == 1));
            FUZZ_CHECK(tree.ConstGet(key) == (model.count(key) == 1 ? model.at(key) : 0));
    }
}

// Walks with direction changes at random points, against the model.
void Wander(Outer const& tree, OuterModel const& model, Input& in) {
    cow_BtreeIterator<cow_String, Inner> it(tree);
    bool const fromFront = in.Below(2) == 0;
    auto at = model.begin();
    if (fromFront) {
        it.First();
    } else {
        it.Last();
        at = model.empty() ? model.end() : std::prev(model.end());
    }
    for (int steps = in.Below(40); !it.IsDone() && steps > 0; --steps) {
        FUZZ_CHECK(at != model.end());
        FUZZ_CHECK(at->first == it.CurrentKey().GetCString());
        FUZZ_CHECK(it.CurrentValue().GetCount() == static_cast<int>(at->second.size()));
        if (in.Below(2) == 0) {
            it.Next();
            ++at;
        } else {
            it.Previous();
            at = at == model.begin() ? model.end() : std::prev(at);
        }
        FUZZ_CHECK(it.IsDone() == (at == model.end()));
    }
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
        Outer trees[kSlots];
        OuterModel models[kSlots];
        for (int step = 0; step < 2000 && !in.Done(); ++step) {
            int const a = in.Below(kSlots), b = in.Below(kSlots);
            Outer& tree = trees[a];
            OuterModel& model = models[a];
            std::string const text = fuzz::PickText(in);
            cow_String const key(text.c_str());
            int const op = in.Below(9);
            FUZZ_TRACE("tree %d (from %d): op %d, key \"%s\"\n", a, b, op, text.c_str());
            switch (op) {
                case 0: {  // a new inner tree, or one shared with another outer tree
                    InnerModel innerModel;
                    Inner inner = MakeInner(in, innerModel);
                    if (!models[b].empty() && in.Below(2) == 0) {
                        auto from = models[b].lower_bound(fuzz::PickText(in));
                        if (from == models[b].end()) from = models[b].begin();
                        inner = trees[b].ConstGet(cow_String(from->first.c_str()));
                        innerModel = from->second;
                    }
                    if (model.size() >= kMaxOuter && model.count(text) == 0) break;
                    FUZZ_CHECK(tree.InsertUnlessMember(key, inner) == model.emplace(text, innerModel).second);
                    break;
                }
                case 1: {
                    std::string target = text;
                    if (!model.empty() && in.Below(4) != 0) {
                        auto at = model.lower_bound(text);
                        target = at == model.end() ? model.begin()->first : at->first;
                    }
                    FUZZ_CHECK(tree.Remove(cow_String(target.c_str())) == (model.erase(target) == 1));
                    break;
                }
                case 2:
                case 3: {
                    Inner* inner = tree.Get(key);
                    auto at = model.find(text);
                    FUZZ_CHECK((inner != nullptr) == (at != model.end()));
                    if (inner != nullptr) EditInner(*inner, at->second, in);
                    break;
                }
                case 4:
                    tree = trees[b];
                    model = models[b];
                    break;
                case 5: {
                    Outer* copy = trees[b].Copy();
                    CheckOuter(*copy, models[b]);
                    tree = *copy;
                    model = models[b];
                    // Writes to the heap copy stay in it.
                    InnerModel scratch;
                    copy->InsertUnlessMember(key, MakeInner(in, scratch));
                    delete copy;
                    break;
                }
                case 6:
                    Wander(tree, model, in);
                    break;
                case 7: {
                    cow_List<cow_String> keys = cow_BtreeUtils<cow_String, Inner>::cow_Keys(tree);
                    cow_List<Inner> values = cow_BtreeUtils<cow_String, Inner>::cow_Values(tree);
                    FUZZ_CHECK(keys.GetCount() == static_cast<int>(model.size()));
                    FUZZ_CHECK(values.GetCount() == static_cast<int>(model.size()));
                    int i = 0;
                    for (auto const& [k, v] : model) {
                        FUZZ_CHECK(k == keys.ConstGet(i).GetCString());
                        CheckInner(values.ConstGet(i), v);
                        ++i;
                    }
                    break;
                }
                default: {
                    auto at = model.find(text);
                    FUZZ_CHECK(tree.IsMember(key) == (at != model.end()));
                    CheckInner(tree.ConstGet(key), at != model.end() ? at->second : InnerModel());
                }
            }
            for (int s = 0; s < kSlots; ++s) CheckOuter(trees[s], models[s]);
        }
    }
    counters.ExpectBack();
    return 0;
}
