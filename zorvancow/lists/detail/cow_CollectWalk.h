#ifndef ZORVANCOW_LISTS_DETAIL_COW_COLLECTWALK_H
#define ZORVANCOW_LISTS_DETAIL_COW_COLLECTWALK_H

// The one collector behind cow_Keys and cow_Values of the trees and the
// maps: a new list of the keys or of the values of a walk over `source`, in
// the walk's order. Keys and values are appended by their own copy, so
// strings and containers in the list share with the source.

#include "zorvancow/lists/cow_List.h"

namespace cow_detail {
// `Walk` is the family's own iterator: made from the source, with First,
// IsDone, Next, CurrentKey and CurrentValue.
template <class K, class V, class Walk>
struct CollectWalk {
    template <class Source>
    static cow_List<K> Keys(Source const& source) {
        return Collect<K>(source, [](Walk const& walk) -> K const& { return walk.CurrentKey(); });
    }
    template <class Source>
    static cow_List<V> Values(Source const& source) {
        return Collect<V>(source, [](Walk const& walk) -> V const& { return walk.CurrentValue(); });
    }

private:
    template <class T, class Source, class Read>
    static cow_List<T> Collect(Source const& source, Read read) {
        cow_List<T> collected;
        Walk walk(source);
        for (walk.First(); !walk.IsDone(); walk.Next()) collected.Append(read(walk));
        return collected;
    }
};
}  // namespace cow_detail

#endif
