// A client of the installed library: a list and a tree copied and then
// written through the copy. Exits non-zero, naming the first value that reads
// wrong, so that a build that links but misbehaves fails too. (Each family's
// own tests pin the rules; here the installed headers and libraries have to
// agree.)

#include <cstdio>

#include <zorvancow/zorvancow.h>

int main() {
    int started = 0;
    cow_initialize(started);
    char const* wrong = nullptr;
    {
        cow_List<cow_String> names{cow_String("pear"), cow_String("apple")};
        cow_List<cow_String> sorted = names;
        sorted.Sort();
        if (!(sorted.ConstGet(0) == "apple" && names.ConstGet(0) == "pear")) wrong = "list";
        cow_Btree<cow_String, int> ages{{cow_String("carol"), 41}, {cow_String("alice"), 30}};
        cow_Btree<cow_String, int> older = ages;
        *older.Get(cow_String("alice")) = 31;
        if (ages.ConstGet(cow_String("alice")) != 30 || older.begin()->second != 31) wrong = "tree";
    }
    cow_finalize(started);
    if (wrong != nullptr) std::fprintf(stderr, "consumer: wrong value: %s\n", wrong);
    std::printf("zorvancow %s consumer: %s\n", ZORVANCOW_VERSION_STRING, wrong == nullptr ? "ok" : "FAILED");
    return wrong == nullptr ? 0 : 1;
}
