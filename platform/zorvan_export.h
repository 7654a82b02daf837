#ifndef ZORVAN_EXPORT_H
#define ZORVAN_EXPORT_H

// The sibling stand-ins build as shared libraries with hidden symbols by
// default; whatever a client may call carries this mark.
#define ZORVAN_EXPORT __attribute__((visibility("default")))

// For a class template that another library instantiates and exports: under
// clang an instantiation is never more visible than its type arguments, and
// the first declaration of a template fixes its type visibility.
#if defined(__clang__)
#define ZORVAN_TYPE __attribute__((type_visibility("default")))
#else
#define ZORVAN_TYPE
#endif

#endif
