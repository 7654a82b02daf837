// The array lists and general lists, and the blocked arrays of array lists.

#include "zorvancow/lists/cow_ListExports.h"

ZORVANCOW_1DARRAYLIST_EXPORTS(ZORVANCOW_DEFINE_ROW)
ZORVANCOW_LIST_EXPORTS(ZORVANCOW_DEFINE_ROW)
