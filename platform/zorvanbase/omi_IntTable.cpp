#include "zorvanbase/omi_IntTable.h"

#include <atomic>

namespace {
std::atomic<long> liveTables{0};
}

omi_IntTable<int>::omi_IntTable() { ++liveTables; }

omi_IntTable<int>::omi_IntTable(omi_IntTable const& other) : entries(other.entries) { ++liveTables; }

omi_IntTable<int>::~omi_IntTable() { --liveTables; }

bool omi_IntTable<int>::Insert(int key, int value) {
    auto [place, added] = entries.emplace(key, value);
    if (!added) place->second = value;
    return added;
}

bool omi_IntTable<int>::Remove(int key) { return entries.erase(key) != 0; }

int const* omi_IntTable<int>::ConstGet(int key) const {
    auto place = entries.find(key);
    return place == entries.end() ? nullptr : &place->second;
}

long omi_IntTable<int>::GetLiveCount() { return liveTables; }
