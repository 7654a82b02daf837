// Blocked arrays that share through copies, assignments and iterators take
// random writes at both ends, growth and bulk copies; after every step each
// array must match a deque of its own, and every iterator its snapshot.

#include <gtest/gtest.h>

#include <deque>
#include <utility>
#include <vector>

#include "support/ModelTest.h"
#include "zorvancow/arrays/cow_1DArray.h"

namespace {

using Model = std::deque<int>;

TEST(ArrayModel, WritesToOneArrayNeverShowInItsCopiesOrIterators) {
    using Run = testing_support::ModelTest<cow_1DArray<int>, Model>;
    using Slot = Run::Slot;
    Run run(20261123, 5, [](int k) {
        return Slot{k == 0 ? cow_1DArray<int>() : cow_1DArray<int>(k * 50), Model(static_cast<std::size_t>(k * 50))};
    });
    std::vector<std::pair<cow_1DArrayIter<int>, Model>> iters;
    int next = 1;

    // Positions that enter the extent by growth hold whatever their block
    // held beyond the old end (an element written by an earlier run, or
    // kept by a shrink), and default elements where no block exists.
    auto adopt = [](cow_1DArray<int> const& a, Model& m, int from) {
        m.resize(a.GetSize(), 0);
        for (int i = from; i < a.GetSize(); ++i) {
            int p = a.GetHeadPosition() + i, s = p >> a.GetShift();
            m[i] = a.GetBlock(s) != nullptr ? a.GetBlock(s)->GetData()[p - (s << a.GetShift())] : 0;
        }
    };
    run.Run(
        20000,
        {{2, [&](Slot& s) {  // write inside or just past the end
              int const size = static_cast<int>(s.model.size()), i = run.Below(size + 20);
              s.value.Get(i) = next;
              if (i >= size) adopt(s.value, s.model, size);
              s.model[i] = next++;
          }},
         run.CopyFromAny(1),
         {1, [&](Slot& s) {
              s.value.GetHead() = next;
              s.model.push_front(next++);
              // When the table was full the extent also reaches the next block boundary.
              adopt(s.value, s.model, static_cast<int>(s.model.size()));
          }},
         {1, [&](Slot& s) {
              if (s.model.empty()) return;
              s.value.Get(0) = 0;  // the list's way to drop the first element
              s.value.RemoveHead();
              s.model.pop_front();
          }},
         {1, [&](Slot& s) {  // grow, shrink or reset
              int const size = static_cast<int>(s.model.size());
              int const n = run.Below(8) == 0 ? 0 : run.Below(size + 40);
              s.value.Grow(n);
              if (n < size) s.model.resize(n);
              adopt(s.value, s.model, size < n ? size : n);
          }},
         {1, [&](Slot& s) {
              cow_1DArray<int>& a = s.value;
              if (a.GetShift() != 0 && a.GetHeadPosition() % (1 << a.GetShift()) != 0) return;
              std::vector<int> src(run.Below(70));
              for (int& v : src) v = next++;
              int const size = static_cast<int>(s.model.size());
              a.SetFromArray(src.data(), static_cast<int>(src.size()));
              adopt(a, s.model, size);  // the tail of the last run may lie beyond the end
              for (std::size_t i = 0; i < s.model.size() && i < src.size(); ++i) s.model[i] = src[i];
          }},
         {1, [&](Slot& s) {
              iters.emplace_back(cow_1DArrayIter<int>(s.value), s.model);
              if (iters.size() > 4) iters.erase(iters.begin());
          }},
         {1, [&](Slot&) {  // walk every live iterator: its snapshot must hold
              for (auto& [it, snap] : iters) {
                  if (it.First().GetLimit() == 0) continue;
                  std::size_t i = 0;
                  for (int stop = it.GetArray().GetEndPosition(); it.GetPosition() < stop; it.Next(), ++i)
                      ASSERT_EQ(it.GetBlockData() == nullptr ? 0 : it.ConstGet(), snap[i]);
                  ASSERT_EQ(i, snap.size());
              }
          }}},
        [](Slot const& s) {
            ASSERT_EQ(s.value.GetSize(), static_cast<int>(s.model.size()));
            for (int i = 0; i < s.value.GetSize(); ++i) ASSERT_EQ(s.value.PartialArrayConstGet(i), s.model[i]);
        });
}

}  // namespace
