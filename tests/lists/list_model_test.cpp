// Lists that share through copies and iterators take random edits at both
// ends and in the middle; after every step each list must match a deque of
// its own, and every iterator its snapshot.

#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <utility>
#include <vector>

#include "support/ModelTest.h"
#include "zorvancow/lists/cow_List.h"

namespace {

using Model = std::deque<int>;

TEST(ListModel, EditsToOneListNeverShowInItsCopiesOrIterators) {
    using Run = testing_support::ModelTest<cow_List<int>, Model>;
    using Slot = Run::Slot;
    Run run(424242, 5);
    std::vector<std::pair<cow_ListIter<int>, Model>> iters;
    int next = 1;
    auto index = [&](Slot const& s) { return run.Below(static_cast<int>(s.model.size())); };
    run.Run(
        8000,
        {{2, [&](Slot& s) { s.value.Append(next), s.model.push_back(next++); }},
         {2, [&](Slot& s) { s.value.Prepend(next), s.model.push_front(next++); }},
         {1, [&](Slot& s) { if (!s.model.empty()) s.value.RemoveFirst(), s.model.pop_front(); }},
         {1, [&](Slot& s) { if (!s.model.empty()) s.value.RemoveLast(), s.model.pop_back(); }},
         {1, [&](Slot& s) {
              int const n = static_cast<int>(s.model.size()), after = run.Below(n + 2) - 1;
              s.value.InsertAfter(after, next);
              s.model.insert(s.model.begin() + (after == n ? n : after + 1), next++);
          }},
         {1, [&](Slot& s) {
              if (s.model.empty()) return;
              int const i = index(s);
              s.value.RemoveIndex(i);
              s.model.erase(s.model.begin() + i);
          }},
         run.CopyFromAny(1),
         {1, [&](Slot& s) {  // by value: the first occurrence goes
              if (s.model.empty()) return;
              int const value = s.model[index(s)];
              s.value.Remove(value);
              s.model.erase(std::find(s.model.begin(), s.model.end(), value));
          }},
         {1, [&](Slot& s) {
              Slot const& other = run.Any();
              if (&other == &s || s.model.size() + other.model.size() >= 3000) return;
              s.value.Append(other.value);
              s.model.insert(s.model.end(), other.model.begin(), other.model.end());
          }},
         {1, [&](Slot& s) {
              if (s.model.empty()) return;
              int const i = index(s);
              s.value.Get(i) = next;
              s.model[i] = next++;
          }},
         {1, [&](Slot& s) {
              if (run.Below(3) == 0) {
                  s.value.Sort();
                  std::sort(s.model.begin(), s.model.end());
                  return;
              }
              iters.emplace_back(cow_ListIter<int>(s.value), s.model);
              if (iters.size() > 3) iters.erase(iters.begin());
          }}},
        [](Slot const& s) {
            ASSERT_EQ(s.value.GetCount(), static_cast<int>(s.model.size()));
            for (int i = 0; i < s.value.GetCount(); ++i) ASSERT_EQ(s.value.ConstGet(i), s.model[i]);
        },
        [&] {
            for (auto& [it, snap] : iters) {
                std::size_t i = 0;
                for (it.First(); !it.IsDone(); it.Next(), ++i) ASSERT_EQ(it.Current(), snap.at(i));
                ASSERT_EQ(i, snap.size());
            }
        });
}

}  // namespace
