// The program that the gdb test stops in: one value of each container,
// some of them shared, so that the printers' counts have something to show.
// Built without optimisation so that every local stays readable.

#include <zorvancow/zorvancow.h>

struct Settings {
    int volume;
    int brightness;
};

// The breakpoint: every value below is alive in the caller's frame.
__attribute__((noinline)) void zorvan_gdb_stop() {
    asm volatile("");
}

int main() {
    int started = 0;
    cow_initialize(started);
    {
        cow_String name("Zorvancow");
        cow_String alias = name;
        cow_String none;

        cow_COW<Settings> saved(Settings{5, 7});
        cow_COW<Settings> edited = saved;

        cow_1DArray<int> array;
        for (int i = 0; i < 5; ++i) array.Get(i) = 10 * (i + 1);
        cow_1DArray<int> arrayCopy = array;

        cow_1DArrayList<cow_String> names{cow_String("ab"), name};

        // A copy that was written: its own table, the block still shared.
        cow_List<int> list;
        for (int i = 1; i <= 3; ++i) list.Append(i);
        list.Prepend(0);
        cow_List<int> longer = list;
        longer.Append(4);

        cow_FixedArray<double> fixed(3, 1.5);
        cow_FixedArray<double> fixedCopy = fixed;

        cow_2DArray<int> matrix(2, 3, 0);
        for (int i = 0; i < 6; ++i) matrix.Get(i / 3, i % 3) = i + 1;

        cow_Btree<cow_String, int> tree{{cow_String("pear"), 3}, {cow_String("apple"), 1}, {cow_String("fig"), 2}};
        cow_Btree<cow_String, int> emptyTree;

        cow_Map<int, cow_String> map{{5, cow_String("five")}, {2, cow_String("two")}, {9, cow_String("nine")}};

        // The same list handed over: nothing shared, every count 1.
        cow_1DArrayList<cow_String> handed = cow_HandOver(names);

        zorvan_gdb_stop();
    }
    cow_finalize(started);
    return 0;
}
