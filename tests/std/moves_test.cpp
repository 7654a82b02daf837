// Moves and swap of every container, and the standard write spellings of
// trees and maps. A move steals: nothing is allocated and no count moves, and
// the source is left an empty value that still reads, copies, takes writes
// and assignments, and is destroyed without a leak.

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "support/NoLeaks.h"
#include "zorvancow/zorvancow.h"

namespace {

using testing_support::AllocationScope;
using testing_support::NoLeaks;

cow_String S(char const* text) { return cow_String(text); }

// Per container: a value with content, its contents as numbers, its size, a
// share count that a move must leave alone (1 where copies are deep), a write
// that adds one element, and a copy (the tables copy deeply, by Copy()).
template <class C>
struct Kit;
template <class C>
struct CopyKit {
    static C Clone(C const& c) { return c; }
};
template <class Seq>
struct SequenceKit : CopyKit<Seq> {
    static Seq Make() { return Seq{1, 2, 3}; }
    static std::vector<long> Contents(Seq const& c) { return std::vector<long>(c.begin(), c.end()); }
    static int Shares(Seq const& c) { return c.GetArray().GetTableShareCount(); }
    static void Write(Seq& c) { c.Append(7); }
    static std::size_t Size(Seq const& c) { return c.size(); }
};
template <>
struct Kit<cow_List<int>> : SequenceKit<cow_List<int>> {};
template <>
struct Kit<cow_1DArrayList<int>> : SequenceKit<cow_1DArrayList<int>> {};
template <>
struct Kit<cow_1DArray<int>> : CopyKit<cow_1DArray<int>> {
    static cow_1DArray<int> Make() { return cow_1DArray<int>{1, 2, 3}; }
    static std::vector<long> Contents(cow_1DArray<int> const& c) { return std::vector<long>(c.begin(), c.end()); }
    static int Shares(cow_1DArray<int> const& c) { return c.GetTableShareCount(); }
    static void Write(cow_1DArray<int>& c) { c.Get(c.GetSize()) = 7; }
    static std::size_t Size(cow_1DArray<int> const& c) { return c.size(); }
};
template <>
struct Kit<cow_FixedArray<int>> : CopyKit<cow_FixedArray<int>> {
    static cow_FixedArray<int> Make() { return cow_FixedArray<int>{1, 2, 3}; }
    static std::vector<long> Contents(cow_FixedArray<int> const& c) { return std::vector<long>(c.begin(), c.end()); }
    static int Shares(cow_FixedArray<int> const& c) { return c.GetShareCount(); }
    static std::size_t Size(cow_FixedArray<int> const& c) { return c.size(); }
    static void Write(cow_FixedArray<int>& c) { c = cow_FixedArray<int>(1, 7); }
};
template <>
struct Kit<cow_2DArray<int>> : CopyKit<cow_2DArray<int>> {
    static cow_2DArray<int> Make() { return cow_2DArray<int>(1, 3, 2); }
    static std::vector<long> Contents(cow_2DArray<int> const& c) { return std::vector<long>(c.begin(), c.end()); }
    static int Shares(cow_2DArray<int> const& c) { return c.GetShareCount(); }
    static std::size_t Size(cow_2DArray<int> const& c) { return c.size(); }
    static void Write(cow_2DArray<int>& c) { c = cow_2DArray<int>(1, 1, 7); }
};
template <>
struct Kit<cow_String> : CopyKit<cow_String> {
    static cow_String Make() { return S("abc"); }
    static std::vector<long> Contents(cow_String const& c) { return std::vector<long>(c.c_str(), c.c_str() + c.size()); }
    static int Shares(cow_String const& c) { return c.GetShareCount(); }
    static std::size_t Size(cow_String const& c) { return c.size(); }
    static void Write(cow_String& c) { c = S("g"); }
};
template <class Assoc>
struct AssocKit : CopyKit<Assoc> {
    static Assoc Make() { return Assoc{{1, 10}, {2, 20}, {3, 30}}; }
    static std::vector<long> Contents(Assoc const& c) {
        std::vector<long> out;
        for (int k = -4; k < 9; ++k) out.push_back(c.contains(k) ? c.at(k) : -1);
        return out;
    }
    static void Write(Assoc& c) { c.insert_or_assign(7, 70); }
    static std::size_t Size(Assoc const& c) { return c.size(); }
};
template <>
struct Kit<cow_Map<int, int>> : AssocKit<cow_Map<int, int>> {
    static int Shares(cow_Map<int, int> const& c) { return c.GetRoot().GetShareCount(); }
};
template <>
struct Kit<cow_Btree<int, int>> : AssocKit<cow_Btree<int, int>> {
    static int Shares(cow_Btree<int, int> const& c) { return c.GetRoot() ? c.GetRoot()->GetShareCount() : 0; }
};
template <class Table>
struct TableKit {
    static Table Make() {
        Table t;
        for (int k = 1; k <= 3; ++k) t.Insert(k, 10 * k);
        return t;
    }
    static std::vector<long> Contents(Table const& c) {
        std::vector<long> out{c.GetCount()};
        for (int k = 0; k < 9; ++k) out.push_back(c.ConstGet(k) != nullptr ? *c.ConstGet(k) : -1);
        return out;
    }
    static int Shares(Table const&) { return 1; }
    static void Write(Table& c) { c.Insert(7, 70); }
    static std::size_t Size(Table const& c) { return static_cast<std::size_t>(c.GetCount()); }
};
template <>
struct Kit<omi_UintTable<long>> : TableKit<omi_UintTable<long>> {
    static omi_UintTable<long> Clone(omi_UintTable<long> const& c) { return c; }
};
template <>
struct Kit<omi_IntTable<long>> : TableKit<omi_IntTable<long>> {
    static omi_IntTable<long> Clone(omi_IntTable<long> const& c) {
        std::unique_ptr<omi_IntTable<long>> copy(c.Copy());
        return std::move(*copy);
    }
};

template <class C>
class Moves : public testing::Test {};
using Containers = testing::Types<cow_1DArray<int>, cow_1DArrayList<int>, cow_List<int>, cow_FixedArray<int>,
                                  cow_2DArray<int>, cow_Btree<int, int>, cow_Map<int, int>, omi_UintTable<long>,
                                  omi_IntTable<long>, cow_String>;
TYPED_TEST_SUITE(Moves, Containers);

TYPED_TEST(Moves, StealWithoutCountsAndLeaveAUsableEmptyValue) {
    using C = TypeParam;
    using K = Kit<C>;
    static_assert(std::is_nothrow_move_constructible<C>::value && std::is_nothrow_move_assignable<C>::value &&
                  std::is_nothrow_swappable<C>::value);
    NoLeaks noLeaks;
    C source = K::Make();
    auto const contents = K::Contents(source);
    C keep = K::Clone(source);  // a move must leave this copy's count alone
    int const shares = K::Shares(keep);
    C target = K::Make();
    K::Write(target);
    {
        // Only the moves and the swap are counted; the checks allocate.
        AllocationScope scope;
        C moved(std::move(source));
        std::size_t news = scope.News();
        EXPECT_EQ(K::Contents(moved), contents);
        EXPECT_EQ(K::Size(source), 0u);
        AllocationScope assigning;
        target = std::move(moved);
        news += assigning.News();
        EXPECT_EQ(K::Contents(target), contents);
        EXPECT_EQ(K::Size(moved), 0u);
        AllocationScope swapping;
        using std::swap;
        swap(target, source);
        C& alias = source;
        source = std::move(alias);
        news += swapping.News();
        EXPECT_EQ(K::Contents(source), contents);
        EXPECT_EQ(K::Size(target), 0u);
        EXPECT_EQ(news, 0u);
        EXPECT_EQ(K::Shares(keep), shares);
    }
    // The emptied value copies, takes a write (its copy does not see it),
    // and takes an assignment.
    C copy = K::Clone(target);
    K::Write(target);
    EXPECT_EQ(K::Size(target), 1u);
    EXPECT_EQ(K::Size(copy), 0u);
    if constexpr (std::is_copy_assignable<C>::value) {
        target = keep;
    } else {
        target = K::Clone(keep);
    }
    EXPECT_EQ(K::Contents(target), contents);
}

// The standard writes of trees and maps change this value only, and erase
// by position gives the next one, so a loop may erase as it walks.
template <class C>
class WriteSpellings : public testing::Test {};
using Associative = testing::Types<cow_Btree<int, cow_String>, cow_Map<int, cow_String>>;
TYPED_TEST_SUITE(WriteSpellings, Associative);

TYPED_TEST(WriteSpellings, InsertOrAssignEraseAndWriteThroughAPosition) {
    using C = TypeParam;
    NoLeaks noLeaks;
    C tree;
    for (int k = 0; k < 100; ++k) EXPECT_TRUE(tree.insert_or_assign(k, S("v")).second);
    C const before = tree;
    auto const [at, added] = tree.insert_or_assign(5, S("five"));
    EXPECT_FALSE(added);
    EXPECT_EQ(at->first, 5);
    EXPECT_EQ(std::string_view(at->second), "five");
    EXPECT_EQ(std::string_view(before.at(5)), "v");

    C const snapshot = tree;
    auto const found = snapshot.find(7);  // a read: nothing is made private
    EXPECT_EQ(&found->second, &tree.at(7));
    tree.Get(tree.find(7)) = S("seven");
    EXPECT_EQ(std::string_view(tree.at(7)), "seven");
    EXPECT_EQ(std::string_view(snapshot.at(7)), "v");

    EXPECT_EQ(tree.erase(99), 1u);
    EXPECT_EQ(tree.erase(99), 0u);
    for (auto it = tree.begin(); it != tree.end();) it = it->first % 2 == 0 ? tree.erase(it) : std::next(it);
    std::vector<int> kept;
    for (auto const& entry : tree) kept.push_back(entry.first);
    std::sort(kept.begin(), kept.end());
    std::vector<int> odd;
    for (int k = 1; k < 99; k += 2) odd.push_back(k);
    EXPECT_EQ(kept, odd);
    EXPECT_EQ(tree.size(), odd.size());
    EXPECT_EQ(snapshot.size(), 100u);
}

// A user type with only < and == sorts in a list and keys a tree, as with
// std::sort and std::map.
struct Word {
    int v;
    friend bool operator<(Word a, Word b) { return a.v < b.v; }
    friend bool operator==(Word a, Word b) { return a.v == b.v; }
};

TEST(WriteSpellings, AUserTypeWithLessAndEqualSortsAndKeys) {
    cow_List<Word> list{{3}, {1}, {2}};
    list.Sort();
    cow_Btree<Word, int> tree{{{3}, 3}, {{1}, 1}, {{2}, 2}};
    std::vector<int> sorted, keys;
    for (Word w : list) sorted.push_back(w.v);
    for (auto const& entry : tree) keys.push_back(entry.first.v);
    EXPECT_EQ(sorted, (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(keys, sorted);
}

}  // namespace
