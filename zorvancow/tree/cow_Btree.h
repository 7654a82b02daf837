#ifndef ZORVANCOW_TREE_COW_BTREE_H
#define ZORVANCOW_TREE_COW_BTREE_H

// The ordered key/value tree.
//
// Despite the name this is a binary search tree: one pair per node, at most
// two children, a stored depth in every node and single rotations driven by
// those depths. It is not an AVL tree: each write looks once at every node on
// its path and makes at most one single rotation there, so the height is a
// best effort, not a promise. Key order and uniqueness are the promise.
//
// The node is the unit of sharing. Children are reached through links: a
// link is a pointer to a heap-allocated cow_COW handle on the child node
// (null for an empty subtree), so two parents in two trees may name one node
// through two handle objects on one counter. Copying a tree costs one handle
// and one increment; a write copies the nodes on its search path (those that
// are shared) and leaves everything off the path shared.
//
// Key orders: int keys by the sign of the wrapped 32-bit difference, cow_String
// keys by cow_StringOrderCompare (natural order while the switch is on; keep
// the switch fixed for a tree's life), atr_String keys by bytes.
//
// Counts are plain integers: trees that share nodes belong to one thread at a
// time, except that lookups through IsMember and ConstGet may run together.
//
// A move takes the root link and the count and leaves the source an empty
// tree, as a new one is: no node, no count moved, nothing allocated. Beside
// the tree's own members, the standard spellings insert_or_assign, erase (by
// key, or by position returning the next one) and Get(position) for a write
// through a found position are inline and search from the root like Get(key).

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <utility>
#include <vector>

#include "zorvancow/core/cow_COW.h"
#include "zorvancow/core/cow_Check.h"
#include "zorvancow/core/cow_Element.h"
#include "zorvancow/core/cow_Export.h"
#include "zorvancow/core/cow_String.h"
#include "zorvancow/lists/cow_List.h"
#include "zorvancow/lists/detail/cow_CollectWalk.h"
#include "zorvancow/tree/detail/cow_BtreeStd.h"
#include "zorvancow/tree/detail/cow_BtreeWalk.h"

// Key comparison of the tree: negative when `searched` orders before
// `nodeKey`, zero on a match, positive after. The rule per key type is
// cow_KeyOrder<K> (core/cow_Element.h): int keys by the sign of the wrapped
// 32-bit difference, so the keys of one tree must lie within 2^31 of each
// other (nothing checks it).
template <class K>
inline std::int32_t cow_BtreeKeyCompare(K const& searched, K const& nodeKey) {
    return cow_KeyOrder<K>::Compare(searched, nodeKey);
}

template <class K, class V>
class ZORVANCOW_TYPE cow_Btree;
template <class K, class V>
class ZORVANCOW_TYPE cow_BtreeIterator;

// One key/value pair of a tree, with its two child links and its depth.
//
// A node is built by an insertion or copied by cow_COW::Get when a shared
// node is written; its copy is shallow (one node, children shared). Every
// mutating member requires that it runs on a private node (handle count 1),
// which the caller arranges with Get on the link that names it.
//
// The value is laid out before the key.
template <class K, class V>
class ZORVANCOW_TYPE cow_BtreeNode {
public:
    // The handle type behind every link, and the key and value types.
    using Handle = cow_COW<cow_BtreeNode, cow_Direct<cow_BtreeNode>>;
    using Key = K;
    using Value = V;

    // A childless node holding copies of `key` and `value` (counted values
    // share their storage), maxDepth 0.
    cow_BtreeNode(K const& key, V const& value);
    // A shallow copy: key and value by their own copy constructors, the same
    // maxDepth, and a new handle (one allocation, one increment) on each child
    // of `other`. The children are shared, not copied.
    cow_BtreeNode(cow_BtreeNode const& other);
    // Releases the left link, then the right one: each child goes when this
    // was its last holder, recursively. Then key and value are destroyed.
    ~cow_BtreeNode();
    cow_BtreeNode& operator=(cow_BtreeNode const&) = delete;

    // Restores some balance under `self`, the link that names this node, by at
    // most one single rotation. With l and r the maxDepth of the left and right
    // child (0 for a missing child), a right side deeper by 2 or more rotates
    // left, a left side deeper by 2 or more rotates right; the heavy child is
    // made private and moved up. Returns the link to store in place of `self`,
    // or null when nothing rotated. Allocates nothing beyond that one copy.
    Handle* Balance(Handle* self);

    // Adds the pair under this node unless the key is present. The search path
    // below is made private, also when the key is found and nothing is added;
    // each node on the way back balances the child it came from (this node
    // itself is balanced by its parent). A new key costs three allocations:
    // handle, counter and node. True when a node was added; a present key
    // keeps its old value and no depth changes.
    bool InsertUnlessMember(K const& key, V const& value);

    // Removes the key from the subtree of this node. `parent` is the node whose
    // left or right link names this node (the tree passes a stand-in parent for
    // its root). The search path is made private even when the key is absent.
    // A node with two children is replaced by its in-order successor, which
    // moves up as a node (nothing is copied between nodes); the walk to it makes
    // the left spine of the right subtree private, and only the successor and
    // its old parent get new depths: depths of the nodes between them may stay
    // above their exact value. Nodes on the path from here down to the removed
    // one are rebalanced on the way back. True when a node was removed.
    bool Remove(K const& key, cow_BtreeNode& parent);

    // The node holding `key`, or null. A write: every node on the search path
    // is made private, also when the key is absent, so the result may be
    // changed without effect on another tree.
    cow_BtreeNode* Find(K const& key);
    // The node holding `key`, or null. A pure read: no count and no node
    // changes, so concurrent ConstFinds on shared nodes are safe.
    cow_BtreeNode const* ConstFind(K const& key) const;

    // Inspection. Key and value of this node; its child links (null when
    // absent; a link's GetShareCount() tells how many parents share the child
    // and ConstGet() reads it); its stored depth: 0 for a leaf, else one more
    // than its deeper child's. A removal may leave a depth above the exact one.
    K const& GetKey() const { return key; }
    V const& GetValue() const { return value; }
    Handle const* GetLeft() const { return left; }
    Handle const* GetRight() const { return right; }
    std::int32_t GetMaxDepth() const { return maxDepth; }

private:
    friend class cow_Btree<K, V>;

    // How a search steps down (tree/detail/cow_BtreeWalk.h): the link on one
    // side, and the node behind it through Get, which makes it private, for
    // the writing Find, or through ConstGet, which reads only.
    static Handle* Link(cow_BtreeNode* node, bool toRight) { return toRight ? node->right : node->left; }
    static Handle const* ConstLink(cow_BtreeNode const* node, bool toRight) { return toRight ? node->right : node->left; }
    static cow_BtreeNode* Enter(Handle* link) { return &link->Get(); }
    static cow_BtreeNode const* ConstEnter(Handle const* link) { return link->ConstGet(); }

    // The single rotation of Balance: the child on the `heavy` side (made
    // private) moves up in place of this node, which takes the child's
    // subtree on the `light` side as its new `heavy` child. Returns the link
    // of the moved child.
    Handle* Rotate(Handle* self, Handle* cow_BtreeNode::*heavy, Handle* cow_BtreeNode::*light);

    // Recomputes maxDepth from the children: 0 for a leaf, else one more than
    // the deeper child's maxDepth.
    void SetMaxDepth() {
        std::int32_t const l = left != nullptr ? left->ConstGet()->maxDepth + 1 : 0;
        std::int32_t const r = right != nullptr ? right->ConstGet()->maxDepth + 1 : 0;
        maxDepth = l > r ? l : r;
    }
    // Called on the parent: drops the link that names `node` (a private node,
    // which goes with it), puts `replacement` in its place, and sets this
    // node's depth again. The right link is taken when it names `node`,
    // the left one otherwise.
    void RemoveNode(cow_BtreeNode* node, Handle* replacement);

    static std::int32_t DepthOf(Handle const* link) {
        return link != nullptr ? link->ConstGet()->maxDepth : 0;
    }

    V value;
    K key;
    Handle* left;
    Handle* right;
    std::int32_t maxDepth;
};

// An ordered map from unique keys to values, as a value object.
//
// Copying costs one handle allocation and one increment (plus the copy of
// defaultValue), whatever the size: the copy shares every node. A write
// (InsertUnlessMember, Remove, Get) makes private the root and the nodes on
// its search path, also when it finds nothing to do, and leaves all else
// shared. Lookups (IsMember, ConstGet) read only.
template <class K, class V>
class ZORVANCOW_TYPE cow_Btree {
public:
    using Node = cow_BtreeNode<K, V>;
    using Handle = typename Node::Handle;

    // An empty tree: no root, count 0, a default-constructed defaultValue.
    // Allocates nothing.
    cow_Btree();
    // Shares every node of `other`: one new handle on its root and one
    // increment. Copies count and defaultValue.
    cow_Btree(cow_Btree const& other);
    // Releases the root link; the nodes go as far as no other tree counts them.
    ~cow_Btree();
    // Makes this tree share the nodes of `other`, releasing its own. Assigning
    // a tree to itself, or to a tree that already shares its root, is safe.
    cow_Btree const& operator=(cow_Btree const& other);
    // Takes the other's nodes: no count moves, no allocation. `other` is left
    // an empty tree. The default value is a new V() where making one cannot
    // throw, else a copy of the other's (one count for a container value).
    cow_Btree(cow_Btree&& other) noexcept(cow_detail::NothrowFreshDefault<V>::value)
        : root(other.root), count(other.count), defaultValue(cow_detail::FreshDefault(other.defaultValue)) {
        other.root = nullptr;
        other.count = 0;
    }
    // Releases this tree's nodes (as far as no other tree holds them) and
    // takes the other's; `other` is left an empty tree. Moving a tree into
    // itself changes nothing.
    cow_Btree& operator=(cow_Btree&& other) noexcept {
        if (&other == this) return *this;
        Handle* old = root;
        root = other.root;
        count = other.count;
        other.root = nullptr;
        other.count = 0;
        delete old;
        return *this;
    }
    // Exchanges the two trees' nodes and counts; no count moves. The default
    // values stay: both are V().
    void swap(cow_Btree& other) noexcept {
        std::swap(root, other.root);
        std::swap(count, other.count);
    }

    // A new heap tree sharing this one's nodes, made by the copy constructor;
    // the caller deletes it.
    cow_Btree* Copy() const;

    // Adds the pair unless `key` is present; true when added. A present key
    // keeps its old value. The search path is made private either way, and the
    // root is balanced after an addition.
    bool InsertUnlessMember(K const& key, V const& value);
    // Removes `key` and its value; false when absent. The search path is made
    // private either way. Removing the last element leaves the tree as new.
    bool Remove(K const& key);

    // Number of elements.
    std::int32_t GetCount() const { return count; }
    // True when `key` is held. A pure read.
    bool IsMember(K const& key) const { return ConstFind(key) != nullptr; }
    // The value held for `key`, or defaultValue (a default-constructed V) when
    // the key is absent. A pure read; the reference lives until the next write
    // to this tree.
    V const& ConstGet(K const& key) const {
        Node const* node = ConstFind(key);
        return node != nullptr ? node->GetValue() : defaultValue;
    }
    // Write access to the value held for `key`: the search path is made private
    // first, so a change shows in this tree only. Null when the key is absent,
    // and the path walked is private all the same. The pointer lives until the
    // next write to this tree.
    V* Get(K const& key) {
        Node* node = Find(key);
        return node != nullptr ? &node->value : nullptr;
    }

    // Inspection: the root link, null for an empty tree. Its GetShareCount()
    // tells how many trees share the root node; ConstGet() reads the node,
    // whose GetLeft()/GetRight() lead further down.
    Handle const* GetRoot() const { return root; }
    // Inspection: the value that ConstGet answers for an absent key.
    V const& GetDefaultValue() const { return defaultValue; }

    // A tree of this one's exact shape, node for node and depth for depth,
    // that shares no node with it: the new nodes hold `copy(key)` and
    // `copy(value)`, and the default value is a new default V. A rebuild by
    // insertion could rotate differently; this keeps the shape. Costs one
    // node, handle and counter per entry and a recursion as deep as the
    // tree. The hand-over (handover/cow_HandOver.h) copies trees this way.
    template <class MakeCopy>
    cow_Btree Rebuilt(MakeCopy const& copy) const;

    // Standard interface (tree/detail/cow_BtreeStd.h). Iterators walk in key
    // order, read only, and are invalidated by any write to this tree.
    using key_type = K;
    using mapped_type = V;
    using value_type = cow_Entry<K, V>;
    using size_type = std::size_t;
    using difference_type = std::ptrdiff_t;
    using const_iterator = cow_BtreeStdIter<K, V>;
    using iterator = cow_BtreeStdIter<K, V>;
    // A tree of the given key/value pairs; of equal keys the first one stays.
    cow_Btree(std::initializer_list<std::pair<K, V>> entries);
    // A tree of the pairs of [first, last) or of a range (a std::map, ...).
    template <class It, class = cow_detail::EnableIterator<It>>
    cow_Btree(It first, It last);
    template <class R, class = cow_detail::EnableRange<R, cow_Btree>>
    explicit cow_Btree(R const& range);
    // Bidirectional iterators over the entries in key order.
    cow_BtreeStdIter<K, V> begin() const { return cow_BtreeStdIter<K, V>(*this); }
    cow_BtreeStdIter<K, V> end() const { return cow_BtreeStdIter<K, V>::End(*this); }
    cow_BtreeStdIter<K, V> cbegin() const { return begin(); }
    cow_BtreeStdIter<K, V> cend() const { return end(); }
    // Number of entries, and whether there are none.
    std::size_t size() const { return static_cast<std::size_t>(count); }
    bool empty() const { return count == 0; }
    // Whether `key` is held; the entry of `key`, or end(). Pure reads.
    bool contains(K const& key) const { return IsMember(key); }
    cow_BtreeStdIter<K, V> find(K const& key) const { return cow_BtreeStdIter<K, V>(*this, key); }
    // The value of `key`, which must be held.
    V const& at(K const& key) const;

    // Writes through the standard spellings. Each is a write as Get(key) is:
    // the search path is made private, so other trees never see it, and any
    // iterator of this tree is invalidated.
    // Stores `value` under `key`: assigned when the key is held, else added
    // as InsertUnlessMember adds. The position of `key`, and whether it was added.
    std::pair<iterator, bool> insert_or_assign(K const& key, V const& value) {
        if (V* held = Get(key)) {
            *held = value;
            return {find(key), false};
        }
        InsertUnlessMember(key, value);
        return {find(key), true};
    }
    // Removes `key`; the number of entries removed (0 or 1).
    size_type erase(K const& key) { return Remove(key) ? 1 : 0; }
    // Removes the entry at `position` (not end()) and returns the position of
    // the next greater key, or end(), so that a loop may erase while it walks:
    //     for (auto it = tree.begin(); it != tree.end();) it = drop(*it) ? tree.erase(it) : std::next(it);
    // The keys are copied first, since the removal may copy or free the
    // nodes the iterator stands on; the next position is found again after it.
    iterator erase(const_iterator position) {
        K const removed = position->first;
        ++position;
        if (position == end()) {
            Remove(removed);
            return end();
        }
        K const following = position->first;
        Remove(removed);
        return find(following);
    }
    // Write access to the value at a found position (not end()): the path to
    // it is made private first, as Get(key) does, so the change shows in this
    // tree only. Reads through find() and the iterators stay reads (they never
    // unshare); this is the one step that writes, and it invalidates them.
    V& Get(const_iterator position) { return *Get(position->first); }

private:

    template <class MakeCopy>
    static Handle* RebuiltLink(Handle const* link, MakeCopy const& copy);

    // Sets the count from a walk of the nodes. Only for the way out of a
    // throw: an element's copy that fails while a write rebalances comes
    // after the node was linked in or unlinked, and a walk is the one way
    // to know which. Linear, with a stack on the heap.
    void Recount() {
        std::int32_t n = 0;
        std::vector<Node const*> pending;
        if (root != nullptr) pending.push_back(root->ConstGet());
        while (!pending.empty()) {
            Node const* node = pending.back();
            pending.pop_back();
            ++n;
            if (node->left != nullptr) pending.push_back(node->left->ConstGet());
            if (node->right != nullptr) pending.push_back(node->right->ConstGet());
        }
        count = n;
    }

    // The node of `key`, or null; makes every node it visits private.
    Node* Find(K const& key);
    // The node of `key`, or null; reads only.
    Node const* ConstFind(K const& key) const;

    Handle* root;
    std::int32_t count;
    V defaultValue;
};

// Walks a tree in key order, forwards and backwards, with direction changes
// allowed at any point.
//
// Nodes have no parent links, so the iterator keeps the path from the root to
// its current node on a stack of heap frames: each step down allocates one
// small frame, each step up frees one. It holds a bare pointer to the tree
// and no count: the tree must outlive the iterator, and nothing may write to
// the walked tree (not even Get) while the iterator is positioned; afterwards
// only First, Last and the destructor are valid. Writes to other trees that
// share nodes with it are harmless, since they copy their own path.
//
// An iterator cannot be copied: a copy would have to duplicate its whole stack,
// and a fresh iterator with First or Last is as cheap.
template <class K, class V>
class ZORVANCOW_TYPE cow_BtreeIterator {
public:
    using Node = cow_BtreeNode<K, V>;
    using Handle = typename Node::Handle;

    // An iterator on `tree` with no current element: call First or Last.
    explicit cow_BtreeIterator(cow_Btree<K, V> const& tree);
    // Frees the frames; does not read the tree.
    ~cow_BtreeIterator();
    cow_BtreeIterator(cow_BtreeIterator const&) = delete;
    cow_BtreeIterator& operator=(cow_BtreeIterator const&) = delete;

    // To the smallest key; done on an empty tree. Valid in any state.
    void First();
    // To the greatest key; done on an empty tree. Valid in any state.
    void Last();
    // To the next greater key, or done after the greatest.
    // Precondition: not IsDone().
    void Next();
    // To the next smaller key, or done before the smallest.
    // Precondition: not IsDone().
    void Previous();

    // True when there is no current element.
    bool IsDone() const { return top == nullptr; }
    // Key and value of the current element. Precondition: not IsDone().
    K const& CurrentKey() const {
        ZORVANCOW_CHECK(top != nullptr, "cow_BtreeIterator::CurrentKey", "the iterator is done", "stack depth %d", 0);
        return top->link->ConstGet()->GetKey();
    }
    V const& CurrentValue() const {
        ZORVANCOW_CHECK(top != nullptr, "cow_BtreeIterator::CurrentValue", "the iterator is done", "stack depth %d", 0);
        return top->link->ConstGet()->GetValue();
    }

    // Inspection: the number of frames, which is the current node's level
    // plus one (0 when done).
    int GetStackDepth() const {
        int depth = 0;
        for (Frame const* frame = top; frame != nullptr; frame = frame->below) ++depth;
        return depth;
    }

private:
    // One node of the path: the link naming it (in its parent, or the tree's
    // root link) and the frame of its parent.
    struct Frame {
        Handle const* link;
        Frame* below;
    };
    // The frame stack as the tree's in-order steps see it: a frame per node
    // of the path, holding the link that names the node.
    struct FramePath {
        using Link = Handle const*;
        cow_BtreeIterator& walk;
        Link Top() const { return walk.top->link; }
        void Push(Link link) { walk.Push(link); }
        void Pop() { walk.Pop(); }
        bool Empty() const { return walk.top == nullptr; }
        static Link Child(Link link, bool right) {
            Node const* node = link->ConstGet();
            return right ? node->GetRight() : node->GetLeft();
        }
    };

    void Push(Handle const* link) {
        top = cow_Allocate([this, link] { return new Frame{link, top}; });
    }
    // Unlinks and frees the top frame, if any.
    void Pop() {
        if (top == nullptr) return;
        Frame* old = top;
        top = old->below;
        delete old;
    }
    void PopAll() {
        while (top != nullptr) Pop();
    }

    cow_Btree<K, V> const* tree;
    Frame* top;
};

// A tree's keys or values as a list, in ascending key order.
template <class K, class V>
class ZORVANCOW_TYPE cow_BtreeUtils {
public:
    // All keys, ascending. Each key is copied by its own copy constructor, so
    // string keys share their text with the tree. Walks the tree with an
    // iterator: one frame allocation per step down, plus the list's growth.
    static cow_List<K> cow_Keys(cow_Btree<K, V> const& tree) { return Collect::Keys(tree); }
    // All values in the order of their keys, copied like the keys: values that
    // are counted containers share their storage with the tree.
    static cow_List<V> cow_Values(cow_Btree<K, V> const& tree) { return Collect::Values(tree); }

private:
    using Collect = cow_detail::CollectWalk<K, V, cow_BtreeIterator<K, V>>;
};

// ---------------------------------------------------------------------------
// cow_BtreeNode

template <class K, class V>
cow_BtreeNode<K, V>::cow_BtreeNode(K const& key_, V const& value_)
    : value(value_), key(key_), left(nullptr), right(nullptr), maxDepth(0) {}

template <class K, class V>
cow_BtreeNode<K, V>::cow_BtreeNode(cow_BtreeNode const& other)
    : value(other.value),
      key(other.key),
      left(other.left != nullptr ? cow_Allocate([&other] { return new Handle(*other.left); }) : nullptr),
      right(other.right != nullptr ? cow_Allocate([&other] { return new Handle(*other.right); }) : nullptr),
      maxDepth(other.maxDepth) {}

template <class K, class V>
cow_BtreeNode<K, V>::~cow_BtreeNode() {
    delete left;
    delete right;
}

template <class K, class V>
typename cow_BtreeNode<K, V>::Handle* cow_BtreeNode<K, V>::Balance(Handle* self) {
    // A missing child and a leaf child both weigh 0 here.
    std::int32_t const d = DepthOf(right) - DepthOf(left);
    if (d >= 2) return Rotate(self, &cow_BtreeNode::right, &cow_BtreeNode::left);
    if (d < -1) return Rotate(self, &cow_BtreeNode::left, &cow_BtreeNode::right);
    return nullptr;
}

template <class K, class V>
inline typename cow_BtreeNode<K, V>::Handle* cow_BtreeNode<K, V>::Rotate(Handle* self, Handle* cow_BtreeNode::*heavy,
                                                                          Handle* cow_BtreeNode::*light) {
    Handle* up = this->*heavy;
    cow_BtreeNode& child = up->Get();
    this->*heavy = child.*light;
    child.*light = self;
    SetMaxDepth();
    child.SetMaxDepth();
    return up;
}

template <class K, class V>
bool cow_BtreeNode<K, V>::InsertUnlessMember(K const& key_, V const& value_) {
    std::int32_t const c = cow_BtreeKeyCompare(key_, key);
    if (c == 0) return false;
    Handle*& slot = c < 0 ? left : right;
    if (slot == nullptr) {
        slot = cow_Allocate([&] { return new Handle(new cow_BtreeNode(key_, value_)); });
        SetMaxDepth();
        return true;
    }
    cow_BtreeNode& child = slot->Get();
    if (!child.InsertUnlessMember(key_, value_)) return false;
    if (Handle* moved = child.Balance(slot)) slot = moved;
    SetMaxDepth();
    return true;
}

template <class K, class V>
bool cow_BtreeNode<K, V>::Remove(K const& key_, cow_BtreeNode& parent) {
    std::int32_t const c = cow_BtreeKeyCompare(key_, key);
    if (c != 0) {
        Handle*& slot = c < 0 ? left : right;
        if (slot == nullptr) return false;
        if (!slot->Get().Remove(key_, *this)) return false;
        // The child may have gone; its replacement may still be shared.
        if (slot != nullptr) {
            if (Handle* moved = slot->Get().Balance(slot)) slot = moved;
        }
        SetMaxDepth();
        return true;
    }

    Handle* replacement;
    if (right == nullptr) {
        replacement = left;
    } else if (left == nullptr) {
        replacement = right;
    } else {
        // The in-order successor S: the leftmost node of the right subtree,
        // with P its parent. Every node of the walk is made private.
        cow_BtreeNode* p = this;
        Handle* link = right;
        cow_BtreeNode* s = &link->Get();
        while (s->left != nullptr) {
            p = s;
            link = s->left;
            s = &link->Get();
        }
        if (p != this) {
            p->left = s->right;
            s->right = right;
            p->SetMaxDepth();
        }
        s->left = left;
        s->SetMaxDepth();
        replacement = link;
    }
    // The subtrees now hang elsewhere: releasing this node must not take them.
    right = nullptr;
    left = nullptr;
    parent.RemoveNode(this, replacement);
    return true;
}

template <class K, class V>
void cow_BtreeNode<K, V>::RemoveNode(cow_BtreeNode* node, Handle* replacement) {
    if (right != nullptr && right->ConstGet() == node) {
        delete right;
        right = replacement;
    } else {
        delete left;
        left = replacement;
    }
    SetMaxDepth();
}

// Both finds are the tree's one search (tree/detail/cow_BtreeWalk.h); they
// differ in how they step down a link.
template <class K, class V>
cow_BtreeNode<K, V>* cow_BtreeNode<K, V>::Find(K const& key_) {
    return cow_detail::BtreeSearch(this, key_, &Link, &Enter);
}

template <class K, class V>
cow_BtreeNode<K, V> const* cow_BtreeNode<K, V>::ConstFind(K const& key_) const {
    return cow_detail::BtreeSearch(this, key_, &ConstLink, &ConstEnter);
}

// ---------------------------------------------------------------------------
// cow_Btree

template <class K, class V>
cow_Btree<K, V>::cow_Btree() : root(nullptr), count(0), defaultValue() {}

template <class K, class V>
cow_Btree<K, V>::cow_Btree(cow_Btree const& other)
    : root(nullptr), count(other.count), defaultValue(other.defaultValue) {
    if (other.root != nullptr) root = cow_Allocate([&other] { return new Handle(*other.root); });
}

template <class K, class V>
cow_Btree<K, V>::~cow_Btree() {
    delete root;
}

template <class K, class V>
cow_Btree<K, V> const& cow_Btree<K, V>::operator=(cow_Btree const& other) {
    if (&other == this) return *this;
    if (other.root == nullptr) {
        delete root;
        root = nullptr;
    } else if (root == nullptr) {
        root = cow_Allocate([&other] { return new Handle(*other.root); });
    } else {
        // Raises the source's count before lowering ours: safe when both
        // trees already share the root node.
        *root = *other.root;
    }
    count = other.count;
    defaultValue = other.defaultValue;
    return *this;
}

template <class K, class V>
cow_Btree<K, V>* cow_Btree<K, V>::Copy() const {
    return cow_Allocate([this] { return new cow_Btree(*this); });
}

template <class K, class V>
bool cow_Btree<K, V>::InsertUnlessMember(K const& key, V const& value) {
    if (root == nullptr) {
        root = cow_Allocate([&] { return new Handle(new Node(key, value)); });
        count = 1;
        return true;
    }
    // A copy of a node that throws on the way down changes nothing; one
    // that throws in a rotation on the way back comes after the new node
    // was linked in. Either way the tree stays whole and ordered, and the
    // count is taken again before the exception goes on.
    try {
        Node& top = root->Get();
        bool const added = top.InsertUnlessMember(key, value);
        if (added) {
            ++count;
            if (Handle* moved = top.Balance(root)) root = moved;
        }
        return added;
    } catch (...) {
        Recount();
        throw;
    }
}

template <class K, class V>
bool cow_Btree<K, V>::Remove(K const& key) {
    if (root == nullptr) return false;
    // A stand-in parent for the root, so that removing the root node is no
    // special case. It borrows the root link without counting it.
    Node sentinel(K(), defaultValue);
    sentinel.left = root;
    bool removed;
    try {
        removed = root->Get().Remove(key, sentinel);
    } catch (...) {
        // A node copy that threw, on the way down (nothing changed) or while
        // rebalancing after the unlink (the key is gone, and the root may
        // be another node): the sentinel gives the root back, never frees
        // it, and the count is taken again.
        root = sentinel.left;
        sentinel.left = nullptr;
        Recount();
        throw;
    }
    root = sentinel.left;
    sentinel.left = nullptr;
    if (removed) {
        --count;
        if (root != nullptr) {
            if (Handle* moved = root->Get().Balance(root)) root = moved;
        }
    }
    return removed;
}

template <class K, class V>
template <class MakeCopy>
cow_Btree<K, V> cow_Btree<K, V>::Rebuilt(MakeCopy const& copy) const {
    cow_Btree tree;
    tree.root = RebuiltLink(root, copy);
    tree.count = count;
    return tree;
}

template <class K, class V>
template <class MakeCopy>
typename cow_Btree<K, V>::Handle* cow_Btree<K, V>::RebuiltLink(Handle const* link, MakeCopy const& copy) {
    if (link == nullptr) return nullptr;
    Node const* node = link->ConstGet();
    Node* fresh = cow_Allocate([&] { return new Node(copy(node->key), copy(node->value)); });
    Handle* handle = cow_Allocate([fresh] { return new Handle(fresh); });
    try {
        fresh->left = RebuiltLink(node->left, copy);
        fresh->right = RebuiltLink(node->right, copy);
    } catch (...) {
        // An element copy below threw: the part made so far goes with it.
        delete handle;
        throw;
    }
    fresh->maxDepth = node->maxDepth;
    return handle;
}

// The tree's lookups start at the root link (Get on it for Find) and go on
// as the node's own finds do.
template <class K, class V>
typename cow_Btree<K, V>::Node* cow_Btree<K, V>::Find(K const& key) {
    if (root == nullptr) return nullptr;
    return cow_detail::BtreeSearch(&root->Get(), key, &Node::Link, &Node::Enter);
}

template <class K, class V>
typename cow_Btree<K, V>::Node const* cow_Btree<K, V>::ConstFind(K const& key) const {
    if (root == nullptr) return nullptr;
    return cow_detail::BtreeSearch(root->ConstGet(), key, &Node::ConstLink, &Node::ConstEnter);
}

// ---------------------------------------------------------------------------
// cow_BtreeIterator

template <class K, class V>
cow_BtreeIterator<K, V>::cow_BtreeIterator(cow_Btree<K, V> const& tree_) : tree(&tree_), top(nullptr) {}

template <class K, class V>
cow_BtreeIterator<K, V>::~cow_BtreeIterator() {
    PopAll();
}

// The walks are the tree's in-order steps (tree/detail/cow_BtreeWalk.h) on
// the frame stack.
template <class K, class V>
void cow_BtreeIterator<K, V>::First() {
    PopAll();
    FramePath path{*this};
    cow_detail::BtreeEdge<false>(path, tree->GetRoot());
}

template <class K, class V>
void cow_BtreeIterator<K, V>::Last() {
    PopAll();
    FramePath path{*this};
    cow_detail::BtreeEdge<true>(path, tree->GetRoot());
}

template <class K, class V>
void cow_BtreeIterator<K, V>::Next() {
    ZORVANCOW_CHECK(top != nullptr, "cow_BtreeIterator::Next", "the iterator is done", "stack depth %d", 0);
    FramePath path{*this};
    cow_detail::BtreeStep<true>(path);
}

template <class K, class V>
void cow_BtreeIterator<K, V>::Previous() {
    ZORVANCOW_CHECK(top != nullptr, "cow_BtreeIterator::Previous", "the iterator is done", "stack depth %d", 0);
    FramePath path{*this};
    cow_detail::BtreeStep<false>(path);
}

// ---------------------------------------------------------------------------
// Construction from values and ranges, and at() (the standard interface)

template <class K, class V>
inline cow_Btree<K, V>::cow_Btree(std::initializer_list<std::pair<K, V>> entries)
    : cow_Btree(entries.begin(), entries.end()) {}

template <class K, class V>
template <class It, class>
inline cow_Btree<K, V>::cow_Btree(It first, It last) : cow_Btree() {
    for (; first != last; ++first) {
        auto const& [key, value] = *first;
        InsertUnlessMember(key, value);
    }
}

template <class K, class V>
template <class R, class>
inline cow_Btree<K, V>::cow_Btree(R const& range) : cow_Btree(cow_detail::Begin(range), cow_detail::End(range)) {}

template <class K, class V>
inline V const& cow_Btree<K, V>::at(K const& key) const {
    Node const* node = ConstFind(key);
    if (node == nullptr) cow_detail::AtMissingKey("cow_Btree");
    return node->GetValue();
}

template <class K, class V>
inline void swap(cow_Btree<K, V>& a, cow_Btree<K, V>& b) noexcept {
    a.swap(b);
}

// A tree is a root link and a count beside its default value, held in place:
// it may move as bytes when that value may (cow_ElementBytewise).
template <class K, class V>
struct cow_ElementBytewise<cow_Btree<K, V>> : cow_ElementBytewise<V> {};

#include "zorvancow/tree/detail/cow_BtreeExports.h"

#endif
