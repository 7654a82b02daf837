// The blocked arrays of scalars and strings.

#include "zorvancow/arrays/cow_1DArray.h"

ZORVANCOW_1DARRAY_EXPORTS(ZORVANCOW_DEFINE_ROW)
