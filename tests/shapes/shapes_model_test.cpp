// Random operations on fixed arrays and matrices that share through copies,
// each value checked against a standard-library model after every step: a
// write to one value never shows in another, every representation is counted
// by exactly the values that hold it, and every text by the elements that
// hold it.

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
    int rows, columns;
    std::vector<int> cells;
};

template <class Value>
void ExpectCountsMatchHolders(std::vector<Value> const& values) {
    std::map<void const*, int> holders;
    for (Value const& value : values) ++holders[value.GetRep()];
    for (Value const& value : values) ASSERT_EQ(value.GetShareCount(), holders[value.GetRep()]);
}

TEST(ShapesModel, RandomSharingAgainstStandardModels) {
    long const textsAtStart = atr_GetLiveTexts();
    long const blocksAtStart = mem_GetLiveBlocks();
    {
        std::mt19937 random(20261123);
        auto below = [&random](std::size_t n) { return static_cast<int>(random() % n); };
        std::vector<std::string> const words = {"", "alpha", "beta", "gamma"};
        std::vector<cow_String> pool;
        for (std::string const& word : words) pool.emplace_back(word.c_str());

        std::vector<cow_FixedArray<cow_String>> arrays(5, cow_FixedArray<cow_String>(3, pool[1]));
        std::vector<std::vector<std::string>> arrayModels(5, std::vector<std::string>(3, words[1]));
        std::vector<cow_2DArray<int>> matrices(4, cow_2DArray<int>(2, 3, 0));
        std::vector<MatrixModel> matrixModels(4, MatrixModel{2, 3, std::vector<int>(6, 0)});

        for (int step = 0; step < 20000; ++step) {
            int const a = below(5), b = below(5), m = below(4), n = below(4), w = below(words.size());
            int const value = below(1000), length = below(6), rows = below(4), columns = below(4);
            std::vector<std::string>& model = arrayModels[a];
            MatrixModel& matrixModel = matrixModels[m];
            switch (below(5)) {
                case 0:
                    arrays[a] = arrays[b];
                    model = arrayModels[b];
                    matrices[m] = matrices[n];
                    matrixModel = matrixModels[n];
                    break;
                case 1:
                    if (model.empty()) break;
                    arrays[a].Get(length % model.size()) = pool[w];
                    model[length % model.size()] = words[w];
                    break;
                case 2:
                    if (matrixModel.cells.empty()) break;
                    matrices[m].Get(rows % matrixModel.rows, columns % matrixModel.columns) = value;
                    matrixModel.cells[rows % matrixModel.rows * matrixModel.columns + columns % matrixModel.columns] =
                        value;
                    break;
                case 3:
                    arrays[a] = cow_FixedArray<cow_String>(length, pool[w]);
                    model.assign(length, words[w]);
                    matrices[m] = cow_2DArray<int>(rows, columns, value);
                    matrixModel = MatrixModel{rows, columns, std::vector<int>(rows * columns, value)};
                    break;
                case 4:
                    ASSERT_EQ(arrays[a] == arrays[b], model == arrayModels[b]) << step;
                    ASSERT_EQ(arrays[a] != arrays[b], model != arrayModels[b]) << step;
                    break;
            }

            // Each pool text is counted by the pool and by every element of
            // each distinct representation.
            std::map<void const*, bool> seen;
            std::map<atr_StringHeader const*, int> elements;
            for (std::size_t v = 0; v < arrays.size(); ++v) {
                ASSERT_EQ(arrays[v].GetSize(), static_cast<int>(arrayModels[v].size())) << step;
                for (int i = 0; i < arrays[v].GetSize(); ++i) {
                    ASSERT_EQ(arrays[v].ConstGet(i).GetCString(), arrayModels[v][i]) << step;
                    if (!seen[arrays[v].GetRep()]) ++elements[arrays[v].ConstGet(i).GetHeader()];
                }
                seen[arrays[v].GetRep()] = true;
            }
            for (cow_String const& text : pool) ASSERT_EQ(text.GetShareCount(), 1 + elements[text.GetHeader()]);
            for (std::size_t v = 0; v < matrices.size(); ++v) {
                MatrixModel const& expected = matrixModels[v];
                ASSERT_EQ(matrices[v].GetRows(), expected.rows) << step;
                ASSERT_EQ(matrices[v].GetColumns(), expected.columns) << step;
                for (int cell = 0; cell < static_cast<int>(expected.cells.size()); ++cell)
                    ASSERT_EQ(matrices[v].ConstGet(cell / expected.columns, cell % expected.columns),
                              expected.cells[cell]) << step;
            }
            ExpectCountsMatchHolders(arrays);
            ExpectCountsMatchHolders(matrices);
        }
    }
    EXPECT_EQ(atr_GetLiveTexts(), textsAtStart);
    EXPECT_EQ(mem_GetLiveBlocks(), blocksAtStart);
}

}  // namespace
