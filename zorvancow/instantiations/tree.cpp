// The trees, and the blocked arrays and lists of trees.

#include "zorvancow/tree/cow_BtreeExports.h"

ZORVANCOW_BTREE_EXPORTS(ZORVANCOW_DEFINE_ROW)
