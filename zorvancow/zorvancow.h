#ifndef ZORVANCOW_ZORVANCOW_H
#define ZORVANCOW_ZORVANCOW_H

// Every family of the library in one include, and the version. Last, the
// export declarations that name types of more than one family.
//
// Zorvancow's containers are values: a copy costs one count increment and
// shares all storage, and a write copies only the piece it touches. The
// families, each in its own header under zorvancow/ (include this file, or
// only the header you need):
//
//   core/cow_COW.h            cow_COW<T>: one object behind a count, copied on
//                             first write. The handle every family is built on.
//   core/cow_String.h         cow_String: read-only text shared by every copy.
//   core/cow_Lifecycle.h      cow_initialize / cow_finalize: start and stop the
//                             sibling libraries (containers do not depend on it).
//   arrays/cow_1DArray.h      cow_1DArray<T>: a large array in shared blocks;
//                             a write copies one block. Start here for arrays.
//   lists/cow_List.h          cow_List<T>: a sequence growing at both ends
//                             (queue, stack, list), searched and sorted by value.
//                             Start here in place of std::vector or std::deque.
//   lists/cow_1DArrayList.h   cow_1DArrayList<T>: the same storage, worked by
//                             position (Insert and Remove take an index).
//   tree/cow_Btree.h          cow_Btree<K, V>: keys in order; a write copies
//                             its search path. Start here in place of std::map.
//   map/cow_Map.h             cow_Map<K, V>: keys compared for equality only,
//                             one key bit per level; a write copies the path
//                             from the root. For many versions of one map.
//   shapes/cow_FixedArray.h   cow_FixedArray<T>, cow_2DArray<T> (cow_2DArray.h):
//                             small rows and matrices, shared and copied whole.
//   tables/omi_IntTable.h     omi_UintTable<T>, omi_IntTable<T>: radix tables
//                             for dense 32-bit keys; copies are deep (put one
//                             behind cow_COW to share it).
//   handover/cow_HandOver.h   cow_HandOver(value): a copy sharing nothing, to
//                             give a value to another thread.
//   errors/cow_SystemErrorCode.h  cow_SystemErrorCode: the text of a system
//                             error code or an errno.
//
// Each header opens with what its containers guarantee and cost; README.md
// has a first program and a guide to choosing.

#include "zorvancow/zorvancow_version.h"
#include "zorvancow/core/cow_COW.h"
#include "zorvancow/handover/cow_HandOver.h"
#include "zorvancow/core/cow_Lifecycle.h"
#include "zorvancow/core/cow_String.h"
#include "zorvancow/arrays/cow_1DArray.h"
#include "zorvancow/lists/cow_1DArrayList.h"
#include "zorvancow/lists/cow_List.h"
#include "zorvancow/errors/cow_SystemErrorCode.h"
#include "zorvancow/shapes/cow_2DArray.h"
#include "zorvancow/shapes/cow_FixedArray.h"
#include "zorvancow/tables/omi_IntTable.h"
#include "zorvancow/map/cow_Map.h"
#include "zorvancow/tree/cow_Btree.h"
#include "zorvancow/history/cow_Diff.h"
#include "zorvancow/history/cow_Footprint.h"
#include "zorvancow/zorvancow_exports.h"

#endif
