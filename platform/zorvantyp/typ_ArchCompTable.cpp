#include "zorvantyp/typ_ArchCompTable.h"

#include <map>
#include <vector>

#include "zorvanmem/mem_Heap.h"

namespace {

std::map<unsigned short, std::vector<typ_ArchCompEntry>>& Table() {
    static std::map<unsigned short, std::vector<typ_ArchCompEntry>> table;
    return table;
}

zorvan_LifecycleRecord lifecycle;

}  // namespace

void typ_ArchCompTable::InsertEntry(unsigned short key, typ_ArchCompEntry entry) {
    Table()[key].push_back(entry);
}

unsigned int typ_ArchCompTable::GetEntryCount(unsigned short key) {
    auto found = Table().find(key);
    return found == Table().end() ? 0 : static_cast<unsigned int>(found->second.size());
}

typ_ArchCompEntry const* typ_ArchCompTable::FindLatest(unsigned short key) {
    auto found = Table().find(key);
    return found == Table().end() || found->second.empty() ? nullptr : &found->second.back();
}

void typ_initialize(int& caller) { mem_RecordStart(lifecycle, caller); }

void typ_finalize(int& caller) { mem_RecordStop(lifecycle, caller); }

zorvan_LifecycleRecord const& typ_GetLifecycle() { return lifecycle; }
