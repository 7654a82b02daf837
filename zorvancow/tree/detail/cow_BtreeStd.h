#ifndef ZORVANCOW_TREE_DETAIL_COW_BTREESTD_H
#define ZORVANCOW_TREE_DETAIL_COW_BTREESTD_H

// The standard interface of the tree: a bidirectional iterator in key order,
// == and printing (the constructors from ranges and at() are in
// tree/cow_Btree.h).
//
// The iterator gives each entry as a cow_Entry (`first` the key, `second`
// the value, both const references into the node), so that
// `for (auto const& [key, value] : tree)` reads the tree in key order. It
// keeps the path from the root to its node inside itself (no allocation;
// copying it copies the path), and like cow_BtreeIterator it holds a bare
// pointer to the tree and no count: any write to the tree (InsertUnlessMember,
// Remove, Get, assignment, destruction) invalidates it. Writes to other
// trees that share nodes with it are harmless, since they copy their own path.
// In checked mode a step (++ or --) after a change of the tree's count since
// the iterator found its place, such as an erase while it walks, stops with
// a message; the erase that returns the next position gives a fresh iterator.

#include <cstddef>
#include <iterator>

#include "zorvancow/core/cow_Check.h"
#include "zorvancow/core/cow_Std.h"
#include "zorvancow/tree/detail/cow_BtreeWalk.h"

template <class K, class V>
class ZORVANCOW_TYPE cow_Btree;

// PathLength: the deepest path the iterator keeps in itself; see Start().
template <class K, class V, int PathLength = 48>
class cow_BtreeStdIter
    : public cow_ValueIteratorTypes<std::bidirectional_iterator_tag, cow_Entry<K, V>, cow_EntryArrow<K, V>>,
      public cow_detail::PostfixSteps<cow_BtreeStdIter<K, V, PathLength>> {
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
        it.count = tree.GetCount();
        return it;
    }

    // Copies only the part of the path in use.
    cow_BtreeStdIter(cow_BtreeStdIter const& other) { *this = other; }
    cow_BtreeStdIter& operator=(cow_BtreeStdIter const& other) {
        tree = other.tree;
        count = other.count;
        depth = other.depth;
        deep = other.deep;
        for (int i = 0; i < depth; ++i) path[i] = other.path[i];
        return *this;
    }

    cow_Entry<K, V> operator*() const { return cow_Entry<K, V>{Current()->GetKey(), Current()->GetValue()}; }
    cow_EntryArrow<K, V> operator->() const { return cow_EntryArrow<K, V>{**this}; }

    cow_BtreeStdIter& operator++() {
        CheckUnchanged("operator++");
        Step<true>();
        return *this;
    }
    // From the end, to the greatest key.
    cow_BtreeStdIter& operator--() {
        if (depth == 0) {
            Last();
        } else {
            CheckUnchanged("operator--");
            Step<false>();
        }
        return *this;
    }

    friend bool operator==(cow_BtreeStdIter const& a, cow_BtreeStdIter const& b) { return a.Current() == b.Current(); }
    friend bool operator!=(cow_BtreeStdIter const& a, cow_BtreeStdIter const& b) { return a.Current() != b.Current(); }

private:
    using Node = typename cow_Btree<K, V>::Node;

    Node const* Current() const { return depth != 0 ? path[depth - 1] : nullptr; }
    Node const* Root() const {
        return tree != nullptr && tree->GetRoot() != nullptr ? tree->GetRoot()->ConstGet() : nullptr;
    }
    static auto const* LinkOf(Node const* node, bool right) { return right ? node->GetRight() : node->GetLeft(); }
    static Node const* Child(Node const* node, bool right) {
        auto const* link = LinkOf(node, right);
        return link != nullptr ? link->ConstGet() : nullptr;
    }

    // The path as the tree's walks see it (tree/detail/cow_BtreeWalk.h):
    // the whole path from the root, or in deep mode only the current node,
    // which each step down replaces.
    struct PathBase {
        using Link = Node const*;
        cow_BtreeStdIter& walk;
        Link Top() const { return walk.path[walk.depth - 1]; }
        bool Empty() const { return walk.depth == 0; }
        static Link Child(Link node, bool right) { return cow_BtreeStdIter::Child(node, right); }
    };
    struct FullPath : PathBase {
        void Push(Node const* node) { this->walk.path[this->walk.depth++] = node; }
        void Pop() { --this->walk.depth; }
    };
    struct NodePath : PathBase {
        void Push(Node const* node) {
            this->walk.path[0] = node;
            this->walk.depth = 1;
        }
    };
    // Calls `f` with the path of the mode the iterator is in.
    template <class F>
    void OnPath(F&& f) {
        if (deep) {
            NodePath steps{{*this}};
            f(steps);
        } else {
            FullPath steps{{*this}};
            f(steps);
        }
    }

    // A stored depth is never below the exact one, so the root's tells
    // whether every path fits. When one may not, the iterator keeps only its
    // node and finds each neighbour by a search from the root.
    bool Start() {
        depth = 0;
        count = tree->GetCount();
        Node const* root = Root();
        if (root == nullptr) return false;
        deep = root->GetMaxDepth() >= PathLength;
        return true;
    }
    void First() { Edge<false>(); }
    void Last() { Edge<true>(); }
    template <bool Right>
    void Edge() {
        if (!Start()) return;
        OnPath([this](auto& steps) { cow_detail::BtreeEdge<Right>(steps, Root()); });
    }
    // The tree's search, keeping each node it passes on the path.
    void Find(K const& key) {
        if (!Start()) return;
        OnPath([this, &key](auto& steps) {
            steps.Push(Root());
            auto const keep = [&steps](auto const* link) {
                Node const* node = link->ConstGet();
                steps.Push(node);
                return node;
            };
            if (cow_detail::BtreeSearch(Root(), key, &LinkOf, keep) == nullptr) depth = 0;
        });
    }
    // The next greater (Forward) or smaller key: the tree's in-order step on
    // the whole path.
    template <bool Forward>
    void Step() {
        if (deep) {
            SearchStep<Forward>();
            return;
        }
        FullPath steps{{*this}};
        cow_detail::BtreeStep<Forward>(steps);
    }
    // The same step in deep mode: one search from the root for the current
    // key, noting the last node where the search turned away from the step's
    // side; that node is the neighbour unless the current node has a subtree
    // on that side. Kept out of line, so that the common step inlines into
    // the caller's loop.
    template <bool Forward>
    __attribute__((noinline)) void SearchStep() {
        Node const* neighbour = nullptr;
        auto const note = [&neighbour](Node const* node, bool right) {
            if (right != Forward) neighbour = node;
            return LinkOf(node, right);
        };
        auto const enter = [](auto const* link) { return link->ConstGet(); };
        Node const* current = cow_detail::BtreeSearch(Root(), Current()->GetKey(), note, enter);
        NodePath steps{{*this}};
        depth = 0;
        if (Node const* down = current != nullptr ? Child(current, Forward) : nullptr) {
            steps.Push(down);
            cow_detail::BtreeDescend<!Forward>(steps);
        } else if (neighbour != nullptr) {
            steps.Push(neighbour);
        }
    }

    // The path is only good while the tree keeps the nodes it was taken from.
    void CheckUnchanged(char const* operation) const {
        static_cast<void>(operation);
        ZORVANCOW_CHECK(tree == nullptr || tree->GetCount() == count,
                        cow_detail::CheckWhere("cow_Btree::iterator", operation).text,
                        "the tree changed while the iterator walked it", "count %d, was %d",
                        tree != nullptr ? tree->GetCount() : 0, count);
    }

    cow_Btree<K, V> const* tree = nullptr;
    int count = 0;      // the tree's count when the path was taken
    int depth = 0;      // nodes on the path; 0 at the end
    bool deep = false;  // the path holds only the current node
    Node const* path[static_cast<std::size_t>(PathLength)];
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
struct cow_IsEntryRange<cow_Btree<K, V>> : std::true_type {};

#endif
