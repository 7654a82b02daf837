#ifndef ZORVANCOW_MAP_COW_MAPEXPORTS_H
#define ZORVANCOW_MAP_COW_MAPEXPORTS_H

// What libzorvancow.so exports of the digital maps (see core/cow_Export.h).
// The type arguments are a key/value pair. The handle members a map only
// uses (the node copy and both assignments) are not exported, nor are the
// walks and utilities of the rows not listed for them.

#include "zorvancow/lists/cow_ListExports.h"
#include "zorvancow/map/cow_Map.h"

// Every pair: the map, its node and the node's handle.
#define ZORVANCOW_MAP_ROWS(ROW, ...)                                                                 \
    ZORVANCOW_HANDLE_SHARE_ROWS(ROW, cow_MapNode<__VA_ARGS__>)                                       \
    ZORVANCOW_HANDLE_DELETE_ROWS(ROW, cow_MapNode<__VA_ARGS__>)                                      \
    ZORVANCOW_HANDLE_RELEASE_ROWS(ROW, cow_MapNode<__VA_ARGS__>)                                     \
    ROW(cow_MapNode<__VA_ARGS__>::~cow_MapNode())                                                    \
    ROW(bool cow_Map<__VA_ARGS__>::IsMember(cow_MapNode<__VA_ARGS__>::Key const&) const)             \
    ROW(bool cow_Map<__VA_ARGS__>::Insert(cow_MapNode<__VA_ARGS__>::Key const&,                      \
                                          cow_MapNode<__VA_ARGS__>::Value const&))                   \
    ROW(bool cow_Map<__VA_ARGS__>::Remove(cow_MapNode<__VA_ARGS__>::Key const&))                     \
    ROW(cow_MapNode<__VA_ARGS__>::Value& cow_Map<__VA_ARGS__>::Get(cow_MapNode<__VA_ARGS__>::Key const&)) \
    ROW(cow_MapNode<__VA_ARGS__>::Value const& cow_Map<__VA_ARGS__>::ConstGet(                       \
        cow_MapNode<__VA_ARGS__>::Key const&) const)                                                 \
    ROW(cow_Map<__VA_ARGS__>::~cow_Map())

// The node walk: every pair but <unsigned int, int>.
#define ZORVANCOW_MAP_WALK_ROWS(ROW, ...)                                                            \
    ROW(void cow_ConstMapIterator<__VA_ARGS__>::First())                                             \
    ROW(cow_ConstMapIterator<__VA_ARGS__>::~cow_ConstMapIterator())

// The sorted walk: two string-keyed pairs.
#define ZORVANCOW_MAP_SORTED_ROWS(ROW, ...)                                                          \
    ROW(void cow_ConstMapSortedIt<__VA_ARGS__>::First())                                             \
    ROW(int cow_ConstMapSortedIt<__VA_ARGS__>::AscSortCmp(void const*, void const*))                 \
    ROW(cow_ConstMapSortedIt<__VA_ARGS__>::~cow_ConstMapSortedIt())

// Keys and values as lists: nine pairs.
#define ZORVANCOW_MAP_UTILS_ROWS(ROW, ...)                                                           \
    ROW(cow_List<cow_MapNode<__VA_ARGS__>::Key> cow_MapUtils<__VA_ARGS__>::cow_Keys(                 \
        cow_Map<__VA_ARGS__> const&))                                                                \
    ROW(cow_List<cow_MapNode<__VA_ARGS__>::Value> cow_MapUtils<__VA_ARGS__>::cow_Values(             \
        cow_Map<__VA_ARGS__> const&))

#define ZORVANCOW_WALKED_MAP_ROWS(ROW, ...)                                                          \
    ZORVANCOW_MAP_ROWS(ROW, __VA_ARGS__)                                                             \
    ZORVANCOW_MAP_WALK_ROWS(ROW, __VA_ARGS__)

// The values that both int and string keys take.
#define ZORVANCOW_MAP_COMMON_VALUE_ROWS(ROW, ...)                                                    \
    ZORVANCOW_WALKED_MAP_ROWS(ROW, __VA_ARGS__, int)                                                 \
    ZORVANCOW_WALKED_MAP_ROWS(ROW, __VA_ARGS__, unsigned int)                                        \
    ZORVANCOW_WALKED_MAP_ROWS(ROW, __VA_ARGS__, float)                                               \
    ZORVANCOW_WALKED_MAP_ROWS(ROW, __VA_ARGS__, double)                                              \
    ZORVANCOW_WALKED_MAP_ROWS(ROW, __VA_ARGS__, cow_String)                                          \
    ZORVANCOW_WALKED_MAP_ROWS(ROW, __VA_ARGS__, cow_1DArrayList<int>)                                \
    ZORVANCOW_WALKED_MAP_ROWS(ROW, __VA_ARGS__, cow_1DArrayList<float>)                              \
    ZORVANCOW_WALKED_MAP_ROWS(ROW, __VA_ARGS__, cow_1DArrayList<cow_String>)                         \
    ZORVANCOW_WALKED_MAP_ROWS(ROW, __VA_ARGS__, cow_FixedArray<double>)

#define ZORVANCOW_MAP_EXPORTS(ROW)                                                                   \
    ZORVANCOW_MAP_COMMON_VALUE_ROWS(ROW, int)                                                        \
    ZORVANCOW_WALKED_MAP_ROWS(ROW, int, cow_FixedArray<int>)                                         \
    ZORVANCOW_WALKED_MAP_ROWS(ROW, int, omi_BlkBitVect)                                              \
    ZORVANCOW_MAP_COMMON_VALUE_ROWS(ROW, cow_String)                                                 \
    ZORVANCOW_WALKED_MAP_ROWS(ROW, cow_String, cow_List<int>)                                        \
    ZORVANCOW_WALKED_MAP_ROWS(ROW, cow_String, cow_List<cow_String>)                                 \
    ZORVANCOW_WALKED_MAP_ROWS(ROW, cow_String, atr_String)                                           \
    ZORVANCOW_MAP_ROWS(ROW, unsigned int, int)                                                       \
    ZORVANCOW_WALKED_MAP_ROWS(ROW, unsigned int, unsigned int)                                       \
    ZORVANCOW_WALKED_MAP_ROWS(ROW, unsigned int, atr_String)                                         \
    ZORVANCOW_WALKED_MAP_ROWS(ROW, unsigned int, cow_String)                                         \
    ZORVANCOW_MAP_SORTED_ROWS(ROW, cow_String, cow_String)                                           \
    ZORVANCOW_MAP_SORTED_ROWS(ROW, cow_String, float)                                                \
    ZORVANCOW_MAP_UTILS_ROWS(ROW, int, cow_1DArrayList<int>)                                         \
    ZORVANCOW_MAP_UTILS_ROWS(ROW, int, cow_1DArrayList<cow_String>)                                  \
    ZORVANCOW_MAP_UTILS_ROWS(ROW, unsigned int, atr_String)                                          \
    ZORVANCOW_MAP_UTILS_ROWS(ROW, cow_String, int)                                                   \
    ZORVANCOW_MAP_UTILS_ROWS(ROW, cow_String, unsigned int)                                          \
    ZORVANCOW_MAP_UTILS_ROWS(ROW, cow_String, double)                                                \
    ZORVANCOW_MAP_UTILS_ROWS(ROW, cow_String, cow_String)                                            \
    ZORVANCOW_MAP_UTILS_ROWS(ROW, cow_String, cow_1DArrayList<cow_String>)                           \
    ZORVANCOW_MAP_UTILS_ROWS(ROW, cow_String, atr_String)

ZORVANCOW_MAP_EXPORTS(ZORVANCOW_EXTERN_ROW)

#endif
