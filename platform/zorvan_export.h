#ifndef ZORVAN_EXPORT_H
#define ZORVAN_EXPORT_H

// The sibling stand-ins build as shared libraries with hidden symbols by
// default; whatever a client may call carries this mark.
#define ZORVAN_EXPORT __attribute__((visibility("default")))

#endif
