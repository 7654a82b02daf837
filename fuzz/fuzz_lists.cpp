// Arrays and lists under random operations: blocked arrays, general lists of
// int, array lists of strings and lists of array lists, several of each
// sharing storage through copies, snapshot iterators and nested elements.
// After every operation each value and each live snapshot is compared with a
// standard-library model of what it should hold.

#include <algorithm>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "FuzzSupport.h"
#include "zorvancow/arrays/cow_1DArray.h"
#include "zorvancow/lists/cow_1DArrayList.h"
#include "zorvancow/lists/cow_List.h"

namespace {

using fuzz::Input;

constexpr int kSlots = 4;
constexpr int kMaxCount = 1000;  // several blocks and table growths, yet cheap to check

using Inner = cow_1DArrayList<int>;

// A blocked array's model: its elements, and past them the values still
// lying in storage the array keeps (a shrink leaves the part of a block
// beyond the new end as it was, and a later growth shows it again).
struct ArrayModel {
    std::vector<int> cells;  // index 0 is the head; every index >= size is storage past the end
    int size = 0;
    int At(int i) const { return i < static_cast<int>(cells.size()) ? cells[static_cast<std::size_t>(i)] : 0; }
    void Set(int i, int value) {
        if (i >= static_cast<int>(cells.size())) cells.resize(static_cast<std::size_t>(i) + 1, 0);
        cells[static_cast<std::size_t>(i)] = value;
    }
};

struct ArraySnapshot {
    std::unique_ptr<cow_1DArrayIter<int>> it;
    ArrayModel model;
};
struct ListSnapshot {
    std::unique_ptr<cow_ListIter<int>> it;
    std::deque<int> model;
};
struct StringSnapshot {
    std::unique_ptr<cow_1DArrayListIter<cow_String>> it;
    std::vector<std::string> model;
};

Inner MakeInner(std::vector<int> const& values) {
    Inner inner;
    for (int v : values) inner.Append(v);
    return inner;
}

void CheckInner(Inner const& inner, std::vector<int> const& model) {
    FUZZ_CHECK(inner.GetCount() == static_cast<int>(model.size()));
    for (int i = 0; i < inner.GetCount(); ++i) FUZZ_CHECK(inner.ConstGet(i) == model[static_cast<std::size_t>(i)]);
}

void CheckArray(cow_1DArray<int> const& array, ArrayModel const& model) {
    FUZZ_CHECK(array.GetSize() == model.size);
    for (int i = 0; i < model.size; ++i) FUZZ_CHECK(array.PartialArrayConstGet(i) == model.At(i));
}

// Walks a snapshot of an array: blocks that were never made (holes) read as
// zeros, and a walk whose first block is a hole counts as empty.
void CheckArrayWalk(cow_1DArrayIter<int>& it, ArrayModel const& model) {
    cow_1DArray<int> const& array = it.GetArray();
    int const head = array.GetHeadPosition();
    if (it.GetLimit() == 0) {
        FUZZ_CHECK(model.size == 0 || array.GetBlock(head >> array.GetShift()) == nullptr);
        return;
    }
    FUZZ_CHECK(it.GetLimit() == head + model.size);
    for (it.First(); it.GetPosition() < it.GetLimit();) {
        if (it.GetBlockData() == nullptr) {
            for (int p = it.GetPosition(), stop = std::min(p + it.GetBlockLength() - it.GetOffset(), it.GetLimit());
                 p < stop; ++p)
                FUZZ_CHECK(model.At(p - head) == 0);
            it.NextBlock();
        } else {
            FUZZ_CHECK(it.ConstGet() == model.At(it.GetPosition() - head));
            it.Next();
        }
    }
}

void CheckList(cow_List<int> const& list, std::deque<int> const& model) {
    FUZZ_CHECK(list.GetCount() == static_cast<int>(model.size()));
    for (int i = 0; i < list.GetCount(); ++i) FUZZ_CHECK(list.ConstGet(i) == model[static_cast<std::size_t>(i)]);
    // Every slot from the count on holds the zero value.
    for (int i = list.GetCount(); i < list.GetArray().GetSize(); ++i) FUZZ_CHECK(list.ConstGet(i) == 0);
}

void CheckStrings(cow_1DArrayList<cow_String> const& list, std::vector<std::string> const& model) {
    FUZZ_CHECK(list.GetCount() == static_cast<int>(model.size()));
    for (int i = 0; i < list.GetCount(); ++i)
        FUZZ_CHECK(model[static_cast<std::size_t>(i)] == list.ConstGet(i).GetCString());
    for (int i = list.GetCount(); i < list.GetArray().GetSize(); ++i) FUZZ_CHECK(list.ConstGet(i).GetLength() == 0);
}

void CheckNested(cow_List<Inner> const& list, std::vector<std::vector<int>> const& model) {
    FUZZ_CHECK(list.GetCount() == static_cast<int>(model.size()));
    for (int i = 0; i < list.GetCount(); ++i) CheckInner(list.ConstGet(i), model[static_cast<std::size_t>(i)]);
    for (int i = list.GetCount(); i < list.GetArray().GetSize(); ++i) FUZZ_CHECK(list.ConstGet(i).GetCount() == 0);
}

template <class Model, class Value>
int FirstIndex(Model const& model, Value const& value) {
    auto found = std::find(model.begin(), model.end(), value);
    return found == model.end() ? -1 : static_cast<int>(found - model.begin());
}

struct State {
    cow_1DArray<int> arrays[kSlots];
    ArrayModel arrayModels[kSlots];
    cow_List<int> lists[kSlots];
    std::deque<int> listModels[kSlots];
    cow_1DArrayList<cow_String> strings[kSlots];
    std::vector<std::string> stringModels[kSlots];
    cow_List<Inner> nested[kSlots];
    std::vector<std::vector<int>> nestedModels[kSlots];
    std::vector<ArraySnapshot> arrayWalks;
    std::vector<ListSnapshot> listWalks;
    std::vector<StringSnapshot> stringWalks;

    void CheckAll() {
        for (int s = 0; s < kSlots; ++s) {
            CheckArray(arrays[s], arrayModels[s]);
            CheckList(lists[s], listModels[s]);
            CheckStrings(strings[s], stringModels[s]);
            CheckNested(nested[s], nestedModels[s]);
        }
    }
};

void ArrayStep(State& st, Input& in) {
    int const a = in.Below(kSlots), b = in.Below(kSlots);
    cow_1DArray<int>& array = st.arrays[a];
    ArrayModel& model = st.arrayModels[a];
    int const value = in.Below(1000) + 1;
    int const op = in.Below(8);
    FUZZ_TRACE("array %d (from %d): op %d\n", a, b, op);
    switch (op) {
        case 0: {  // write at or past the end; the skipped slots read as before
            if (model.size >= kMaxCount) break;
            int const i = in.Below(model.size + 40);
            array.Get(i) = value;
            model.Set(i, value);
            model.size = std::max(model.size, i + 1);
            break;
        }
        case 1: {  // grow at the front: the size may round up to a block end
            if (model.size >= kMaxCount) break;
            int const before = model.size;
            array.GetHead() = value;
            model.cells.insert(model.cells.begin(), value);
            FUZZ_CHECK(array.GetSize() > before);
            model.size = array.GetSize();
            break;
        }
        case 2: {  // set the extent
            int const n = in.Below(std::min(model.size + 100, kMaxCount));
            array.Grow(n);
            if (n == 0) {
                model = ArrayModel();
            } else if (n < model.size) {
                // Blocks wholly beyond the new end are let go and read as
                // zeros later; the rest of the last block keeps its values.
                int const head = array.GetHeadPosition(), shift = array.GetShift();
                int const firstFreed = (head + n + (1 << shift) - 1) >> shift;
                for (int i = n; i < static_cast<int>(model.cells.size()); ++i)
                    if (((head + i) >> shift) >= firstFreed) model.cells[static_cast<std::size_t>(i)] = 0;
            }
            model.size = n;
            break;
        }
        case 3:  // a sized array: no element exists until touched
            array = cow_1DArray<int>(in.Below(kMaxCount));
            model = ArrayModel();
            model.size = array.GetSize();
            break;
        case 4:
            array = st.arrays[b];
            model = st.arrayModels[b];
            break;
        case 5:
            if (st.arrayWalks.size() < 4) {
                st.arrayWalks.push_back({std::make_unique<cow_1DArrayIter<int>>(array), model});
            } else {
                std::size_t const w = static_cast<std::size_t>(in.Below(4));
                CheckArrayWalk(*st.arrayWalks[w].it, st.arrayWalks[w].model);
                st.arrayWalks.erase(st.arrayWalks.begin() + static_cast<long>(w));
            }
            break;
        case 6:
            if (model.size > 0) {
                int const i = in.Below(model.size);
                FUZZ_CHECK(array.PartialArrayConstGet(i) == model.At(i));
            }
            break;
        default: {  // element-wise equality of int arrays
            bool same = model.size == st.arrayModels[b].size;
            for (int i = 0; same && i < model.size; ++i) same = model.At(i) == st.arrayModels[b].At(i);
            FUZZ_CHECK(array.IsEqual(st.arrays[b]) == same);
        }
    }
}

bool SameElement(int value, int expected) { return value == expected; }
bool SameElement(cow_String const& value, std::string const& expected) { return expected == value.GetCString(); }

// Keeps up to four snapshot walks of lists. With four held, one of them is
// walked instead, checked against the model taken with it, and dropped: a
// walk must show its list as it was when it was made.
template <class Snapshot, class List, class Model>
void TakeOrCheckWalk(std::vector<Snapshot>& walks, Input& in, List const& list, Model const& model) {
    using Iter = typename decltype(Snapshot::it)::element_type;
    if (walks.size() < 4) {
        walks.push_back({std::make_unique<Iter>(list), model});
        return;
    }
    std::size_t const w = static_cast<std::size_t>(in.Below(4));
    Snapshot& walk = walks[w];
    std::size_t i = 0;
    for (walk.it->First(); !walk.it->IsDone(); walk.it->Next(), ++i) {
        FUZZ_CHECK(i < walk.model.size());
        FUZZ_CHECK(SameElement(walk.it->Current(), walk.model[i]));
    }
    FUZZ_CHECK(i == walk.model.size());
    walks.erase(walks.begin() + static_cast<long>(w));
}

void ListStep(State& st, Input& in) {
    int const a = in.Below(kSlots), b = in.Below(kSlots);
    cow_List<int>& list = st.lists[a];
    std::deque<int>& model = st.listModels[a];
    int const count = static_cast<int>(model.size());
    bool const full = count >= kMaxCount;
    int const value = in.Below(40) - 20;
    int const op = in.Below(16);
    FUZZ_TRACE("list %d (from %d): op %d, value %d\n", a, b, op, value);
    switch (op) {
        case 0:
            if (full) break;
            list.Append(value);
            model.push_back(value);
            break;
        case 1:
            if (full) break;
            list.Prepend(value);
            model.push_front(value);
            break;
        case 2: {
            if (full) break;
            int const after = in.Below(count + 2) - 1;  // -1 to count
            list.InsertAfter(after, value);
            model.insert(model.begin() + std::min(after + 1, count), value);
            break;
        }
        case 3: {
            if (count == 0) break;
            int const at = in.Below(count + 3);  // at or past the count removes the last
            list.RemoveIndex(at);
            model.erase(model.begin() + std::min(at, count - 1));
            break;
        }
        case 4:
            if (count == 0) break;
            list.RemoveFirst();
            model.pop_front();
            break;
        case 5:
            if (count == 0) break;
            list.RemoveLast();
            model.pop_back();
            break;
        case 6:
            if (count == 0) break;
            {
                int const i = in.Below(count);
                list.Get(i) = value;
                model[static_cast<std::size_t>(i)] = value;
            }
            break;
        case 7: {
            int const at = FirstIndex(model, value);
            FUZZ_CHECK(list.Position(value) == at);
            FUZZ_CHECK(list.IsMember(value) == (at >= 0));
            list.Remove(value);
            if (at >= 0) model.erase(model.begin() + at);
            break;
        }
        case 8:
            if (full) break;
            list.AppendUnlessMember(value);
            if (FirstIndex(model, value) < 0) model.push_back(value);
            break;
        case 9:
            FUZZ_CHECK(list.IsEqual(st.lists[b]) == (model == st.listModels[b]));
            break;
        case 10:
            list.Sort();
            std::sort(model.begin(), model.end());
            break;
        case 11: {
            cow_List<int> difference = list - st.lists[b];
            std::deque<int> expected;
            for (int v : model)
                if (FirstIndex(st.listModels[b], v) < 0) expected.push_back(v);
            CheckList(difference, expected);
            break;
        }
        case 12:
            if (a == b || count + static_cast<int>(st.listModels[b].size()) > kMaxCount) break;
            list.Append(st.lists[b]);
            model.insert(model.end(), st.listModels[b].begin(), st.listModels[b].end());
            break;
        case 13:
            list.Clear();
            model.clear();
            break;
        case 14:
            list = st.lists[b];
            model = st.listModels[b];
            break;
        default:
            TakeOrCheckWalk(st.listWalks, in, list, model);
    }
}

void StringStep(State& st, Input& in) {
    int const a = in.Below(kSlots), b = in.Below(kSlots);
    cow_1DArrayList<cow_String>& list = st.strings[a];
    std::vector<std::string>& model = st.stringModels[a];
    int const count = static_cast<int>(model.size());
    bool const full = count >= kMaxCount;
    std::string const text = fuzz::PickText(in);
    cow_String const value(text.c_str());
    int const op = in.Below(13);
    FUZZ_TRACE("strings %d (from %d): op %d, text \"%s\"\n", a, b, op, text.c_str());
    switch (op) {
        case 0:
            if (full) break;
            list.Append(value);
            model.push_back(text);
            break;
        case 1: {
            if (full) break;
            int const at = in.Below(count + 1);
            FUZZ_CHECK(list.Insert(at, value));
            model.insert(model.begin() + at, text);
            break;
        }
        case 2: {
            if (count == 0) break;
            int const at = in.Below(count + 3);
            FUZZ_CHECK(list.Remove(at));
            model.erase(model.begin() + std::min(at, count - 1));
            break;
        }
        case 3:
            if (count == 0) break;
            FUZZ_CHECK(model.back() == list.Pop().GetCString());
            model.pop_back();
            break;
        case 4: {
            int const first = FirstIndex(model, text);
            auto last = std::find(model.rbegin(), model.rend(), text);
            FUZZ_CHECK(list.FindFirst(value) == (first < 0 ? count : first));
            FUZZ_CHECK(list.FindLast(value) == (last == model.rend() ? count : static_cast<int>(model.rend() - last) - 1));
            FUZZ_CHECK(list.IsMember(value) == (first >= 0));
            list.RemoveMember(value);
            if (first >= 0) model.erase(model.begin() + first);
            break;
        }
        case 5:
            if (full) break;
            list.AppendUnlessMember(value);
            if (FirstIndex(model, text) < 0) model.push_back(text);
            break;
        case 6:
            if (count == 0) break;
            {
                int const i = in.Below(count);
                list.Get(i) = value;
                model[static_cast<std::size_t>(i)] = text;
            }
            break;
        case 7: {
            int const start = in.Below(count + 2), stop = in.Below(count + 4);
            std::vector<std::string> expected;
            for (int i = start; i < std::min(stop, count); ++i) expected.push_back(model[static_cast<std::size_t>(i)]);
            CheckStrings(list.Slice(start, stop), expected);
            // Into a value that shares storage with another slot.
            st.strings[b].Slice(start, stop, list);
            std::vector<std::string> const source = st.stringModels[b];
            model.clear();
            for (int i = start; i < std::min(stop, static_cast<int>(source.size())); ++i)
                model.push_back(source[static_cast<std::size_t>(i)]);
            break;
        }
        case 8: {
            int size = -1;
            cow_String* copy = list.GetCArray(size);
            FUZZ_CHECK(size == count);
            for (int i = 0; i < size; ++i) FUZZ_CHECK(model[static_cast<std::size_t>(i)] == copy[i].GetCString());
            delete[] copy;
            break;
        }
        case 9:
            if (a == b || count + static_cast<int>(st.stringModels[b].size()) > kMaxCount) break;
            list.Append(st.strings[b]);
            model.insert(model.end(), st.stringModels[b].begin(), st.stringModels[b].end());
            break;
        case 10:
            FUZZ_CHECK(list.IsEqual(st.strings[b]) == (model == st.stringModels[b]));
            list.ClearAll();
            model.clear();
            break;
        case 11:
            list = st.strings[b];
            model = st.stringModels[b];
            break;
        default:
            TakeOrCheckWalk(st.stringWalks, in, list, model);
    }
}

void NestedStep(State& st, Input& in) {
    int const a = in.Below(kSlots), b = in.Below(kSlots);
    cow_List<Inner>& list = st.nested[a];
    std::vector<std::vector<int>>& model = st.nestedModels[a];
    int const count = static_cast<int>(model.size());
    bool const full = count >= 100;
    int const value = in.Below(100);
    // The element to add: a fresh list, or one shared with another slot.
    std::vector<int> fresh(static_cast<std::size_t>(in.Below(20)), value);
    Inner element = MakeInner(fresh);
    if (!st.nestedModels[b].empty() && in.Below(2) == 0) {
        int const j = in.Below(static_cast<int>(st.nestedModels[b].size()));
        element = st.nested[b].ConstGet(j);
        fresh = st.nestedModels[b][static_cast<std::size_t>(j)];
    }
    int const op = in.Below(9);
    FUZZ_TRACE("nested %d (from %d): op %d\n", a, b, op);
    switch (op) {
        case 0:
            if (full) break;
            list.Append(element);
            model.push_back(fresh);
            break;
        case 1:
            if (full) break;
            list.Prepend(element);
            model.insert(model.begin(), fresh);
            break;
        case 2: {
            if (full) break;
            int const after = in.Below(count + 2) - 1;
            list.InsertAfter(after, element);
            model.insert(model.begin() + std::min(after + 1, count), fresh);
            break;
        }
        case 3:
            if (count == 0) break;
            if (in.Below(2) == 0) {
                list.RemoveFirst();
                model.erase(model.begin());
            } else {
                int const at = in.Below(count);
                list.RemoveIndex(at);
                model.erase(model.begin() + at);
            }
            break;
        case 4: {  // write inside one element: only this list sees it
            if (count == 0) break;
            int const i = in.Below(count);
            Inner& inner = list.Get(i);
            std::vector<int>& innerModel = model[static_cast<std::size_t>(i)];
            int const n = static_cast<int>(innerModel.size());
            if (n > 0 && in.Below(3) == 0) {
                int const at = in.Below(n);
                inner.Remove(at);
                innerModel.erase(innerModel.begin() + at);
            } else if (n > 0 && in.Below(2) == 0) {
                FUZZ_CHECK(inner.Pop() == innerModel.back());
                innerModel.pop_back();
            } else if (n < 200) {
                int const at = in.Below(n + 1);
                inner.Insert(at, value);
                innerModel.insert(innerModel.begin() + at, value);
            }
            break;
        }
        case 5:
            if (count == 0) break;
            list.RemoveLast();
            model.pop_back();
            break;
        case 6:
            if (a == b || count + static_cast<int>(st.nestedModels[b].size()) > 100) break;
            list.Append(st.nested[b]);
            model.insert(model.end(), st.nestedModels[b].begin(), st.nestedModels[b].end());
            break;
        case 7:
            list.Clear();
            model.clear();
            break;
        default:
            list = st.nested[b];
            model = st.nestedModels[b];
    }
}

// One input: the operations it decodes, each value checked after each one.
void RunInput(std::uint8_t const* data, std::size_t size) {
    Input in(data, size);
    State st;
    for (int step = 0; step < 2000 && !in.Done(); ++step) {
        switch (in.Below(4)) {
            case 0: ArrayStep(st, in); break;
            case 1: ListStep(st, in); break;
            case 2: StringStep(st, in); break;
            default: NestedStep(st, in); break;
        }
        st.CheckAll();
    }
    // Every snapshot still held must show its value as it was taken.
    for (ArraySnapshot& walk : st.arrayWalks) CheckArrayWalk(*walk.it, walk.model);
}

}  // namespace

ZORVANCOW_FUZZ_TARGET(RunInput)
