#ifndef ZORVAN_LIFECYCLE_H
#define ZORVAN_LIFECYCLE_H

// What each sibling stand-in remembers of its start and stop calls, so that a
// test can prove the order, the nesting and a restart of the library above it.
// The order numbers come from one clock, mem_NextCallOrder(), shared by all
// four stand-ins: a smaller number was called earlier.
struct zorvan_LifecycleRecord {
    int startCalls = 0;          // initialize calls so far
    int stopCalls = 0;           // finalize calls so far
    long lastStartOrder = 0;     // clock reading at the latest initialize
    long lastStopOrder = 0;      // clock reading at the latest finalize
    int lastStartArgument = 0;   // the caller's int as the latest initialize saw it
    int lastStopArgument = 0;    // the caller's int as the latest finalize saw it
};

#endif
