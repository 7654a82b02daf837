#ifndef ZORVANCOW_CORE_COW_EXPORT_H
#define ZORVANCOW_CORE_COW_EXPORT_H

// How libzorvancow.so's interface is made.
//
// The library is built with every symbol hidden. What a client may link
// against is marked ZORVANCOW_API: the plain classes and free functions
// directly, and the members of the class templates through export rows.
//
// Export rows. cmake/libzorvancow.exports lists every exported member once,
// as its declaration:
//
//     cow_List<int>& cow_List<int>::Append(int const&)
//
// A line that names a member of a class template instantiation is a row.
// cmake/zorvancow_exports.py writes each row twice at build time: as
// `extern template ZORVANCOW_API <row>;` in the rows header of the family
// header that defines the highest class template it names
// (<family>/detail/<header>Exports.h, which that header includes at its end),
// so that every client calls the library's copy; and as
// `template ZORVANCOW_API <row>;` in a source that the library compiles,
// which emits and exports it. A row naming a type that its family header
// does not otherwise include (a map of omi_BlkBitVect, a tree of
// cow_FixedArray) goes to zorvancow/zorvancow_exports.h instead, which the
// umbrella header includes; a client that includes family headers one by
// one compiles those few members itself unless it includes that header too.
// A line opening with `template <>` declares an explicit specialization
// defined in the family's .cpp. Plain functions and classes are marked
// ZORVANCOW_API where they are declared; their lines only tell the symbol
// test to expect them.
//
// Only members that rows name are exported. Everything else, including the
// inline reads and every addition for standard-library use, is compiled by
// each client for itself at its own optimisation level, and is never
// announced as extern. To export one more member for one more type, add its
// line to the manifest; the declaration and the definition then both
// follow, and the symbol test (tests/exports/) checks the library against
// the same list.
#if defined(__clang__)
// clang gives an instantiation no more visibility than its type arguments
// have; a default type visibility lets the rows' marks stand without
// exporting any member that a row does not name.
#define ZORVANCOW_API __attribute__((visibility("default")))
#define ZORVANCOW_TYPE __attribute__((type_visibility("default")))
#else
#define ZORVANCOW_API __attribute__((visibility("default")))
#define ZORVANCOW_TYPE
#endif

#endif
