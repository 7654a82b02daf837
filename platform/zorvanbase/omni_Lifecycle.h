#ifndef ZORVANBASE_OMNI_LIFECYCLE_H
#define ZORVANBASE_OMNI_LIFECYCLE_H

// Start and stop of the base sibling (bit vectors and the integer table).

#include "zorvan_export.h"
#include "zorvan_lifecycle.h"

ZORVAN_EXPORT void omni_initialize(int& caller);
ZORVAN_EXPORT void omni_finalize(int& caller);
ZORVAN_EXPORT zorvan_LifecycleRecord const& omni_GetLifecycle();

#endif
