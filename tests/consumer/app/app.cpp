// A client of the installed library: one value of each common kind, copied
// and then written through the copy. Exits non-zero, naming the check, when
// a value reads wrong, so that a build that links but misbehaves fails too.

#include <cstdio>

#include <zorvancow/zorvancow.h>

namespace {

int failures = 0;

void Check(bool ok, char const* what) {
    if (!ok) {
        std::fprintf(stderr, "consumer: wrong value: %s\n", what);
        ++failures;
    }
}

void Arrays() {
    cow_1DArray<int> original(1000);
    for (int i = 0; i < original.GetSize(); ++i) original.Get(i) = i * 3;
    cow_1DArray<int> copy = original;
    copy.Get(500) = -1;
    Check(original.PartialArrayConstGet(500) == 1500 && copy.PartialArrayConstGet(500) == -1 &&
              copy.PartialArrayConstGet(999) == 2997,
          "array: a copy and its original");
}

void Lists() {
    cow_List<cow_String> names;
    names.Append(cow_String("pear")).Append(cow_String("fig")).Prepend(cow_String("apple"));
    cow_List<cow_String> sorted = names;
    sorted.Sort();
    sorted.RemoveFirst();
    Check(names == cow_List<cow_String>{cow_String("apple"), cow_String("pear"), cow_String("fig")},
          "list: the original changed");
    Check(sorted == cow_List<cow_String>{cow_String("fig"), cow_String("pear")}, "list: sorted copy");
    Check(names.Position(cow_String("pear")) == 1 && !sorted.IsMember(cow_String("apple")), "list: search");
}

void TreesAndMaps() {
    cow_Btree<cow_String, int> ages{{cow_String("carol"), 41}, {cow_String("alice"), 30}, {cow_String("bob"), 25}};
    cow_Btree<cow_String, int> older = ages;
    *older.Get(cow_String("bob")) = 26;
    older.Remove(cow_String("carol"));
    Check(ages.GetCount() == 3 && ages.ConstGet(cow_String("bob")) == 25, "tree: the original changed");
    Check(older.GetCount() == 2 && older.ConstGet(cow_String("bob")) == 26, "tree: copy");
    cow_BtreeIterator<cow_String, int> it(ages);
    it.First();
    Check(it.CurrentKey() == "alice", "tree: walk order");

    cow_Map<cow_String, cow_String> capitals;
    capitals.Insert(cow_String("Peru"), cow_String("Lima"));
    cow_Map<cow_String, cow_String> edited = capitals;
    edited.Get(cow_String("Peru")) = cow_String("Cusco");
    edited.Insert(cow_String("Chad"), cow_String("N'Djamena"));
    Check(capitals.GetCount() == 1 && capitals.ConstGet(cow_String("Peru")) == "Lima", "map: the original changed");
    Check(edited.GetCount() == 2 && edited.ConstGet(cow_String("Peru")) == "Cusco", "map: copy");
}

}  // namespace

int main() {
    int started = 0;
    cow_initialize(started);
    Arrays();
    Lists();
    TreesAndMaps();
    cow_finalize(started);
    std::printf("zorvancow %s consumer: %s\n", ZORVANCOW_VERSION_STRING, failures == 0 ? "ok" : "FAILED");
    return failures == 0 ? 0 : 1;
}
