// cow_Footprint against the bytes the heap really holds: the test program's
// operator new counts the bytes of its live blocks. The blocked arrays keep
// their tables in the stand-in heap, so their slots are added by hand.

#include <gtest/gtest.h>

#include <random>
#include <set>
#include <utility>
#include <vector>

#include "support/AllocationCounter.h"
#include "zorvancow/history/cow_Footprint.h"

namespace {
using testing_support::LiveBytes;

// Slot bytes of the tables of `values` that lie outside operator new.
template <class Value>
std::size_t TableBytes(std::vector<Value> const& values, std::size_t first, std::size_t last) {
    if constexpr (std::is_same<Value, cow_List<int>>::value) {
        std::set<cow_Counter const*> seen;
        std::size_t bytes = 0;
        for (std::size_t i = first; i < last; ++i) {
            auto const& array = values[i].GetArray();
            if (seen.insert(array.GetTableCounter()).second) bytes += sizeof(void*) * static_cast<std::size_t>(array.GetCapacity());
        }
        return bytes;
    } else {
        static_cast<void>(values), static_cast<void>(first), static_cast<void>(last);
        return 0;
    }
}

// 60 versions, each an earlier one changed in one place. The footprint of
// all of them is what the heap grew by, and none of it is held outside.
// Then the first half goes: the heap frees exactly what that half's
// footprint says only it held, and no fewer bytes are shared than a second
// value of the first half shares with the first.
template <class Make, class Change>
void CheckHistory(Make make, Change change) {
    using Value = decltype(make());
    std::vector<Value> versions;
    versions.reserve(60);
    std::mt19937 random(3);
    std::size_t const before = LiveBytes();
    versions.push_back(make());
    for (int s = 1; s < 60; ++s) {
        versions.push_back(versions[random() % versions.size()]);
        change(versions.back(), static_cast<int>(random() % 500));
    }
    cow_FootprintBytes const all = cow_Footprint(versions.begin(), versions.end());
    EXPECT_EQ(all.bytes, LiveBytes() - before + TableBytes(versions, 0, 60));
    EXPECT_EQ(all.outsideBytes, 0u);
    EXPECT_GT(all.sharedBytes, 0u);
    EXPECT_LT(all.sharedBytes, all.bytes);

    cow_FootprintBytes const half = cow_Footprint(versions.begin(), versions.begin() + 30);
    EXPECT_GT(half.outsideBytes, 0u);
    std::size_t const tables = TableBytes(versions, 0, 30);
    std::size_t const live = LiveBytes();
    for (int i = 0; i < 30; ++i) Value dropped(std::move(versions[static_cast<std::size_t>(i)]));
    EXPECT_EQ(half.bytes - half.outsideBytes, live - LiveBytes() + tables);
}

TEST(Footprint, AgreesWithTheHeap) {
    CheckHistory(
        [] {
            cow_List<int> list;
            for (int i = 0; i < 3000; ++i) list.Append(i);
            return list;
        },
        [](cow_List<int>& value, int i) { value.Get(i) = -i; });
    CheckHistory(
        [] {
            cow_Map<int, int> map;
            for (int i = 0; i < 500; i += 2) map.Insert(i, i);
            return map;
        },
        [](cow_Map<int, int>& value, int i) {
            if (!value.Remove(i)) value.Insert(i, 1);
        });
    // A tree of fixed arrays, where a change copies one array.
    CheckHistory(
        [] {
            cow_Btree<int, cow_FixedArray<double>> shapes;
            for (int i = 0; i < 100; ++i) shapes.InsertUnlessMember(i, cow_FixedArray<double>(i % 9, 1.0));
            return shapes;
        },
        [](cow_Btree<int, cow_FixedArray<double>>& value, int i) {
            cow_FixedArray<double>* found = value.Get(i % 100);
            if (found != nullptr && found->GetSize() > 0) found->Get(0) = 2.0;
        });
}
}  // namespace
