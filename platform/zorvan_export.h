#ifndef ZORVAN_EXPORT_H
#define ZORVAN_EXPORT_H

// The sibling stand-ins build as shared libraries with hidden symbols by
// default; whatever a client may call carries this mark.
#define ZORVAN_EXPORT __attribute__((visibility("default")))

// Makes a class template's instantiations visible types without exporting
// their members: clang hides an instantiation whose type argument is hidden.
#if defined(__clang__)
#define ZORVAN_TYPE __attribute__((type_visibility("default")))
#else
#define ZORVAN_TYPE
#endif

#endif
