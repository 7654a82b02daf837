// The radix tables the library holds compiled, and the handle members it
// exports for sharing a whole table.

#include "zorvancow/tables/omi_IntTable.h"

ZORVANCOW_TABLE_MEMBERS(template, cow_String);

ZORVANCOW_TABLE_COW_MEMBERS(template, omi_IntTable<cow_String>);
ZORVANCOW_TABLE_COW_REPLACE(template, omi_IntTable<cow_String>);
ZORVANCOW_TABLE_COW_MEMBERS(template, omi_IntTable<int>);
