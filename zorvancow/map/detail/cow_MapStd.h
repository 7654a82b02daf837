#ifndef ZORVANCOW_MAP_DETAIL_COW_MAPSTD_H
#define ZORVANCOW_MAP_DETAIL_COW_MAPSTD_H

// The standard interface of the map: forward iterators over a snapshot, in
// the node walk's order or sorted by key, == and printing. The members that
// use them (begin, find, Sorted, at, the constructors from ranges) are in
// map/cow_Map.h.
//
// begin() takes a snapshot, as cow_ConstMapIterator does: one more holder of
// the map's tree and one array of count + 1 node pointers, shared by all
// copies of the iterator and freed with the last one. The walk sees the map
// as it was at begin(), so a loop may write to the map it walks; the map's
// first write meanwhile copies the nodes on its path. The order is the node
// walk's (pre-order, not key order); Sorted() walks in key order instead.
// Each entry is a cow_Entry (`first` the key, `second` the value), so
// `for (auto const& [key, value] : map)` works.
//
// find() takes no snapshot: its iterator stands on the node and reads it in
// place, and only a step onward takes the snapshot of the map as it is then.
// Until that step it is invalidated by any write to the map, like a
// reference from ConstGet.

#include <iterator>

#include "zorvancow/core/cow_COW.h"
#include "zorvancow/core/cow_Std.h"

template <class K, class V>
class ZORVANCOW_TYPE cow_Map;
template <class K, class V>
class ZORVANCOW_TYPE cow_ConstMapSortedIt;

namespace cow_detail {
// A snapshot walk that several iterators share: the library's own iterator
// (plain or sorted), walked once at construction, with a count of the
// iterators that hold it (a cow_Counter of its own, made in place).
template <class Walk>
class MapSnapshot : public Walk {
public:
    template <class Map, class... Args>
    explicit MapSnapshot(Map const& source, Args... args) : Walk(source, args...) {
        this->First();
    }
    auto At(int index) const { return this->nodes[index]; }
    int Find(void const* node) const {
        int i = 0;
        while (this->nodes[i] != nullptr && this->nodes[i] != node) ++i;
        return i;
    }
    cow_Counter holders;
};
}  // namespace cow_detail

template <class K, class V, class Walk>
class cow_MapStdIter
    : public cow_ValueIteratorTypes<std::forward_iterator_tag, cow_Entry<K, V>, cow_EntryArrow<K, V>>,
      public cow_detail::PostfixIncrement<cow_MapStdIter<K, V, Walk>> {
public:
    using MapNode = typename cow_Map<K, V>::Node;

    // A singular iterator, equal to the end of every map.
    cow_MapStdIter() = default;
    // On the first entry of a snapshot of `map` (args: the walk's own, such
    // as the sorted walk's `descending`), or at the end when it is empty.
    template <class... Args>
    explicit cow_MapStdIter(cow_Map<K, V> const& map_, Args... args)
        : snapshot(cow_Allocate([&] { return new Snapshot(map_, args...); })) {}
    // On `node` of `map`, read in place; no snapshot until the first step.
    cow_MapStdIter(cow_Map<K, V> const& map_, MapNode const* node) : map(&map_), single(node) {}

    cow_MapStdIter(cow_MapStdIter const& other)
        : snapshot(other.snapshot), position(other.position), map(other.map), single(other.single) {
        if (snapshot != nullptr) snapshot->holders.Increment();
    }
    cow_MapStdIter& operator=(cow_MapStdIter const& other) {
        if (other.snapshot != nullptr) other.snapshot->holders.Increment();
        Release();
        snapshot = other.snapshot;
        position = other.position;
        map = other.map;
        single = other.single;
        return *this;
    }
    ~cow_MapStdIter() { Release(); }

    cow_Entry<K, V> operator*() const {
        auto const* node = Node();
        return cow_Entry<K, V>{node->key, node->value};
    }
    cow_EntryArrow<K, V> operator->() const { return cow_EntryArrow<K, V>{**this}; }

    cow_MapStdIter& operator++() {
        if (snapshot == nullptr) {
            // A found entry: the walk goes on from it in a snapshot of now.
            snapshot = cow_Allocate([this] { return new Snapshot(*map); });
            position = snapshot->Find(single);
            single = nullptr;
            if (snapshot->At(position) == nullptr) return *this;
        }
        ++position;
        return *this;
    }

    // Equal when on the same node; all ends are equal.
    friend bool operator==(cow_MapStdIter const& a, cow_MapStdIter const& b) { return a.Node() == b.Node(); }
    friend bool operator!=(cow_MapStdIter const& a, cow_MapStdIter const& b) { return a.Node() != b.Node(); }

private:
    using Snapshot = cow_detail::MapSnapshot<Walk>;

    MapNode const* Node() const { return snapshot != nullptr ? snapshot->At(position) : single; }
    void Release() {
        if (snapshot != nullptr) Drop(snapshot);
        snapshot = nullptr;
    }
    // Kept out of line: inlined into a caller that copies iterators, the
    // count's fall to 0 cannot be told apart from a second holder, and g++
    // warns of a use after free that cannot happen.
    __attribute__((noinline)) static void Drop(Snapshot* shared) {
        if (shared->holders.Decrement()) delete shared;
    }

    Snapshot* snapshot = nullptr;
    int position = 0;
    cow_Map<K, V> const* map = nullptr;
    MapNode const* single = nullptr;
};

// The entries of a map in key order: signed for signed integers, unsigned
// bytes for strings (never natural order). Each begin() collects and sorts
// a snapshot, as cow_ConstMapSortedIt does.
template <class K, class V>
class cow_MapSortedView {
public:
    using iterator = cow_MapStdIter<K, V, cow_ConstMapSortedIt<K, V>>;
    using const_iterator = iterator;
    using value_type = cow_Entry<K, V>;

    cow_MapSortedView(cow_Map<K, V> const& map_, bool descending_) : map(&map_), descending(descending_) {}
    iterator begin() const { return iterator(*map, descending); }
    iterator end() const { return iterator(); }

private:
    cow_Map<K, V> const* map;
    bool descending;
};

// The same keys, each with an equal value (cow_Element<V>::Equal), in
// whatever shape the two trees have.
template <class K, class V>
bool operator==(cow_Map<K, V> const& a, cow_Map<K, V> const& b) {
    if (a.GetCount() != b.GetCount()) return false;
    for (auto const& [key, value] : a) {
        auto const other = b.find(key);
        if (other == b.end() || !cow_Element<V>::Equal(value, other->second)) return false;
    }
    return true;
}

template <class K, class V>
struct cow_IsEntryRange<cow_Map<K, V>> : std::true_type {};
template <class K, class V>
struct cow_IsEntryRange<cow_MapSortedView<K, V>> : std::true_type {};

#endif
