#ifndef ZORVANCOW_CORE_COW_EXPORT_H
#define ZORVANCOW_CORE_COW_EXPORT_H

// libzorvancow.so hides every symbol by default. What a client may link
// against carries ZORVANCOW_API: the plain classes and free functions, and the
// explicit instantiations listed in zorvancow/instantiations/, which each
// family header announces with `extern template` so that clients use the
// library's copies instead of making their own.
//
// An explicit instantiation emits and exports every member it names, inline
// ones included. A hot member can therefore be inline (clients compile it in
// place) and still be exported. Families whose export list differs from
// type to type name their members one by one in their instantiation lists.
#define ZORVANCOW_API __attribute__((visibility("default")))

#endif
