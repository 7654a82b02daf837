// Random operations on fixed arrays and matrices that share through copies,
// each value checked against a standard-library model after every step: a
// write to one value never shows in another, and every representation is
// counted by exactly the values that hold it.

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>
#include <vector>

#include "zorvancow/shapes/cow_2DArray.h"
#include "zorvancow/shapes/cow_FixedArray.h"
#include "zorvanmem/mem_Heap.h"
#include "zorvanstr/atr_String.h"

namespace {

struct MatrixModel {
    int rows;
    int columns;
    std::vector<int> cells;
};

template <class Value>
void ExpectCountsMatchHolders(std::vector<Value> const& values) {
    std::map<void const*, int> holders;
    for (Value const& value : values) ++holders[value.GetRep()];
    for (Value const& value : values) ASSERT_EQ(value.GetShareCount(), holders[value.GetRep()]);
}

// Each text of the pool is held by the pool and once by every element of
// every distinct representation that holds it.
void ExpectTextCountsMatchElements(std::vector<cow_FixedArray<cow_String>> const& arrays,
                                   std::vector<cow_String> const& pool) {
    std::map<void const*, bool> seen;
    std::map<atr_StringHeader const*, int> elements;
    for (cow_FixedArray<cow_String> const& array : arrays) {
        if (seen[array.GetRep()]) continue;
        seen[array.GetRep()] = true;
        for (int i = 0; i < array.GetSize(); ++i) ++elements[array.ConstGet(i).GetHeader()];
    }
    for (cow_String const& text : pool) ASSERT_EQ(text.GetShareCount(), 1 + elements[text.GetHeader()]);
}

TEST(ShapesModel, RandomSharingAgainstStandardModels) {
    long const textsAtStart = atr_GetLiveTexts();
    long const blocksAtStart = mem_GetLiveBlocks();
    {
        std::mt19937 random(20261123);
        auto below = [&random](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
        std::vector<std::string> const words = {"", "alpha", "beta", "gamma", "delta"};
        std::vector<cow_String> pool;
        for (std::string const& word : words) pool.emplace_back(word.c_str());

        std::vector<cow_FixedArray<cow_String>> arrays(5, cow_FixedArray<cow_String>(3, pool[1]));
        std::vector<std::vector<std::string>> arrayModels(5, std::vector<std::string>(3, words[1]));
        std::vector<cow_2DArray<int>> matrices(4, cow_2DArray<int>(2, 3, 0));
        std::vector<MatrixModel> matrixModels(4, MatrixModel{2, 3, std::vector<int>(6, 0)});

        for (int step = 0; step < 20000; ++step) {
            int const a = below(5), b = below(5);
            int const m = below(4), n = below(4);
            switch (below(8)) {
                case 0:
                    arrays[a] = arrays[b];
                    arrayModels[a] = arrayModels[b];
                    break;
                case 1:
                case 2:
                    if (arrayModels[a].empty()) break;
                    {
                        int const i = below(static_cast<int>(arrayModels[a].size()));
                        int const w = below(static_cast<int>(words.size()));
                        arrays[a].Get(i) = pool[static_cast<std::size_t>(w)];
                        arrayModels[a][static_cast<std::size_t>(i)] = words[static_cast<std::size_t>(w)];
                    }
                    break;
                case 3: {
                    int const length = below(6);
                    int const w = below(static_cast<int>(words.size()));
                    arrays[a] = cow_FixedArray<cow_String>(length, pool[static_cast<std::size_t>(w)]);
                    arrayModels[a].assign(static_cast<std::size_t>(length), words[static_cast<std::size_t>(w)]);
                    break;
                }
                case 4:
                    ASSERT_EQ(arrays[a] == arrays[b], arrayModels[a] == arrayModels[b]) << step;
                    ASSERT_EQ(arrays[a] != arrays[b], arrayModels[a] != arrayModels[b]) << step;
                    break;
                case 5:
                    matrices[m] = matrices[n];
                    matrixModels[m] = matrixModels[n];
                    break;
                case 6:
                    if (matrixModels[m].cells.empty()) break;
                    {
                        MatrixModel& model = matrixModels[m];
                        int const r = below(model.rows), c = below(model.columns);
                        int const value = below(1000);
                        matrices[m].Get(r, c) = value;
                        model.cells[static_cast<std::size_t>(r * model.columns + c)] = value;
                    }
                    break;
                case 7: {
                    int const rows = below(4), columns = below(4), value = below(1000);
                    matrices[m] = cow_2DArray<int>(rows, columns, value);
                    matrixModels[m] = MatrixModel{rows, columns,
                                                  std::vector<int>(static_cast<std::size_t>(rows * columns), value)};
                    break;
                }
            }

            for (std::size_t v = 0; v < arrays.size(); ++v) {
                ASSERT_EQ(arrays[v].GetSize(), static_cast<int>(arrayModels[v].size())) << step;
                for (int i = 0; i < arrays[v].GetSize(); ++i)
                    ASSERT_EQ(arrays[v].ConstGet(i).GetCString(), arrayModels[v][static_cast<std::size_t>(i)])
                        << "step " << step << " array " << v << " element " << i;
            }
            for (std::size_t v = 0; v < matrices.size(); ++v) {
                MatrixModel const& model = matrixModels[v];
                ASSERT_EQ(matrices[v].GetRows(), model.rows) << step;
                ASSERT_EQ(matrices[v].GetColumns(), model.columns) << step;
                for (int r = 0; r < model.rows; ++r)
                    for (int c = 0; c < model.columns; ++c)
                        ASSERT_EQ(matrices[v].ConstGet(r, c), model.cells[static_cast<std::size_t>(r * model.columns + c)])
                            << "step " << step << " matrix " << v;
            }
            ExpectCountsMatchHolders(arrays);
            ExpectCountsMatchHolders(matrices);
            ExpectTextCountsMatchElements(arrays, pool);
        }

    }
    EXPECT_EQ(atr_GetLiveTexts(), textsAtStart);
    EXPECT_EQ(mem_GetLiveBlocks(), blocksAtStart);
}

}  // namespace
