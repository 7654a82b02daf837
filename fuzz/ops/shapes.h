#ifndef ZORVANCOW_FUZZ_OPS_SHAPES_H
#define ZORVANCOW_FUZZ_OPS_SHAPES_H

// The operation interpreter of fixed arrays and matrices: fixed arrays of
// the element type, fixed arrays of array lists (each element a list that
// may be shared with an element of another array) and matrices, four of
// each sharing their representation through copies. After every operation
// each value is compared with a standard-library model, each representation
// must be counted by exactly the values that hold it, and with cow_String
// elements each text by exactly the elements that hold it.

#include <map>
#include <type_traits>
#include <vector>

#include "ops/Support.h"
#include "zorvancow/lists/cow_1DArrayList.h"
#include "zorvancow/shapes/cow_2DArray.h"
#include "zorvancow/shapes/cow_FixedArray.h"

namespace fuzz::shapes {

constexpr int kSlots = 4;

struct MatrixModel {
    int rows = 0, columns = 0;
    std::vector<int> cells;
    bool operator==(MatrixModel const& other) const {
        return rows == other.rows && columns == other.columns && cells == other.cells;
    }
};

// Each representation is counted once per value that holds it.
template <class Value>
void CheckCounts(Value const (&values)[kSlots]) {
    std::map<void const*, int> holders;
    for (Value const& value : values) ++holders[value.GetRep()];
    for (Value const& value : values) FUZZ_CHECK(value.GetShareCount() == holders[value.GetRep()]);
}

template <class Array, class Model>
void CheckArray(Array const& array, Model const& model) {
    FUZZ_CHECK(array.GetSize() == static_cast<int>(model.size()));
    for (int i = 0; i < array.GetSize(); ++i) FUZZ_CHECK(Same(array.ConstGet(i), model[static_cast<std::size_t>(i)]));
}

// Extents of -2 to 11: a negative one counts as 0.
inline int PickExtent(Input& in) { return in.Below(14) - 2; }
inline int Clamp(int extent) { return extent < 0 ? 0 : extent; }

template <class T>
struct Shapes {
    static constexpr int kSteps = 2000;
    using Inner = cow_1DArrayList<T>;

    // A default fixed array has ten zero elements; start from sized ones, whose
    // elements the models follow from the start.
    using Array = cow_FixedArray<T>;
    using Lists = cow_FixedArray<Inner>;
    using Matrix = cow_2DArray<T>;
    Array arrays[kSlots] = {Array(0, T()), Array(0, T()), Array(0, T()), Array(0, T())};
    std::vector<int> arrayModels[kSlots];
    Lists lists[kSlots] = {Lists(0, Inner()), Lists(0, Inner()), Lists(0, Inner()), Lists(0, Inner())};
    std::vector<std::vector<int>> listModels[kSlots];
    Matrix matrices[kSlots] = {Matrix(0, 0, T()), Matrix(0, 0, T()), Matrix(0, 0, T()), Matrix(0, 0, T())};
    MatrixModel matrixModels[kSlots];

    template <class F>
    void EachValue(F&& f) {
        for (int s = 0; s < kSlots; ++s) {
            f(ReadBack<std::vector<int>>(arrays[s]), arrayModels[s]);
            f(ReadBack<std::vector<std::vector<int>>>(lists[s]), listModels[s]);
            MatrixModel now{matrices[s].GetRows(), matrices[s].GetColumns(), {}};
            for (int r = 0; r < now.rows; ++r)
                for (int c = 0; c < now.columns; ++c) now.cells.push_back(Number(matrices[s].ConstGet(r, c)));
            f(std::move(now), matrixModels[s]);
        }
    }

    void CheckAll() {
        for (int s = 0; s < kSlots; ++s) {
            CheckArray(arrays[s], arrayModels[s]);
            CheckArray(lists[s], listModels[s]);
            cow_2DArray<T> const& matrix = matrices[s];
            MatrixModel const& model = matrixModels[s];
            FUZZ_CHECK(matrix.GetRows() == model.rows && matrix.GetColumns() == model.columns);
            FUZZ_CHECK((matrix.GetRep()->data == nullptr) == model.cells.empty());
            for (int cell = 0; cell < static_cast<int>(model.cells.size()); ++cell)
                FUZZ_CHECK(Number(matrix.ConstGet(cell / model.columns, cell % model.columns)) ==
                           model.cells[static_cast<std::size_t>(cell)]);
        }
        CheckCounts(arrays);
        CheckCounts(lists);
        CheckCounts(matrices);
        auto const [s, t] = DiffPair(kSlots);
        CheckDiff(arrays[s], arrays[t], arrayModels[s], arrayModels[t]);
        CheckDiff(lists[s], lists[t], listModels[s], listModels[t]);
        CheckDiff(matrices[s], matrices[t], matrixModels[s].cells, matrixModels[t].cells);
        if constexpr (std::is_same<T, cow_String>::value) {
            // Texts are made fresh and copied only from array to array: each
            // is counted by every element of each distinct representation
            // that holds it.
            std::map<void const*, int> seen;
            std::map<atr_StringHeader const*, int> holders;
            for (auto const& array : arrays)
                if (!seen[array.GetRep()]++)
                    for (int i = 0; i < array.GetSize(); ++i) ++holders[array.ConstGet(i).GetHeader()];
            for (auto const& [header, count] : holders) FUZZ_CHECK(header == nullptr || header->count == count);
        }
    }

    void Step(Input& in) {
        int const kind = in.Below(3), a = in.Below(kSlots), b = in.Below(kSlots), op = in.Below(5);
        int const value = in.Below(1000);
        T const element = Make<T>(value);
        FUZZ_TRACE("step %d: kind %d, value %d (from %d): op %d\n", CurrentStep(), kind, a, b, op);
        if (kind == 0) {
            std::vector<int>& model = arrayModels[a];
            if (op == 0) {
                int const length = in.Below(43) - 2;
                arrays[a] = cow_FixedArray<T>(length, element);
                model.assign(static_cast<std::size_t>(Clamp(length)), value);
            } else if (op == 1) {
                Share(arrays, arrayModels, a, b);
            } else if (op < 4 && !model.empty()) {
                // Through Get, [] or an iterator: each copies a shared
                // representation whole.
                int const i = in.Below(static_cast<int>(model.size()));
                if (op == 2) arrays[a].Get(i) = element;
                else if (value % 2 == 0) arrays[a][static_cast<std::size_t>(i)] = element;
                else *(arrays[a].begin() + i) = element;
                model[static_cast<std::size_t>(i)] = value;
            } else if (op == 4) {
                FUZZ_CHECK((arrays[a] == arrays[b]) == (model == arrayModels[b]));
                FUZZ_CHECK((arrays[a] != arrays[b]) == (model != arrayModels[b]));
            }
        } else if (kind == 1) {
            ListStep(in, a, b, op, value);
        } else {
            MatrixModel& model = matrixModels[a];
            if (op == 0) {
                int const rows = PickExtent(in), columns = PickExtent(in);
                matrices[a] = cow_2DArray<T>(rows, columns, element);
                model = {Clamp(rows), Clamp(columns), {}};
                model.cells.assign(static_cast<std::size_t>(model.rows * model.columns), value);
            } else if (op == 1) {
                Share(matrices, matrixModels, a, b);
            } else if (!model.cells.empty()) {
                int const r = in.Below(model.rows), c = in.Below(model.columns);
                if (op == 2) matrices[a].Get(r, c) = element;
                else if (op == 3) *(matrices[a].Row(r).begin() + c) = element;
                else *(matrices[a].begin() + r * model.columns + c) = element;
                model.cells[static_cast<std::size_t>(r * model.columns + c)] = value;
            }
        }
    }

    void ListStep(Input& in, int a, int b, int op, int value) {
        std::vector<std::vector<int>>& model = listModels[a];
        switch (op) {
            case 0: {  // every element one list: a fresh one or an element of another array
                int const length = in.Below(23) - 2;
                std::vector<int> element(static_cast<std::size_t>(in.Below(6)), value);
                Inner list = MakeList<Inner>(element);
                MaybeTake(in, list, element, lists[b], listModels[b]);
                lists[a] = cow_FixedArray<Inner>(length, list);
                model.assign(static_cast<std::size_t>(Clamp(length)), element);
                break;
            }
            case 1: Share(lists, listModels, a, b); break;
            case 2: {  // a write inside one element: the lists it was shared with keep theirs
                if (model.empty()) break;
                int const i = in.Below(static_cast<int>(model.size()));
                EditList(lists[a].Get(i), model[static_cast<std::size_t>(i)], in, value);
                break;
            }
            case 3: {  // an element taken from another array, shared with it
                if (model.empty() || listModels[b].empty()) break;
                int const i = in.Below(static_cast<int>(model.size()));
                int const j = in.Below(static_cast<int>(listModels[b].size()));
                Inner const taken = lists[b].ConstGet(j);
                lists[a].Get(i) = taken;
                model[static_cast<std::size_t>(i)] = listModels[b][static_cast<std::size_t>(j)];
                break;
            }
            default:
                FUZZ_CHECK((lists[a] == lists[b]) == (model == listModels[b]));
        }
    }
};

inline void Run(std::uint8_t const* data, std::size_t size) { fuzz::Run<Shapes>(data, size); }

}  // namespace fuzz::shapes

#endif
