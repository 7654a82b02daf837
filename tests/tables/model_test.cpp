// Randomized model test: signed tables shared through cow_COW handles take
// random inserts, removes and handle copies over the whole key range and over
// dense runs; after every step each handle's table must equal its own
// std::map model, walks included, and no write may show through another handle.

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "support/AllocationCounter.h"
#include "zorvancow/tables/omi_IntTable.h"
#include "zorvanmem/mem_Heap.h"
#include "zorvanstr/atr_String.h"

namespace {

using Table = omi_IntTable<cow_String>;
using Handle = cow_COW<Table>;
using Model = std::map<int, std::string>;

void ExpectMatches(Table const& table, Model const& model, int step) {
    ASSERT_EQ(table.GetCount(), static_cast<std::int32_t>(model.size())) << "step " << step;
    omi_IntTableIterator<cow_String> it(table);
    std::vector<std::pair<int, std::string>> walked;
    for (it.First(); !it.IsDone() && walked.size() <= model.size(); it.Next())
        walked.emplace_back(it.CurrentKey(), it.CurrentValue().GetCString());
    ASSERT_EQ(walked, (std::vector<std::pair<int, std::string>>(model.begin(), model.end()))) << "step " << step;

    // Last goes to the greatest key, and finds none without a non-negative one.
    it.Last();
    ASSERT_EQ(it.IsDone(), model.lower_bound(0) == model.end()) << "step " << step;
    ASSERT_TRUE(it.IsDone() || it.CurrentKey() == model.rbegin()->first) << "step " << step;
}

TEST(TablesModel, SharedTablesMatchMapModels) {
    long const texts = atr_GetLiveTexts();
    long const heap = mem_GetLiveBlocks();
    testing_support::AllocationScope scope;
    {
        std::mt19937 random(8);
        constexpr int kHandles = 4;
        std::vector<Handle> handles(kHandles, Handle(new Table));
        std::vector<Model> models(kHandles);
        // Dense runs around the places where key fields roll over.
        int const centres[] = {0, -1, INT_MIN + 40, INT_MAX - 40, 1 << 20, -(1 << 20), 1 << 10};

        auto pickKey = [&](Model const& model) {
            int const kind = static_cast<int>(random() % 10);
            if (kind < 3) return static_cast<int>(random());  // anywhere
            if (kind < 5 && !model.empty()) {                 // a present key
                auto place = model.lower_bound(static_cast<int>(random()));
                return place == model.end() ? model.begin()->first : place->first;
            }
            int const centre = centres[random() % (sizeof centres / sizeof centres[0])];
            return static_cast<int>(static_cast<unsigned int>(centre) + random() % 81 - 40);
        };

        for (int step = 0; step < 3000; ++step) {
            int const h = static_cast<int>(random() % kHandles);
            Model& model = models[h];
            int const action = static_cast<int>(random() % 20), key = pickKey(model);
            if (action == 0) {
                int const from = static_cast<int>(random() % kHandles);
                handles[h] = handles[from];
                model = models[from];
            } else if (action < 8 || model.size() > 120) {
                bool const present = handles[h].Get().Remove(key);
                ASSERT_EQ(present, model.erase(key) == 1) << "step " << step;
            } else {
                std::string const text = std::to_string(step);
                bool const added = handles[h].Get().Insert(key, cow_String(text.c_str()));
                ASSERT_EQ(added, model.count(key) == 0) << "step " << step;
                model[key] = text;
            }
            int const probe = pickKey(model);
            ASSERT_EQ(handles[h].ConstGet()->ConstGet(probe) != nullptr, model.count(probe) == 1) << "step " << step;

            for (int other = 0; other < kHandles; ++other)
                ExpectMatches(*handles[other].ConstGet(), models[other], step);
        }
    }
    EXPECT_EQ(scope.News(), scope.Deletes());
    EXPECT_EQ(atr_GetLiveTexts(), texts);
    EXPECT_EQ(mem_GetLiveBlocks(), heap);
}

}  // namespace
