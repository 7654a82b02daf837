// A tour of Zorvancow: values that copy for a count increment and, when a
// shared value is written, copy only the piece that is written.
//
// Each section builds a value, copies it, writes through a copy and prints
// what stayed shared and what was copied, with the counts.

#include <cstdio>

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

    cow_SystemErrorCode refused(10061);
    cow_SystemErrorCode missing = cow_SystemErrorCode::FromErrorNumber(2);
    std::printf("socket code 10061: %s\n", refused.GetText().GetCString());
    std::printf("C error number 2: %s\n", missing.GetText().GetCString());
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

    cow_finalize(started);
    std::printf("\nlibrary stopped (caller's counter %d); heap blocks still live: %ld\n", started,
                mem_GetLiveBlocks());
    return 0;
}
