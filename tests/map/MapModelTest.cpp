// Randomized model test: several maps that share nodes through copies and
// live iterators, random writes, each map checked against a std::map after
// every step, and every snapshot against the model it was taken from.

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "support/AllocationCounter.h"
#include "zorvancow/map/cow_Map.h"
#include "zorvanmem/mem_Heap.h"
#include "zorvanstr/atr_String.h"

namespace {

using Model = std::map<std::string, int>;
using Map = cow_Map<cow_String, int>;

// The map's entries, read by a node walk; a key seen twice fails.
template <class Iterator>
Model Read(Iterator&& it) {
    Model read;
    for (it.First(); !it.IsDone(); it.Next())
        EXPECT_TRUE(read.emplace(it.CurrentKey().GetCString(), it.CurrentValue()).second);
    return read;
}

void Check(Map const& map, Model const& model) {
    ASSERT_EQ(map.GetCount(), static_cast<int>(model.size()));
    for (auto const& [key, value] : model) ASSERT_EQ(map.ConstGet(cow_String(key.c_str())), value);
    ASSERT_EQ(Read(cow_ConstMapIterator<cow_String, int>(map)), model);
}

}  // namespace

TEST(MapModel, SharingMapsAndSnapshotsAgainstStdMap) {
    // Keys of up to three letters from a, q, 1 and b: a, q and 1 have the same
    // lowest bit, so many keys share digits and stack into deep paths.
    std::vector<std::string> pool{""};
    for (char x : {'a', 'q', 'b', '1'}) {
        pool.push_back(std::string(1, x));
        for (char y : {'a', 'q', 'b', '1'}) pool.insert(pool.end(), {std::string{x, y}, std::string{x, 'a', y}});
    }
    long const texts = atr_GetLiveTexts(), blocks = mem_GetLiveBlocks();
    testing_support::AllocationScope scope;
    {
        constexpr int kMaps = 4;
        Map maps[kMaps];
        Model models[kMaps];
        // Live iterators, each with the model of the map it was taken from.
        std::vector<std::pair<std::unique_ptr<cow_ConstMapIterator<cow_String, int>>, Model>> live;
        std::mt19937 random(20261123u);
        auto pick = [&](std::size_t n) { return static_cast<std::size_t>(random() % n); };

        for (int step = 0; step < 20000 && !HasFailure(); ++step) {
            std::size_t m = pick(kMaps), from = pick(kMaps);
            std::string const& key = pool[pick(pool.size())];
            cow_String const cowKey(key.c_str());
            int const value = static_cast<int>(pick(1000));
            switch (pick(9)) {
                case 0: case 1: case 2:
                    maps[m].Insert(cowKey, value);
                    models[m][key] = value;
                    break;
                case 3: case 4:
                    ASSERT_EQ(maps[m].Remove(cowKey), models[m].erase(key) == 1) << "step " << step;
                    break;
                case 5: {
                    int& target = maps[m].Get(cowKey);
                    ASSERT_EQ(Map::IsAbsent(target), models[m].count(key) == 0) << "step " << step;
                    target = value;
                    if (models[m].count(key) != 0) models[m][key] = value;
                    break;
                }
                case 6:
                    maps[m] = maps[from], models[m] = models[from];
                    break;
                case 7:
                    if (live.size() < 3) {
                        live.emplace_back(new cow_ConstMapIterator<cow_String, int>(maps[m]), models[m]);
                        break;
                    }
                    m = pick(live.size());
                    ASSERT_EQ(Read(*live[m].first), live[m].second) << "step " << step;
                    live.erase(live.begin() + static_cast<long>(m));
                    break;
                default: {
                    cow_ConstMapSortedIt<cow_String, int> sorted(maps[m]);
                    auto entry = models[m].begin();
                    for (sorted.First(); !sorted.IsDone(); sorted.Next(), ++entry)
                        ASSERT_EQ(sorted.CurrentKey().GetCString(), entry->first) << "step " << step;
                }
            }
            for (int i = 0; i < kMaps; ++i) Check(maps[i], models[i]);
        }
    }
    EXPECT_EQ(scope.News(), scope.Deletes());
    EXPECT_EQ(atr_GetLiveTexts(), texts);
    EXPECT_EQ(mem_GetLiveBlocks(), blocks);
}
