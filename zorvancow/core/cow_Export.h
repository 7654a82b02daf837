#ifndef ZORVANCOW_CORE_COW_EXPORT_H
#define ZORVANCOW_CORE_COW_EXPORT_H

// libzorvancow.so hides every symbol by default. What a client may link
// against carries ZORVANCOW_API: the plain classes and free functions, and the
// explicit instantiations listed in zorvancow/instantiations/, which each
// family header announces with `extern template` so that clients use the
// library's copies instead of making their own. Members defined inside a
// class body are inline and stay hidden (-fvisibility-inlines-hidden); the
// members a family exports are defined outside the class body.
#define ZORVANCOW_API __attribute__((visibility("default")))

#endif
