#ifndef ZORVANCOW_CORE_COW_HANDOVER_H
#define ZORVANCOW_CORE_COW_HANDOVER_H

// Handing a value to another thread.
//
// Counts are plain integers, so values that share storage must stay on one
// thread: even copying or destroying one of them writes a count that the
// others read. cow_HandOver(value) gives a copy that shares no storage with
// any other value, at any level: a new table and new blocks for arrays and
// lists, new nodes for trees and maps, a new representation for fixed shapes
// and handles, a new text for every string, and the same again for every
// nested container. Nothing links the copy to the sender's values, so the
// copy may go to another thread while the sender goes on reading, copying
// and writing its own.
//
// The rule: call it on the thread that owns `value` (and every value sharing
// storage with it), and let the result reach the other thread without a copy
// of it staying behind. Every container moves: a move takes the storage and
// leaves the source empty, holding no count on anything (a moved-from value
// has no counter at all). So the result may go across by value: as an
// argument of std::thread (which moves a temporary), a lambda init-capture
// (`[job = cow_HandOver(value)]` or `[job = std::move(copy)]`), or
// promise.set_value(std::move(copy)). What must not happen is a copy: a
// named result captured or passed by copy leaves a sharing value behind.
// cow_HandOverPtr(value) makes the copy in place behind a std::unique_ptr.
// It is kept for callers that pass work as pointers (a queue of owned jobs,
// a type that is costly or impossible to move, such as a tree an iterator
// on the receiver's side will point at), and it cannot be copied by mistake.
// From then on the receiver owns the copy and everything that it shares with
// its own copies.
//
// Cost: a deep copy, linear in the elements and strings; every piece is
// allocated again. What the copy keeps:
// - arrays and lists: the same elements and size; a list's storage starts at
//   position 0 and holds exactly its count (no high-water mark), an array
//   gets the block length that its size would pick (see cow_1DArray(int)).
//   Slots that hold no block stay without one.
// - trees: the exact shape, node by node, with the stored depths;
// - maps: the exact shape (keys are put back in the order of the node walk,
//   which rebuilds every node at its old place);
// - fixed arrays and matrices: their extents and elements;
// - radix tables (omi_UintTable, omi_IntTable, and through cow_COW a shared
//   one): their arguments and held values (not the stale values that
//   removals leave in place).
// A tree's default value is a new default value of the value type.
//
// Plain numbers, bool and plain records (trivially copyable types) are
// copied as they are. A type without a rule here fails to compile.

#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

#include "zorvancow/arrays/cow_1DArray.h"
#include "zorvancow/arrays/detail/cow_BlockCursor.h"
#include "zorvancow/core/cow_COW.h"
#include "zorvancow/core/cow_String.h"
#include "zorvancow/lists/cow_1DArrayList.h"
#include "zorvancow/lists/cow_List.h"
#include "zorvancow/map/cow_Map.h"
#include "zorvancow/shapes/cow_2DArray.h"
#include "zorvancow/shapes/cow_FixedArray.h"
#include "zorvancow/tables/omi_IntTable.h"
#include "zorvancow/tree/cow_Btree.h"
#include "zorvanbase/omi_BlkBitVect.h"

// How one type is handed over: Copy(value) returns a copy that shares no
// storage. The general rule is for plain types; each container family has
// its own rule below.
template <class T>
struct cow_HandOverTraits {
    static_assert(std::is_trivially_copyable<T>::value,
                  "cow_HandOver: this type has no hand-over rule (plain types and the library's containers have one)");
    static T Copy(T const& value) { return value; }
};

// A copy of `value` that shares no storage with any other value, at any
// level. Call it on the thread that owns `value`; the result may then be
// given to another thread.
template <class T>
T cow_HandOver(T const& value) {
    return cow_HandOverTraits<T>::Copy(value);
}

// The same copy, made in place on the heap: a std::unique_ptr moves to
// another thread as a pointer, so no copy of the value stays behind.
template <class T>
std::unique_ptr<T> cow_HandOverPtr(T const& value) {
    return std::unique_ptr<T>(cow_Allocate([&value] { return new T(cow_HandOver(value)); }));
}

// Strings: a new text, or no header at all for a value that had none.
template <>
struct cow_HandOverTraits<cow_String> {
    static cow_String Copy(cow_String const& value) {
        return value.GetHeader() != nullptr ? cow_String(value.GetCString()) : cow_String();
    }
};

template <>
struct cow_HandOverTraits<atr_String> {
    static atr_String Copy(atr_String const& value) {
        return value.GetHeader() != nullptr ? atr_String(value.GetCString()) : atr_String();
    }
};

// Bit vectors copy deeply already.
template <>
struct cow_HandOverTraits<omi_BlkBitVect> {
    static omi_BlkBitVect Copy(omi_BlkBitVect const& value) { return value; }
};

namespace cow_detail {
// Calls visit(i, element) for the elements 0 to n - 1 of an array (counted
// from its head), with a null element where the slot holds no block. Reads
// only: no block is created and no count changes, in the source or in any
// value sharing its storage.
template <class T, class Visit>
void HandOverEach(cow_1DArray<T> const& array, int n, Visit&& visit) {
    int const head = array.GetHeadPosition();
    for (BlockCursor at(head, array.GetShift(), head + n); !at.Done(); at.NextRun()) {
        T const* data = at.BlockData(array);
        int const i = at.Position() - head;
        for (int k = 0, run = at.Run(); k < run; ++k) visit(i + k, data != nullptr ? data + at.Offset() + k : nullptr);
    }
}
}  // namespace cow_detail

template <class T>
struct cow_HandOverTraits<cow_1DArray<T>> {
    static cow_1DArray<T> Copy(cow_1DArray<T> const& source) {
        int const size = source.GetSize();
        // The copy keeps the source's block length, as every copy does.
        if (size <= 0) return cow_1DArray<T>(source.GetBlockLength());
        cow_1DArray<T> copy(size, source.GetBlockLength());
        cow_detail::HandOverEach(source, size, [&copy](int i, T const* element) {
            if (element != nullptr) copy.Get(i) = cow_HandOver(*element);
        });
        return copy;
    }
};

namespace cow_detail {
// Both lists: a new list with each element handed over and appended in
// order (a hole, which no list has below its count, gives a default element).
template <class List>
struct ListHandOver {
    using T = typename List::value_type;
    static List Copy(List const& source) {
        List copy(source.GetArray().GetBlockLength());
        HandOverEach(source.GetArray(), source.GetCount(), [&copy](int, T const* element) {
            copy.Append(element != nullptr ? cow_HandOver(*element) : T());
        });
        return copy;
    }
};
}  // namespace cow_detail

template <class T>
struct cow_HandOverTraits<cow_1DArrayList<T>> : cow_detail::ListHandOver<cow_1DArrayList<T>> {};

template <class T>
struct cow_HandOverTraits<cow_List<T>> : cow_detail::ListHandOver<cow_List<T>> {};

template <class T>
struct cow_HandOverTraits<cow_FixedArray<T>> {
    static cow_FixedArray<T> Copy(cow_FixedArray<T> const& source) {
        int const size = source.GetSize();
        cow_FixedArray<T> copy(size, T());
        for (int i = 0; i < size; ++i) copy.Get(i) = cow_HandOver(source.ConstGet(i));
        return copy;
    }
};

template <class T>
struct cow_HandOverTraits<cow_2DArray<T>> {
    static cow_2DArray<T> Copy(cow_2DArray<T> const& source) {
        int const rows = source.GetRows();
        int const columns = source.GetColumns();
        cow_2DArray<T> copy(rows, columns, T());
        for (int r = 0; r < rows; ++r) {
            for (int c = 0; c < columns; ++c) copy.Get(r, c) = cow_HandOver(source.ConstGet(r, c));
        }
        return copy;
    }
};

// A handle: a new pointee handed over from the old one (or none), with a
// new counter at 1.
template <class T, class Cp>
struct cow_HandOverTraits<cow_COW<T, Cp>> {
    static cow_COW<T, Cp> Copy(cow_COW<T, Cp> const& source) {
        T const* pointee = source.ConstGet();
        if (pointee == nullptr) return cow_COW<T, Cp>(static_cast<T*>(nullptr));
        return cow_COW<T, Cp>(cow_Allocate([pointee] { return new T(cow_HandOver(*pointee)); }));
    }
};

// Tables: a new table of the same arguments, given the hand-over of each
// held value in key order. A copy of the table would not do: it copies the
// stale values that removals leave in place too, and their texts would stay
// shared with the sender's table.
template <class T>
struct cow_HandOverTraits<omi_UintTable<T>> {
    static omi_UintTable<T> Copy(omi_UintTable<T> const& source) {
        unsigned int const keyShift = source.GetKeyShift(), elementShift = source.GetElementShift();
        omi_UintTable<T> copy(32 - keyShift, keyShift - elementShift, source.GetBlockPointers());
        omi_UintTableIterator<T> it(source);
        for (it.First(); !it.IsDone(); it.Next()) copy.Insert(it.CurrentKey(), cow_HandOver(it.CurrentValue()));
        return copy;
    }
};
template <class T>
struct cow_HandOverTraits<omi_IntTable<T>> {
    static omi_IntTable<T> Copy(omi_IntTable<T> const& source) {
        omi_UintTable<T> const& half = source.GetNonNegative();
        unsigned int const keyShift = half.GetKeyShift(), elementShift = half.GetElementShift();
        omi_IntTable<T> copy(32 - keyShift, keyShift - elementShift, half.GetBlockPointers());
        omi_IntTableIterator<T> it(source);
        for (it.First(); !it.IsDone(); it.Next()) copy.Insert(it.CurrentKey(), cow_HandOver(it.CurrentValue()));
        return copy;
    }
};

// Trees keep their exact shape and depths (cow_Btree::Rebuilt); a rebuild by
// insertion could rotate differently. The copy's default value is a new
// default value of V, as a newly made tree has.
template <class K, class V>
struct cow_HandOverTraits<cow_Btree<K, V>> {
    static cow_Btree<K, V> Copy(cow_Btree<K, V> const& source) {
        return source.Rebuilt([](auto const& element) { return cow_HandOver(element); });
    }
};

// Maps are rebuilt by inserting the keys in the node walk's order (pre-order,
// digit 0 first): every key's ancestors are then in place before it, and its
// own place is still empty, so each node lands where it was.
template <class K, class V>
struct cow_HandOverTraits<cow_Map<K, V>> {
    using Map = cow_Map<K, V>;
    using Node = typename Map::Node;

    static Map Copy(Map const& source) {
        Map copy;
        // An explicit stack: a map's depth is bounded by its keys' digits,
        // not by a balance rule.
        std::vector<Node const*> pending;
        if (Node const* root = source.GetRoot().ConstGet()) pending.push_back(root);
        while (!pending.empty()) {
            Node const* node = pending.back();
            pending.pop_back();
            copy.Insert(cow_HandOver(node->key), cow_HandOver(node->value));
            if (Node const* one = node->child[1].ConstGet()) pending.push_back(one);
            if (Node const* zero = node->child[0].ConstGet()) pending.push_back(zero);
        }
        return copy;
    }
};

#endif
