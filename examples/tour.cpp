// A tour of Zorvancow: values that copy for a count increment and, when a
// shared value is written, copy only the piece that is written.
//
// Each section builds a value, copies it, writes through a copy and prints
// what stayed shared and what was copied, with the counts.

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <iostream>
#include <numeric>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "zorvancow/zorvancow.h"
#include "zorvanmem/mem_Heap.h"

namespace {

// A plain object to put behind a handle.
struct Scores {
    int values[4];
};

void Title(char const* text) { std::printf("\n== %s ==\n", text); }

void TourHandles() {
    Title("counted handles");
    cow_COW<Scores> first(Scores{{10, 20, 30, 40}});
    cow_COW<Scores> second = first;
    std::printf("copy made: both handles on one object %s, count %d\n",
                first.ConstGet() == second.ConstGet() ? "yes" : "no", first.GetShareCount());

    second.Get().values[0] = 99;
    std::printf("after a write through the copy: same object %s; counts %d and %d\n",
                first.ConstGet() == second.ConstGet() ? "yes" : "no", first.GetShareCount(),
                second.GetShareCount());
    std::printf("first reads %d, second reads %d\n", first.ConstGet()->values[0],
                second.ConstGet()->values[0]);

    Scores const* before = second.ConstGet();
    second.Get().values[1] = 98;
    std::printf("a second write copies nothing: same object %s\n",
                before == second.ConstGet() ? "yes" : "no");
}

void TourStrings() {
    Title("strings");
    aio_ostream out(stdout);
    cow_String greeting("copy me for free");
    cow_String copies[3] = {greeting, greeting, greeting};
    std::printf("four values share one text: count %d, one header %s\n", greeting.GetShareCount(),
                copies[2].GetHeader() == greeting.GetHeader() ? "yes" : "no");
    copies[0] = cow_String("a text of its own");
    std::printf("one value reassigned: the old text now counts %d, the new one %d\n",
                greeting.GetShareCount(), copies[0].GetShareCount());
    out << greeting;
    out.print(" / ") << copies[0];
    out.print("\n");

    cow_String empty;
    std::printf("a default string has no header and length %d; equal to \"\": %s\n",
                empty.GetLength(), cow_StringByteCompare(empty, cow_String("")) == 0 ? "yes" : "no");

    cow_String a("file10"), b("file9");
    std::printf("\"file10\" against \"file9\": bytes %+d; natural order off %+d",
                cow_StringByteCompare(a, b), cow_StringOrderCompare(a, b));
    atr_setNaturalOrder(1);
    std::printf(", on %+d\n", cow_StringOrderCompare(a, b));
    atr_setNaturalOrder(0);
}

void TourArrays() {
    Title("blocked arrays");
    cow_1DArray<int> original;
    for (int i = 0; i < 40; ++i) original.Get(i) = i;
    std::printf("40 elements in blocks of %d: %d table slots, %d in use\n", 1 << original.GetShift(),
                original.GetCapacity(), (original.GetSize() + (1 << original.GetShift()) - 1) >> original.GetShift());
    cow_1DArray<int> copy = original;
    std::printf("copy made: one table shared by %d arrays\n", original.GetTableShareCount());

    copy.Get(20) = -20;
    std::printf("after copy.Get(20) = -20: tables shared by %d and %d arrays\n",
                original.GetTableShareCount(), copy.GetTableShareCount());
    for (int slot = 0; slot < 3; ++slot) {
        bool shared = original.GetBlock(slot) == copy.GetBlock(slot);
        std::printf("  block %d: %s (held by %d table%s)\n", slot, shared ? "still shared" : "now private",
                    original.GetBlockCount(slot), original.GetBlockCount(slot) == 1 ? "" : "s");
    }
    std::printf("original reads %d, copy reads %d\n", original.PartialArrayConstGet(20),
                copy.PartialArrayConstGet(20));

    cow_1DArrayIter<int> walk(copy);
    long sum = 0;
    for (; walk.GetPosition() < copy.GetEndPosition(); walk.Next()) sum += walk.ConstGet();
    std::printf("an iterator walks a snapshot of the copy: sum %ld\n", sum);

    cow_Counter const* table = copy.GetTableCounter();
    cow_1DArray<int> taken(std::move(copy));
    std::printf("a move takes the copy's table without touching a count: same table %s; the source is empty (size %d)\n",
                taken.GetTableCounter() == table ? "yes" : "no", copy.GetSize());
}

void PrintList(char const* name, cow_List<int> const& list) {
    std::printf("  %s:", name);
    for (cow_ListIter<int> it(list); !it.IsDone(); it.Next()) std::printf(" %d", it.Current());
    std::printf("\n");
}

void TourLists() {
    Title("lists");
    cow_List<int> list;
    for (int i = 1; i <= 40; ++i) list.Append(i * 10 % 37);
    cow_List<int> edited = list;
    edited.Prepend(-1).Append(99).RemoveFirst().RemoveFirst();
    std::printf("a list of 40, a copy edited at both ends (Prepend, Append, RemoveFirst twice):\n");
    std::printf("  original first %d, count %d; copy first %d, count %d\n", list.ConstGet(0), list.GetCount(),
                edited.ConstGet(0), edited.GetCount());
    cow_1DArray<int> const& a = list.GetArray();
    cow_1DArray<int> const& b = edited.GetArray();
    int shared = 0;
    for (int s = 0; s < a.GetCapacity(); ++s) {
        for (int t = 0; t < b.GetCapacity(); ++t) shared += a.GetBlock(s) != nullptr && a.GetBlock(s) == b.GetBlock(t);
    }
    std::printf("  blocks still shared by the two: %d of %d (only the blocks written at the ends were copied)\n",
                shared, (a.GetSize() + 15) / 16);

    edited.Sort();
    PrintList("copy sorted", edited);
    PrintList("original", list);
    shared = 0;
    for (int s = 0; s < a.GetCapacity(); ++s) {
        for (int t = 0; t < edited.GetArray().GetCapacity(); ++t)
            shared += a.GetBlock(s) != nullptr && a.GetBlock(s) == edited.GetArray().GetBlock(t);
    }
    std::printf("  after the sort the copy has storage of its own: %d blocks shared\n", shared);

    // Many versions of a large list: a balanced block length keeps blocks
    // near sqrt(size), so a version costs a short table and its written blocks.
    cow_List<int> big(cow_BlockLength::Balanced());
    for (int i = 0; i < 1000000; ++i) big.Append(i);
    std::vector<cow_List<int>> versions(1, big);
    for (int v = 1; v <= 100; ++v) {
        versions.push_back(versions.back());
        versions.back().Get(v * 9973) = -v;
    }
    cow_1DArray<int> const& last = versions.back().GetArray();
    std::printf("a balanced list of 1,000,000 ints: blocks of %d, a table of %d slots;\n"
                "  100 versions, each one write from the one before, cost each about %zu bytes of its own"
                " (the table and one block); version 100 reads %d at 997300, the first %d\n",
                1 << last.GetShift(), last.GetCapacity(),
                sizeof(void*) * static_cast<std::size_t>(last.GetCapacity()) + (sizeof(int) << last.GetShift()),
                versions.back().ConstGet(997300), big.ConstGet(997300));
}

void TourShapes() {
    Title("fixed shapes and error texts");
    cow_2DArray<int> board(3, 3, 0);
    cow_2DArray<int> draft = board;
    std::printf("a 3 x 3 matrix and its copy share one representation: %s, count %d\n",
                board.GetRep() == draft.GetRep() ? "yes" : "no", board.GetShareCount());
    draft.Get(1, 1) = 5;
    std::printf("after one write to the copy: shared %s; counts %d and %d; centre %d and %d\n",
                board.GetRep() == draft.GetRep() ? "yes" : "no", board.GetShareCount(),
                draft.GetShareCount(), board.ConstGet(1, 1), draft.ConstGet(1, 1));

    // Error texts. Socket errors travel as Windows Sockets codes (10004 to
    // 11004) in code that also runs on Windows, so the library carries that
    // table itself and a socket code reads the same on every system. A Linux
    // program mostly holds an errno, which reads as the C library words it.
    cow_SystemErrorCode refused(10061);
    cow_SystemErrorCode refusedHere = cow_SystemErrorCode::FromErrorNumber(ECONNREFUSED);
    cow_SystemErrorCode missing = cow_SystemErrorCode::FromErrorNumber(2);
    std::printf("Windows Sockets code 10061, from the library's own table on any system: %s\n",
                refused.GetText().GetCString());
    std::printf("errno ECONNREFUSED, the same failure on Linux: %s\n", refusedHere.GetText().GetCString());
    std::printf("C error number 2: %s\n", missing.GetText().GetCString());
}

// Counts the nodes under `link` and how many of them `other` reaches too.
template <class Node>
void CountNodes(cow_COW<Node> const& link, cow_COW<Node> const& other, int& total, int& shared) {
    Node const* node = link.ConstGet();
    if (node == nullptr) return;
    ++total;
    std::vector<Node const*> stack{other.ConstGet()};
    while (!stack.empty()) {
        Node const* candidate = stack.back();
        stack.pop_back();
        if (candidate == nullptr) continue;
        if (candidate == node) {
            ++shared;
            break;
        }
        stack.push_back(candidate->child[0].ConstGet());
        stack.push_back(candidate->child[1].ConstGet());
    }
    CountNodes(node->child[0], other, total, shared);
    CountNodes(node->child[1], other, total, shared);
}

void TourMap() {
    Title("digital map");
    char const* names[] = {"ada", "bob", "cy", "dee", "eve", "fay", "gus", "hal", "ivy", "jo"};
    cow_Map<cow_String, int> a;
    for (int i = 0; i < 10; ++i) a.Insert(cow_String(names[i]), i);
    cow_Map<cow_String, int> b = a;
    std::printf("copy made: one root, count %d; %d keys each\n", a.GetRoot().GetShareCount(),
                b.GetCount());

    cow_String const added("kim");
    b.Insert(added, 10);
    int total = 0, shared = 0;
    CountNodes(b.GetRoot(), a.GetRoot(), total, shared);
    std::printf("\"kim\" inserted into the copy at depth %d: the copy has %d nodes, %d shared with\n"
                "the original, %d copied on the path and 1 new; the original still has %d keys\n",
                b.GetDepth(added), total, shared, total - shared - 1, a.GetCount());

    std::printf("keys of the copy with cow_Keys, in walk order:");
    cow_List<cow_String> const keys = cow_MapUtils<cow_String, int>::cow_Keys(b);
    for (int i = 0; i < keys.GetCount(); ++i) std::printf(" %s", keys.ConstGet(i).GetCString());
    std::printf("\nand sorted by bytes:");
    cow_ConstMapSortedIt<cow_String, int> sorted(b);
    for (sorted.First(); !sorted.IsDone(); sorted.Next()) std::printf(" %s", sorted.CurrentKey().GetCString());
    std::printf("\n");
}

void TourTables() {
    Title("radix tables");
    using Table = omi_IntTable<cow_String>;
    cow_COW<Table> first(new Table);
    for (int key : {42, -7, 0, -2000000000, 1 << 30}) {
        char text[32];
        std::snprintf(text, sizeof text, "value %d", key);
        first.Get().Insert(key, cow_String(text));
    }
    std::printf("%d keys in two halves: %d negative, %d non-negative; walked in order:\n",
                first.ConstGet()->GetCount(), first.ConstGet()->GetNegative().GetCount(),
                first.ConstGet()->GetNonNegative().GetCount());
    omi_IntTableIterator<cow_String> it(*first.ConstGet());
    for (it.First(); !it.IsDone(); it.Next())
        std::printf("  %11d -> %s\n", it.CurrentKey(), it.CurrentValue().GetCString());

    cow_COW<Table> second = first;
    std::printf("handle copied: one table %s, count %d\n",
                first.ConstGet() == second.ConstGet() ? "yes" : "no", first.GetShareCount());
    second.Get().Insert(-7, cow_String("rewritten"));
    std::printf("first write through the copy copied the whole table: same table %s, counts %d and %d\n",
                first.ConstGet() == second.ConstGet() ? "yes" : "no", first.GetShareCount(),
                second.GetShareCount());
    std::printf("key -7 reads \"%s\" in the first and \"%s\" in the second; the text of key 42 is %s\n",
                first.ConstGet()->ConstGet(-7)->GetCString(), second.ConstGet()->ConstGet(-7)->GetCString(),
                first.ConstGet()->ConstGet(42)->GetHeader() == second.ConstGet()->ConstGet(42)->GetHeader()
                    ? "still shared"
                    : "copied");
}

// Node addresses of a tree, found through the iterator: each node holds its
// value, so the value's address names the node.
std::set<void const*> NodesOf(cow_Btree<int, int> const& tree) {
    std::set<void const*> nodes;
    cow_BtreeIterator<int, int> it(tree);
    for (it.First(); !it.IsDone(); it.Next()) nodes.insert(&it.CurrentValue());
    return nodes;
}

void TourTree() {
    Title("ordered tree");
    cow_Btree<int, int> prices;
    for (int key = 1; key <= 1000; ++key) prices.InsertUnlessMember(key, key * 3);
    std::printf("1000 keys inserted in ascending order: root key %d, root depth %d\n",
                prices.GetRoot()->ConstGet()->GetKey(), prices.GetRoot()->ConstGet()->GetMaxDepth());

    cow_Btree<int, int> draft = prices;
    std::printf("copy made: one root node shared by %d trees\n", prices.GetRoot()->GetShareCount());

    draft.InsertUnlessMember(1001, 3003);
    std::set<void const*> const original = NodesOf(prices);
    int copied = -1, shared = 0;  // the new node is not a copy
    for (void const* node : NodesOf(draft)) (original.count(node) != 0 ? shared : copied)++;
    std::printf("one key inserted into the copy: %d nodes copied along its path, 1 new, %d still shared\n",
                copied, shared);
    std::printf("the source still has %d keys and no key 1001 (%s); the copy has %d\n",
                prices.GetCount(), prices.IsMember(1001) ? "wrong" : "right", draft.GetCount());

    *draft.Get(500) = 0;
    std::printf("key 500 changed in the copy: copy reads %d, source reads %d\n", draft.ConstGet(500),
                prices.ConstGet(500));
}

void TourStandard() {
    Title("like a standard container");
    // Initializer lists, range-for and standard algorithms, as with std::vector.
    cow_List<int> scores{40, 10, 30, 20};
    std::vector<int> sorted(scores.begin(), scores.end());
    std::sort(sorted.begin(), sorted.end());
    std::cout << "a list " << scores << ", sorted into a vector: front " << sorted.front() << ", sum "
              << std::accumulate(scores.begin(), scores.end(), 0) << ", size " << scores.size() << "\n";

    // Copies stay free: the copy shares the storage until one of them writes.
    cow_List<int> kept = scores;
    kept.Get(0) = 41;
    std::cout << "a copy written once: " << kept << ", the original still " << scores
              << (kept > scores ? " (the copy orders after it)" : "") << "\n";

    // Large arrays walk fastest a block at a time, one contiguous span per block.
    cow_1DArray<int> big(std::vector<int>(100000, 1));
    long total = 0;
    int spans = 0;
    for (cow_Span<int const> run : cow_Blocks(big)) {
        total = std::accumulate(run.begin(), run.end(), total);
        ++spans;
    }
    std::cout << "100000 ones summed over " << spans << " block spans: " << total << "\n";

    // Trees walk in key order and bind keys and values by name.
    cow_Btree<std::string, int> stock{{"pears", 4}, {"apples", 7}, {"figs", 0}};
    for (auto const& [fruit, count] : stock) std::cout << fruit << "=" << count << " ";
    std::cout << "(std::string keys, in key order)\n";

    // Maps take any integral or string key; begin() walks a snapshot, so the
    // loop may write to the map it walks.
    cow_Map<long, cow_String> names{{1L << 40, cow_String("far")}, {7, cow_String("near")}};
    for (auto const& [key, name] : names) names.Insert(key + 1, name);
    std::cout << "a map that grew inside its own loop, sorted: " << names.Sorted() << "\n";

    // Strings meet the standard strings and hash containers.
    std::unordered_map<cow_String, int> seen;
    for (char const* word : {"copy", "on", "write", "copy"}) ++seen[cow_String(word)];
    std::string plain(cow_String("text"));
    std::cout << "\"copy\" seen " << seen[cow_String("copy")] << " times; back to std::string: " << plain
              << "; equal to a std::string_view: " << (cow_String("text") == std::string_view(plain) ? "yes" : "no")
              << "\n";
}

}  // namespace

int main() {
    int started = 0;
    cow_initialize(started);
    std::printf("library started (caller's counter %d)\n", started);

    TourHandles();
    TourStrings();
    TourArrays();
    TourLists();
    TourShapes();
    TourTables();
    TourMap();
    TourTree();
    TourStandard();

    cow_finalize(started);
    std::printf("\nlibrary stopped (caller's counter %d); heap blocks still live: %ld\n", started,
                mem_GetLiveBlocks());
    return 0;
}
