// Signed tables shared through cow_COW handles take random inserts, removes
// and handle copies over the whole key range and over dense runs; after
// every step each handle's table must match its own std::map, walks included.

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "support/ModelTest.h"
#include "zorvancow/tables/omi_IntTable.h"

namespace {

using Table = omi_IntTable<cow_String>;
using Model = std::map<int, std::string>;

TEST(TableModel, WritesThroughOneHandleNeverShowInAnother) {
    using Run = testing_support::ModelTest<cow_COW<Table>, Model>;
    using Slot = Run::Slot;
    Run run(8, 4, [](int) { return Slot{cow_COW<Table>(new Table), {}}; });
    // Dense runs around the places where key fields roll over.
    int const centres[] = {0, -1, INT_MIN + 40, INT_MAX - 40, 1 << 20, -(1 << 20), 1 << 10};
    auto pickKey = [&](Model const& model) {
        int const kind = run.Below(10);
        if (kind < 3) return static_cast<int>(run.Below(std::size_t{1} << 32));  // anywhere
        if (kind < 5 && !model.empty()) {                                          // a present key
            auto place = model.lower_bound(static_cast<int>(run.Below(std::size_t{1} << 32)));
            return place == model.end() ? model.begin()->first : place->first;
        }
        int const centre = centres[run.Below(7)];
        return static_cast<int>(static_cast<unsigned int>(centre) + run.Below(81) - 40);
    };
    auto probe = [&](Slot& s) {
        int const key = pickKey(s.model);
        ASSERT_EQ(s.value.ConstGet()->ConstGet(key) != nullptr, s.model.count(key) == 1);
    };
    auto remove = [&](Slot& s) {
        int const key = pickKey(s.model);
        ASSERT_EQ(s.value.Get().Remove(key), s.model.erase(key) == 1);
        probe(s);
    };
    run.Run(3000,
            {run.CopyFromAny(1), {7, remove}, {12, [&](Slot& s) {
                 if (s.model.size() > 120) return remove(s);
                 int const key = pickKey(s.model);
                 std::string const text = std::to_string(run.Step());
                 ASSERT_EQ(s.value.Get().Insert(key, cow_String(text.c_str())), s.model.count(key) == 0);
                 s.model[key] = text;
                 probe(s);
             }}},
            [](Slot const& s) {
                Table const& table = *s.value.ConstGet();
                ASSERT_EQ(table.GetCount(), static_cast<std::int32_t>(s.model.size()));
                omi_IntTableIterator<cow_String> it(table);
                std::vector<std::pair<int, std::string>> walked;
                for (it.First(); !it.IsDone() && walked.size() <= s.model.size(); it.Next())
                    walked.emplace_back(it.CurrentKey(), it.CurrentValue().GetCString());
                ASSERT_EQ(walked, (std::vector<std::pair<int, std::string>>(s.model.begin(), s.model.end())));
                // Last goes to the greatest key, and finds none without a non-negative one.
                it.Last();
                ASSERT_EQ(it.IsDone(), s.model.lower_bound(0) == s.model.end());
                ASSERT_TRUE(it.IsDone() || it.CurrentKey() == s.model.rbegin()->first);
            });
}

}  // namespace
