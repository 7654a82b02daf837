// The radix tables of strings, and the handles that share whole tables.

#include "zorvancow/tables/omi_IntTableExports.h"

ZORVANCOW_TABLE_EXPORTS(ZORVANCOW_DEFINE_ROW)
