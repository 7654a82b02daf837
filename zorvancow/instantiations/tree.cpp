// The tree pairs the library holds, member by member as announced at the end
// of cow_Btree.h, and the blocked arrays and lists whose elements are trees.

#include "zorvancow/tree/cow_Btree.h"

ZORVANCOW_BTREE_ALL(template, int, int);
ZORVANCOW_BTREE_ALL(template, int, double);
ZORVANCOW_BTREE_ALL(template, int, cow_1DArrayList<int>);
ZORVANCOW_BTREE_MEMBERS(template, atr_String, cow_List<atr_String>);
ZORVANCOW_BTREE_STEPS(template, atr_String, cow_List<atr_String>);
ZORVANCOW_BTREE_ALL(template, cow_String, int);
ZORVANCOW_BTREE_ALL(template, cow_String, unsigned int);
ZORVANCOW_BTREE_ALL(template, cow_String, float);
ZORVANCOW_BTREE_ALL(template, cow_String, cow_String);
ZORVANCOW_BTREE_ALL(template, cow_String, cow_1DArray<cow_String>);
ZORVANCOW_BTREE_ALL(template, cow_String, cow_1DArrayList<int>);
ZORVANCOW_BTREE_MEMBERS(template, cow_String, cow_FixedArray<int>);
ZORVANCOW_BTREE_ALL(template, cow_String, cow_Btree<int, int>);

template cow_Btree<cow_String, cow_Btree<int, int>>* cow_Btree<cow_String, cow_Btree<int, int>>::Copy() const;
template void cow_BtreeNode<cow_String, cow_Btree<int, int>>::SetMaxDepth();
template void cow_BtreeIterator<cow_String, cow_Btree<int, int>>::Pop();

ZORVANCOW_BTREE_UTILS(template, cow_String, cow_Btree<int, int>);
ZORVANCOW_BTREE_UTILS(template, cow_String, unsigned int);
ZORVANCOW_BTREE_UTILS(template, cow_String, cow_String);

template class cow_1DArrayBlock<cow_Btree<int, int>>;
template class cow_1DArray<cow_Btree<int, int>>;
template class cow_1DArrayIter<cow_Btree<int, int>>;
ZORVANCOW_LIST_OF_TREES(template);
