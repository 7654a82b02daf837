// A client of the installed library: one value of each common kind, copied
// and then written through the copy. Exits non-zero, naming the check, when
// a value reads wrong, so that a build that links but misbehaves fails too.

#include <cstdio>
#include <cstring>

#include <zorvancow/zorvancow.h>

namespace {

int failures = 0;

void Check(bool ok, char const* what) {
    if (!ok) {
        std::fprintf(stderr, "consumer: wrong value: %s\n", what);
        ++failures;
    }
}

bool Is(cow_String const& text, char const* expected) { return std::strcmp(text.GetCString(), expected) == 0; }

void Arrays() {
    cow_1DArray<int> original(1000);
    for (int i = 0; i < original.GetSize(); ++i) original.Get(i) = i * 3;
    cow_1DArray<int> copy = original;
    copy.Get(500) = -1;
    Check(original.PartialArrayConstGet(500) == 1500, "array: a write to a copy shows in the original");
    Check(copy.PartialArrayConstGet(500) == -1 && copy.PartialArrayConstGet(999) == 2997, "array: copy");
    Check(copy.GetSize() == 1000, "array: size");
}

void Lists() {
    cow_List<cow_String> names;
    names.Append(cow_String("pear")).Append(cow_String("fig")).Prepend(cow_String("apple"));
    cow_List<cow_String> sorted = names;
    sorted.Sort();
    sorted.RemoveFirst();
    Check(names.GetCount() == 3 && Is(names.ConstGet(0), "apple") && Is(names.ConstGet(2), "fig"),
          "list: the original changed");
    Check(sorted.GetCount() == 2 && Is(sorted.ConstGet(0), "fig") && Is(sorted.ConstGet(1), "pear"),
          "list: sorted copy");
    Check(names.Position(cow_String("pear")) == 1 && !sorted.IsMember(cow_String("apple")), "list: search");
}

void Trees() {
    cow_Btree<cow_String, int> ages;
    ages.InsertUnlessMember(cow_String("carol"), 41);
    ages.InsertUnlessMember(cow_String("alice"), 30);
    ages.InsertUnlessMember(cow_String("bob"), 25);
    cow_Btree<cow_String, int> older = ages;
    *older.Get(cow_String("bob")) = 26;
    older.Remove(cow_String("carol"));
    Check(ages.GetCount() == 3 && ages.ConstGet(cow_String("bob")) == 25, "tree: the original changed");
    Check(older.GetCount() == 2 && older.ConstGet(cow_String("bob")) == 26 && !older.IsMember(cow_String("carol")),
          "tree: copy");
    char const* expected[] = {"alice", "bob", "carol"};
    int at = 0;
    cow_BtreeIterator<cow_String, int> it(ages);
    for (it.First(); !it.IsDone(); it.Next(), ++at) {
        Check(at < 3 && Is(it.CurrentKey(), expected[at]), "tree: walk order");
    }
    Check(at == 3, "tree: walk length");
}

void Maps() {
    cow_Map<cow_String, cow_String> capitals;
    capitals.Insert(cow_String("France"), cow_String("Paris"));
    capitals.Insert(cow_String("Peru"), cow_String("Lima"));
    cow_Map<cow_String, cow_String> edited = capitals;
    edited.Get(cow_String("Peru")) = cow_String("Cusco");
    edited.Insert(cow_String("Chad"), cow_String("N'Djamena"));
    Check(capitals.GetCount() == 2 && Is(capitals.ConstGet(cow_String("Peru")), "Lima"), "map: the original changed");
    Check(edited.GetCount() == 3 && Is(edited.ConstGet(cow_String("Peru")), "Cusco") &&
              Is(edited.ConstGet(cow_String("Chad")), "N'Djamena"),
          "map: copy");
    Check(!capitals.IsMember(cow_String("Chad")), "map: membership");
}

}  // namespace

int main() {
    int started = 0;
    cow_initialize(started);
    Arrays();
    Lists();
    Trees();
    Maps();
    cow_finalize(started);
    std::printf("zorvancow %s consumer: %s\n", ZORVANCOW_VERSION_STRING, failures == 0 ? "ok" : "FAILED");
    return failures == 0 ? 0 : 1;
}
