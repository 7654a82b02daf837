// The digital maps, their walks and their list utilities.

#include "zorvancow/map/cow_MapExports.h"

ZORVANCOW_MAP_EXPORTS(ZORVANCOW_DEFINE_ROW)
