#ifndef ZORVAN_TESTS_MAP_SUPPORT_H
#define ZORVAN_TESTS_MAP_SUPPORT_H

// Small readers shared by the map tests: walk orders as vectors, and which
// nodes two maps share.

#include <set>
#include <string>
#include <vector>

#include "zorvancow/map/cow_Map.h"

namespace map_test {

inline std::string Text(cow_String const& s) { return s.GetCString(); }
inline int Text(int i) { return i; }
inline unsigned Text(unsigned u) { return u; }

// Keys in the order of a node walk (First, IsDone, CurrentKey, Next).
template <class Iterator>
auto Walk(Iterator& it) -> std::vector<decltype(Text(it.CurrentKey()))> {
    std::vector<decltype(Text(it.CurrentKey()))> keys;
    for (it.First(); !it.IsDone(); it.Next()) keys.push_back(Text(it.CurrentKey()));
    return keys;
}

template <class K, class V>
auto WalkKeys(cow_Map<K, V> const& map) {
    cow_ConstMapIterator<K, V> it(map);
    return Walk(it);
}

// Every node reachable from `link`, read through the pointees only.
template <class Node>
void Nodes(cow_COW<Node> const& link, std::set<Node const*>& into) {
    Node const* node = link.ConstGet();
    if (node == nullptr) return;
    into.insert(node);
    Nodes(node->child[0], into);
    Nodes(node->child[1], into);
}

template <class K, class V>
std::set<cow_MapNode<K, V> const*> Nodes(cow_Map<K, V> const& map) {
    std::set<cow_MapNode<K, V> const*> nodes;
    Nodes(map.GetRoot(), nodes);
    return nodes;
}

// How many nodes of `a` are also nodes of `b`.
template <class K, class V>
int SharedNodes(cow_Map<K, V> const& a, cow_Map<K, V> const& b) {
    auto const inB = Nodes(b);
    int shared = 0;
    for (auto const* node : Nodes(a)) shared += inB.count(node) != 0 ? 1 : 0;
    return shared;
}

}  // namespace map_test

#endif
