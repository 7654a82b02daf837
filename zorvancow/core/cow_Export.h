#ifndef ZORVANCOW_CORE_COW_EXPORT_H
#define ZORVANCOW_CORE_COW_EXPORT_H

// How libzorvancow.so's interface is made.
//
// The library is built with every symbol hidden. What a client may link
// against is marked ZORVANCOW_API: the plain classes and free functions
// directly, and the members of the class templates through export rows.
//
// Export rows. Each family lists, once, which members it exports for which
// type arguments, in its export header (for example
// arrays/cow_1DArrayExports.h), which the family header includes at its end:
//
//     #define ZORVANCOW_1DARRAY_ROWS(ROW, ...) ROW(cow_1DArray<__VA_ARGS__>::~cow_1DArray()) ...
//     #define ZORVANCOW_1DARRAY_EXPORTS(ROW) ZORVANCOW_1DARRAY_ROWS(ROW, int) ...
//     ZORVANCOW_1DARRAY_EXPORTS(ZORVANCOW_EXTERN_ROW)
//
// A row is one member of one instantiation. Expanded with
// ZORVANCOW_EXTERN_ROW (in every client) it announces that the library holds
// that member, so clients call the library's copy; expanded with
// ZORVANCOW_DEFINE_ROW (once, in zorvancow/instantiations/<family>.cpp) it
// emits and exports it. The last type argument of a row macro is variadic so
// that a type such as cow_Btree<int, int> passes through whole.
//
// Only members that rows name are exported. Everything else, including the
// inline reads and every addition for standard-library use, is compiled by
// each client for itself at its own optimisation level, and is never
// announced as extern. To export one more member for one more type, add the
// row to the family's export header; the declaration and the definition then
// both follow, and the symbol test (tests/exports/) shows the change.
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

#define ZORVANCOW_EXTERN_ROW(...) extern template ZORVANCOW_API __VA_ARGS__;
#define ZORVANCOW_DEFINE_ROW(...) template ZORVANCOW_API __VA_ARGS__;

#endif
