#ifndef ZORVANCOW_MAP_DETAIL_COW_MAPPAIREDWALK_H
#define ZORVANCOW_MAP_DETAIL_COW_MAPPAIREDWALK_H

// The paired walk of two maps, for a comparison.
//
// A node's place is a path of digits, and every key under it has that path
// as its first digits, whichever map holds it. So two subtrees at one place
// hold the keys of that prefix, and when they are the same subtree, the two
// maps hold the same pairs there. But a key need not sit at the same depth
// in both maps (a removal pulls keys up; the order of inserts decides who
// stands higher), so the walk carries down, beside the two subtrees, the
// nodes met above that found no partner yet: "pending" on each side. At a
// place, the nodes of both sides join their pendings, pairs of one key are
// reported and dropped, and the rest go down the child of their next digit.
// When both subtrees are one (or both empty), only the pendings are left to
// pair.
//
// Cost: the nodes the two maps do not share, plus, per such node, a
// look over the pendings (a handful: a pending moves down only while the
// subtrees differ). Shared subtrees are not entered. An explicit stack, as
// a map's depth is bounded by its keys' digits, not by a balance rule.

#include <utility>
#include <vector>

#include "zorvancow/core/cow_Element.h"

namespace cow_detail {
// only(node, first) for a key that only the first map (first true) or the
// second holds; both(nodeA, nodeB) for a key in both, with any two nodes of
// that key. `Node` has key and child[2] (links with ConstGet()). Reads only.
template <class K, class Node, class Only, class Both>
void MapPairedWalk(Node const* a, Node const* b, Only&& only, Both&& both) {
    using Nodes = std::vector<Node const*>;
    struct Place {
        Node const* a;
        Node const* b;
        int depth;
        Nodes pendingA;
        Nodes pendingB;
    };
    std::vector<Place> places;
    places.push_back(Place{a, b, 0, Nodes(), Nodes()});
    while (!places.empty()) {
        Place place = std::move(places.back());
        places.pop_back();
        if (place.a != place.b) {
            if (place.a != nullptr) place.pendingA.push_back(place.a);
            if (place.b != nullptr) place.pendingB.push_back(place.b);
        }
        // Pair the pendings of one key.
        for (std::size_t i = 0; i < place.pendingA.size();) {
            Node const* x = place.pendingA[i];
            std::size_t j = 0;
            while (j < place.pendingB.size() && !cow_KeyBits<K>::Equal(x->key, place.pendingB[j]->key)) ++j;
            if (j == place.pendingB.size()) {
                ++i;
                continue;
            }
            both(x, place.pendingB[j]);
            place.pendingA.erase(place.pendingA.begin() + static_cast<std::ptrdiff_t>(i));
            place.pendingB.erase(place.pendingB.begin() + static_cast<std::ptrdiff_t>(j));
        }
        if (place.a == place.b) {
            // The same subtree below (or none): what is still pending has no
            // partner, as neither subtree holds a pending key of the other side.
            for (Node const* x : place.pendingA) only(x, true);
            for (Node const* y : place.pendingB) only(y, false);
            continue;
        }
        // Down one level; digit 1 is pushed first, so digit 0 comes first.
        for (int digit = 1; digit >= 0; --digit) {
            Place below{place.a != nullptr ? place.a->child[digit].ConstGet() : nullptr,
                        place.b != nullptr ? place.b->child[digit].ConstGet() : nullptr, place.depth + 1, Nodes(),
                        Nodes()};
            for (Node const* x : place.pendingA) {
                if (cow_KeyBits<K>::Bit(x->key, place.depth) == digit) below.pendingA.push_back(x);
            }
            for (Node const* y : place.pendingB) {
                if (cow_KeyBits<K>::Bit(y->key, place.depth) == digit) below.pendingB.push_back(y);
            }
            if (below.a != below.b || !below.pendingA.empty() || !below.pendingB.empty())
                places.push_back(std::move(below));
        }
    }
}
}  // namespace cow_detail

#endif
