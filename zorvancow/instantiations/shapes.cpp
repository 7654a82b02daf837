// The fixed arrays and the matrices.

#include "zorvancow/shapes/cow_2DArrayExports.h"
#include "zorvancow/shapes/cow_FixedArrayExports.h"

ZORVANCOW_FIXEDARRAY_EXPORTS(ZORVANCOW_DEFINE_ROW)
ZORVANCOW_2DARRAY_EXPORTS(ZORVANCOW_DEFINE_ROW)
