// Maps that share nodes through copies and live iterators take random writes;
// after every step each map must match a std::map of its own, and every
// iterator the snapshot of the map it was taken from.

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "support/ModelTest.h"
#include "zorvancow/map/cow_Map.h"

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

TEST(MapModel, WritesToOneMapNeverShowInItsCopiesOrSnapshots) {
    // Keys of up to three letters from a, q, 1 and b: a, q and 1 have the same
    // lowest bit, so many keys share digits and stack into deep paths.
    std::vector<std::string> pool{""};
    for (char x : {'a', 'q', 'b', '1'}) {
        pool.push_back(std::string(1, x));
        for (char y : {'a', 'q', 'b', '1'}) pool.insert(pool.end(), {std::string{x, y}, std::string{x, 'a', y}});
    }
    testing_support::ModelTest<Map, Model> run(20261123u, 4);
    using Slot = decltype(run)::Slot;
    std::vector<std::pair<std::unique_ptr<cow_ConstMapIterator<cow_String, int>>, Model>> live;
    std::string key;
    auto pick = [&] {
        key = pool[run.Below(pool.size())];
        return cow_String(key.c_str());
    };
    run.Run(20000,
            {{3, [&](Slot& s) {
                  int const value = run.Below(1000);
                  s.value.Insert(pick(), value);
                  s.model[key] = value;
              }},
             {2, [&](Slot& s) {
                  cow_String const k = pick();
                  ASSERT_EQ(s.value.Remove(k), s.model.erase(key) == 1);
              }},
             {1, [&](Slot& s) {
                  int& target = s.value.Get(pick());
                  ASSERT_EQ(Map::IsAbsent(target), s.model.count(key) == 0);
                  target = run.Below(1000);
                  if (s.model.count(key) != 0) s.model[key] = target;
              }},
             run.CopyFromAny(1),
             {1, [&](Slot& s) {  // take a snapshot, or read and drop one
                  if (live.size() < 3) {
                      live.emplace_back(new cow_ConstMapIterator<cow_String, int>(s.value), s.model);
                      return;
                  }
                  std::size_t const i = run.Below(live.size());
                  ASSERT_EQ(Read(*live[i].first), live[i].second);
                  live.erase(live.begin() + static_cast<long>(i));
              }},
             {1, [&](Slot& s) {
                  cow_ConstMapSortedIt<cow_String, int> sorted(s.value);
                  auto entry = s.model.begin();
                  for (sorted.First(); !sorted.IsDone(); sorted.Next(), ++entry)
                      ASSERT_EQ(sorted.CurrentKey().GetCString(), entry->first);
              }}},
            [](Slot const& s) {
                ASSERT_EQ(s.value.GetCount(), static_cast<int>(s.model.size()));
                for (auto const& [k, v] : s.model) ASSERT_EQ(s.value.ConstGet(cow_String(k.c_str())), v);
                ASSERT_EQ(Read(cow_ConstMapIterator<cow_String, int>(s.value)), s.model);
            });
}

}  // namespace
