// A client of the installed library: one value of each common kind, copied
// and then written through the copy. Exits non-zero, naming the first value
// that reads wrong, so that a build that links but misbehaves fails too.
// (Each family's own tests pin the rules; here the installed headers and
// libraries have to agree.)

#include <cstdio>

#include <zorvancow/zorvancow.h>

namespace {

// The first value that reads wrong, or nullptr.
char const* Run() {
    cow_1DArray<int> array(1000);
    for (int i = 0; i < array.GetSize(); ++i) array.Get(i) = i * 3;
    cow_1DArray<int> arrayCopy = array;
    arrayCopy.Get(500) = -1;
    if (array.PartialArrayConstGet(500) != 1500 || arrayCopy.PartialArrayConstGet(999) != 2997) return "array";

    cow_List<cow_String> names{cow_String("apple"), cow_String("pear"), cow_String("fig")};
    cow_List<cow_String> sorted = names;
    sorted.Sort();
    sorted.RemoveFirst();
    if (!(sorted == cow_List<cow_String>{cow_String("fig"), cow_String("pear")}) || names.GetCount() != 3) return "list";

    cow_Btree<cow_String, int> ages{{cow_String("carol"), 41}, {cow_String("alice"), 30}};
    cow_Btree<cow_String, int> older = ages;
    *older.Get(cow_String("alice")) = 31;
    cow_BtreeIterator<cow_String, int> it(ages);
    it.First();
    if (!(it.CurrentKey() == "alice") || ages.ConstGet(cow_String("alice")) != 30) return "tree";

    cow_Map<cow_String, cow_String> capitals{{cow_String("Peru"), cow_String("Lima")}};
    cow_Map<cow_String, cow_String> edited = capitals;
    edited.Get(cow_String("Peru")) = cow_String("Cusco");
    bool const mapRight = capitals.ConstGet(cow_String("Peru")) == "Lima" && edited.ConstGet(cow_String("Peru")) == "Cusco";
    return mapRight ? nullptr : "map";
}

}  // namespace

int main() {
    int started = 0;
    cow_initialize(started);
    char const* wrong = Run();
    cow_finalize(started);
    if (wrong != nullptr) std::fprintf(stderr, "consumer: wrong value: %s\n", wrong);
    std::printf("zorvancow %s consumer: %s\n", ZORVANCOW_VERSION_STRING, wrong == nullptr ? "ok" : "FAILED");
    return wrong == nullptr ? 0 : 1;
}
