// Fixed arrays and matrices that share through copies take random writes,
// each checked against a standard-library model after every step: a write to
// one value never shows in another, every representation is counted by
// exactly the values that hold it, and every text by the elements that hold it.

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "support/ModelTest.h"
#include "zorvancow/shapes/cow_2DArray.h"
#include "zorvancow/shapes/cow_FixedArray.h"

namespace {

struct MatrixModel {
    int rows, columns;
    std::vector<int> cells;
};

template <class Slots>
void ExpectCountsMatchHolders(Slots const& slots) {
    std::map<void const*, int> holders;
    for (auto const& slot : slots) ++holders[slot.value.GetRep()];
    for (auto const& slot : slots) ASSERT_EQ(slot.value.GetShareCount(), holders[slot.value.GetRep()]);
}

TEST(ShapeModel, FixedArrayWritesNeverShowInCopies) {
    std::vector<std::string> const words = {"", "alpha", "beta", "gamma"};
    using Run = testing_support::ModelTest<cow_FixedArray<cow_String>, std::vector<std::string>>;
    using Slot = Run::Slot;
    Run run(20261123, 5, [&](int) { return Slot{cow_FixedArray<cow_String>(3, cow_String("alpha")), {3, "alpha"}}; });
    std::vector<cow_String> pool;
    for (std::string const& word : words) pool.emplace_back(word.c_str());
    run.Run(
        20000,
        {run.CopyFromAny(1),
         {1, [&](Slot& s) {
              if (s.model.empty()) return;
              std::size_t const i = run.Below(s.model.size()), w = run.Below(words.size());
              s.value.Get(static_cast<int>(i)) = pool[w];
              s.model[i] = words[w];
          }},
         {1, [&](Slot& s) {
              int const length = run.Below(6), w = run.Below(4);
              s.value = cow_FixedArray<cow_String>(length, pool[w]);
              s.model.assign(length, words[w]);
          }},
         {1, [&](Slot& s) {
              Slot const& other = run.Any();
              ASSERT_EQ(s.value == other.value, s.model == other.model);
              ASSERT_EQ(s.value != other.value, s.model != other.model);
          }}},
        [](Slot const& s) {
            ASSERT_EQ(s.value.GetSize(), static_cast<int>(s.model.size()));
            for (int i = 0; i < s.value.GetSize(); ++i) ASSERT_EQ(s.value.ConstGet(i).GetCString(), s.model[i]);
        },
        [&] {
            // Each pool text is counted by the pool and by every element of
            // each distinct representation.
            std::map<void const*, bool> seen;
            std::map<atr_StringHeader const*, int> elements;
            for (Slot const& s : run.slots) {
                if (!seen[s.value.GetRep()])
                    for (int i = 0; i < s.value.GetSize(); ++i) ++elements[s.value.ConstGet(i).GetHeader()];
                seen[s.value.GetRep()] = true;
            }
            for (cow_String const& text : pool) ASSERT_EQ(text.GetShareCount(), 1 + elements[text.GetHeader()]);
            ExpectCountsMatchHolders(run.slots);
        });
}

TEST(ShapeModel, MatrixWritesNeverShowInCopies) {
    using Run = testing_support::ModelTest<cow_2DArray<int>, MatrixModel>;
    using Slot = Run::Slot;
    Run run(20261123, 4, [](int) { return Slot{cow_2DArray<int>(2, 3, 0), {2, 3, std::vector<int>(6, 0)}}; });
    run.Run(
        20000,
        {run.CopyFromAny(1),
         {1, [&](Slot& s) {
              if (s.model.cells.empty()) return;
              int const row = run.Below(s.model.rows), column = run.Below(s.model.columns), value = run.Below(1000);
              s.value.Get(row, column) = value;
              s.model.cells[row * s.model.columns + column] = value;
          }},
         {1, [&](Slot& s) {
              int const rows = run.Below(4), columns = run.Below(4), value = run.Below(1000);
              s.value = cow_2DArray<int>(rows, columns, value);
              s.model = MatrixModel{rows, columns, std::vector<int>(rows * columns, value)};
          }}},
        [](Slot const& s) {
            ASSERT_EQ(s.value.GetRows(), s.model.rows);
            ASSERT_EQ(s.value.GetColumns(), s.model.columns);
            for (int cell = 0; cell < static_cast<int>(s.model.cells.size()); ++cell)
                ASSERT_EQ(s.value.ConstGet(cell / s.model.columns, cell % s.model.columns), s.model.cells[cell]);
        },
        [&] { ExpectCountsMatchHolders(run.slots); });
}

}  // namespace
