#include "zorvancow/lists/cow_List.h"

unsigned int GetLengthShortestString(cow_List<cow_String> const& list) {
    if (list.GetCount() == 0) return 0;
    unsigned int shortest = 0xFFFFFFFFu;
    cow_ListIter<cow_String> it(list);
    for (int i = 0; i < list.GetCount(); ++i, it.Next()) {
        unsigned int length = static_cast<unsigned int>(it.Current().GetLength());
        if (length < shortest) shortest = length;
    }
    return shortest;
}

unsigned int GetLengthLongestString(cow_List<cow_String> const& list) {
    unsigned int longest = 0;
    cow_ListIter<cow_String> it(list);
    for (int i = 0; i < list.GetCount(); ++i, it.Next()) {
        unsigned int length = static_cast<unsigned int>(it.Current().GetLength());
        if (length > longest) longest = length;
    }
    return longest;
}
