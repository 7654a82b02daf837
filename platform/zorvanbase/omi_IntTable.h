#ifndef ZORVANBASE_OMI_INTTABLE_H
#define ZORVANBASE_OMI_INTTABLE_H

// Stand-in for the base sibling's integer table of ints.
//
// omi_IntTable<T> is a class template whose general definition belongs to
// Zorvancow (zorvancow/tables/omi_IntTable.h); the base sibling owns the
// one for T = int. Zorvancow only shares such a table through a cow_COW
// handle: it copies it with cow_Direct (so the protected copy constructor is
// open to that policy) and destroys it through the virtual destructor. The
// friend declaration is part of the base library's interface for that
// reason; nothing else of Zorvancow is named here. The header keeps the
// class template's name (omi_IntTable.h) as Zorvancow's general one does. The
// rest here is just enough to fill a table and read it back.

#include <cstdint>
#include <map>

#include "zorvan_export.h"

template <class T>
class ZORVAN_TYPE omi_IntTable;

template <class T>
struct ZORVAN_TYPE cow_Direct;

template <>
class ZORVAN_EXPORT omi_IntTable<int> {
public:
    // An empty table.
    omi_IntTable();
    virtual ~omi_IntTable();

    // Stores `value` under `key`; true if the key was absent. A present key
    // gets the new value.
    bool Insert(int key, int value);
    // True if the key was present.
    bool Remove(int key);
    // The value of `key`, or null when absent; valid until the next write.
    int const* ConstGet(int key) const;
    bool IsMember(int key) const { return ConstGet(key) != nullptr; }
    std::int32_t GetCount() const { return static_cast<std::int32_t>(entries.size()); }

    // Inspection: tables of this kind alive now.
    static long GetLiveCount();

protected:
    // An independent copy: later writes to either table do not show in the other.
    omi_IntTable(omi_IntTable const& other);

private:
    friend struct cow_Direct<omi_IntTable<int>>;
    omi_IntTable& operator=(omi_IntTable const&) = delete;

    std::map<int, int> entries;
};

#endif
