#ifndef ZORVANCOW_ZORVANCOW_H
#define ZORVANCOW_ZORVANCOW_H

// Every family of the library in one include, and the version. Last, the
// export declarations that name types of more than one family.

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
