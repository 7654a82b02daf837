#ifndef ZORVANCOW_LISTS_COW_LISTEXPORTS_H
#define ZORVANCOW_LISTS_COW_LISTEXPORTS_H

// What libzorvancow.so exports of the general lists (see core/cow_Export.h).
// The lists of trees take these rows in the tree's export header.

#include "zorvancow/lists/cow_1DArrayListExports.h"
#include "zorvancow/lists/cow_List.h"

// Every instantiation: editing at both ends and by index, element access,
// emptying and destruction.
#define ZORVANCOW_LIST_ROWS(ROW, ...)                                                                \
    ROW(cow_List<__VA_ARGS__>& cow_List<__VA_ARGS__>::Append(__VA_ARGS__ const&))                    \
    ROW(cow_List<__VA_ARGS__>& cow_List<__VA_ARGS__>::Append(cow_List<__VA_ARGS__> const&))         \
    ROW(cow_List<__VA_ARGS__>& cow_List<__VA_ARGS__>::Prepend(__VA_ARGS__ const&))                   \
    ROW(cow_List<__VA_ARGS__>& cow_List<__VA_ARGS__>::InsertAfter(int, __VA_ARGS__ const&))          \
    ROW(cow_List<__VA_ARGS__>& cow_List<__VA_ARGS__>::RemoveIndex(int))                              \
    ROW(cow_List<__VA_ARGS__>& cow_List<__VA_ARGS__>::RemoveFirst())                                 \
    ROW(cow_List<__VA_ARGS__>& cow_List<__VA_ARGS__>::RemoveLast())                                  \
    ROW(cow_List<__VA_ARGS__>& cow_List<__VA_ARGS__>::Clear())                                       \
    ROW(__VA_ARGS__ const& cow_List<__VA_ARGS__>::ConstGet(int) const)                               \
    ROW(__VA_ARGS__& cow_List<__VA_ARGS__>::Get(int))                                                \
    ROW(cow_List<__VA_ARGS__>::~cow_List())

// Lists whose elements compare and order: search, equality, sort,
// difference, and the iterator's destructor.
#define ZORVANCOW_LIST_SEARCH_ROWS(ROW, ...)                                                         \
    ROW(int cow_List<__VA_ARGS__>::Position(__VA_ARGS__ const&) const)                               \
    ROW(bool cow_List<__VA_ARGS__>::IsMember(__VA_ARGS__ const&) const)                              \
    ROW(cow_List<__VA_ARGS__>& cow_List<__VA_ARGS__>::Remove(__VA_ARGS__ const&))                    \
    ROW(cow_List<__VA_ARGS__>& cow_List<__VA_ARGS__>::AppendUnlessMember(__VA_ARGS__ const&))        \
    ROW(bool cow_List<__VA_ARGS__>::IsEqual(cow_List<__VA_ARGS__> const&) const)                     \
    ROW(cow_List<__VA_ARGS__>& cow_List<__VA_ARGS__>::Sort())                                        \
    ROW(int cow_List<__VA_ARGS__>::SortCmp(void const*, void const*))                                \
    ROW(cow_List<__VA_ARGS__> cow_List<__VA_ARGS__>::operator-(cow_List<__VA_ARGS__> const&))        \
    ROW(cow_ListIter<__VA_ARGS__>::~cow_ListIter())

#define ZORVANCOW_ORDERED_LIST_ROWS(ROW, ...)                                                        \
    ZORVANCOW_LIST_ROWS(ROW, __VA_ARGS__)                                                            \
    ZORVANCOW_LIST_SEARCH_ROWS(ROW, __VA_ARGS__)

#define ZORVANCOW_LIST_EXPORTS(ROW)                                                                  \
    ZORVANCOW_ORDERED_LIST_ROWS(ROW, int)                                                            \
    ZORVANCOW_ORDERED_LIST_ROWS(ROW, unsigned int)                                                   \
    ZORVANCOW_ORDERED_LIST_ROWS(ROW, bool)                                                           \
    ZORVANCOW_ORDERED_LIST_ROWS(ROW, float)                                                          \
    ZORVANCOW_ORDERED_LIST_ROWS(ROW, double)                                                         \
    ZORVANCOW_ORDERED_LIST_ROWS(ROW, cow_String)                                                     \
    ZORVANCOW_ORDERED_LIST_ROWS(ROW, atr_String)                                                     \
    ZORVANCOW_LIST_ROWS(ROW, cow_1DArrayList<int>)

ZORVANCOW_LIST_EXPORTS(ZORVANCOW_EXTERN_ROW)

#endif
