#ifndef ZORVANCOW_HISTORY_COW_DIFF_H
#define ZORVANCOW_HISTORY_COW_DIFF_H

// What changed between two versions of a value, found without reading what
// the two share.
//
// Sequences (cow_1DArray, cow_1DArrayList, cow_List, cow_FixedArray,
// cow_2DArray): cow_Diff(a, b, changed) calls changed(int index) once for
// every index whose elements differ and for every index that only one of
// the two has, in ascending order.
//
// Trees and maps: cow_Diff(a, b, added, removed, changed) calls
// added(key, value) for a key only b holds, removed(key, value) for a key
// only a holds, and changed(key, oldValue, newValue) for a key both hold
// with values that differ. A tree reports in key order; a map in the order
// of its walk (digit 0 before digit 1 at every level, not sorted).
//
// Elements and values compare by the element rules (cow_Element<T>::Equal:
// numbers by ==, strings by bytes). One element or value in one storage is
// equal without a look, and nested containers and strings compare by their
// sharing first: two that hold the same storage are equal without reading it.
//
// Costs, with n the elements or keys and d the changes:
// - cow_1DArray and the lists: nothing when the two share their table and
//   head. When they have one block length and their heads lie at one offset
//   in a block (one is a changed copy of the other, or both of a third), one
//   pointer compare per block, and the elements of the blocks that differ:
//   about n / L + d * L for blocks of L elements. Otherwise (different block
//   lengths or a shifted head) every element pair is compared, except where
//   both read one block at one place.
// - cow_FixedArray, cow_2DArray: nothing when they share their storage,
//   else every element pair (the storage is one piece; a write copies it
//   whole). A matrix compares as one run, row after row: index
//   row * columns + column, and shapes that differ compare their runs.
// - cow_Btree: subtrees that both hold are skipped by one pointer compare.
//   Versions apart by d inserts, removals or writes differ on about d search
//   paths, so about d * log n nodes are read. Where rotations gave the two
//   trees different shapes, the unshared nodes are merged by key, and every
//   node below them that is shared again is skipped again.
// - cow_Map: subtrees that both hold at one place are skipped. The nodes
//   the two do not share are read once, each with a short look over the
//   keys that sit at a different depth in the two maps (a removal pulls keys
//   up).
// Only a small stack of the walk is allocated; nothing of a or b changes
// (no block is created, no count moves).

#include <optional>
#include <type_traits>

#include "zorvancow/arrays/cow_1DArray.h"
#include "zorvancow/arrays/detail/cow_BlockCursor.h"
#include "zorvancow/core/cow_Element.h"
#include "zorvancow/core/cow_String.h"
#include "zorvancow/lists/cow_1DArrayList.h"
#include "zorvancow/lists/cow_List.h"
#include "zorvancow/map/cow_Map.h"
#include "zorvancow/map/detail/cow_MapPairedWalk.h"
#include "zorvancow/shapes/cow_2DArray.h"
#include "zorvancow/shapes/cow_FixedArray.h"
#include "zorvancow/tree/cow_Btree.h"
#include "zorvancow/tree/detail/cow_BtreeWalk.h"

namespace cow_detail {
// Element equality for a diff: the element rules, after a look at identity
// and, for counted values, at the storage they hold.
template <class T>
struct DiffEqual {
    static bool Equal(T const& a, T const& b) { return &a == &b || cow_Element<T>::Equal(a, b); }
};
template <>
struct DiffEqual<cow_String> {
    static bool Equal(cow_String const& a, cow_String const& b) {
        return a.GetHeader() == b.GetHeader() || cow_Element<cow_String>::Equal(a, b);
    }
};
template <class List>
struct ListDiffEqual {
    static bool Equal(List const& a, List const& b) {
        if (a.GetCount() != b.GetCount()) return false;
        bool same = true;
        cow_Diff(a, b, [&same](int) { same = false; });
        return same;
    }
};
template <class T>
struct DiffEqual<cow_List<T>> : ListDiffEqual<cow_List<T>> {};
template <class T>
struct DiffEqual<cow_1DArrayList<T>> : ListDiffEqual<cow_1DArrayList<T>> {};
template <class T>
struct DiffEqual<cow_1DArray<T>> : ListDiffEqual<cow_1DArray<T>> {};
template <class Shape>
struct ShapeDiffEqual {
    static bool Equal(Shape const& a, Shape const& b) { return a.GetRep() == b.GetRep() || cow_Element<Shape>::Equal(a, b); }
};
template <class T>
struct DiffEqual<cow_FixedArray<T>> : ShapeDiffEqual<cow_FixedArray<T>> {};
template <class T>
struct DiffEqual<cow_2DArray<T>> : ShapeDiffEqual<cow_2DArray<T>> {};
template <class Keyed>
struct KeyedDiffEqual {
    static bool Equal(Keyed const& a, Keyed const& b) {
        if (a.GetCount() != b.GetCount()) return false;
        bool same = true;
        auto differ = [&same](auto const&...) { same = false; };
        cow_Diff(a, b, differ, differ, differ);
        return same;
    }
};
template <class K, class V>
struct DiffEqual<cow_Btree<K, V>> : KeyedDiffEqual<cow_Btree<K, V>> {};
template <class K, class V>
struct DiffEqual<cow_Map<K, V>> : KeyedDiffEqual<cow_Map<K, V>> {};

// The diff of elements 0 to n - 1 of array a against 0 to m - 1 of array b.
template <class T, class Changed>
void SequenceDiff(cow_1DArray<T> const& a, int n, cow_1DArray<T> const& b, int m, Changed& changed) {
    int const common = n < m ? n : m;
    std::optional<T> zero;  // what a slot without a block reads as, made when first needed
    PairedBlockRuns(a, b, common, [&](int i, int run, T const* x, T const* y) {
        if ((x == nullptr || y == nullptr) && !zero) zero.emplace();
        for (int k = 0; k < run; ++k) {
            T const& left = x != nullptr ? x[k] : *zero;
            T const& right = y != nullptr ? y[k] : *zero;
            if (!DiffEqual<T>::Equal(left, right)) changed(i + k);
        }
    });
    for (int i = common, last = n > m ? n : m; i < last; ++i) changed(i);
}

// The diff of two runs of elements, as one piece of storage each.
template <class T, class Changed>
void RunDiff(T const* a, int n, T const* b, int m, Changed& changed) {
    int const common = n < m ? n : m;
    if (a != b) {
        for (int i = 0; i < common; ++i) {
            if (!DiffEqual<T>::Equal(a[i], b[i])) changed(i);
        }
    }
    for (int i = common, last = n > m ? n : m; i < last; ++i) changed(i);
}
}  // namespace cow_detail

// Sequences: changed(index) for every index where a and b differ, ascending
// (see the top of this file for the cost).
template <class T, class Changed>
void cow_Diff(cow_1DArray<T> const& a, cow_1DArray<T> const& b, Changed&& changed) {
    cow_detail::SequenceDiff(a, a.GetSize(), b, b.GetSize(), changed);
}
template <class T, class Changed>
void cow_Diff(cow_1DArrayList<T> const& a, cow_1DArrayList<T> const& b, Changed&& changed) {
    cow_detail::SequenceDiff(a.GetArray(), a.GetCount(), b.GetArray(), b.GetCount(), changed);
}
template <class T, class Changed>
void cow_Diff(cow_List<T> const& a, cow_List<T> const& b, Changed&& changed) {
    cow_detail::SequenceDiff(a.GetArray(), a.GetCount(), b.GetArray(), b.GetCount(), changed);
}
template <class T, class Changed>
void cow_Diff(cow_FixedArray<T> const& a, cow_FixedArray<T> const& b, Changed&& changed) {
    auto const* x = a.GetRep();
    auto const* y = b.GetRep();
    cow_detail::RunDiff(x != nullptr ? x->data : nullptr, a.GetSize(), y != nullptr ? y->data : nullptr, b.GetSize(),
                        changed);
}
// Matrices by index row * columns + column, as one run each.
template <class T, class Changed>
void cow_Diff(cow_2DArray<T> const& a, cow_2DArray<T> const& b, Changed&& changed) {
    auto const* x = a.GetRep();
    auto const* y = b.GetRep();
    int const n = x != nullptr && x->data != nullptr ? x->rows * x->columns : 0;
    int const m = y != nullptr && y->data != nullptr ? y->rows * y->columns : 0;
    cow_detail::RunDiff(x != nullptr ? x->data : nullptr, n, y != nullptr ? y->data : nullptr, m, changed);
}

// Trees: added(key, value), removed(key, value) and changed(key, oldValue,
// newValue) in key order (see the top of this file for the cost).
template <class K, class V, class Added, class Removed, class Changed>
void cow_Diff(cow_Btree<K, V> const& a, cow_Btree<K, V> const& b, Added&& added, Removed&& removed,
              Changed&& changed) {
    using Node = cow_BtreeNode<K, V>;
    Node const* rootA = a.GetRoot() != nullptr ? a.GetRoot()->ConstGet() : nullptr;
    Node const* rootB = b.GetRoot() != nullptr ? b.GetRoot()->ConstGet() : nullptr;
    cow_detail::BtreePairedWalk<K>(
        rootA, rootB,
        [&](Node const* node, bool first) {
            if (first) removed(node->GetKey(), node->GetValue());
            else added(node->GetKey(), node->GetValue());
        },
        [&](Node const* x, Node const* y) {
            if (!cow_detail::DiffEqual<V>::Equal(x->GetValue(), y->GetValue()))
                changed(x->GetKey(), x->GetValue(), y->GetValue());
        });
}

// Maps: the same three calls, in the order of the map's walk.
template <class K, class V, class Added, class Removed, class Changed>
void cow_Diff(cow_Map<K, V> const& a, cow_Map<K, V> const& b, Added&& added, Removed&& removed, Changed&& changed) {
    using Node = cow_MapNode<K, V>;
    cow_detail::MapPairedWalk<K>(
        a.GetRoot().ConstGet(), b.GetRoot().ConstGet(),
        [&](Node const* node, bool first) {
            if (first) removed(node->key, node->value);
            else added(node->key, node->value);
        },
        [&](Node const* x, Node const* y) {
            if (!cow_detail::DiffEqual<V>::Equal(x->value, y->value)) changed(x->key, x->value, y->value);
        });
}

#endif
