#ifndef ZORVANCOW_TREE_DETAIL_COW_BTREEWALK_H
#define ZORVANCOW_TREE_DETAIL_COW_BTREEWALK_H

// The tree's walks, written once: the search by key and the in-order step.
// The node's Find and ConstFind, the tree's lookups, cow_BtreeIterator (a
// path of heap frames) and cow_BtreeStdIter (a path inside itself) all go
// through these.

#include <cstdint>
#include <vector>

#include "zorvancow/core/cow_Element.h"

namespace cow_detail {
// The search: from `node` (not null) down to the node holding `key`, or
// null. The key order is cow_KeyOrder<K>. `down(node, right)` gives the link
// to the child of `node` on the right (true) or left side, null when there
// is none, and `enter(link)` the node behind a link: through Get for a
// writing walk, which makes it private, or through ConstGet for a reading
// one; a walk that keeps its path records each step there.
template <class K, class Node, class Down, class Enter>
inline Node* BtreeSearch(Node* node, K const& key, Down down, Enter enter) {
    for (;;) {
        std::int32_t const c = cow_KeyOrder<K>::Compare(key, node->GetKey());
        if (c == 0) return node;
        auto const link = down(node, c > 0);
        if (link == nullptr) return nullptr;
        node = enter(link);
    }
}

// The in-order steps work on the path from the root to the current node,
// kept as the iterator likes. `Path` gives:
//   Link                    what the path holds per node; compared by identity
//   Link Top() const        the current node's entry
//   void Push(Link)         one step down
//   void Pop()              one step up
//   bool Empty() const      true when no node is left
//   static Link Child(Link, bool right)   a child's entry, null when none

// Goes down from the top along one side as far as it leads: to the smallest
// key below (left) or the greatest (right).
template <bool Right, class Path>
inline void BtreeDescend(Path& path) {
    while (auto next = Path::Child(path.Top(), Right)) path.Push(next);
}

// To the first key (left) or the last (right) under `root`; the path is left
// as it was when `root` is null.
template <bool Right, class Path>
inline void BtreeEdge(Path& path, typename Path::Link root) {
    if (root == nullptr) return;
    path.Push(root);
    BtreeDescend<Right>(path);
}

// To the next greater key (Forward) or the next smaller one, or to an empty
// path past the last or the first. Needs a current node.
template <bool Forward, class Path>
inline void BtreeStep(Path& path) {
    if (auto down = Path::Child(path.Top(), Forward)) {
        path.Push(down);
        BtreeDescend<!Forward>(path);
        return;
    }
    // Climb while coming up from a child on the side of the step: those
    // ancestors lie behind.
    for (;;) {
        auto const from = path.Top();
        path.Pop();
        if (path.Empty() || Path::Child(path.Top(), Forward) != from) return;
    }
}

// The paired walk of two trees in key order, for a comparison. Each side is
// a stack of what remains of its walk, front on top: whole subtrees not yet
// opened and single nodes due next. When both fronts are the same subtree,
// both sides hold exactly its keys next (every key taken so far is smaller
// than every key left on either side), so it is skipped unread. Two
// different subtrees are opened deeper one first (both at equal depth), so
// that subtrees the trees share meet at one level. Single nodes are merged
// by key: only(node, first) for a key only in the first tree (first true) or
// only in the second, both(nodeA, nodeB) for a key in both (any two nodes
// of one key, shared or not).
//
// `Node` gives GetKey(), GetMaxDepth() and GetLeft()/GetRight(), links that
// are null or give the child by ConstGet(). Reads only; the stacks are the
// walk's own.
template <class K, class Node, class Only, class Both>
void BtreePairedWalk(Node const* a, Node const* b, Only&& only, Both&& both) {
    struct Front {
        Node const* node;
        bool whole;  // the subtree under node, or node alone
    };
    std::vector<Front> sideA, sideB;
    if (a != nullptr) sideA.push_back({a, true});
    if (b != nullptr) sideB.push_back({b, true});
    auto open = [](std::vector<Front>& side) {
        Node const* node = side.back().node;
        side.pop_back();
        if (node->GetRight() != nullptr) side.push_back({node->GetRight()->ConstGet(), true});
        side.push_back({node, false});
        if (node->GetLeft() != nullptr) side.push_back({node->GetLeft()->ConstGet(), true});
    };
    while (!sideA.empty() && !sideB.empty()) {
        Front const x = sideA.back();
        Front const y = sideB.back();
        if (x.whole && y.whole) {
            if (x.node == y.node) {
                sideA.pop_back();
                sideB.pop_back();
                continue;
            }
            std::int32_t const depthA = x.node->GetMaxDepth();
            std::int32_t const depthB = y.node->GetMaxDepth();
            if (depthA >= depthB) open(sideA);
            if (depthB >= depthA) open(sideB);
        } else if (x.whole) {
            open(sideA);
        } else if (y.whole) {
            open(sideB);
        } else {
            std::int32_t const c = cow_KeyOrder<K>::Compare(x.node->GetKey(), y.node->GetKey());
            if (c <= 0) sideA.pop_back();
            if (c >= 0) sideB.pop_back();
            if (c < 0) only(x.node, true);
            else if (c > 0) only(y.node, false);
            else both(x.node, y.node);
        }
    }
    // What is left on one side is in that tree only.
    for (bool first : {true, false}) {
        std::vector<Front>& side = first ? sideA : sideB;
        while (!side.empty()) {
            if (side.back().whole) {
                open(side);
            } else {
                Node const* node = side.back().node;
                side.pop_back();
                only(node, first);
            }
        }
    }
}
}  // namespace cow_detail

#endif
