#ifndef ZORVANCOW_FUZZ_OPS_LISTS_H
#define ZORVANCOW_FUZZ_OPS_LISTS_H

// The operation interpreter of blocked arrays and lists: cow_1DArray,
// cow_List, cow_1DArrayList and lists of array lists, four of each sharing
// storage through copies, snapshot iterators and nested elements. After
// every operation each value and each held snapshot is compared with a
// standard-library model of what it should hold, and the diff of two values
// with the difference of their models.

#include <algorithm>
#include <deque>
#include <iterator>
#include <type_traits>
#include <utility>
#include <vector>

#include "ops/Support.h"
#include "zorvancow/arrays/cow_1DArray.h"
#include "zorvancow/lists/cow_1DArrayList.h"
#include "zorvancow/lists/cow_List.h"

namespace fuzz::lists {

constexpr int kSlots = 4;
constexpr int kMaxCount = 1200;  // several blocks, table growths and a balanced re-blocking, yet cheap to check

// The block lengths values are made with: the growth rules, a chosen one and
// a balanced one. Slot s starts with Length(s); copies pass lengths around.
inline cow_BlockLength Length(int pick) {
    return pick % 3 == 0 ? cow_BlockLength() : pick % 3 == 1 ? cow_BlockLength(32) : cow_BlockLength::Balanced();
}

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
    std::vector<int> Elements() const {
        std::vector<int> elements;
        for (int i = 0; i < size; ++i) elements.push_back(At(i));
        return elements;
    }
    bool operator==(ArrayModel const& other) const { return Elements() == other.Elements(); }
};

template <class Model, class Value>
int FirstIndex(Model const& model, Value const& value) {
    auto found = std::find(model.begin(), model.end(), value);
    return found == model.end() ? -1 : static_cast<int>(found - model.begin());
}

// A list against its model; every slot of its array from the count on holds
// the zero element (an empty list, in a list of lists).
template <class List, class Model>
void CheckList(List const& list, Model const& model) {
    FUZZ_CHECK(Same(list, model));
    for (int i = list.GetCount(); i < list.GetArray().GetSize(); ++i)
        FUZZ_CHECK(Same(list.ConstGet(i), typename Model::value_type()));
}

template <class T>
void CheckArray(cow_1DArray<T> const& array, ArrayModel const& model) {
    FUZZ_CHECK(array.GetSize() == model.size);
    for (int i = 0; i < model.size; ++i) FUZZ_CHECK(Number(array.PartialArrayConstGet(i)) == model.At(i));
}

// Walks a snapshot of an array: blocks that were never made (holes) read as
// zeros, and a walk whose first block is a hole counts as empty.
template <class T>
void CheckWalk(cow_1DArrayIter<T>& it, ArrayModel const& model) {
    cow_1DArray<T> const& array = it.GetArray();
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
            FUZZ_CHECK(Number(it.ConstGet()) == model.At(it.GetPosition() - head));
            it.Next();
        }
    }
}

// A list's const iterators against its model: walked backwards, stepped by
// any distance both ways and compared, and read through [] (a head inside a
// block and elements over many blocks come from the stream); and its blocks,
// put end to end, are its elements.
template <class List, class Model>
void CheckIterators(List const& list, Model const& model, Input& in) {
    auto const first = list.begin(), last = list.end();
    int const n = static_cast<int>(model.size()), i = in.Below(n + 1), j = in.Below(n + 1);
    auto const same = [](auto const& value, int number) { return Number(value) == number; };
    FUZZ_CHECK(last - first == n && std::equal(std::make_reverse_iterator(last), std::make_reverse_iterator(first),
                                               model.rbegin(), model.rend(), same));
    auto at = first + i;
    FUZZ_CHECK((first + j) - at == j - i && (at < first + j) == (i < j) && (at += j - i) == first + j);
    FUZZ_CHECK(i == n || (same(first[i], model[static_cast<std::size_t>(i)]) && same(list[static_cast<std::size_t>(i)], model[static_cast<std::size_t>(i)])));
    std::vector<int> joined;
    for (auto run : cow_Blocks(list))
        for (auto const& value : run) joined.push_back(Number(value));
    FUZZ_CHECK(std::equal(joined.begin(), joined.end(), model.begin(), model.end()));
}

// A list walk shows exactly the model, in order.
template <class Iterator, class Model>
void CheckWalk(Iterator& it, Model const& model) {
    InOrder(it, model, [](Iterator& at, int v) { return Number(at.Current()) == v; });
}

template <class T>
struct Lists {
    static constexpr int kSteps = 2000;
    using Inner = cow_1DArrayList<T>;
    using Nested = std::vector<std::vector<int>>;

    cow_1DArray<T> arrays[kSlots] = {cow_1DArray<T>(), cow_1DArray<T>(Length(1)), cow_1DArray<T>(Length(2))};
    ArrayModel arrayModels[kSlots];
    cow_List<T> lists[kSlots] = {cow_List<T>(), cow_List<T>(Length(1)), cow_List<T>(Length(2))};
    std::deque<int> listModels[kSlots];
    Inner flats[kSlots] = {Inner(), Inner(Length(1)), Inner(Length(2))};
    std::vector<int> flatModels[kSlots];
    cow_List<Inner> nested[kSlots];
    Nested nestedModels[kSlots];
    Snapshots<cow_1DArrayIter<T>, ArrayModel> arrayWalks;
    Snapshots<cow_ListIter<T>, std::deque<int>> listWalks;
    Snapshots<cow_1DArrayListIter<T>, std::vector<int>> flatWalks;

    void Step(Input& in) {
        int const a = in.Below(kSlots), b = in.Below(kSlots), kind = in.Below(4);
        FUZZ_TRACE("step %d: kind %d, value %d (from %d)\n", CurrentStep(), kind, a, b);
        switch (kind) {
            case 0: ArrayStep(in, a, b); break;
            case 1: SequenceStep(lists, listModels, listWalks, in, a, b); break;
            case 2: SequenceStep(flats, flatModels, flatWalks, in, a, b); break;
            default: NestedStep(in, a, b); break;
        }
    }

    template <class F>
    void EachValue(F&& f) {
        for (int s = 0; s < kSlots; ++s) {
            f(ReadArray(arrays[s]), arrayModels[s]);
            f(ReadBack<std::deque<int>>(lists[s]), listModels[s]);
            f(ReadBack<std::vector<int>>(flats[s]), flatModels[s]);
            f(ReadBack<Nested>(nested[s]), nestedModels[s]);
        }
    }
    // An array's elements, and what its blocks hold past its end.
    static ArrayModel ReadArray(cow_1DArray<T> const& array) {
        ArrayModel model;
        model.size = array.GetSize();
        int const head = array.GetHeadPosition(), shift = array.GetShift();
        for (int p = head, stop = std::min(array.GetCapacity() << shift, head + 2 * kMaxCount + 200); p < stop; ++p) {
            T const* block = array.GetBlock(p >> shift) != nullptr ? array.GetBlock(p >> shift)->GetData() : nullptr;
            model.Set(p - head, block != nullptr ? Number(block[p & ((1 << shift) - 1)]) : 0);
        }
        return model;
    }

    void CheckAll() {
        for (int s = 0; s < kSlots; ++s) {
            CheckArray(arrays[s], arrayModels[s]);
            CheckList(lists[s], listModels[s]);
            CheckList(flats[s], flatModels[s]);
            CheckList(nested[s], nestedModels[s]);
        }
        auto const [s, t] = DiffPair(kSlots);
        CheckDiff(arrays[s], arrays[t], arrayModels[s].Elements(), arrayModels[t].Elements());
        CheckDiff(lists[s], lists[t], listModels[s], listModels[t]);
        CheckDiff(flats[s], flats[t], flatModels[s], flatModels[t]);
        CheckDiff(nested[s], nested[t], nestedModels[s], nestedModels[t]);
        for (auto& [it, model] : arrayWalks.held) CheckWalk(*it, model);
        for (auto& [it, model] : listWalks.held) CheckWalk(*it, model);
        for (auto& [it, model] : flatWalks.held) CheckWalk(*it, model);
    }

    void ArrayStep(Input& in, int a, int b) {
        cow_1DArray<T>& array = arrays[a];
        ArrayModel& model = arrayModels[a];
        int const value = in.Below(1000) + 1;
        switch (in.Below(9)) {
            case 0: {  // write at or past the end; the skipped slots read as before
                if (model.size >= kMaxCount) break;
                int const i = in.Below(model.size + 40);
                array.Get(i) = Make<T>(value);
                model.Set(i, value);
                model.size = std::max(model.size, i + 1);
                break;
            }
            case 1: {  // grow at the front: the size may round up to a block end
                if (model.size >= kMaxCount) break;
                int const before = model.size;
                array.GetHead() = Make<T>(value);
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
                array = cow_1DArray<T>(in.Below(kMaxCount), Length(value));
                model = ArrayModel();
                model.size = array.GetSize();
                break;
            case 4:  // a hand-over copies the elements alone: nothing lies past the end
                if (Share(arrays, arrayModels, a, b)) model.cells.resize(static_cast<std::size_t>(model.size));
                break;
            case 5: arrayWalks.Take(in, model, array); break;
            case 6:  // drop the first position, as a list's RemoveFirst does
                if (model.size == 0) break;
                array.Get(0) = Make<T>(0);
                array.RemoveHead();
                if (!model.cells.empty()) model.cells.erase(model.cells.begin());
                --model.size;
                break;
            case 7: {  // load a run; a shorter array grows to the first index of its last block run
                int const run = 1 << array.GetShift(), n = in.Below(70);
                if (array.GetHeadPosition() % run != 0 || model.size >= kMaxCount) break;
                std::vector<T> source;
                for (int i = 0; i < n; ++i) source.push_back(Make<T>(value + i)), model.Set(i, value + i);
                array.SetFromArray(source.data(), n);
                if (n > 0) model.size = std::max(model.size, (n - 1) / run * run + 1);
                break;
            }
            default:
                if constexpr (std::is_same<T, int>::value) FUZZ_CHECK(array.IsEqual(arrays[b]) == (model == arrayModels[b]));
        }
    }

    // The operations both kinds of list have (cow_List names some of them
    // differently); the rest go to Special.
    template <class List, class Model, class Walks>
    void SequenceStep(List (&values)[kSlots], Model (&models)[kSlots], Walks& walks, Input& in, int a, int b) {
        List& list = values[a];
        Model& model = models[a];
        int const count = static_cast<int>(model.size()), value = in.Below(40) + 1, op = in.Below(16);
        FUZZ_TRACE("  op %d on %d elements\n", op, count);
        bool const full = count >= kMaxCount || count + static_cast<int>(models[b].size()) > kMaxCount;
        T const element = Make<T>(value);
        if (op == 0 && !full) {
            if (value % 4 == 0) list.Append(element);
            else if (value % 4 == 1) list.push_back(element);
            else if (value % 4 == 2) list.emplace_back(element);
            else *std::back_inserter(list) = element;
            model.push_back(value);
        } else if (op == 1 && !full) {  // at the count or one past it appends
            int const at = in.Below(count + 2);
            if constexpr (std::is_same<List, cow_List<T>>::value)
                list.InsertAfter(at - 1, element);
            else
                FUZZ_CHECK(list.Insert(std::min(at, count), element));
            model.insert(model.begin() + std::min(at, count), value);
        } else if (op == 2 && count > 0) {  // at or past the count removes the last
            int const at = in.Below(count + 3);
            if constexpr (std::is_same<List, cow_List<T>>::value)
                list.RemoveIndex(at);
            else
                FUZZ_CHECK(list.Remove(at));
            model.erase(model.begin() + std::min(at, count - 1));
        } else if (op == 3 && count > 0) {
            int const i = in.Below(count);
            // Every write path: Get, operator[], an iterator (each unshares
            // the table and the one block written; a second iterator there
            // reads the new value).
            if (value % 3 == 0) {
                list.Get(i) = element;
            } else if (value % 3 == 1) {
                list[static_cast<std::size_t>(i)] = element;
            } else {
                auto it = list.begin() + i, other = list.begin() + i;
                *it = element;
                FUZZ_CHECK(*other == element);
            }
            model[static_cast<std::size_t>(i)] = value;
        } else if (op == 4 && !full) {
            list.AppendUnlessMember(element);
            if (FirstIndex(model, value) < 0) model.push_back(value);
        } else if (op == 5 && !full && a != b) {
            list.Append(values[b]);
            model.insert(model.end(), models[b].begin(), models[b].end());
        } else if (op == 6) {
            FUZZ_CHECK(list.IsEqual(values[b]) == (model == models[b]));
            CheckIterators(std::as_const(list), model, in);
        } else if (op == 7) {
            Share(values, models, a, b);
        } else if (op == 8) {
            walks.Take(in, model, list);
        } else if (op > 8) {
            Special(list, model, in, op, value, b);
        }
    }

    void Special(cow_List<T>& list, std::deque<int>& model, Input&, int op, int value, int b) {
        T const element = Make<T>(value);
        bool const empty = model.empty();
        if (op == 9 && model.size() < kMaxCount) {
            list.Prepend(element);
            model.push_front(value);
        } else if (op == 10 && !empty) {
            list.RemoveFirst();
            model.pop_front();
        } else if (op == 11 && !empty) {
            if (value % 2 == 0) list.RemoveLast(); else list.pop_back();
            model.pop_back();
        } else if (op == 12) {
            int const at = FirstIndex(model, value);
            FUZZ_CHECK(list.Position(element) == at && list.IsMember(element) == (at >= 0));
            list.Remove(element);
            if (at >= 0) model.erase(model.begin() + at);
        } else if (op == 13) {  // Sort, or std::sort through the writing iterators
            if (value % 2 == 0) list.Sort(); else std::sort(list.begin(), list.end());
            std::sort(model.begin(), model.end());
        } else if (op == 14) {
            std::deque<int> expected;
            for (int v : model)
                if (FirstIndex(listModels[b], v) < 0) expected.push_back(v);
            CheckList(list - lists[b], expected);
        } else if (op == 15) {
            list.Clear();
            model.clear();
        }
    }

    void Special(Inner& list, std::vector<int>& model, Input& in, int op, int value, int b) {
        int const count = static_cast<int>(model.size());
        if (op == 9 && count > 0) {
            FUZZ_CHECK(Number(list.Pop()) == model.back());
            model.pop_back();
        } else if (op == 10) {
            T const element = Make<T>(value);
            int const first = FirstIndex(model, value);
            auto last = std::find(model.rbegin(), model.rend(), value);
            FUZZ_CHECK(list.FindFirst(element) == (first < 0 ? count : first));
            FUZZ_CHECK(list.FindLast(element) == (last == model.rend() ? count : static_cast<int>(model.rend() - last) - 1));
            FUZZ_CHECK(list.IsMember(element) == (first >= 0));
            list.RemoveMember(element);
            if (first >= 0) model.erase(model.begin() + first);
        } else if (op == 11) {
            int const start = in.Below(count + 2), stop = in.Below(count + 4);
            auto slice = [&](std::vector<int> const& from) {
                std::vector<int> part;
                for (int i = start; i < std::min(stop, static_cast<int>(from.size())); ++i) part.push_back(from[static_cast<std::size_t>(i)]);
                return part;
            };
            CheckList(list.Slice(start, stop), slice(model));
            // Into a value that shares storage with another slot.
            flats[b].Slice(start, stop, list);
            model = slice(flatModels[b]);
        } else if (op == 12) {
            int size = -1;
            T* copy = list.GetCArray(size);
            FUZZ_CHECK(size == count);
            for (int i = 0; i < size; ++i) FUZZ_CHECK(Number(copy[i]) == model[static_cast<std::size_t>(i)]);
            delete[] copy;
        } else if (op == 13) {
            list.ClearAll();
            model.clear();
        }
    }

    void NestedStep(Input& in, int a, int b) {
        cow_List<Inner>& list = nested[a];
        Nested& model = nestedModels[a];
        int const count = static_cast<int>(model.size()), value = in.Below(100);
        bool const full = count >= 100;
        // The element to add: a fresh list, or one shared with another slot.
        std::vector<int> fresh(static_cast<std::size_t>(in.Below(20)), value);
        Inner element = MakeList<Inner>(fresh);
        MaybeTake(in, element, fresh, nested[b], nestedModels[b]);
        int const op = in.Below(9);
        if (op == 0 && !full) {
            list.Append(element);
            model.push_back(fresh);
        } else if (op == 1 && !full) {
            list.Prepend(element);
            model.insert(model.begin(), fresh);
        } else if (op == 2 && !full) {
            int const after = in.Below(count + 2) - 1;
            list.InsertAfter(after, element);
            model.insert(model.begin() + std::min(after + 1, count), fresh);
        } else if (op == 3 && count > 0) {
            int const at = in.Below(2) == 0 ? 0 : in.Below(count);
            if (at == 0) list.RemoveFirst(); else list.RemoveIndex(at);
            model.erase(model.begin() + at);
        } else if (op == 4 && count > 0) {  // write inside one element: only this list sees it
            int const i = in.Below(count);
            EditList(list.Get(i), model[static_cast<std::size_t>(i)], in, value);
        } else if (op == 5 && count > 0) {
            list.RemoveLast();
            model.pop_back();
        } else if (op == 6 && a != b && count + static_cast<int>(nestedModels[b].size()) <= 100) {
            list.Append(nested[b]);
            model.insert(model.end(), nestedModels[b].begin(), nestedModels[b].end());
        } else if (op == 7) {
            list.Clear();
            model.clear();
        } else if (op == 8) {
            Share(nested, nestedModels, a, b);
        }
    }
};

inline void Run(std::uint8_t const* data, std::size_t size) { fuzz::Run<Lists>(data, size); }

}  // namespace fuzz::lists

#endif
