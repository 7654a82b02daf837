#ifndef ZORVANTYP_TYP_ARCHCOMPTABLE_H
#define ZORVANTYP_TYP_ARCHCOMPTABLE_H

// Stand-in for the type-registry sibling: a table of rows of type names that
// libraries hand over under a 16-bit key, kept so that it can be read back.

#include <cstdint>

#include "zorvan_export.h"
#include "zorvan_lifecycle.h"

// One row of a library's type list: two numbers and a name.
struct typ_Entry {
    std::uint32_t kind;
    std::uint32_t version;
    char const* name;
};
static_assert(sizeof(typ_Entry) == 16, "a registry row is 16 bytes");

// A list of rows as a library hands it over: the rows stay the caller's and
// must outlive the registry's use of them.
class ZORVAN_EXPORT typ_ArchCompEntry {
public:
    typ_ArchCompEntry(typ_Entry const* entryRows, unsigned int entryCount) : rows(entryRows), count(entryCount) {}
    typ_Entry const* GetRows() const { return rows; }
    unsigned int GetCount() const { return count; }

private:
    typ_Entry const* rows;
    unsigned int count;
};

class ZORVAN_EXPORT typ_ArchCompTable {
public:
    // Records `entry` under `key`; a second entry under the same key is kept
    // beside the first.
    static void InsertEntry(unsigned short key, typ_ArchCompEntry entry);
    // How many entries were inserted under `key` since the process started.
    static unsigned int GetEntryCount(unsigned short key);
    // The latest entry under `key`, or null when there is none.
    static typ_ArchCompEntry const* FindLatest(unsigned short key);
};

ZORVAN_EXPORT void typ_initialize(int& caller);
ZORVAN_EXPORT void typ_finalize(int& caller);
ZORVAN_EXPORT zorvan_LifecycleRecord const& typ_GetLifecycle();

#endif
