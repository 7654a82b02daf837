#ifndef ZORVANCOW_MAP_COW_MAP_H
#define ZORVANCOW_MAP_COW_MAP_H

// Digital maps: a key/value map that branches on one digit of the key per
// level and never compares keys for order.
//
// Each node holds one key and its value; the search key is tested for
// equality at every node on the way down, and on a difference one digit of
// the search key (cow_KeyBit) picks the branch. There is no balancing: the
// shape follows from the keys' digits and from the order of inserts and
// removals. Every link is a counted handle, so a copy of a map costs one
// increment and a write copies only the nodes on its path.
//
// A map, its copies and its iterators that share nodes belong to one thread at
// a time, also for reading: the iterators and the keys and values lists hold
// a share of the tree, so even reading through them moves counts.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <initializer_list>
#include <type_traits>
#include <utility>
#include <new>
#include <vector>

#include "zorvancow/core/cow_COW.h"
#include "zorvancow/core/cow_Check.h"
#include "zorvancow/core/cow_CollectSorted.h"
#include "zorvancow/core/cow_Element.h"
#include "zorvancow/core/cow_Export.h"
#include "zorvancow/core/cow_String.h"
#include "zorvancow/lists/cow_List.h"
#include "zorvancow/lists/detail/cow_CollectWalk.h"
#include "zorvancow/map/detail/cow_MapStd.h"

// ---------------------------------------------------------------------------
// Key digits, equality and order

// The digit of a key at `depth`, key equality and the order of the sorted
// walk. The rules per key type are cow_KeyBits<K> (core/cow_Element.h):
// integers by their bits from the least significant end (the sign plays no
// part) and by their value; strings by the lowest bit of one byte, read from
// both ends inward (first byte, last byte, second, second to last, ...; depth
// n of n bytes reads the middle byte again, deeper digits are 0), and by
// unsigned bytes, never by natural order. The other seven bits of a byte
// never count, so different texts can share all their digits; such keys line
// up on one path, one level each.
template <class K>
inline int cow_KeyBit(K const& key, int depth) {
    return cow_KeyBits<K>::Bit(key, depth);
}
template <class K>
inline bool cow_MapKeyEqual(K const& left, K const& right) {
    return cow_KeyBits<K>::Equal(left, right);
}
template <class K>
inline bool cow_MapKeyLess(K const& left, K const& right) {
    return cow_KeyBits<K>::Less(left, right);
}

template <class K, class V>
class cow_ConstMapIterator;
template <class K, class V, class Walk>
class cow_MapStdIter;
template <class K, class V>
class cow_MapSortedView;

// ---------------------------------------------------------------------------
// Node

// One entry of a map and the two branches below it. A node is shared by every
// map (and iterator) that reaches it; copying one copies its key and value and
// shares both subtrees, which is how a write unshares a single path.
// A child handle with a null pointee is an empty branch: it is still a live
// handle with a counter of its own.
//
// Inspection: the fields are public for reading. `child[d].ConstGet()` is the
// node below on digit d (null for none) and `child[d].GetShareCount()` how
// many nodes, maps and iterators hold that branch.
template <class K, class V>
struct ZORVANCOW_TYPE cow_MapNode {
    typedef K Key;
    typedef V Value;
    typedef cow_COW<cow_MapNode, cow_Direct<cow_MapNode>> Link;

    // A leaf: copies `k` and `v`; the two empty branches get a counter each,
    // so a new leaf costs three allocations.
    cow_MapNode(K const& k, V const& v)
        : key(k), value(v), child{Link(static_cast<cow_MapNode*>(nullptr)),
                                  Link(static_cast<cow_MapNode*>(nullptr))} {}
    // Copies key and value with their own copy operations and shares both
    // subtrees (their counts rise by one). Nothing below is touched.
    cow_MapNode(cow_MapNode const& other) = default;
    // Releases child[1], then child[0], destroying subtrees that no one else
    // holds; then the value and the key. The subtrees go in a loop, not by
    // one call per level, so a map of any depth is freed on a small stack.
    ~cow_MapNode();

    cow_MapNode& operator=(cow_MapNode const&) = delete;

    K key;        // changes after construction only when a removal pulls a key up
    V value;
    Link child[2];  // followed on digit 0 and digit 1
};

// ---------------------------------------------------------------------------
// Map

// A map from unique keys to values. K is any integral type, cow_String,
// std::string, or a type given its rules by specialising cow_KeyBits<K>.
// Copying costs one count increment and shares every node. A write makes
// private (copies) the nodes from the root down to the place written, and
// nothing else; the copy of a node runs the copy operations of K and V and
// shares the node's two subtrees.
//
// References from Get and ConstGet stay good until the next write to this map
// or its destruction. A reference from Get points into storage that a later
// copy of the map shares, so write through it before copying, not after.
//
// Absent keys: Get and ConstGet of a key that is not held create nothing in
// the map and return a default value that belongs to no map and to the calling
// thread alone, so maps on different threads never meet in it. A copy of it
// shares its storage like any copy, and stays on this thread with it.
// IsAbsent(reference) tells it apart from a stored value; IsMember asks first.
template <class K, class V>
class ZORVANCOW_TYPE cow_Map {
public:
    typedef cow_MapNode<K, V> Node;
    typedef typename Node::Link Link;

    // An empty map: an empty root handle (one counter), count 0.
    cow_Map() : root(static_cast<Node*>(nullptr)), count(0) {}
    // Shares the whole tree: one increment, no node touched. Each map keeps a
    // key count of its own.
    cow_Map(cow_Map const& other) noexcept = default;
    cow_Map& operator=(cow_Map const& other) = default;
    // Takes the other's tree without a count moving. `other` is left an empty
    // map whose root handle has no counter yet (it makes one at its first
    // insertion): it allocates nothing and cannot throw.
    cow_Map(cow_Map&& other) noexcept : root(std::move(other.root)), count(other.count) { other.count = 0; }
    // Releases this map's tree and takes the other's; `other` is left empty.
    cow_Map& operator=(cow_Map&& other) noexcept {
        cow_Map taken(std::move(other));
        swap(taken);
        return *this;
    }
    // Exchanges the two maps' trees and counts; no count moves.
    void swap(cow_Map& other) noexcept {
        root.swap(other.root);
        std::swap(count, other.count);
    }
    // Releases the root; nodes that no other map or iterator holds are freed.
    ~cow_Map();

    // True if `key` is held. Allocates nothing, makes nothing private and
    // changes no count: the walk (FindNode) reads through bare pointers.
    bool IsMember(K const& key) const;

    // Stores `value` under `key`. A held key keeps its key object (a string
    // key keeps the text of its first insertion) and gets the value assigned;
    // a new key becomes a leaf. Copies each shared node on the path. Always
    // returns true.
    bool Insert(K const& key, V const& value);

    // Removes `key` and its value; false (and nothing copied) when it is not
    // held. Inner nodes are filled by pulling keys up along the right-preferring
    // path to a leaf, which is cut; shared nodes above the cut are copied, the
    // cut leaf never is. Walks the path twice (a membership test first).
    bool Remove(K const& key);

    // The value of `key`, for writing: every node from the root down to the
    // key's node is private when it returns. For an absent key the path
    // walked is private too and the result is a per-thread scratch value, set
    // to V() at each such miss; writing to it reaches no map, so checked mode
    // stops there (after the walk). Insert adds a key; IsMember asks first.
    V& Get(K const& key);

    // The value of `key`, for reading; makes nothing private and allocates
    // nothing. For an absent key the result is this thread's read-only V(),
    // made at the first such miss on the thread; no map holds it.
    V const& ConstGet(K const& key) const;

    // Number of keys held.
    int GetCount() const { return count; }

    // True when `reference` is what Get or ConstGet gave this thread for an
    // absent key. Sets this thread's scratch value (see Get) back to V().
    static bool IsAbsent(V const& reference);

    // Inspection: the root handle (its pointee is the root node, null when
    // empty; its share count says how many maps and iterators hold the tree).
    Link const& GetRoot() const { return root; }

    // Inspection: the depth of the node holding `key` (0 for the root), or -1
    // when the key is not held. Reads only: counts end as they were.
    int GetDepth(K const& key) const {
        int depth = 0;
        return FindNode(key, depth) != nullptr ? depth : -1;
    }

    // Standard interface (map/detail/cow_MapStd.h). begin() walks a snapshot
    // in the node walk's order, like cow_ConstMapIterator; writes may go on.
    using key_type = K;
    using mapped_type = V;
    using value_type = cow_Entry<K, V>;
    using size_type = std::size_t;
    using difference_type = std::ptrdiff_t;
    using const_iterator = cow_MapStdIter<K, V, cow_ConstMapIterator<K, V>>;
    using iterator = const_iterator;
    // A map of the given key/value pairs; of equal keys the first one stays.
    cow_Map(std::initializer_list<std::pair<K, V>> entries);
    // A map of the pairs of [first, last) or of a range (a std::map, ...).
    template <class It, class = cow_detail::EnableIterator<It>>
    cow_Map(It first, It last);
    template <class R, class = cow_detail::EnableRange<R, cow_Map>>
    explicit cow_Map(R const& range);
    // Forward iterators over a snapshot of the entries, in the node walk's order.
    const_iterator begin() const;
    const_iterator end() const { return const_iterator(); }
    const_iterator cbegin() const { return begin(); }
    const_iterator cend() const { return end(); }
    // The entries in key order (descending on request), over a snapshot.
    cow_MapSortedView<K, V> Sorted(bool descending = false) const;
    // Number of entries, and whether there are none.
    std::size_t size() const { return static_cast<std::size_t>(count); }
    bool empty() const { return count == 0; }
    // Whether `key` is held; the entry of `key`, or end(). Reads only, no count moves.
    bool contains(K const& key) const { return find(key) != end(); }
    const_iterator find(K const& key) const;
    // The value of `key`, which must be held.
    V const& at(K const& key) const;

    // Writes through the standard spellings; each makes the path it walks
    // private, as Get(key) does, so other maps never see it.
    // Stores `value` under `key` (Insert); the position of `key`, and whether
    // it was added.
    std::pair<const_iterator, bool> insert_or_assign(K const& key, V const& value) {
        int const before = count;
        Insert(key, value);
        return {find(key), count != before};
    }
    // Removes `key`; the number of entries removed (0 or 1).
    size_type erase(K const& key) { return Remove(key) ? 1 : 0; }
    // Removes the entry at `position` (not end()) and returns the position
    // after it in the walk. The iterator walks a snapshot (a found one takes
    // it at this step), so the walk goes on over the entries as they were:
    //     for (auto it = map.begin(); it != map.end();) it = drop(*it) ? map.erase(it) : std::next(it);
    const_iterator erase(const_iterator position) {
        K const removed = position->first;
        ++position;
        Remove(removed);
        return position;
    }
    // Write access to the value at a found position (not end()): Get of its
    // key, so the path is made private first and the change shows in this
    // map only. Reads through find() and the iterators never unshare.
    V& Get(const_iterator const& position) { return Get(position->first); }

private:
    // The map's one find, the path walk of every read (IsMember, ConstGet,
    // GetDepth, find, at and ==): the node holding `key`, or null, with its
    // depth in `depth` (the depth below the last node when absent). It
    // changes no count.
    Node const* FindNode(K const& key, int& depth) const;
    // The path walk of every write: the link that holds `key`, or the empty
    // link where it would go. Every node above that link is private on
    // return; the node in it, if any, is not yet.
    Link* FindLink(K const& key);

    // This thread's V() for ConstGet misses and its scratch for Get misses.
    static V const& GetAbsentValue();
    static V& GetMissedValue();

    // The count that marks IsAbsent's empty probe map; no map holds it.
    static constexpr int kProbeCount = -1;

    Link root;
    int count;
};

// ---------------------------------------------------------------------------
// Iterator

// A read-only walk over all entries of a map, in the tree's pre-order: each
// node before its subtree, the digit-0 subtree before the digit-1 subtree.
// That is not key order, and the same keys inserted in another order walk
// differently; for one history of writes the order is fixed.
//
// The iterator holds its own copy of the map, so it walks the entries the map
// had when the iterator was built, whatever the map does meanwhile; a caller
// may write to the map inside its own loop. The map's next write copies the
// root and its path. The iterator is one more holder of the tree until it is
// destroyed, and frees what only it still holds.
//
// Use: First(), then while !IsDone(): CurrentKey()/CurrentValue(), Next().
// Before the first First() the iterator reads as done. Not copyable.
template <class K, class V>
class ZORVANCOW_TYPE cow_ConstMapIterator {
public:
    typedef cow_MapNode<K, V> Node;

    // Shares the map's tree (one increment); nothing is walked yet.
    explicit cow_ConstMapIterator(cow_Map<K, V> const& source)
        : map(source), position(0), nodes(nullptr) {}
    cow_ConstMapIterator(cow_ConstMapIterator const&) = delete;
    cow_ConstMapIterator& operator=(cow_ConstMapIterator const&) = delete;
    // Frees the node array, then releases the snapshot.
    ~cow_ConstMapIterator();

    // Collects the snapshot's nodes into a fresh array of count + 1 pointers
    // (the last one null) and goes to the first entry. May be called again;
    // the old array is freed first. One allocation and one visit per node.
    void First();

    // True at the end (and before the first First()).
    bool IsDone() const { return nodes == nullptr || nodes[position] == nullptr; }
    // Goes to the next entry; nothing at the end.
    void Next() {
        if (!IsDone()) ++position;
    }
    // The current entry. Precondition: !IsDone().
    K const& CurrentKey() const {
        ZORVANCOW_CHECK(!IsDone(), "cow_ConstMapIterator::CurrentKey", "the iterator is done", "position %d, count %d",
                        position, map.GetCount());
        return nodes[position]->key;
    }
    V const& CurrentValue() const {
        ZORVANCOW_CHECK(!IsDone(), "cow_ConstMapIterator::CurrentValue", "the iterator is done", "position %d, count %d",
                        position, map.GetCount());
        return nodes[position]->value;
    }

    // Inspection: the snapshot the iterator walks.
    cow_Map<K, V> const& GetMap() const { return map; }

protected:
    // The node array of a walk of `snapshot`: frees `old`, then collects the
    // nodes in pre-order (node, left subtree, right subtree) into a fresh
    // array of count + 1 pointers whose last entry is the null end mark.
    // One allocation and one visit per node; the sorted walk uses it too.
    static Node const** CollectNodes(cow_Map<K, V> const& snapshot, Node const** old) {
        ::operator delete(static_cast<void*>(old));
        int const total = snapshot.GetCount();
        auto into = cow_Allocate([total] {
            return static_cast<Node const**>(::operator new(sizeof(Node const*) * (static_cast<std::size_t>(total) + 1)));
        });
        Collect(snapshot.GetRoot(), into, total);
        into[total] = nullptr;
        return into;
    }

    cow_Map<K, V> map;
    int position;
    Node const** nodes;

private:
    // The pre-order walk, as a loop: a map with string keys can be as deep as
    // it is large. The nodes still to visit wait on a stack kept at the far
    // end of `into` itself, growing down from `total`: every node is either
    // written, waiting or not yet reached, so the written part and the stack
    // never meet, and the walk needs no memory of its own.
    static void Collect(typename Node::Link const& link, Node const** into, int total) {
        int fill = 0;
        int top = total;
        if (link.ConstGet() != nullptr) into[--top] = link.ConstGet();
        while (top < total) {
            Node const* node = into[top++];
            into[fill++] = node;
            // child[1] waits below child[0], so the whole digit-0 subtree
            // comes first.
            if (Node const* right = node->child[1].ConstGet()) into[--top] = right;
            if (Node const* left = node->child[0].ConstGet()) into[--top] = left;
        }
    }
};

// ---------------------------------------------------------------------------
// Sorted iterator

// The walk of cow_ConstMapIterator in key order: First() collects the node
// pointers and sorts them with qsort (core/cow_CollectSorted.h). Ascending by
// default; pass `true` as `descending` to the constructor for the reverse
// order. Integer keys sort as numbers (negative int keys first); string keys
// by unsigned bytes, never by natural order. Only pointers move: no key or
// value is copied.
// It is a cow_ConstMapIterator (the same snapshot, node array and reads) with
// a comparison added, and only First differs. Not copyable.
template <class K, class V>
class ZORVANCOW_TYPE cow_ConstMapSortedIt : public cow_ConstMapIterator<K, V> {
public:
    typedef cow_MapNode<K, V> Node;

    // Shares the map's tree (one increment) and picks the order.
    explicit cow_ConstMapSortedIt(cow_Map<K, V> const& source, bool descending = false)
        : cow_ConstMapIterator<K, V>(source), compare(descending ? &DescSortCmp : &AscSortCmp) {}
    cow_ConstMapSortedIt(cow_ConstMapSortedIt const&) = delete;
    cow_ConstMapSortedIt& operator=(cow_ConstMapSortedIt const&) = delete;
    // The node array and the snapshot go with the walk it extends.
    ~cow_ConstMapSortedIt();

    // Collects and sorts the snapshot's nodes (count + 1 pointers, the last
    // null) and goes to the first entry. May be called again; same order.
    void First();

    // qsort comparisons of two entries of the node array (each a pointer to a
    // `Node const*`). Keys only, never values: -1, 0 or 1.
    static int AscSortCmp(void const* left, void const* right);
    static int DescSortCmp(void const* left, void const* right) {
        K const& a = (*static_cast<Node const* const*>(left))->key;
        K const& b = (*static_cast<Node const* const*>(right))->key;
        if (cow_MapKeyLess(b, a)) return -1;
        if (cow_MapKeyEqual(a, b)) return 0;
        return 1;
    }

private:
    int (*compare)(void const*, void const*);
};

// ---------------------------------------------------------------------------
// Map utilities

// A map's keys or values as a list, in the node walk's order (not sorted).
// The two lists of one map, with no write between the calls, correspond entry
// by entry. Each element is a copy by its own copy constructor, so strings
// and counted containers share their storage with the map. The map is only
// read; its root count moves for the walk and is back at return.
template <class K, class V>
class ZORVANCOW_TYPE cow_MapUtils {
public:
    // All keys, by value: one pointer array for the walk plus the list.
    static cow_List<K> cow_Keys(cow_Map<K, V> const& map) { return Collect::Keys(map); }
    // All values, by value, in the order of cow_Keys.
    static cow_List<V> cow_Values(cow_Map<K, V> const& map) { return Collect::Values(map); }

private:
    using Collect = cow_detail::CollectWalk<K, V, cow_ConstMapIterator<K, V>>;
};

// ---------------------------------------------------------------------------
// Out-of-line members

template <class K, class V>
cow_MapNode<K, V>::~cow_MapNode() {
    // Keys with like digits make a chain as long as the map, so the nodes
    // that go with this one are collected on an explicit stack and destroyed
    // one by one; each is emptied of its own sole subtrees first, so its
    // destructor finds nothing more to free. Shared subtrees only lose a
    // count. The stack lives in this frame up to 64 entries (every integer
    // map, and any map whose paths are no deeper) and on the heap beyond.
    cow_MapNode* local[64];
    cow_MapNode** pending = local;
    std::size_t room = 64;
    std::size_t size = 0;
    auto push = [&](cow_MapNode* node) {
        if (node == nullptr) return;
        if (size == room) {
            auto** larger = cow_Allocate([&] {
                return static_cast<cow_MapNode**>(::operator new(sizeof(cow_MapNode*) * room * 2));
            });
            for (std::size_t i = 0; i < size; ++i) larger[i] = pending[i];
            if (pending != local) ::operator delete(static_cast<void*>(pending));
            pending = larger;
            room *= 2;
        }
        pending[size++] = node;
    };
    // child[0] goes on the stack first so that child[1]'s subtree is freed
    // first. A branch gives up its node only when nothing else holds it.
    push(child[0].TakeIfSole());
    push(child[1].TakeIfSole());
    while (size != 0) {
        cow_MapNode* node = pending[--size];
        push(node->child[0].TakeIfSole());
        push(node->child[1].TakeIfSole());
        delete node;
    }
    if (pending != local) ::operator delete(static_cast<void*>(pending));
}

template <class K, class V>
cow_Map<K, V>::~cow_Map() {}

template <class K, class V>
V const& cow_Map<K, V>::GetAbsentValue() {
    static thread_local V const absent{};
    return absent;
}

template <class K, class V>
V& cow_Map<K, V>::GetMissedValue() {
    static thread_local V missed{};
    return missed;
}

// The per-thread values belong to whichever copy of Get and ConstGet the
// caller runs (the library's, or one compiled into the caller), so they are
// asked for here through those two: an empty map answers every key with them.
template <class K, class V>
inline bool cow_Map<K, V>::IsAbsent(V const& reference) {
    cow_Map empty;
    K const key{};
    if (&reference == &empty.ConstGet(key)) return true;
    // The one miss through Get that checked mode lets by is this probe's.
    empty.count = kProbeCount;
    bool const missed = &reference == &empty.Get(key);
    empty.count = 0;
    return missed;
}

template <class K, class V>
typename cow_Map<K, V>::Node const* cow_Map<K, V>::FindNode(K const& key, int& depth) const {
    // The walk reads through bare pointers. Carried in a counted handle, as
    // the reads were once written, it would raise the count of each node it
    // stands on and lower it again on leaving: nothing that can be seen
    // after the call, and the map, which holds every node on the path,
    // keeps them alive meanwhile.
    depth = 0;
    for (Node const* node = root.ConstGet(); node != nullptr; ++depth) {
        if (cow_MapKeyEqual(node->key, key)) return node;
        node = node->child[cow_KeyBit(key, depth)].ConstGet();
    }
    return nullptr;
}

template <class K, class V>
typename cow_Map<K, V>::Link* cow_Map<K, V>::FindLink(K const& key) {
    Link* link = &root;
    int depth = 0;
    while (Node const* node = link->ConstGet()) {
        if (cow_MapKeyEqual(node->key, key)) break;
        link = &link->Get().child[cow_KeyBit(key, depth++)];
    }
    return link;
}

template <class K, class V>
bool cow_Map<K, V>::IsMember(K const& key) const {
    int depth;
    return FindNode(key, depth) != nullptr;
}

template <class K, class V>
V const& cow_Map<K, V>::ConstGet(K const& key) const {
    int depth;
    Node const* node = FindNode(key, depth);
    return node != nullptr ? node->value : GetAbsentValue();
}

template <class K, class V>
bool cow_Map<K, V>::Insert(K const& key, V const& value) {
    Link* link = FindLink(key);
    if (link->ConstGet() != nullptr) {
        link->Get().value = value;
        return true;
    }
    *link = cow_Allocate([&] { return new Node(key, value); });
    ++count;
    return true;
}

template <class K, class V>
V& cow_Map<K, V>::Get(K const& key) {
    Link* link = FindLink(key);
    if (link->ConstGet() != nullptr) return link->Get().value;
    ZORVANCOW_CHECK(count == kProbeCount, "cow_Map::Get", "the key is not held", "count %d", count);
    V& missed = GetMissedValue();
    missed = V();
    return missed;
}

template <class K, class V>
bool cow_Map<K, V>::Remove(K const& key) {
    if (!IsMember(key)) return false;

    // Down to the key's node, copying the shared nodes above it. A copy
    // that throws here leaves the map as it was.
    Link* link = FindLink(key);

    // Keys and values whose copies may throw are pulled up into new nodes,
    // built from the bottom while the map still holds the old path, and
    // linked in with one handle assignment: a throw frees what was built and
    // leaves the map as it was. Each new node holds the key and value of the
    // node below its old one and shares its other branch, so shapes, keys
    // and counts end as the pull-up in place leaves them. Plain values and
    // the library's own (whose copies only raise a count) are pulled up in
    // place.
    constexpr bool inPlace =
        (std::is_nothrow_copy_assignable<K>::value || cow_ElementBytewise<K>::value) &&
        (std::is_nothrow_copy_assignable<V>::value || cow_ElementBytewise<V>::value);
    if constexpr (!inPlace) {
        std::vector<Node const*> path;
        for (Node const* node = link->ConstGet(); node != nullptr;
             node = node->child[node->child[1].ConstGet() != nullptr ? 1 : 0].ConstGet()) {
            path.push_back(node);
        }
        Link below(static_cast<Node*>(nullptr));
        for (std::size_t i = path.size() - 1; i-- > 0;) {
            Node const* old = path[i];
            int const down = old->child[1].ConstGet() != nullptr ? 1 : 0;
            Link fresh(cow_Allocate([&] { return new Node(path[i + 1]->key, path[i + 1]->value); }));
            Node& made = fresh.Get();  // sole: nothing is copied
            made.child[1 - down] = old->child[1 - down];
            made.child[down] = below;
            below = fresh;
        }
        *link = below;
        --count;
        return true;
    }

    // Pull keys up along the right-preferring path until a leaf is reached.
    for (;;) {
        Node const* current = link->ConstGet();
        if (current->child[0].ConstGet() == nullptr && current->child[1].ConstGet() == nullptr) break;
        Node& writable = link->Get();
        Link* next = writable.child[1].ConstGet() != nullptr ? &writable.child[1] : &writable.child[0];
        Node const* below = next->ConstGet();
        writable.key = below->key;
        writable.value = below->value;
        link = next;
    }

    // Cut the leaf: a sole holder frees it, a shared one leaves it to the others.
    *link = static_cast<Node*>(nullptr);
    --count;
    return true;
}

template <class K, class V>
cow_ConstMapIterator<K, V>::~cow_ConstMapIterator() {
    ::operator delete(static_cast<void*>(nodes));
}

template <class K, class V>
void cow_ConstMapIterator<K, V>::First() {
    nodes = CollectNodes(map, nodes);
    position = 0;
}

template <class K, class V>
cow_ConstMapSortedIt<K, V>::~cow_ConstMapSortedIt() {}

template <class K, class V>
void cow_ConstMapSortedIt<K, V>::First() {
    this->nodes = cow_detail::CollectSorted(static_cast<std::size_t>(this->map.GetCount()), compare,
                                    [this] { return this->CollectNodes(this->map, this->nodes); });
    this->position = 0;
}

template <class K, class V>
int cow_ConstMapSortedIt<K, V>::AscSortCmp(void const* left, void const* right) {
    K const& a = (*static_cast<Node const* const*>(left))->key;
    K const& b = (*static_cast<Node const* const*>(right))->key;
    if (cow_MapKeyLess(a, b)) return -1;
    if (cow_MapKeyEqual(a, b)) return 0;
    return 1;
}

// ---------------------------------------------------------------------------
// The standard interface: construction from values and ranges, begin, find, Sorted, at

template <class K, class V>
inline cow_Map<K, V>::cow_Map(std::initializer_list<std::pair<K, V>> entries) : cow_Map(entries.begin(), entries.end()) {}

template <class K, class V>
template <class It, class>
inline cow_Map<K, V>::cow_Map(It first, It last) : cow_Map() {
    for (; first != last; ++first) {
        auto const& [key, value] = *first;
        if (!IsMember(key)) Insert(key, value);
    }
}

template <class K, class V>
template <class R, class>
inline cow_Map<K, V>::cow_Map(R const& range) : cow_Map(cow_detail::Begin(range), cow_detail::End(range)) {}

template <class K, class V>
inline typename cow_Map<K, V>::const_iterator cow_Map<K, V>::begin() const {
    return const_iterator(*this);
}

template <class K, class V>
inline typename cow_Map<K, V>::const_iterator cow_Map<K, V>::find(K const& key) const {
    int depth;
    Node const* node = FindNode(key, depth);
    return node != nullptr ? const_iterator(*this, node) : const_iterator();
}

template <class K, class V>
inline cow_MapSortedView<K, V> cow_Map<K, V>::Sorted(bool descending) const {
    return cow_MapSortedView<K, V>(*this, descending);
}

template <class K, class V>
inline V const& cow_Map<K, V>::at(K const& key) const {
    int depth;
    Node const* node = FindNode(key, depth);
    if (node == nullptr) cow_detail::AtMissingKey("cow_Map");
    return node->value;
}

// A map is a handle and a count: it may move as bytes (cow_ElementBytewise).
template <class K, class V>
struct cow_ElementBytewise<cow_Map<K, V>> : std::true_type {};

template <class K, class V>
inline void swap(cow_Map<K, V>& a, cow_Map<K, V>& b) noexcept {
    a.swap(b);
}

#include "zorvancow/map/detail/cow_MapExports.h"

#endif
