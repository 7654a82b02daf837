// cow_Diff against a brute-force comparison of models: random histories of
// copies, each a changed copy of an earlier one, then many pairs of them.

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "zorvancow/handover/cow_HandOver.h"
#include "zorvancow/history/cow_Diff.h"

namespace {
using Random = std::mt19937;
int Pick(Random& random, int n) { return n > 0 ? static_cast<int>(random() % static_cast<unsigned>(n)) : 0; }

// Builds 300 versions, each a copy of a random earlier one changed by
// step(value, model, random), then checks 600 random pairs with check.
template <class Value, class Model, class Step, class Check>
void History(Value first, Model firstModel, Step step, Check check) {
    Random random(26);
    std::vector<Value> versions{first};
    std::vector<Model> models{firstModel};
    for (int s = 0; s < 300; ++s) {
        int const from = Pick(random, static_cast<int>(versions.size()));
        Value value = versions[from];
        Model model = models[from];
        for (int k = Pick(random, 3); k >= 0; --k) step(value, model, random);
        versions.push_back(value);
        models.push_back(model);
    }
    for (int p = 0; p < 600; ++p) {
        int const i = Pick(random, static_cast<int>(versions.size()));
        int const j = p % 10 == 0 ? i : Pick(random, static_cast<int>(versions.size()));
        SCOPED_TRACE(testing::Message() << "versions " << i << " and " << j);
        check(versions[i], versions[j], models[i], models[j]);
    }
}

// Sequences: the indices reported against those where the models differ.
template <class Seq, class T>
void CheckIndices(Seq const& a, Seq const& b, std::vector<T> const& x, std::vector<T> const& y) {
    std::vector<int> reported, expected;
    cow_Diff(a, b, [&reported](int i) { reported.push_back(i); });
    for (std::size_t i = 0; i < std::max(x.size(), y.size()); ++i) {
        if (i >= x.size() || i >= y.size() || !(x[i] == y[i])) expected.push_back(static_cast<int>(i));
    }
    EXPECT_EQ(reported, expected);
}

TEST(Diff, SequencesAgreeWithTheirModels) {
    using Model = std::vector<int>;
    // Strings in an array with holes (growth skips slots), a moving head and
    // shrinking, read back as they are.
    History(cow_1DArray<cow_String>(40), 0,
            [](cow_1DArray<cow_String>& array, int, Random& random) {
                int const n = array.GetSize();
                std::string const text(static_cast<std::size_t>(Pick(random, 3)), 'x');
                switch (Pick(random, 4)) {
                    case 0: array.Get(n + Pick(random, 40)) = cow_String(text.c_str()); break;
                    case 1: array.GetHead() = cow_String(text.c_str()); break;
                    case 2: array.Grow(Pick(random, n + 1)); break;
                    default: if (n > 0) array.Get(Pick(random, n)) = cow_String(text.c_str());
                }
            },
            [](auto const& a, auto const& b, int, int) {
                auto read = [](cow_1DArray<cow_String> const& array) {
                    std::vector<std::string> texts;
                    cow_detail::HandOverEach(array, array.GetSize(), [&texts](int, cow_String const* text) {
                        texts.push_back(text != nullptr ? text->GetCString() : "");
                    });
                    return texts;
                };
                CheckIndices(a, b, read(a), read(b));
            });
    // Matrices: writes, and now and then a new value of another shape.
    History(cow_2DArray<int>(4, 5, 0), Model(20),
            [](cow_2DArray<int>& matrix, Model& model, Random& random) {
                if (Pick(random, 10) == 0) {
                    int const rows = Pick(random, 6), columns = Pick(random, 6);
                    matrix = cow_2DArray<int>(rows, columns, 0);
                    model.assign(static_cast<std::size_t>(rows * columns), 0);
                } else if (matrix.GetRows() * matrix.GetColumns() > 0) {
                    int const r = Pick(random, matrix.GetRows()), c = Pick(random, matrix.GetColumns());
                    int const v = Pick(random, 4);
                    matrix.Get(r, c) = v, model[static_cast<std::size_t>(r * matrix.GetColumns() + c)] = v;
                }
            },
            [](auto const& a, auto const& b, auto const& x, auto const& y) { CheckIndices(a, b, x, y); });
}

// Trees and maps: the three reports against those computed from the models.
using Report = std::vector<std::tuple<char, int, std::string, std::string>>;
using KeyedModel = std::map<int, std::string>;

Report Expected(KeyedModel const& x, KeyedModel const& y) {
    Report report;
    for (auto const& [key, value] : x) {
        auto const found = y.find(key);
        if (found == y.end()) report.emplace_back('-', key, value, "");
        else if (found->second != value) report.emplace_back('~', key, value, found->second);
    }
    for (auto const& [key, value] : y) {
        if (x.count(key) == 0) report.emplace_back('+', key, "", value);
    }
    std::sort(report.begin(), report.end(), [](auto const& l, auto const& r) { return std::get<1>(l) < std::get<1>(r); });
    return report;
}

template <class Keyed>
Report Reported(Keyed const& a, Keyed const& b) {
    Report report;
    auto text = [](cow_String const& s) { return std::string(s.GetCString()); };
    cow_Diff(
        a, b, [&](int key, cow_String const& value) { report.emplace_back('+', key, "", text(value)); },
        [&](int key, cow_String const& value) { report.emplace_back('-', key, text(value), ""); },
        [&](int key, cow_String const& old, cow_String const& now) { report.emplace_back('~', key, text(old), text(now)); });
    return report;
}

// Keys 0 to 299 of few digits, so maps pull keys up on removal and trees
// rotate; values of 0 to 2 letters.
template <class Keyed>
void KeyedStep(Keyed& keyed, KeyedModel& model, Random& random) {
    int const key = Pick(random, 300);
    std::string const text(static_cast<std::size_t>(Pick(random, 3)), 'v');
    switch (Pick(random, 3)) {
        case 0: keyed.Remove(key), model.erase(key); break;
        default: keyed.insert_or_assign(key, cow_String(text.c_str())), model[key] = text; break;
    }
}

TEST(Diff, TreesAndMapsAgreeWithTheirModels) {
    Random random(5);
    cow_Btree<int, cow_String> tree;
    cow_Map<int, cow_String> map;
    KeyedModel model;
    for (int k = 0; k < 200; ++k) {
        int const key = Pick(random, 300);
        tree.insert_or_assign(key, cow_String("a")), map.insert_or_assign(key, cow_String("a")), model[key] = "a";
    }
    History(tree, model, KeyedStep<cow_Btree<int, cow_String>>,
            [](auto const& a, auto const& b, auto const& x, auto const& y) { EXPECT_EQ(Reported(a, b), Expected(x, y)); });
    History(map, model, KeyedStep<cow_Map<int, cow_String>>, [](auto const& a, auto const& b, auto const& x, auto const& y) {
        Report reported = Reported(a, b);  // the map reports in its walk's order
        std::sort(reported.begin(), reported.end(), [](auto const& l, auto const& r) { return std::get<1>(l) < std::get<1>(r); });
        EXPECT_EQ(reported, Expected(x, y));
    });
}

// The lists and fixed arrays report their own indices: a list up to its
// count (slots past it are not elements), and nested containers by content
// where they do not share.
TEST(Diff, ListsAndFixedArraysReportTheirIndices) {
    auto indices = [](auto const& a, auto const& b) {
        std::vector<int> reported;
        cow_Diff(a, b, [&reported](int i) { reported.push_back(i); });
        return reported;
    };
    cow_List<cow_List<int>> lists{cow_List<int>{1, 2}, cow_List<int>{3}, cow_List<int>{}};
    cow_List<cow_List<int>> other = lists;
    other.Get(0) = cow_List<int>{1, 2};  // equal content in new storage
    other.Get(1).Append(4);
    lists.RemoveLast();
    EXPECT_EQ(indices(lists, other), (std::vector<int>{1, 2}));
    cow_1DArrayList<int> popped{1, 2, 3, 9};
    popped.Pop();
    EXPECT_EQ(indices(popped, cow_1DArrayList<int>{1, 5, 3}), std::vector<int>{1});
    EXPECT_EQ(indices(cow_FixedArray<int>{1, 2, 3}, cow_FixedArray<int>{1, 5}), (std::vector<int>{1, 2}));
}
}  // namespace
