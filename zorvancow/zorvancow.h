#ifndef ZORVANCOW_ZORVANCOW_H
#define ZORVANCOW_ZORVANCOW_H

// Every family of the library in one include.

#include "zorvancow/core/cow_COW.h"
#include "zorvancow/core/cow_Lifecycle.h"
#include "zorvancow/core/cow_String.h"
#include "zorvancow/map/cow_Map.h"

#endif
