// Fixed arrays and matrices under random operations: arrays of strings,
// arrays of array lists (each element a list that may be shared with an
// element of another array), and matrices of int and of strings, several of
// each sharing their representation through copies. After every operation
// each value is compared with a standard-library model, and each
// representation must be counted by exactly the values that hold it.

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "FuzzSupport.h"
#include "zorvancow/lists/cow_1DArrayList.h"
#include "zorvancow/shapes/cow_2DArray.h"
#include "zorvancow/shapes/cow_FixedArray.h"

namespace {

using fuzz::Input;
using Inner = cow_1DArrayList<int>;

constexpr int kSlots = 4;

template <class Cell>
struct MatrixModel {
    int rows = 0, columns = 0;
    std::vector<Cell> cells;
};

bool Same(cow_String const& value, std::string const& model) { return model == value.GetCString(); }
bool Same(int value, int model) { return value == model; }
bool Same(Inner const& list, std::vector<int> const& model) {
    if (list.GetCount() != static_cast<int>(model.size())) return false;
    for (int i = 0; i < list.GetCount(); ++i)
        if (list.ConstGet(i) != model[static_cast<std::size_t>(i)]) return false;
    return true;
}

Inner MakeInner(std::vector<int> const& model) {
    Inner list;
    for (int v : model) list.Append(v);
    return list;
}

// Each representation is counted once per value that holds it.
template <class Value>
void CheckCounts(Value const (&values)[kSlots]) {
    std::map<void const*, int> holders;
    for (Value const& value : values) ++holders[value.GetRep()];
    for (Value const& value : values) FUZZ_CHECK(value.GetShareCount() == holders[value.GetRep()]);
}

template <class T, class Cell>
void CheckArray(cow_FixedArray<T> const& array, std::vector<Cell> const& model) {
    FUZZ_CHECK(array.GetSize() == static_cast<int>(model.size()));
    for (int i = 0; i < array.GetSize(); ++i) FUZZ_CHECK(Same(array.ConstGet(i), model[static_cast<std::size_t>(i)]));
}

template <class T, class Cell>
void CheckMatrix(cow_2DArray<T> const& matrix, MatrixModel<Cell> const& model) {
    FUZZ_CHECK(matrix.GetRows() == model.rows && matrix.GetColumns() == model.columns);
    FUZZ_CHECK((matrix.GetRep()->data == nullptr) == model.cells.empty());
    for (int r = 0; r < model.rows; ++r)
        for (int c = 0; c < model.columns; ++c)
            FUZZ_CHECK(Same(matrix.ConstGet(r, c), model.cells[static_cast<std::size_t>(r * model.columns + c)]));
}

struct State {
    cow_FixedArray<cow_String> texts[kSlots];
    std::vector<std::string> textModels[kSlots];
    cow_FixedArray<Inner> lists[kSlots];
    std::vector<std::vector<int>> listModels[kSlots];
    cow_2DArray<int> numbers[kSlots] = {{0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}};
    MatrixModel<int> numberModels[kSlots];
    cow_2DArray<cow_String> words[kSlots] = {{0, 0, cow_String()}, {0, 0, cow_String()}, {0, 0, cow_String()},
                                             {0, 0, cow_String()}};
    MatrixModel<std::string> wordModels[kSlots];

    State() {
        // A default fixed array has ten zero elements; start from sized ones,
        // whose elements the models follow from the start.
        for (int s = 0; s < kSlots; ++s) {
            texts[s] = cow_FixedArray<cow_String>(0, cow_String());
            lists[s] = cow_FixedArray<Inner>(0, Inner());
        }
    }

    void CheckAll() {
        for (int s = 0; s < kSlots; ++s) {
            CheckArray(texts[s], textModels[s]);
            CheckArray(lists[s], listModels[s]);
            CheckMatrix(numbers[s], numberModels[s]);
            CheckMatrix(words[s], wordModels[s]);
        }
        CheckCounts(texts);
        CheckCounts(lists);
        CheckCounts(numbers);
        CheckCounts(words);
    }
};

// Extents of -2 to 11: a negative one counts as 0.
int PickExtent(Input& in) { return in.Below(14) - 2; }
int Clamp(int extent) { return extent < 0 ? 0 : extent; }

void TextStep(State& st, Input& in, int a, int b, int op) {
    std::vector<std::string>& model = st.textModels[a];
    std::string const text = fuzz::PickText(in);
    switch (op) {
        case 0: {
            int const length = in.Below(43) - 2;
            st.texts[a] = cow_FixedArray<cow_String>(length, cow_String(text.c_str()));
            model.assign(static_cast<std::size_t>(Clamp(length)), text);
            break;
        }
        case 1:
            st.texts[a] = st.texts[b];
            model = st.textModels[b];
            break;
        case 2:
        case 3:
            if (model.empty()) break;
            {
                int const i = in.Below(static_cast<int>(model.size()));
                st.texts[a].Get(i) = cow_String(text.c_str());
                model[static_cast<std::size_t>(i)] = text;
            }
            break;
        default:
            FUZZ_CHECK((st.texts[a] == st.texts[b]) == (model == st.textModels[b]));
            FUZZ_CHECK((st.texts[a] != st.texts[b]) == (model != st.textModels[b]));
    }
}

void ListStep(State& st, Input& in, int a, int b, int op) {
    std::vector<std::vector<int>>& model = st.listModels[a];
    int const value = in.Below(100);
    switch (op) {
        case 0: {  // every element one list: a fresh one or an element of another array
            int const length = in.Below(23) - 2;
            std::vector<int> element(static_cast<std::size_t>(in.Below(6)), value);
            Inner list = MakeInner(element);
            if (!st.listModels[b].empty() && in.Below(2) == 0) {
                int const j = in.Below(static_cast<int>(st.listModels[b].size()));
                list = st.lists[b].ConstGet(j);
                element = st.listModels[b][static_cast<std::size_t>(j)];
            }
            st.lists[a] = cow_FixedArray<Inner>(length, list);
            model.assign(static_cast<std::size_t>(Clamp(length)), element);
            break;
        }
        case 1:
            st.lists[a] = st.lists[b];
            model = st.listModels[b];
            break;
        case 2: {  // a write inside one element: the lists it was shared with keep theirs
            if (model.empty()) break;
            int const i = in.Below(static_cast<int>(model.size()));
            Inner& list = st.lists[a].Get(i);
            std::vector<int>& element = model[static_cast<std::size_t>(i)];
            if (!element.empty() && in.Below(2) == 0) {
                FUZZ_CHECK(list.Pop() == element.back());
                element.pop_back();
            } else if (element.size() < 100) {
                int const at = in.Below(static_cast<int>(element.size()) + 1);
                list.Insert(at, value);
                element.insert(element.begin() + at, value);
            }
            break;
        }
        case 3: {  // an element taken from another array, shared with it
            if (model.empty() || st.listModels[b].empty()) break;
            int const i = in.Below(static_cast<int>(model.size()));
            int const j = in.Below(static_cast<int>(st.listModels[b].size()));
            Inner const taken = st.lists[b].ConstGet(j);
            st.lists[a].Get(i) = taken;
            model[static_cast<std::size_t>(i)] = st.listModels[b][static_cast<std::size_t>(j)];
            break;
        }
        default:
            FUZZ_CHECK((st.lists[a] == st.lists[b]) == (model == st.listModels[b]));
    }
}

template <class T, class Cell>
void MatrixStep(cow_2DArray<T> (&matrices)[kSlots], MatrixModel<Cell> (&models)[kSlots], int a, int b, int op,
                Input& in, T const& value, Cell const& cell) {
    MatrixModel<Cell>& model = models[a];
    switch (op) {
        case 0: {
            int const rows = PickExtent(in), columns = PickExtent(in);
            matrices[a] = cow_2DArray<T>(rows, columns, value);
            model.rows = Clamp(rows);
            model.columns = Clamp(columns);
            model.cells.assign(static_cast<std::size_t>(model.rows * model.columns), cell);
            break;
        }
        case 1:
            matrices[a] = matrices[b];
            model = models[b];
            break;
        default:
            if (model.cells.empty()) break;
            int const r = in.Below(model.rows), c = in.Below(model.columns);
            matrices[a].Get(r, c) = value;
            model.cells[static_cast<std::size_t>(r * model.columns + c)] = cell;
    }
}

// One input: the operations it decodes, each value checked after each one.
void RunInput(std::uint8_t const* data, std::size_t size) {
    Input in(data, size);
    State st;
    for (int step = 0; step < 2000 && !in.Done(); ++step) {
        int const family = in.Below(4), a = in.Below(kSlots), b = in.Below(kSlots), op = in.Below(5);
        FUZZ_TRACE("family %d, value %d (from %d): op %d\n", family, a, b, op);
        switch (family) {
            case 0: TextStep(st, in, a, b, op); break;
            case 1: ListStep(st, in, a, b, op); break;
            case 2: {
                int const value = in.Below(1000) - 500;
                MatrixStep(st.numbers, st.numberModels, a, b, op % 3, in, value, value);
                break;
            }
            default: {
                std::string const text = fuzz::PickText(in);
                MatrixStep(st.words, st.wordModels, a, b, op % 3, in, cow_String(text.c_str()), text);
            }
        }
        st.CheckAll();
    }
}

}  // namespace

ZORVANCOW_FUZZ_TARGET(RunInput)
