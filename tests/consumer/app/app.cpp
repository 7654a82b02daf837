// A client of the installed library: one value of each common kind, copied
// and then written through the copy. Exits non-zero, naming the check, when
// a value reads wrong, so that a build that links but misbehaves fails too.
// (Each family's own tests pin the rules; here the installed headers and
// libraries have to agree.)

#include <cstdio>

#include <zorvancow/zorvancow.h>

namespace {

int failures = 0;

void Check(bool ok, char const* what) {
    if (ok) return;
    std::fprintf(stderr, "consumer: wrong value: %s\n", what);
    ++failures;
}

void Run() {
    cow_1DArray<int> array(1000);
    for (int i = 0; i < array.GetSize(); ++i) array.Get(i) = i * 3;
    cow_1DArray<int> arrayCopy = array;
    arrayCopy.Get(500) = -1;
    Check(array.PartialArrayConstGet(500) == 1500 && arrayCopy.PartialArrayConstGet(999) == 2997, "array");

    cow_List<cow_String> names{cow_String("apple"), cow_String("pear"), cow_String("fig")};
    cow_List<cow_String> sorted = names;
    sorted.Sort();
    sorted.RemoveFirst();
    Check(sorted == cow_List<cow_String>{cow_String("fig"), cow_String("pear")} && names.GetCount() == 3, "list");

    cow_Btree<cow_String, int> ages{{cow_String("carol"), 41}, {cow_String("alice"), 30}};
    cow_Btree<cow_String, int> older = ages;
    *older.Get(cow_String("alice")) = 31;
    cow_BtreeIterator<cow_String, int> it(ages);
    it.First();
    Check(it.CurrentKey() == "alice" && ages.ConstGet(cow_String("alice")) == 30, "tree");

    cow_Map<cow_String, cow_String> capitals{{cow_String("Peru"), cow_String("Lima")}};
    cow_Map<cow_String, cow_String> edited = capitals;
    edited.Get(cow_String("Peru")) = cow_String("Cusco");
    Check(capitals.ConstGet(cow_String("Peru")) == "Lima" && edited.ConstGet(cow_String("Peru")) == "Cusco", "map");
}

}  // namespace

int main() {
    int started = 0;
    cow_initialize(started);
    Run();
    cow_finalize(started);
    std::printf("zorvancow %s consumer: %s\n", ZORVANCOW_VERSION_STRING, failures == 0 ? "ok" : "FAILED");
    return failures == 0 ? 0 : 1;
}
