// The tree pairs the library holds (nodes, handles on nodes, trees and
// iterators for each key/value pair announced in cow_Btree.h), and the
// containers that hold trees as elements.

#include "zorvancow/tree/cow_Btree.h"

#define ZORVANCOW_INSTANTIATE_BTREE(...)                                       \
    ZORVANCOW_INSTANTIATE_COW(cow_BtreeNode<__VA_ARGS__>);                     \
    template class cow_BtreeNode<__VA_ARGS__>;                                 \
    template class cow_Btree<__VA_ARGS__>;                                     \
    template class cow_BtreeIterator<__VA_ARGS__>

ZORVANCOW_INSTANTIATE_BTREE(int, int);
ZORVANCOW_INSTANTIATE_BTREE(int, double);
ZORVANCOW_INSTANTIATE_BTREE(cow_String, int);
ZORVANCOW_INSTANTIATE_BTREE(cow_String, unsigned int);
ZORVANCOW_INSTANTIATE_BTREE(cow_String, float);
ZORVANCOW_INSTANTIATE_BTREE(cow_String, cow_String);
ZORVANCOW_INSTANTIATE_BTREE(cow_String, cow_Btree<int, int>);
ZORVANCOW_INSTANTIATE_BTREE(cow_String, cow_1DArray<cow_String>);

template class cow_1DArrayBlock<cow_Btree<int, int>>;
template class cow_1DArray<cow_Btree<int, int>>;
template class cow_1DArrayIter<cow_Btree<int, int>>;
