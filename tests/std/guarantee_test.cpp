// What an element that throws from its copy leaves behind. Each row runs an
// operation once for every n, with the n-th element copy (construction or
// assignment) throwing, until the operation completes. After each throw the
// value is checked as a whole: its count matches a walk, its keys are unique
// and in place, it copies, takes a write and goes; a copy made before the
// operation still holds what it held; at most one element is missing (the one
// written or removed), or none for the rows marked strong; and nothing leaks.

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <set>
#include <vector>

#include "ops/Support.h"
#include "support/NoLeaks.h"
#include "zorvancow/zorvancow.h"

namespace {
using fuzz::Brittle;
using Table = cow_COW<omi_IntTable<Brittle>>;

// What a value holds, as numbers (keyed values: their keys, sorted), after
// checking that it is whole: a walk sees as many entries as its count says,
// each key once and found by a lookup, a tree's in order.
template <class C>
std::vector<int> Contents(C const& c) {
    std::vector<int> out;
    int count = 0;
    if constexpr (std::is_same<C, Table>::value) {
        omi_IntTableIterator<Brittle> walk(*c.ConstGet());
        for (walk.First(); !walk.IsDone(); walk.Next()) out.push_back(walk.CurrentKey());
        count = c.ConstGet()->GetCount();
    } else if constexpr (fuzz::IsKeyed<C>::value) {
        for (auto const& [key, value] : c) out.push_back(key);
        count = c.GetCount();
        if (std::is_same<C, cow_Btree<int, Brittle>>::value) {
            EXPECT_TRUE(std::is_sorted(out.begin(), out.end())) << "tree keys out of order";
        }
    } else {
        for (Brittle const& b : c) out.push_back(b.n);
        if constexpr (std::is_same<C, cow_2DArray<Brittle>>::value) count = c.GetRows() * c.GetColumns();
        else count = fuzz::CountOf(c, 0);
    }
    EXPECT_EQ(static_cast<int>(out.size()), count);
    if constexpr (std::is_same<C, Table>::value || fuzz::IsKeyed<C>::value) {
        for (int key : out) {
            if constexpr (std::is_same<C, Table>::value) {
                EXPECT_TRUE(c.ConstGet()->IsMember(key)) << key;
            } else {
                EXPECT_TRUE(c.IsMember(key)) << key;
            }
        }
        std::sort(out.begin(), out.end());
        EXPECT_TRUE(std::adjacent_find(out.begin(), out.end()) == out.end()) << "a key held twice";
    }
    return out;
}

// A copy of the value takes a write and is destroyed.
template <class C>
void Write(C value) {
    if constexpr (std::is_same<C, Table>::value) {
        value.Get().Insert(1000, Brittle(1));
    } else if constexpr (std::is_same<C, cow_Btree<int, Brittle>>::value) {
        value.InsertUnlessMember(1000, Brittle(1));
        value.Remove(1000);
    } else if constexpr (std::is_same<C, cow_Map<int, Brittle>>::value) {
        value.Insert(1000, Brittle(1));
        value.Remove(1000);
    } else if constexpr (std::is_same<C, cow_2DArray<Brittle>>::value) {
        value.Get(0, 0) = Brittle(1);
    } else {
        value.Get(0) = Brittle(1);
    }
}

template <class C>
struct Row {
    char const* name;
    std::function<void(C&)> operation;
    bool strong;  // a throw leaves the value as it was
};

// Runs every row on a fresh value made by `make` and shared with a copy.
template <class C>
void ExpectGuarantee(std::function<C()> make, std::vector<Row<C>> const& rows) {
    for (Row<C> const& row : rows) {
        for (int n = 1;; ++n) {
            ASSERT_LT(n, 5000) << row.name;
            SCOPED_TRACE(testing::Message() << row.name << ", copy " << n);
            testing_support::NoLeaks noLeaks;
            long const live = Brittle::live;
            bool threw = false;
            {
                C value = make();
                C const sharer = value;
                std::vector<int> const before = Contents(sharer);
                Brittle::throwIn = n;
                try {
                    row.operation(value);
                } catch (fuzz::Thrown const&) {
                    threw = true;
                }
                Brittle::throwIn = 0;
                std::vector<int> const after = Contents(value);
                EXPECT_EQ(Contents(sharer), before) << row.name << ", copy " << n;
                if (threw) {
                    std::multiset<int> missing(before.begin(), before.end());
                    for (int v : after) {
                        auto at = missing.find(v);
                        if (at != missing.end()) missing.erase(at);
                    }
                    EXPECT_LE(missing.size(), row.strong ? 0u : 1u) << row.name << ", copy " << n;
                    if (row.strong) {
                        EXPECT_EQ(after, before) << row.name << ", copy " << n;
                    }
                    Write(value);
                }
            }
            EXPECT_EQ(Brittle::live, live) << row.name << ", copy " << n;
            if (::testing::Test::HasFailure() || !threw) break;
        }
    }
}

// One row for each key: `operation` on that key alone.
template <class C>
std::vector<Row<C>> EachKey(char const* name, std::vector<int> const& keys, void (*operation)(C&, int), bool strong) {
    std::vector<Row<C>> rows;
    for (int k : keys) rows.push_back({name, [operation, k](C& c) { operation(c, k); }, strong});
    return rows;
}

template <class C>
C Filled(int n) {
    C c;
    for (int i = 0; i < n; ++i) c.Append(Brittle(i));
    return c;
}

std::vector<int> Keys() {
    std::vector<int> keys;
    for (int i = 0; i < 40; ++i) keys.push_back((i * 37) % 101);
    return keys;
}

TEST(Guarantee, ArraysAndListsWhenAnElementCopyThrows) {
    ExpectGuarantee<cow_1DArray<Brittle>>(
        [] {
            cow_1DArray<Brittle> a;
            for (int i = 0; i < 40; ++i) a.Get(i) = Brittle(i);
            return a;
        },
        {{"array Get unshares one block", [](auto& a) { a.Get(20) = Brittle(99); }, true},
         {"array hand-over", [](auto& a) { (void)cow_HandOver(a); }, true}});
    ExpectGuarantee<cow_List<Brittle>>(
        [] { return Filled<cow_List<Brittle>>(40); },
        {{"list Append", [](auto& l) { l.Append(Brittle(99)); }, true},
         {"list Prepend", [](auto& l) { l.Prepend(Brittle(99)); }, true},
         {"list Append of a list", [](auto& l) { l.Append(Filled<cow_List<Brittle>>(20)); }, false},
         {"list InsertAfter", [](auto& l) { l.InsertAfter(5, Brittle(99)); }, false},
         {"list RemoveIndex", [](auto& l) { l.RemoveIndex(5); }, false},
         {"list RemoveFirst", [](auto& l) { l.RemoveFirst(); }, false},
         {"list RemoveLast", [](auto& l) { l.RemoveLast(); }, true},
         {"list Sort", [](auto& l) { l.Sort(); }, true},
         {"list difference", [](auto& l) { (void)(l - Filled<cow_List<Brittle>>(20)); }, true},
         {"list hand-over", [](auto& l) { (void)cow_HandOver(l); }, true}});
    ExpectGuarantee<cow_1DArrayList<Brittle>>(
        [] { return Filled<cow_1DArrayList<Brittle>>(40); },
        {{"array list Append", [](auto& l) { l.Append(Brittle(99)); }, true},
         {"array list Insert", [](auto& l) { l.Insert(5, Brittle(99)); }, false},
         {"array list Remove", [](auto& l) { l.Remove(5); }, false},
         {"array list Pop", [](auto& l) { (void)l.Pop(); }, false},
         {"array list Slice", [](auto& l) { (void)l.Slice(3, 30); }, true},
         {"array list GetCArray", [](auto& l) {
              int size = 0;
              delete[] l.GetCArray(size);
          }, true}});
}

TEST(Guarantee, ShapesTreesMapsAndTablesWhenAnElementCopyThrows) {
    ExpectGuarantee<cow_FixedArray<Brittle>>([] { return cow_FixedArray<Brittle>(8, Brittle(3)); },
                                             {{"fixed array write", [](auto& f) { f.Get(7) = Brittle(9); }, true},
                                              {"fixed array hand-over", [](auto& f) { (void)cow_HandOver(f); }, true}});
    ExpectGuarantee<cow_2DArray<Brittle>>([] { return cow_2DArray<Brittle>(3, 4, Brittle(4)); },
                                          {{"matrix write", [](auto& m) { m.Get(2, 3) = Brittle(9); }, true},
                                           {"matrix hand-over", [](auto& m) { (void)cow_HandOver(m); }, true}});
    std::vector<int> const keys = Keys();
    std::vector<int> const added{200, 201, 202, 203, 204, 205, 206, 207};
    using Tree = cow_Btree<int, Brittle>;
    auto const tree = [&keys] {
        Tree t;
        for (int k : keys) t.InsertUnlessMember(k, Brittle(k));
        return t;
    };
    ExpectGuarantee<Tree>(tree, {{"tree Get", [](Tree& t) { *t.Get(37) = Brittle(1); }, true},
                                 {"tree hand-over", [](Tree& t) { (void)cow_HandOver(t); }, true}});
    ExpectGuarantee<Tree>(tree, EachKey<Tree>("tree Remove", keys, [](Tree& t, int k) { t.Remove(k); }, false));
    ExpectGuarantee<Tree>(tree, EachKey<Tree>("tree insert", added, [](Tree& t, int k) {
        t.InsertUnlessMember(k, Brittle(k));
    }, false));
    using Map = cow_Map<int, Brittle>;
    auto const map = [&keys] {
        Map m;
        for (int k : keys) m.Insert(k, Brittle(k));
        return m;
    };
    ExpectGuarantee<Map>(map, {{"map Get", [](Map& m) { m.Get(37) = Brittle(1); }, true},
                               {"map hand-over", [](Map& m) { (void)cow_HandOver(m); }, true}});
    ExpectGuarantee<Map>(map, EachKey<Map>("map Remove", keys, [](Map& m, int k) { m.Remove(k); }, true));
    ExpectGuarantee<Map>(map, EachKey<Map>("map Insert", added, [](Map& m, int k) { m.Insert(k, Brittle(k)); }, true));
    ExpectGuarantee<Table>(
        [&keys] {
            Table t(new omi_IntTable<Brittle>(20, 4, 2));
            for (int k : keys) t.Get().Insert(k - 50, Brittle(k));
            return t;
        },
        EachKey<Table>("table Insert", {-300, -1, 0, 5, 4096, 70000}, [](Table& t, int k) {
            t.Get().Insert(k, Brittle(k));
        }, true));
}

}  // namespace
