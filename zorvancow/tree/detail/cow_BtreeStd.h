#ifndef ZORVANCOW_TREE_DETAIL_COW_BTREESTD_H
#define ZORVANCOW_TREE_DETAIL_COW_BTREESTD_H

// The standard interface of the tree: a bidirectional iterator in key order,
// the members declared in cow_Btree, == and printing.
//
// The iterator gives each entry as a cow_Entry (`first` the key, `second`
// the value, both const references into the node), so that
// `for (auto const& [key, value] : tree)` reads the tree in key order. It
// keeps the path from the root to its node inside itself (no allocation;
// copying it copies the path), and like cow_BtreeIterator it holds a bare
// pointer to the tree and no count: any write to the tree (InsertUnlessMember,
// Remove, Get, assignment, destruction) invalidates it. Writes to other
// trees that share nodes with it are harmless, since they copy their own path.

#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <utility>

#include "zorvancow/core/cow_Element.h"
#include "zorvancow/core/cow_Export.h"
#include "zorvancow/core/cow_Std.h"

template <class K, class V>
class ZORVANCOW_TYPE cow_Btree;
template <class K, class V>
class ZORVANCOW_TYPE cow_BtreeNode;

// PathLength: the deepest path the iterator keeps in itself; see Start().
template <class K, class V, int PathLength = 48>
class cow_BtreeStdIter
    : public cow_ValueIteratorTypes<std::bidirectional_iterator_tag, cow_Entry<K, V>, cow_EntryArrow<K, V>> {
public:

    // A singular iterator, equal to the end of every tree.
    cow_BtreeStdIter() = default;
    // On the smallest key of `tree`, or at its end when it is empty.
    explicit cow_BtreeStdIter(cow_Btree<K, V> const& tree_) : tree(&tree_) { First(); }
    // On the node of `key`, or at the end when the key is absent.
    cow_BtreeStdIter(cow_Btree<K, V> const& tree_, K const& key) : tree(&tree_) { Find(key); }
    // At the end of `tree`: a step back reaches its greatest key.
    static cow_BtreeStdIter End(cow_Btree<K, V> const& tree) {
        cow_BtreeStdIter it;
        it.tree = &tree;
        return it;
    }

    // Copies only the part of the path in use.
    cow_BtreeStdIter(cow_BtreeStdIter const& other) { *this = other; }
    cow_BtreeStdIter& operator=(cow_BtreeStdIter const& other) {
        tree = other.tree;
        depth = other.depth;
        deep = other.deep;
        for (int i = 0; i < depth; ++i) path[i] = other.path[i];
        return *this;
    }

    cow_Entry<K, V> operator*() const { return cow_Entry<K, V>{Current()->GetKey(), Current()->GetValue()}; }
    cow_EntryArrow<K, V> operator->() const { return cow_EntryArrow<K, V>{**this}; }

    cow_BtreeStdIter& operator++() {
        if (deep) {
            Step(+1);
            return *this;
        }
        if (Node const* down = Child(Current(), true)) {
            Push(down);
            while (Node const* next = Child(path[depth - 1], false)) Push(next);
            return *this;
        }
        // Climb while coming up from a right child: those ancestors lie behind.
        for (;;) {
            Node const* from = path[--depth];
            if (depth == 0 || Child(path[depth - 1], true) != from) return *this;
        }
    }
    cow_BtreeStdIter operator++(int) {
        cow_BtreeStdIter old = *this;
        ++*this;
        return old;
    }
    cow_BtreeStdIter& operator--() {
        if (depth == 0) {
            Last();
            return *this;
        }
        if (deep) {
            Step(-1);
            return *this;
        }
        if (Node const* down = Child(Current(), false)) {
            Push(down);
            while (Node const* next = Child(path[depth - 1], true)) Push(next);
            return *this;
        }
        for (;;) {
            Node const* from = path[--depth];
            if (depth == 0 || Child(path[depth - 1], false) != from) return *this;
        }
    }
    cow_BtreeStdIter operator--(int) {
        cow_BtreeStdIter old = *this;
        --*this;
        return old;
    }

    friend bool operator==(cow_BtreeStdIter const& a, cow_BtreeStdIter const& b) { return a.Current() == b.Current(); }
    friend bool operator!=(cow_BtreeStdIter const& a, cow_BtreeStdIter const& b) { return a.Current() != b.Current(); }

private:
    using Node = cow_BtreeNode<K, V>;

    Node const* Current() const { return depth != 0 ? path[depth - 1] : nullptr; }
    Node const* Root() const {
        return tree != nullptr && tree->GetRoot() != nullptr ? tree->GetRoot()->ConstGet() : nullptr;
    }
    static Node const* Child(Node const* node, bool right) {
        auto const* link = right ? node->GetRight() : node->GetLeft();
        return link != nullptr ? link->ConstGet() : nullptr;
    }
    void Push(Node const* node) { path[depth++] = node; }

    // A stored depth is never below the exact one, so the root's tells
    // whether every path fits. When one may not, the iterator keeps only its
    // node and finds each neighbour by a search from the root.
    bool Start() {
        depth = 0;
        Node const* root = Root();
        if (root == nullptr) return false;
        deep = root->GetMaxDepth() >= PathLength;
        return true;
    }
    void First() { Edge(false); }
    void Last() { Edge(true); }
    void Edge(bool right) {
        if (!Start()) return;
        Node const* node = Root();
        if (deep) {
            while (Node const* next = Child(node, right)) node = next;
            Push(node);
            return;
        }
        Push(node);
        while (Node const* next = Child(path[depth - 1], right)) Push(next);
    }
    void Find(K const& key) {
        if (!Start()) return;
        for (Node const* node = Root(); node != nullptr;) {
            std::int32_t const c = cow_KeyOrder<K>::Compare(key, node->GetKey());
            if (!deep) Push(node);
            if (c == 0) {
                if (deep) Push(node);
                return;
            }
            node = Child(node, c > 0);
        }
        depth = 0;
    }
    // The next greater (+1) or smaller (-1) key, searched from the root.
    void Step(int direction) {
        K const& key = Current()->GetKey();
        Node const* neighbour = nullptr;
        for (Node const* node = Root(); node != nullptr;) {
            std::int32_t const c = cow_KeyOrder<K>::Compare(key, node->GetKey());
            bool const beyond = direction > 0 ? c < 0 : c > 0;
            if (beyond) neighbour = node;
            node = Child(node, direction > 0 ? !beyond : beyond);
        }
        depth = 0;
        if (neighbour != nullptr) Push(neighbour);
    }

    cow_Btree<K, V> const* tree = nullptr;
    int depth = 0;      // nodes on the path; 0 at the end
    bool deep = false;  // the path holds only the current node
    Node const* path[PathLength];
};

// The same keys with equal values (cow_Element<V>::Equal), walked in key order.
template <class K, class V>
bool operator==(cow_Btree<K, V> const& a, cow_Btree<K, V> const& b) {
    if (a.GetCount() != b.GetCount()) return false;
    for (auto i = a.begin(), j = b.begin(), stop = a.end(); i != stop; ++i, ++j) {
        if (cow_KeyOrder<K>::Compare(i->first, j->first) != 0) return false;
        if (!cow_Element<V>::Equal(i->second, j->second)) return false;
    }
    return true;
}
template <class K, class V>
bool operator!=(cow_Btree<K, V> const& a, cow_Btree<K, V> const& b) {
    return !(a == b);
}

template <class K, class V>
struct cow_IsEntryRange<cow_Btree<K, V>> : std::true_type {};

#endif
