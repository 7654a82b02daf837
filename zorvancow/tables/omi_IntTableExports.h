#ifndef ZORVANCOW_TABLES_OMI_INTTABLEEXPORTS_H
#define ZORVANCOW_TABLES_OMI_INTTABLEEXPORTS_H

// What libzorvancow.so exports of the radix tables (see core/cow_Export.h):
// the string tables' members, and the handle members that share a whole
// table, for the string table and for the base library's integer table.

#include "zorvancow/tables/omi_IntTable.h"

#define ZORVANCOW_TABLE_ROWS(ROW, ...)                                                               \
    ROW(omi_UintTableBlock<__VA_ARGS__>::~omi_UintTableBlock())                                      \
    ROW(bool omi_UintTableBlock<__VA_ARGS__>::Insert(unsigned int, __VA_ARGS__ const&))              \
    ROW(omi_UintTable<__VA_ARGS__>::~omi_UintTable())                                                \
    ROW(bool omi_UintTable<__VA_ARGS__>::Insert(unsigned int, __VA_ARGS__ const&))                   \
    ROW(bool omi_UintTable<__VA_ARGS__>::Remove(unsigned int))                                       \
    ROW(omi_IntTable<__VA_ARGS__>::omi_IntTable())                                                   \
    ROW(omi_IntTable<__VA_ARGS__>::omi_IntTable(unsigned int, unsigned int, unsigned int))           \
    ROW(omi_IntTable<__VA_ARGS__>::omi_IntTable(omi_IntTable<__VA_ARGS__> const&))                   \
    ROW(omi_IntTable<__VA_ARGS__>::~omi_IntTable())                                                  \
    ROW(omi_UintTableIterator<__VA_ARGS__>::~omi_UintTableIterator())                                \
    ROW(omi_IntTableIterator<__VA_ARGS__>::omi_IntTableIterator(omi_IntTable<__VA_ARGS__> const&))   \
    ROW(omi_IntTableIterator<__VA_ARGS__>::omi_IntTableIterator(omi_IntTable<__VA_ARGS__> const&,    \
                                                                int (*)(void const*, void const*)))  \
    ROW(void omi_IntTableIterator<__VA_ARGS__>::First())                                             \
    ROW(void omi_IntTableIterator<__VA_ARGS__>::Last())                                              \
    ROW(void omi_IntTableIterator<__VA_ARGS__>::Next())                                              \
    ROW(bool omi_IntTableIterator<__VA_ARGS__>::IsDone() const)                                      \
    ROW(int omi_IntTableIterator<__VA_ARGS__>::CurrentKey() const)                                   \
    ROW(__VA_ARGS__ const& omi_IntTableIterator<__VA_ARGS__>::CurrentValue() const)

#define ZORVANCOW_TABLE_EXPORTS(ROW)                                                                 \
    ZORVANCOW_TABLE_ROWS(ROW, cow_String)                                                            \
    ZORVANCOW_HANDLE_SHARE_ROWS(ROW, omi_IntTable<cow_String>)                                       \
    ZORVANCOW_HANDLE_DELETE_ROWS(ROW, omi_IntTable<cow_String>)                                      \
    ZORVANCOW_HANDLE_REPLACE_ROWS(ROW, omi_IntTable<cow_String>)                                     \
    ZORVANCOW_HANDLE_SHARE_ROWS(ROW, omi_IntTable<int>)                                              \
    ZORVANCOW_HANDLE_DELETE_ROWS(ROW, omi_IntTable<int>)

ZORVANCOW_TABLE_EXPORTS(ZORVANCOW_EXTERN_ROW)

#endif
