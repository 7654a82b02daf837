#ifndef ZORVANCOW_CORE_COW_LIFECYCLE_H
#define ZORVANCOW_CORE_COW_LIFECYCLE_H

// Start and stop of the library.
//
// Call cow_initialize before using the library and cow_finalize after; calls
// nest, and only the outermost pair does work. The first start brings up the
// siblings in the order heap, type registry, base, strings, makes the string
// sibling's allocator object and enters the library's type names in the
// registry under key 26; the last stop undoes this in reverse. A later start
// repeats all of it. No container operation depends on this state.
//
// `caller` is the caller's own counter: raised by one when the library really
// starts, lowered by one when it really stops, and handed unchanged to each
// sibling. Not for two threads at once.

#include "zorvancow/core/cow_Export.h"

ZORVANCOW_API void cow_initialize(int& caller);
ZORVANCOW_API void cow_finalize(int& caller);

#endif
