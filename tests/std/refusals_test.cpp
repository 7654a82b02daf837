// How every family stops: what checked mode refuses and what every build
// refuses, each one line on standard error naming the class, the operation
// and the values, then abort(); and a failed allocation anywhere ends in the
// library's out-of-memory line.

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstddef>
#include <functional>
#include <iterator>
#include <new>
#include <utility>

#include <sys/mman.h>
#include <unistd.h>

#include "support/AllocationCounter.h"
#include "zorvancow/zorvancow.h"

namespace {

struct Refusal {
    std::function<void()> call;
    char const* line;  // a regular expression
};

void ExpectRefusals(std::initializer_list<Refusal> rows) {
    for (Refusal const& row : rows) EXPECT_DEATH(row.call(), row.line);
}

// Positions 0, 1, ... with no storage behind them: a range of any length.
struct Counting {
    using iterator_category = std::random_access_iterator_tag;
    using value_type = int;
    using difference_type = std::ptrdiff_t;
    using pointer = int const*;
    using reference = int;
    std::ptrdiff_t at;
    int operator*() const { return 0; }
    Counting& operator++() { return ++at, *this; }
    difference_type operator-(Counting other) const { return at - other.at; }
    bool operator!=(Counting other) const { return at != other.at; }
};

// A text of 2^31 bytes and its terminating zero, in 1 MiB of memory: one
// page-aligned MiB of 'a' mapped 2048 times in a row, then a zero page.
char const* LongestText() {
    std::size_t const piece = std::size_t{1} << 20, pieces = 2048;
    auto* base = static_cast<char*>(mmap(nullptr, piece * pieces + 4096, PROT_READ,
                                         MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0));
    int const fd = memfd_create("text", 0);
    if (base == MAP_FAILED || fd < 0 || ftruncate(fd, static_cast<off_t>(piece)) != 0) return nullptr;
    auto* fill = static_cast<char*>(mmap(nullptr, piece, PROT_WRITE, MAP_SHARED, fd, 0));
    std::fill(fill, fill + piece, 'a');
    for (std::size_t i = 0; i < pieces; ++i)
        if (mmap(base + i * piece, piece, PROT_READ, MAP_SHARED | MAP_FIXED, fd, 0) == MAP_FAILED) return nullptr;
    return base;
}

TEST(RefusalDeathTest, PositionsShapesAndTableArgumentsPastTheirLimitsInEveryBuild) {
    cow_1DArray<int> headOne;
    headOne.Get(5) = 1;
    headOne.RemoveHead();
    ExpectRefusals({
        {[] { cow_1DArray<bool>(INT_MAX).GetHead(); },
         "^cow_1DArray::GetHead: the end position would pass 2147483647 \\(end 2147483647\\)\n"},
        {[&] { headOne.Get(INT_MAX); },
         "cow_1DArray::Get: the position would pass 2147483647 \\(index 2147483647, head 1\\)"},
        {[&] { headOne.Grow(INT_MAX); }, "cow_1DArray::Grow: the end position would pass 2147483647"},
        {[] { (void)cow_BlockLength(100); },
         "^cow_BlockLength::cow_BlockLength: not a power of two from 16 to 1073741824 \\(length 100\\)\n"},
        {[] { (void)cow_BlockLength(8); }, "cow_BlockLength::cow_BlockLength: .* \\(length 8\\)"},
        {[] { cow_2DArray<int>(65536, 65537, 0); },
         "^cow_2DArray::cow_2DArray: rows x columns overflows int \\(65536 x 65537\\)\n"},
        {[] { cow_2DArray<cow_String>(2, 1 << 30, cow_String()); }, "rows x columns overflows int \\(2 x 1073741824\\)"},
        {[] { omi_UintTable<cow_String>(0, 10, 24); },
         "^omi_UintTable::omi_UintTable: needs a from 1 to 32 and a \\+ b at most 32 \\(a 0, b 10\\)\n"},
        {[] { omi_UintTable<cow_String>(12, 21, 24); }, "omi_UintTable::omi_UintTable: .* \\(a 12, b 21\\)"},
        {[] { omi_IntTable<cow_String>(20, 13, 1); }, "omi_UintTable::omi_UintTable: .* \\(a 20, b 13\\)"},
        {[] { omi_BlockedArray<cow_String>(4, 32); },
         "omi_BlockedArray::omi_BlockedArray: shift out of range \\(shift 32\\)"},
        // Block number 2^32 - 1 would need 2^32 entries, one more than the
        // length field can count.
        {[] { omi_UintTable<cow_String>(32, 0, 1).Insert(0xFFFFFFFFu, cow_String()); },
         "omi_UintTable::Insert: the table block array would need 2\\^32 entries \\(block number 4294967295\\)"},
        // at() is checked in every build too.
        {[] { (void)cow_List<int>{1, 2}.at(2); }, "cow_List::at: index 2 is outside 0..1"},
        {[] { (void)cow_1DArray<int>().at(0); }, "cow_1DArray::at: index 0"},
        {[] { (void)cow_Map<int, int>{{1, 1}}.at(2); }, "cow_Map::at: the key is not held"},
        {[] { (void)cow_Btree<int, int>().at(2); }, "cow_Btree::at: the key is not held"},
        {[] { cow_FixedArray<int>(Counting{0}, Counting{std::ptrdiff_t{1} << 31}); },
         "^cow_FixedArray::cow_FixedArray: a range of more than 2147483647 elements \\(2147483648 elements\\)\n"},
        {[] { cow_1DArray<int>(Counting{0}, Counting{(std::ptrdiff_t{1} << 32) + 16}); },
         "^cow_1DArray::cow_1DArray: a range of more than 2147483647 elements \\(4294967312 elements\\)\n"},
        {[] { cow_String{LongestText()}; },
         "^atr_StringBase::atr_StringBase: a text of 2\\^31 bytes or more \\(2147483648 bytes\\)\n"},
    });
}

#if ZORVANCOW_CHECKED
TEST(RefusalDeathTest, CheckedModeStopsEveryBrokenPrecondition) {
    cow_1DArray<int> four(4), none;
    cow_1DArray<int> const fourShared(four);
    cow_List<int> empty, two{1, 2};
    cow_1DArrayList<int> noElements, three{1, 2, 3};
    cow_FixedArray<int> fixed(3, 7);
    cow_2DArray<float> matrix(2, 3, 0.5f);
    cow_Btree<int, int> tree{{1, 10}};
    cow_BtreeIterator<int, int> treeDone(tree);
    treeDone.First(), treeDone.Next();
    cow_Map<int, int> map{{1, 2}};
    cow_ConstMapIterator<int, int> mapDone(map);
    mapDone.First(), mapDone.Next();
    omi_UintTable<cow_String> table;
    table.Insert(3, cow_String("x"));
    omi_UintTableIterator<cow_String> unpositioned(table), tableDone(table);
    tableDone.First(), tableDone.Next();
    ExpectRefusals({
        {[&] { four.Get(-1); }, "^cow_1DArray::Get: negative index \\(index -1, size 4\\)\n"},
        {[&] { four.PartialArrayConstGet(4); },
         "cow_1DArray::PartialArrayConstGet: index out of range \\(index 4, size 4\\)"},
        {[&] { none.RemoveHead(); }, "cow_1DArray::RemoveHead: needs a non-empty array on a private table"},
        {[&] { four.RemoveHead(); }, "RemoveHead: .* \\(size 4, table shared by 2\\)"},
        {[&] { empty.RemoveFirst(); }, "^cow_List::RemoveFirst: the list is empty \\(count 0\\)\n"},
        {[&] { two.InsertAfter(3, 9); }, "cow_List::InsertAfter: index out of range \\(index 3, count 2\\)"},
        {[&] { two.InsertAfter(-2, 9); }, "cow_List::InsertAfter: index out of range \\(index -2, count 2\\)"},
        {[&] { two.Get(-1); }, "cow_List::Get: negative index \\(index -1, count 2\\)"},
        {[&] { noElements.Pop(); }, "cow_1DArrayList::Pop: the list is empty \\(count 0\\)"},
        {[&] { three.Slice(-3, 2); }, "cow_1DArrayList::Slice: negative start \\(start -3, stop 2, count 3\\)"},
        {[&] { three.Insert(4, 0); }, "cow_1DArrayList::Insert: index out of range \\(index 4, count 3\\)"},
        // The standard element access names itself, takes the index unnarrowed
        // and checks a list against its count, not its array's extent.
        {[&] { (void)two[4294967297u]; },
         "^cow_List::operator\\[\\]: index out of range \\(index 4294967297, size 2\\)\n"},
        {[&] { (void)std::as_const(two)[2]; }, "cow_List::operator\\[\\]: index out of range \\(index 2, size 2\\)"},
        {[&] { four[4] = 1; }, "cow_1DArray::operator\\[\\]: index out of range \\(index 4, size 4\\)"},
        {[] { cow_List<int> l{1}; l.RemoveLast(); (void)l.front(); }, "^cow_List::front: the value is empty \\(size 0\\)\n"},
        {[&] { noElements.back() = 1; }, "cow_1DArrayList::back: the value is empty \\(size 0\\)"},
        {[&] { empty.pop_back(); }, "^cow_List::pop_back: the list is empty \\(count 0\\)\n"},
        {[&] { fixed.Get(3); }, "^cow_FixedArray::Get: index out of range \\(index 3, size 3\\)\n"},
        {[&] { matrix.Get(0, 3); }, "cow_2DArray::Get: index out of range \\(row 0, column 3, shape 2 x 3\\)"},
        {[&] { treeDone.CurrentKey(); }, "^cow_BtreeIterator::CurrentKey: the iterator is done"},
        {[&] { treeDone.Next(); }, "cow_BtreeIterator::Next: the iterator is done"},
        {[&] { mapDone.CurrentKey(); },
         "^cow_ConstMapIterator::CurrentKey: the iterator is done \\(position 1, count 1\\)\n"},
        {[&] { unpositioned.CurrentKey(); },
         "^omi_UintTableIterator::CurrentKey: the iterator is done or not positioned"},
        {[&] { tableDone.CurrentValue(); }, "omi_UintTableIterator::CurrentValue: the iterator is done or not positioned"},
        {[] { cow_1DArray<int>(-5); }, "^cow_1DArray::cow_1DArray: negative size \\(size -5\\)\n"},
        {[&] { (void)matrix.Row(2); }, "^cow_2DArray::Row: row out of range \\(row 2, shape 2 x 3\\)\n"},
        // A write into the scratch value of a miss reaches no map.
        {[&] { map.Get(7) = 1; }, "^cow_Map::Get: the key is not held \\(count 1\\)\n"},
        {[] {
             cow_Btree<int, int> walked{{1, 1}, {2, 2}, {3, 3}};
             for (auto it = walked.begin(); it != walked.end(); ++it) walked.erase(it->first);
         },
         "^cow_Btree::iterator::operator\\+\\+: the tree changed while the iterator walked it \\(count 2, was 3\\)\n"},
    });
    // Ranges that read nothing stay legal.
    EXPECT_EQ(three.Slice(-3, -5).GetCount() + three.Slice(1, 99).GetCount(), 2);
}
#endif

// Every family in one short run, sharing through copies. The run is made
// once to count its operator new calls (all of them the library's), then
// once for every k up to that count in a child process whose k-th call
// throws std::bad_alloc, as the standard operator new does when memory runs
// out. Each child must end with the library's out-of-memory line and
// abort(): never an exception out of the library, never a sanitizer report.
TEST(AllocationFailureDeathTest, EveryFailedAllocationEndsInOneLine) {
    auto run = [] {
        cow_String const text("pear");
        cow_List<cow_String> words;
        for (int i = 0; i < 20; ++i) words.Append(i % 2 ? text : cow_String("fig"));
        cow_List<cow_String> copy = words;
        copy.Prepend(text).RemoveFirst().RemoveIndex(3).InsertAfter(5, text).Sort();
        cow_List<cow_String> const rest = words - copy;
        cow_List<cow_1DArrayList<int>> nested;
        for (int i = 0; i < 20; ++i) nested.Append(cow_1DArrayList<int>{1, 2, 3});
        cow_List<cow_1DArrayList<int>> other = nested;
        other.Get(3).Append(7);
        cow_2DArray<cow_String> grid(3, 4, text), gridCopy = grid;
        gridCopy.Get(2, 3) = cow_String();

        cow_Btree<int, int> tree;
        for (int i = 0; i < 40; ++i) tree.InsertUnlessMember((i * 37) % 101, i);
        cow_Btree<int, int> treeCopy = tree;
        treeCopy.Remove(37);
        *treeCopy.Get(74) = 5;
        cow_Map<cow_String, cow_List<int>> map;
        for (int i = 0; i < 12; ++i) map.Insert(cow_String(std::string(1 + i % 5, static_cast<char>('a' + i)).c_str()), {i});
        cow_Map<cow_String, cow_List<int>> mapCopy = map;
        mapCopy.Get(cow_String("ccc")).Append(3);
        mapCopy.Remove(cow_String("a"));

        omi_IntTable<cow_String> table(20, 4, 2);
        for (int key : {-70000, -3, 0, 5, 4096, 1 << 20, 1 << 30}) table.Insert(key, text);
        table.Remove(5);
    };
    run();  // the first uses on this thread (its absent-key values) allocate once
    std::size_t const before = testing_support::NewCalls();
    run();
    std::size_t const total = testing_support::NewCalls() - before;
    ASSERT_GT(total, 0u);
    for (std::size_t k = 1; k <= total && !::testing::Test::HasFailure(); ++k) {
        EXPECT_DEATH((testing_support::FailAllocation(k), run()), "zorvancow: out of memory")
            << "allocation " << k << " of " << total;
    }
}

}  // namespace
