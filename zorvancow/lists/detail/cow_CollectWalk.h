#ifndef ZORVANCOW_LISTS_DETAIL_COW_COLLECTWALK_H
#define ZORVANCOW_LISTS_DETAIL_COW_COLLECTWALK_H

// The one collector behind cow_Keys and cow_Values of the trees and the
// maps: a new list of what `read` takes from each entry of a walk over
// `source`, in the walk's order. Keys and values are appended by their own
// copy, so strings and containers in the list share with the source.

#include "zorvancow/lists/cow_List.h"

namespace cow_detail {
template <class T, class Walk, class Source, class Read>
cow_List<T> CollectWalk(Source const& source, Read read) {
    cow_List<T> collected;
    Walk walk(source);
    for (walk.First(); !walk.IsDone(); walk.Next()) collected.Append(read(walk));
    return collected;
}
}  // namespace cow_detail

#endif
