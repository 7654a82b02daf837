#ifndef ZORVANCOW_FUZZ_OPS_TREE_H
#define ZORVANCOW_FUZZ_OPS_TREE_H

// The operation interpreter of trees: trees of trees (text keys, each value
// a tree from int to the element type), four of them sharing nodes through
// copies, heap copies and values handed from one tree to another. After
// every operation each tree is compared with a std::map of std::maps,
// walked both ways, and its shape is checked: keys in order, no stored depth
// below the exact one.

#include <iterator>
#include <map>
#include <memory>
#include <string>

#include "ops/Support.h"
#include "zorvancow/tree/cow_Btree.h"

namespace fuzz::tree {

constexpr int kSlots = 4;
constexpr int kMaxInner = 32;
constexpr std::size_t kMaxOuter = 48;

using InnerModel = std::map<int, int>;
using OuterModel = std::map<std::string, InnerModel>;

// Inner keys stay far inside the 2^31 span that integer keys of one tree
// must keep.
inline int PickInnerKey(Input& in) {
    if (in.Below(8) != 0) return in.Below(200) - 100;
    return static_cast<int>(in.Word() >> 3) - (1 << 28);
}

// A present key most of the time, so that removals with two children and
// successor moves are common.
template <class Model, class Key>
Key NearKey(Model const& model, Key key, Input& in) {
    return model.empty() || in.Below(4) == 0 ? key : fuzz::NearKey(model, key);
}

// Checks key order and stored depths below `link` (keys read as the model
// orders them); returns the exact height, -1 for an empty subtree.
template <class Handle, class Key>
int CheckShape(Handle const* link, Key const* low, Key const* high) {
    if (link == nullptr) return -1;
    auto const* node = link->ConstGet();
    FUZZ_CHECK(node != nullptr);
    Key const key(ModelKey(node->GetKey()));
    FUZZ_CHECK((low == nullptr || *low < key) && (high == nullptr || key < *high));
    int const l = CheckShape(node->GetLeft(), low, &key);
    int const r = CheckShape(node->GetRight(), &key, high);
    int const exact = 1 + (l > r ? l : r);
    FUZZ_CHECK(exact == 0 ? node->GetMaxDepth() == 0 : node->GetMaxDepth() >= exact);
    return exact;
}

// Two trees of one shape: the same keys in the same places, with the same
// stored depths.
template <class Handle>
bool SameShape(Handle const* x, Handle const* y) {
    if (x == nullptr || y == nullptr) return x == y;
    auto const *p = x->ConstGet(), *q = y->ConstGet();
    return p->GetKey() == q->GetKey() && p->GetMaxDepth() == q->GetMaxDepth() &&
           SameShape(p->GetLeft(), q->GetLeft()) && SameShape(p->GetRight(), q->GetRight());
}

// A tree against its model, outer or inner: both walks, every value, and
// the shape.
using fuzz::Same;
template <class K, class V, class Model>
bool Same(cow_Btree<K, V> const& tree, Model const& model) {
    FUZZ_CHECK(tree.GetCount() == static_cast<int>(model.size()) && (tree.GetRoot() == nullptr) == model.empty());
    cow_BtreeIterator<K, V> it(tree);
    InOrder(it, model, [](auto& at, auto const& entry) {
        return ModelKey(at.CurrentKey()) == entry.first && Same(at.CurrentValue(), entry.second);
    });
    auto back = model.rbegin();
    for (it.Last(); !it.IsDone(); it.Previous(), ++back)
        FUZZ_CHECK(back != model.rend() && ModelKey(it.CurrentKey()) == back->first);
    FUZZ_CHECK(back == model.rend());
    CheckShape<typename cow_Btree<K, V>::Handle, typename Model::key_type>(tree.GetRoot(), nullptr, nullptr);
    return true;
}

template <class T>
struct Trees {
    static constexpr int kSteps = 2000;
    using Inner = cow_Btree<int, T>;
    using Outer = cow_Btree<cow_String, Inner>;

    Outer trees[kSlots];
    OuterModel models[kSlots];

    void CheckAll() {
        for (int s = 0; s < kSlots; ++s) Same(trees[s], models[s]);
        auto const [s, t] = DiffPair(kSlots);
        CheckDiff(trees[s], trees[t], models[s], models[t]);
    }
    template <class F>
    void EachValue(F&& f) {
        for (int s = 0; s < kSlots; ++s) f(ReadBack<OuterModel>(trees[s]), models[s]);
    }

    static Inner MakeInner(Input& in, InnerModel& model) {
        Inner tree;
        for (int n = in.Below(12); n > 0; --n) {
            int const key = PickInnerKey(in), value = in.Below(1000);
            FUZZ_CHECK(tree.InsertUnlessMember(key, Make<T>(value)) == model.emplace(key, value).second);
        }
        return tree;
    }

    // find stands on its key and steps both ways from there to the model's
    // neighbours, with the path that key needs or with one too short for the
    // tree (the steps then search from the root).
    template <int PathLength>
    static void FindSteps(Outer const& tree, OuterModel const& model, std::string const& text) {
        using It = cow_BtreeStdIter<cow_String, Inner, PathLength>;
        It const found(tree, cow_String(text.c_str()));
        auto const at = model.find(text);
        FUZZ_CHECK((found == It::End(tree)) == (at == model.end()));
        if (at == model.end()) return;
        auto const next = std::next(at);
        FUZZ_CHECK(next == model.end() ? std::next(found) == It::End(tree) : ModelKey(std::next(found)->first) == next->first);
        FUZZ_CHECK(at == model.begin() || ModelKey(std::prev(found)->first) == std::prev(at)->first);
    }

    // Writes through one inner tree reached by Get: the change must stay in it.
    static void EditInner(Inner& tree, InnerModel& model, Input& in) {
        int const key = PickInnerKey(in), value = in.Below(1000);
        int const op = in.Below(4);
        if (op == 0 && static_cast<int>(model.size()) < kMaxInner) {
            FUZZ_CHECK(tree.InsertUnlessMember(key, Make<T>(value)) == model.emplace(key, value).second);
        } else if (op == 1) {
            int const target = NearKey(model, key, in);
            FUZZ_CHECK(tree.Remove(target) == (model.erase(target) == 1));
        } else if (op == 2) {
            T* found = tree.Get(key);
            auto at = model.find(key);
            FUZZ_CHECK((found != nullptr) == (at != model.end()));
            if (found != nullptr) *found = Make<T>(at->second = value);
        } else if (op == 3) {
            FUZZ_CHECK(tree.IsMember(key) == (model.count(key) == 1));
            FUZZ_CHECK(Number(tree.ConstGet(key)) == (model.count(key) == 1 ? model.at(key) : 0));
        }
    }

    void Step(Input& in) {
        int const a = in.Below(kSlots), b = in.Below(kSlots);
        Outer& tree = trees[a];
        OuterModel& model = models[a];
        std::string const text = PickText(in);
        cow_String const key(text.c_str());
        int const op = in.Below(9);
        FUZZ_TRACE("step %d: tree %d (from %d): op %d, key \"%s\"\n", CurrentStep(), a, b, op, text.c_str());
        switch (op) {
            case 0: {  // a new inner tree, or one shared with another outer tree
                InnerModel innerModel;
                Inner inner = MakeInner(in, innerModel);
                if (!models[b].empty() && in.Below(2) == 0) {
                    auto from = models[b].lower_bound(PickText(in));
                    if (from == models[b].end()) from = models[b].begin();
                    inner = trees[b].ConstGet(cow_String(from->first.c_str()));
                    innerModel = from->second;
                }
                if (model.size() >= kMaxOuter && model.count(text) == 0) break;
                if (in.Below(2) == 0) {
                    FUZZ_CHECK(tree.InsertUnlessMember(key, inner) == model.emplace(text, innerModel).second);
                } else {  // replaces the value of a held key
                    auto const [at, added] = tree.insert_or_assign(key, inner);
                    FUZZ_CHECK(added == (model.count(text) == 0) && at->first == key);
                    model[text] = innerModel;
                }
                break;
            }
            case 1: {  // Remove, erase of a key, or erase of a position, which gives the next one
                std::string const target = NearKey(model, text, in);
                cow_String const held(target.c_str());
                auto const found = tree.find(held);
                bool const removed = model.erase(target) == 1;
                auto const next = model.upper_bound(target);
                if (in.Below(3) == 0) FUZZ_CHECK(tree.Remove(held) == removed);
                else if (!removed || in.Below(2) == 0) FUZZ_CHECK(tree.erase(held) == (removed ? 1u : 0u));
                else FUZZ_CHECK(next == model.end() ? tree.erase(found) == tree.end() : tree.erase(found)->first == next->first.c_str());
                break;
            }
            case 2:
            case 3: {  // through Get of a key, or of a position that find gave
                Inner* inner = tree.contains(key) && in.Below(2) == 0 ? &tree.Get(tree.find(key)) : tree.Get(key);
                auto at = model.find(text);
                FUZZ_CHECK((inner != nullptr) == (at != model.end()));
                if (inner != nullptr) EditInner(*inner, at->second, in);
                break;
            }
            case 4:  // a hand-over keeps the shape, node for node
                if (Share(trees, models, a, b)) FUZZ_CHECK(SameShape(trees[a].GetRoot(), trees[b].GetRoot()));
                break;
            case 5: {  // a heap copy, sometimes of an empty tree; writes to it stay in it
                bool const empty = in.Below(8) == 0;
                std::unique_ptr<Outer> copy(empty ? Outer().Copy() : trees[b].Copy());
                model = empty ? OuterModel() : models[b];
                Same(*copy, model);
                tree = *copy;
                InnerModel scratch;
                copy->InsertUnlessMember(key, MakeInner(in, scratch));
                break;
            }
            case 6:
                FindSteps<48>(tree, model, NearKey(model, text, in));
                FindSteps<2>(tree, model, NearKey(model, text, in));
                Wander(cow_BtreeIterator<cow_String, Inner>(tree), model, in, [](auto& it, auto const& entry) {
                    return entry.first == it.CurrentKey().GetCString() &&
                           it.CurrentValue().GetCount() == static_cast<int>(entry.second.size());
                });
                break;
            case 7: {
                cow_List<cow_String> keys = cow_BtreeUtils<cow_String, Inner>::cow_Keys(tree);
                cow_List<Inner> values = cow_BtreeUtils<cow_String, Inner>::cow_Values(tree);
                FUZZ_CHECK(keys.GetCount() == static_cast<int>(model.size()) && values.GetCount() == keys.GetCount());
                auto at = model.begin();
                for (int i = 0; i < keys.GetCount(); ++i, ++at)
                    FUZZ_CHECK(at->first == keys.ConstGet(i).GetCString() && Same(values.ConstGet(i), at->second));
                break;
            }
            default: {
                auto at = model.find(text);
                FUZZ_CHECK(tree.IsMember(key) == (at != model.end()));
                Same(tree.ConstGet(key), at != model.end() ? at->second : InnerModel());
            }
        }
    }
};

inline void Run(std::uint8_t const* data, std::size_t size) { fuzz::Run<Trees>(data, size); }

}  // namespace fuzz::tree

#endif
