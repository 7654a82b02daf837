#ifndef ZORVANCOW_TREE_COW_BTREEEXPORTS_H
#define ZORVANCOW_TREE_COW_BTREEEXPORTS_H

// What libzorvancow.so exports of the trees, and of the blocked arrays and
// lists whose elements are trees (see core/cow_Export.h). The type arguments
// are a key/value pair; Key and Value name them inside the node.

#include "zorvancow/lists/cow_ListExports.h"
#include "zorvancow/tree/cow_Btree.h"

// Every pair: the node, its handle, the tree and the iterator's life.
#define ZORVANCOW_BTREE_ROWS(ROW, ...)                                                               \
    ROW(cow_BtreeNode<__VA_ARGS__>::cow_BtreeNode(cow_BtreeNode<__VA_ARGS__>::Key const&,            \
                                                  cow_BtreeNode<__VA_ARGS__>::Value const&))         \
    ROW(cow_BtreeNode<__VA_ARGS__>::cow_BtreeNode(cow_BtreeNode<__VA_ARGS__> const&))                \
    ROW(cow_BtreeNode<__VA_ARGS__>::~cow_BtreeNode())                                                \
    ROW(cow_COW<cow_BtreeNode<__VA_ARGS__>>* cow_BtreeNode<__VA_ARGS__>::Balance(                    \
        cow_COW<cow_BtreeNode<__VA_ARGS__>>*))                                                       \
    ROW(bool cow_BtreeNode<__VA_ARGS__>::InsertUnlessMember(cow_BtreeNode<__VA_ARGS__>::Key const&,  \
                                                            cow_BtreeNode<__VA_ARGS__>::Value const&)) \
    ROW(bool cow_BtreeNode<__VA_ARGS__>::Remove(cow_BtreeNode<__VA_ARGS__>::Key const&,              \
                                                cow_BtreeNode<__VA_ARGS__>&))                        \
    ROW(cow_BtreeNode<__VA_ARGS__>* cow_BtreeNode<__VA_ARGS__>::Find(cow_BtreeNode<__VA_ARGS__>::Key const&)) \
    ROW(cow_BtreeNode<__VA_ARGS__> const* cow_BtreeNode<__VA_ARGS__>::ConstFind(                     \
        cow_BtreeNode<__VA_ARGS__>::Key const&) const)                                               \
    ROW(void cow_BtreeNode<__VA_ARGS__>::RemoveNode(cow_BtreeNode<__VA_ARGS__>*,                     \
                                                    cow_COW<cow_BtreeNode<__VA_ARGS__>>*))           \
    ZORVANCOW_HANDLE_SHARE_ROWS(ROW, cow_BtreeNode<__VA_ARGS__>)                                     \
    ZORVANCOW_HANDLE_ASSIGN_ROWS(ROW, cow_BtreeNode<__VA_ARGS__>)                                    \
    ZORVANCOW_HANDLE_REPLACE_ROWS(ROW, cow_BtreeNode<__VA_ARGS__>)                                   \
    ROW(cow_Btree<__VA_ARGS__>::cow_Btree())                                                         \
    ROW(cow_Btree<__VA_ARGS__>::cow_Btree(cow_Btree<__VA_ARGS__> const&))                            \
    ROW(cow_Btree<__VA_ARGS__>::~cow_Btree())                                                        \
    ROW(cow_Btree<__VA_ARGS__> const& cow_Btree<__VA_ARGS__>::operator=(cow_Btree<__VA_ARGS__> const&)) \
    ROW(bool cow_Btree<__VA_ARGS__>::InsertUnlessMember(cow_BtreeNode<__VA_ARGS__>::Key const&,      \
                                                        cow_BtreeNode<__VA_ARGS__>::Value const&))   \
    ROW(bool cow_Btree<__VA_ARGS__>::Remove(cow_BtreeNode<__VA_ARGS__>::Key const&))                 \
    ROW(cow_BtreeNode<__VA_ARGS__>* cow_Btree<__VA_ARGS__>::Find(cow_BtreeNode<__VA_ARGS__>::Key const&)) \
    ROW(cow_BtreeNode<__VA_ARGS__> const* cow_Btree<__VA_ARGS__>::ConstFind(                         \
        cow_BtreeNode<__VA_ARGS__>::Key const&) const)                                               \
    ROW(cow_BtreeIterator<__VA_ARGS__>::cow_BtreeIterator(cow_Btree<__VA_ARGS__> const&))            \
    ROW(cow_BtreeIterator<__VA_ARGS__>::~cow_BtreeIterator())

// The iterator's steps: every pair but <cow_String, cow_FixedArray<int>>.
#define ZORVANCOW_BTREE_STEP_ROWS(ROW, ...)                                                          \
    ROW(void cow_BtreeIterator<__VA_ARGS__>::First())                                                \
    ROW(void cow_BtreeIterator<__VA_ARGS__>::Next())                                                 \
    ROW(void cow_BtreeIterator<__VA_ARGS__>::Last())                                                 \
    ROW(void cow_BtreeIterator<__VA_ARGS__>::Previous())

// Everything, for the ten pairs that export all of it: the rows above, the
// steps, and the handle's Delete.
#define ZORVANCOW_BTREE_ALL_ROWS(ROW, ...)                                                           \
    ZORVANCOW_BTREE_ROWS(ROW, __VA_ARGS__)                                                           \
    ZORVANCOW_BTREE_STEP_ROWS(ROW, __VA_ARGS__)                                                      \
    ZORVANCOW_HANDLE_DELETE_ROWS(ROW, cow_BtreeNode<__VA_ARGS__>)

// Keys and values as lists, for three pairs.
#define ZORVANCOW_BTREE_UTILS_ROWS(ROW, ...)                                                         \
    ROW(cow_List<cow_BtreeNode<__VA_ARGS__>::Key> cow_BtreeUtils<__VA_ARGS__>::cow_Keys(             \
        cow_Btree<__VA_ARGS__> const&))                                                              \
    ROW(cow_List<cow_BtreeNode<__VA_ARGS__>::Value> cow_BtreeUtils<__VA_ARGS__>::cow_Values(         \
        cow_Btree<__VA_ARGS__> const&))

#define ZORVANCOW_BTREE_EXPORTS(ROW)                                                                 \
    ZORVANCOW_BTREE_ALL_ROWS(ROW, int, int)                                                          \
    ZORVANCOW_BTREE_ALL_ROWS(ROW, int, double)                                                       \
    ZORVANCOW_BTREE_ALL_ROWS(ROW, int, cow_1DArrayList<int>)                                         \
    ZORVANCOW_BTREE_ROWS(ROW, atr_String, cow_List<atr_String>)                                      \
    ZORVANCOW_BTREE_STEP_ROWS(ROW, atr_String, cow_List<atr_String>)                                 \
    ZORVANCOW_BTREE_ALL_ROWS(ROW, cow_String, int)                                                   \
    ZORVANCOW_BTREE_ALL_ROWS(ROW, cow_String, unsigned int)                                          \
    ZORVANCOW_BTREE_ALL_ROWS(ROW, cow_String, float)                                                 \
    ZORVANCOW_BTREE_ALL_ROWS(ROW, cow_String, cow_String)                                            \
    ZORVANCOW_BTREE_ALL_ROWS(ROW, cow_String, cow_1DArray<cow_String>)                               \
    ZORVANCOW_BTREE_ALL_ROWS(ROW, cow_String, cow_1DArrayList<int>)                                  \
    ZORVANCOW_BTREE_ROWS(ROW, cow_String, cow_FixedArray<int>)                                       \
    ZORVANCOW_BTREE_ALL_ROWS(ROW, cow_String, cow_Btree<int, int>)                                   \
    ROW(cow_Btree<cow_String, cow_Btree<int, int>>* cow_Btree<cow_String, cow_Btree<int, int>>::Copy() const) \
    ROW(void cow_BtreeNode<cow_String, cow_Btree<int, int>>::SetMaxDepth())                          \
    ROW(void cow_BtreeIterator<cow_String, cow_Btree<int, int>>::Pop())                              \
    ZORVANCOW_BTREE_UTILS_ROWS(ROW, cow_String, cow_Btree<int, int>)                                 \
    ZORVANCOW_BTREE_UTILS_ROWS(ROW, cow_String, unsigned int)                                        \
    ZORVANCOW_BTREE_UTILS_ROWS(ROW, cow_String, cow_String)                                          \
    ZORVANCOW_1DARRAY_ROWS(ROW, cow_Btree<int, int>)                                                 \
    ZORVANCOW_1DARRAY_REMOVE_HEAD_ROWS(ROW, cow_Btree<int, int>)                                     \
    ZORVANCOW_LIST_ROWS(ROW, cow_Btree<int, int>)

ZORVANCOW_BTREE_EXPORTS(ZORVANCOW_EXTERN_ROW)

#endif
