// Randomized model test: several maps that share nodes through copies and
// live iterators, random writes, each map checked against a std::map after
// every step, and every snapshot against the model it was taken from.

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "support/AllocationCounter.h"
#include "zorvancow/map/cow_Map.h"
#include "zorvanmem/mem_Heap.h"
#include "zorvanstr/atr_String.h"

namespace {

// Key pools with many digit twins, so that deep paths and long pull-up chains occur.
struct IntKeys {
    using Key = int;
    using Model = int;
    std::vector<int> pool;
    IntKeys() {
        for (int i = 0; i < 32; ++i) pool.push_back(i * 4);
        for (int bit = 20; bit < 32; ++bit) pool.push_back(static_cast<int>(1u << bit));
        for (int i = 1; i < 6; ++i) pool.push_back(-i);
    }
    static int Make(int model) { return model; }
    static int Read(int key) { return key; }
};

struct StringKeys {
    using Key = cow_String;
    using Model = std::string;
    std::vector<std::string> pool;
    StringKeys() {
        char const letters[] = {'a', 'q', 'b', '1'};  // a, q and 1 have the same lowest bit
        pool.push_back("");
        for (char x : letters) {
            pool.push_back(std::string(1, x));
            for (char y : letters) {
                pool.push_back(std::string{x, y});
                pool.push_back(std::string{x, 'a', y});
            }
        }
    }
    static cow_String Make(std::string const& model) { return cow_String(model.c_str()); }
    static std::string Read(cow_String const& key) { return key.GetCString(); }
};

template <class Keys>
class MapModel {
public:
    using K = typename Keys::Key;
    using M = typename Keys::Model;
    using Map = cow_Map<K, int>;
    using Iterator = cow_ConstMapIterator<K, int>;

    static constexpr int kMaps = 4;

    void Run(unsigned seed, int steps) {
        std::mt19937 random(seed);
        auto pick = [&](std::size_t n) { return static_cast<std::size_t>(random() % n); };
        for (int step = 0; step < steps; ++step) {
            int const m = static_cast<int>(pick(kMaps));
            M const key = keys.pool[pick(keys.pool.size())];
            int const value = static_cast<int>(random() % 1000);
            switch (pick(10)) {
                case 0:
                case 1:
                case 2:
                    EXPECT_TRUE(maps[m].Insert(Keys::Make(key), value));
                    models[m][key] = value;
                    break;
                case 3:
                case 4:
                    EXPECT_EQ(maps[m].Remove(Keys::Make(key)), models[m].erase(key) == 1);
                    break;
                case 5: {
                    int& target = maps[m].Get(Keys::Make(key));
                    bool const held = models[m].count(key) != 0;
                    EXPECT_EQ(Map::IsAbsent(target), !held);
                    target = value;
                    if (held) models[m][key] = value;
                    break;
                }
                case 6: {
                    int const from = static_cast<int>(pick(kMaps));
                    maps[m] = maps[from];
                    models[m] = models[from];
                    break;
                }
                case 7:
                    if (iterators.size() < 3) {
                        iterators.emplace_back(new Iterator(maps[m]));
                        snapshots.push_back(models[m]);
                    }
                    break;
                case 8:
                    if (!iterators.empty()) {
                        std::size_t const which = pick(iterators.size());
                        iterators.erase(iterators.begin() + static_cast<long>(which));
                        snapshots.erase(snapshots.begin() + static_cast<long>(which));
                    }
                    break;
                default:
                    if (!iterators.empty()) {
                        std::size_t const which = pick(iterators.size());
                        CheckWalk(*iterators[which], snapshots[which]);
                    }
                    CheckSorted(maps[m], models[m]);
                    break;
            }
            for (int i = 0; i < kMaps; ++i) Check(maps[i], models[i]);
            if (HasFailure()) {
                ADD_FAILURE() << "first failure at step " << step;
                return;
            }
        }
        for (std::size_t i = 0; i < iterators.size(); ++i) CheckWalk(*iterators[i], snapshots[i]);
    }

private:
    static bool HasFailure() { return ::testing::Test::HasFailure(); }

    void Check(Map const& map, std::map<M, int> const& model) {
        ASSERT_EQ(map.GetCount(), static_cast<int>(model.size()));
        for (auto const& entry : model) {
            K const key = Keys::Make(entry.first);
            ASSERT_TRUE(map.IsMember(key));
            ASSERT_EQ(map.ConstGet(key), entry.second);
        }
        Iterator it(map);
        CheckWalk(it, model);
    }

    void CheckWalk(Iterator& it, std::map<M, int> const& model) {
        std::map<M, int> walked;
        for (it.First(); !it.IsDone(); it.Next())
            ASSERT_TRUE(walked.emplace(Keys::Read(it.CurrentKey()), it.CurrentValue()).second);
        ASSERT_EQ(walked, model);
    }

    void CheckSorted(Map const& map, std::map<M, int> const& model) {
        std::vector<M> ascending;
        cow_ConstMapSortedIt<K, int> it(map);
        for (it.First(); !it.IsDone(); it.Next()) ascending.push_back(Keys::Read(it.CurrentKey()));
        std::vector<M> expected;
        for (auto const& entry : model) expected.push_back(entry.first);
        ASSERT_EQ(ascending, expected);
    }

    Keys keys;
    Map maps[kMaps];
    std::map<M, int> models[kMaps];
    std::vector<std::unique_ptr<Iterator>> iterators;
    std::vector<std::map<M, int>> snapshots;
};

template <class Keys>
void RunModel(unsigned seed, int steps) {
    long const texts = atr_GetLiveTexts();
    long const blocks = mem_GetLiveBlocks();
    {
        testing_support::AllocationScope scope;
        {
            MapModel<Keys> model;
            model.Run(seed, steps);
        }
        EXPECT_EQ(scope.News(), scope.Deletes());
    }
    EXPECT_EQ(atr_GetLiveTexts(), texts);
    EXPECT_EQ(mem_GetLiveBlocks(), blocks);
}

}  // namespace

TEST(MapModel, IntegerKeysAgainstStdMap) { RunModel<IntKeys>(20261123u, 20000); }

TEST(MapModel, StringKeysAgainstStdMap) { RunModel<StringKeys>(7u, 20000); }
