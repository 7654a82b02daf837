// A client of the library that uses every member libzorvancow.so exports, for
// every type argument it is exported for (the list in libzorvancow.exports).
// Each member is called, or its address is taken, so that the program holds a
// reference to the library's symbol; constructors and destructors run on real
// objects. The program is built at -O0 and at -O2 and linked with
// --no-undefined: it fails to link when a header leaves to the library a
// member that the library does not export. Run, it does a little real work
// with each family and returns 0 when all of it gave the expected answers.

#include <cstdio>
#include <cstring>
#include <type_traits>

#include "zorvancow/zorvancow.h"

namespace {

int failures = 0;

void Check(bool ok, char const* what) {
    if (ok) return;
    std::fprintf(stderr, "all_exports_consumer: %s\n", what);
    ++failures;
}

// Lets each address escape, so that an optimised build keeps the reference.
template <class P>
void KeepOne(P p) {
    asm volatile("" : : "r"(&p) : "memory");
}
template <class... P>
void Keep(P... p) {
    (KeepOne(p), ...);
}

// Distinct values of each key and element type, for the calls that need them.
template <class T>
T Sample(int i) {
    if constexpr (std::is_same_v<T, bool>) {
        return i % 2 != 0;
    } else if constexpr (std::is_arithmetic_v<T>) {
        return static_cast<T>(i) + static_cast<T>(std::is_floating_point_v<T> ? 0.5 : 0);
    } else if constexpr (std::is_same_v<T, cow_String> || std::is_same_v<T, atr_String>) {
        char const text[] = {'k', static_cast<char>('a' + i), '\0'};
        return T(text);
    } else {
        return T();
    }
}

}  // namespace

// ---------------------------------------------------------------------------
// Private and protected members

// The library exports a few private members: steps that its own members call.
// A client cannot name them, except in an explicit instantiation, where access
// is not checked: each `template struct Reach<Tag, &Class::Member>` below
// stores that member's address, which Reached<Tag>() then hands out.
template <class Tag>
typename Tag::type reachedMember{};

template <class Tag, typename Tag::type Member>
struct Reach {
    static inline bool const stored = (reachedMember<Tag> = Member, true);
};

template <class Tag>
typename Tag::type Reached() {
    Check(reachedMember<Tag> != nullptr, "a private member was not reached");
    return reachedMember<Tag>;
}

template <class T>
struct ArrayFullArrayGet {
    using type = T& (cow_1DArray<T>::*)(int);
};
template <class T>
struct ArrayCopyArray {
    using type = void (cow_1DArray<T>::*)();
};
template <class T>
struct ListSortCmp {
    using type = int (*)(void const*, void const*);
};
template <class K, class V>
struct NodeRemoveNode {
    using Node = cow_BtreeNode<K, V>;
    using type = void (Node::*)(Node*, cow_COW<Node, cow_Direct<Node>>*);
};
template <class K, class V>
struct NodeSetMaxDepth {
    using type = void (cow_BtreeNode<K, V>::*)();
};
template <class K, class V>
struct TreeFind {
    using type = cow_BtreeNode<K, V>* (cow_Btree<K, V>::*)(K const&);
};
template <class K, class V>
struct TreeConstFind {
    using type = cow_BtreeNode<K, V> const* (cow_Btree<K, V>::*)(K const&) const;
};
template <class K, class V>
struct IteratorPop {
    using type = void (cow_BtreeIterator<K, V>::*)();
};

// Type arguments that hold a comma, so that they fit a macro argument.
using IntTree = cow_Btree<int, int>;
using AtrStringList = cow_List<atr_String>;
using StringArray = cow_1DArray<cow_String>;
using IntArrayList = cow_1DArrayList<int>;
using FloatArrayList = cow_1DArrayList<float>;
using DoubleArrayList = cow_1DArrayList<double>;
using IntFixedArray = cow_FixedArray<int>;

// The scalar and string element types: the array's write step and the
// list's sort order.
#define REACH_ELEMENT(T)                                                        \
    template struct Reach<ArrayFullArrayGet<T>, &cow_1DArray<T>::FullArrayGet>; \
    template struct Reach<ListSortCmp<T>, &cow_List<T>::SortCmp>

REACH_ELEMENT(int);
REACH_ELEMENT(unsigned int);
REACH_ELEMENT(float);
REACH_ELEMENT(double);
REACH_ELEMENT(bool);
REACH_ELEMENT(cow_String);
REACH_ELEMENT(atr_String);

// The nested element types: the write step, and the table copy of the lists.
#define REACH_NESTED(T)                                                         \
    template struct Reach<ArrayFullArrayGet<T>, &cow_1DArray<T>::FullArrayGet>; \
    template struct Reach<ArrayCopyArray<T>, &cow_1DArray<T>::CopyArray>

REACH_NESTED(IntArrayList);
REACH_NESTED(FloatArrayList);
REACH_NESTED(DoubleArrayList);
template struct Reach<ArrayFullArrayGet<IntTree>, &cow_1DArray<IntTree>::FullArrayGet>;

#define REACH_TREE(K, V)                                                           \
    template struct Reach<NodeRemoveNode<K, V>, &cow_BtreeNode<K, V>::RemoveNode>; \
    template struct Reach<TreeFind<K, V>, &cow_Btree<K, V>::Find>;                 \
    template struct Reach<TreeConstFind<K, V>, &cow_Btree<K, V>::ConstFind>

REACH_TREE(int, int);
REACH_TREE(int, double);
REACH_TREE(int, IntArrayList);
REACH_TREE(atr_String, AtrStringList);
REACH_TREE(cow_String, int);
REACH_TREE(cow_String, unsigned int);
REACH_TREE(cow_String, float);
REACH_TREE(cow_String, cow_String);
REACH_TREE(cow_String, StringArray);
REACH_TREE(cow_String, IntArrayList);
REACH_TREE(cow_String, IntFixedArray);
REACH_TREE(cow_String, IntTree);
template struct Reach<NodeSetMaxDepth<cow_String, IntTree>, &cow_BtreeNode<cow_String, IntTree>::SetMaxDepth>;
template struct Reach<IteratorPop<cow_String, IntTree>, &cow_BtreeIterator<cow_String, IntTree>::Pop>;

namespace {

// The protected Delete of a handle, reached as a derived class may.
template <class T>
struct HandleDelete : cow_CountedHld<T> {
    static auto Address() { return &HandleDelete::Delete; }
};

// The protected copy constructor of the signed table, run as a derived class
// may.
struct IntTableCopy : omi_IntTable<cow_String> {
    explicit IntTableCopy(omi_IntTable<cow_String> const& source) : omi_IntTable<cow_String>(source) {}
};

// ---------------------------------------------------------------------------
// Handles, for each pointee type. The flags say which of the optional members
// the library exports for T: Delete, assignment from a handle, and the pair
// of assignment from a pointer and cow_Direct<T>::Copy.

template <class T, bool kDelete, bool kAssignHandle, bool kAssignPointer>
void UseHandle(T const& sample) {
    using Hld = cow_CountedHld<T>;
    using Cow = cow_COW<T, cow_Direct<T>>;
    {
        Cow copied(sample);
        Cow adopted(static_cast<T*>(nullptr));
        Hld plain(static_cast<T*>(nullptr));
        Check(&copied.Get() != &sample, "cow_COW(T const&) holds a copy");
        Keep(&Cow::Get);
    }
    if constexpr (kDelete) Keep(HandleDelete<T>::Address());
    if constexpr (kAssignHandle) Keep<Hld& (Hld::*)(Hld const&)>(&Hld::operator=);
    if constexpr (kAssignPointer) {
        Keep<Hld& (Hld::*)(T*)>(&Hld::operator=);
        Keep(&cow_Direct<T>::Copy);
    }
}

// ---------------------------------------------------------------------------
// Blocked arrays

template <class T, bool kRemoveHead, bool kCopyArray>
void UseArray() {
    using Array = cow_1DArray<T>;
    Keep(&Array::Get, &Array::PartialArrayConstGet, &Array::Grow, &Array::GetHead, &Array::SetFromArray,
         &Array::operator=, Reached<ArrayFullArrayGet<T>>());
    if constexpr (kRemoveHead) Keep(&Array::RemoveHead);
    if constexpr (kCopyArray) Keep(Reached<ArrayCopyArray<T>>());

    T source[2] = {Sample<T>(0), Sample<T>(1)};
    cow_1DArrayBlock<T> fresh(2), copied(2, source);
    Array empty, sized(20), shared(sized);
    shared = empty;
    sized.SetFromArray(source, 2);
    sized.Get(25) = sized.GetHead();
    Check(sized.Grow(30) && sized.GetSize() == 30 && shared.GetSize() == 0, "cow_1DArray grows; a copy does not");
    cow_1DArrayIter<T> walk(sized);
    if constexpr (!std::is_same_v<T, IntTree>) {
        using Iter = cow_1DArrayIter<T>;
        Keep(&Iter::First, &Iter::Next);
        walk.First().Next();
    }
}

void UseIntArrayEquality() {
    Keep(&cow_1DArray<int>::IsEqual);
    cow_1DArray<int> a(8), b(8);
    a.Get(7) = b.Get(7) = 49;
    Check(a.IsEqual(b), "equal int arrays compare equal");
}

// ---------------------------------------------------------------------------
// Lists

template <class T, bool kNested>
void UseArrayList() {
    using List = cow_1DArrayList<T>;
    Keep<void (List::*)(List const&)>(&List::Append);
    Keep(&List::Insert, &List::Remove, &List::Pop, &List::ClearAll, &List::FindFirst, &List::IsMember,
         &List::RemoveMember, &List::AppendUnlessMember, &List::IsEqual);
    Keep<List (List::*)(int, int)>(&List::Slice);
    Keep<void (List::*)(int, int, List&) const>(&List::Slice);
    Keep(&List::GetCArray);
    if constexpr (kNested) {
        Keep<void (List::*)(T const&)>(&List::Append);
        Keep(&List::FindLast);
    }

    List list, copy, part;
    for (int i = 0; i < 5; ++i) list.Append(Sample<T>(i));
    list.Insert(0, Sample<T>(0));
    copy.Append(list);
    copy.Pop();
    list.Slice(1, 3, part);
    Check(copy.GetCount() == 5 && list.Slice(1, 3).IsEqual(part), "append, pop and slice an array list");
    int size = 0;
    delete[] list.GetCArray(size);
    cow_1DArrayListIter<T> walk(list);
    copy.ClearAll();
}

template <class T, bool kSearch>
void UseList() {
    using List = cow_List<T>;
    Keep<List& (List::*)(T const&)>(&List::Append);
    Keep<List& (List::*)(List const&)>(&List::Append);
    Keep(&List::Prepend, &List::InsertAfter, &List::RemoveIndex, &List::RemoveFirst, &List::RemoveLast, &List::Clear,
         &List::ConstGet, &List::Get);

    List list, more;
    list.Append(Sample<T>(1)).Append(Sample<T>(2)).Prepend(Sample<T>(0)).InsertAfter(2, Sample<T>(3));
    list.RemoveIndex(3).RemoveFirst().RemoveLast();
    more.Append(list).Get(0) = list.ConstGet(0);
    Check(more.GetCount() == 1, "edit a cow_List");
    more.Clear();

    if constexpr (kSearch) {
        Keep(&List::Position, &List::IsMember, &List::Remove, &List::AppendUnlessMember, &List::IsEqual, &List::Sort,
             &List::operator-, Reached<ListSortCmp<T>>());

        List values;
        for (int i = 3; i >= 0; --i) values.AppendUnlessMember(Sample<T>(i));
        values.Sort();
        List removed = values - list;
        values.Remove(values.ConstGet(0));
        T const& first = values.ConstGet(0);
        Check(values.IsMember(first) && values.Position(first) == 0 && removed.IsEqual(removed), "sort and search");
        cow_ListIter<T> walk(values);
    }
}

void UseStringLengths() {
    cow_List<cow_String> texts;
    texts.Append(cow_String("ab")).Append(cow_String("abcd"));
    Check(GetLengthShortestString(texts) == 2 && GetLengthLongestString(texts) == 4, "the string lengths");
}

// ---------------------------------------------------------------------------
// Fixed shapes

template <class T>
void UseFixedArrayRep() {
    using Rep = cow_FixedArrayRep<T>;
    Keep(&Rep::operator=, &Rep::operator==, &Rep::operator!=);
    Rep rep(3), copy(rep);
    copy = rep;
    Check(copy == rep && !(copy != rep), "a copied representation is equal");
}

template <class T>
void UseFixedArray() {
    using Array = cow_FixedArray<T>;
    Keep(&Array::operator==, &Array::operator!=);
    Array a(3, Sample<T>(1)), b(a);
    b.Get(2) = Sample<T>(2);
    Check(a != b && !(a == b), "a write to a copy of a fixed array leaves the source");
}

template <class T>
void UseTwoDArray() {
    cow_2DArrayRep<T> rep(2, 3), copy(rep);
    cow_2DArray<T> matrix(2, 3, Sample<T>(1));
    Check(matrix.GetRows() == 2 && matrix.GetColumns() == 3, "cow_2DArray keeps its shape");
    UseHandle<cow_2DArrayRep<T>, true, false, true>(rep);
}

void UseShapes() {
    UseFixedArrayRep<int>();
    UseFixedArrayRep<float>();
    UseFixedArrayRep<cow_String>();
    UseFixedArray<int>();
    UseFixedArray<float>();
    UseFixedArray<cow_String>();
    Check(cow_FixedArray<int>().GetSize() == 10, "a default fixed array holds 10 elements");

    cow_FixedArrayRep<int> intRep(2);
    cow_FixedArrayRep<float> floatRep(2);
    cow_FixedArrayRep<double> doubleRep(2);
    cow_FixedArrayRep<cow_String> stringRep(2);
    //                                     Delete  =(handle)  =(T*), Copy
    UseHandle<cow_FixedArrayRep<int>,        true,  true,     true>(intRep);
    UseHandle<cow_FixedArrayRep<float>,      true,  false,    true>(floatRep);
    UseHandle<cow_FixedArrayRep<double>,     true,  false,    false>(doubleRep);
    UseHandle<cow_FixedArrayRep<cow_String>, true,  false,    true>(stringRep);

    UseTwoDArray<int>();
    UseTwoDArray<float>();
    UseTwoDArray<double>();
    UseTwoDArray<cow_String>();
}

// ---------------------------------------------------------------------------
// Trees. kWalk: the iterator's First, Next, Last and Previous are exported.
// kDelete: the handle's Delete is exported for the node type.

template <class K, class V, bool kWalk, bool kDelete>
void UseTree() {
    using Node = cow_BtreeNode<K, V>;
    using Tree = cow_Btree<K, V>;
    using Iter = cow_BtreeIterator<K, V>;
    Keep(&Node::Balance, &Node::InsertUnlessMember, &Node::Remove, &Node::Find, &Node::ConstFind,
         Reached<NodeRemoveNode<K, V>>(), &Tree::operator=, &Tree::InsertUnlessMember, &Tree::Remove,
         Reached<TreeFind<K, V>>(), Reached<TreeConstFind<K, V>>());

    Tree tree;
    for (int i = 1; i <= 4; ++i) tree.InsertUnlessMember(Sample<K>(i), Sample<V>(i));
    Tree copy(tree);
    Check(copy.Remove(Sample<K>(1)) && !copy.Remove(Sample<K>(1)), "a key is removed once");
    copy = tree;
    Iter walk(tree);
    if constexpr (kWalk) {
        Keep(&Iter::First, &Iter::Next, &Iter::Last, &Iter::Previous);
        int seen = 0;
        for (walk.First(); !walk.IsDone(); walk.Next()) ++seen;
        walk.Last();
        walk.Previous();
        Check(seen == copy.GetCount(), "a walk visits every key");
    }

    Node node(Sample<K>(0), Sample<V>(0)), nodeCopy(node);
    //     Delete   =(handle) =(T*), Copy
    UseHandle<Node, kDelete, true, true>(nodeCopy);
}

template <class K, class V>
void UseTreeUtils() {
    using Utils = cow_BtreeUtils<K, V>;
    Keep(&Utils::cow_Keys, &Utils::cow_Values);
    cow_Btree<K, V> tree;
    tree.InsertUnlessMember(Sample<K>(1), Sample<V>(1));
    Check(Utils::cow_Keys(tree).GetCount() == 1 && Utils::cow_Values(tree).GetCount() == 1, "cow_BtreeUtils lists");
}

void UseTrees() {
    //       K           V              walk   Delete
    UseTree<int,        int,           true,  true>();
    UseTree<int,        double,        true,  true>();
    UseTree<int,        IntArrayList,  true,  true>();
    UseTree<atr_String, AtrStringList, true,  false>();
    UseTree<cow_String, int,           true,  true>();
    UseTree<cow_String, unsigned int,  true,  true>();
    UseTree<cow_String, float,         true,  true>();
    UseTree<cow_String, cow_String,    true,  true>();
    UseTree<cow_String, StringArray,   true,  true>();
    UseTree<cow_String, IntArrayList,  true,  true>();
    UseTree<cow_String, IntFixedArray, false, false>();
    UseTree<cow_String, IntTree,       true,  true>();

    using TreeOfTrees = cow_Btree<cow_String, IntTree>;
    Keep(Reached<NodeSetMaxDepth<cow_String, IntTree>>(), Reached<IteratorPop<cow_String, IntTree>>(),
         &TreeOfTrees::Copy);
    TreeOfTrees outer;
    outer.InsertUnlessMember(cow_String("a"), IntTree());
    TreeOfTrees* heap = outer.Copy();
    Check(heap->GetCount() == 1, "cow_Btree::Copy copies the tree");
    delete heap;

    UseTreeUtils<cow_String, IntTree>();
    UseTreeUtils<cow_String, unsigned int>();
    UseTreeUtils<cow_String, cow_String>();
}

// ---------------------------------------------------------------------------
// Maps. The flags follow the map table: the node walk, the key and value
// lists, and the sorted walk are exported for some rows only.

template <class K, class V, bool kIterator, bool kUtils, bool kSorted>
void UseMap() {
    using Map = cow_Map<K, V>;
    using Node = cow_MapNode<K, V>;
    Keep(&Map::IsMember, &Map::Insert, &Map::Remove, &Map::Get, &Map::ConstGet);

    Map map;
    for (int i = 0; i < 3; ++i) map.Insert(Sample<K>(i), Sample<V>(i));
    Map copy(map);
    map.Get(Sample<K>(1)) = map.ConstGet(Sample<K>(2));
    Check(copy.Remove(Sample<K>(1)) && !copy.IsMember(Sample<K>(1)) && map.IsMember(Sample<K>(1)),
          "a key removed from a copy of a map stays in the source");

    if constexpr (kIterator) {
        using Iter = cow_ConstMapIterator<K, V>;
        Keep(&Iter::First);
        Iter walk(map);
        int seen = 0;
        for (walk.First(); !walk.IsDone(); walk.Next()) ++seen;
        Check(seen == 3, "the node walk visits every entry");
    }
    if constexpr (kUtils) {
        using Utils = cow_MapUtils<K, V>;
        Keep(&Utils::cow_Keys, &Utils::cow_Values);
        Check(Utils::cow_Keys(map).GetCount() == 3 && Utils::cow_Values(map).GetCount() == 3, "cow_MapUtils lists");
    }
    if constexpr (kSorted) {
        using Sorted = cow_ConstMapSortedIt<K, V>;
        Keep(&Sorted::First, &Sorted::AscSortCmp);
        Sorted walk(map);
        walk.First();
        Check(!walk.IsDone() && cow_StringByteCompare(walk.CurrentKey(), Sample<K>(0)) == 0,
              "the sorted walk starts at the smallest key");
    }

    Node node(Sample<K>(0), Sample<V>(0));
    //     Delete  =(handle)  =(T*), Copy
    UseHandle<Node, true, false, false>(node);
}

void UseMaps() {
    using IntList = cow_List<int>;
    using StringList = cow_List<cow_String>;
    using StringArrayList = cow_1DArrayList<cow_String>;
    using DoubleFixedArray = cow_FixedArray<double>;
    //      K             V                 iterator utils  sorted
    UseMap<int,          int,              true,    false, false>();
    UseMap<int,          unsigned int,     true,    false, false>();
    UseMap<int,          float,            true,    false, false>();
    UseMap<int,          double,           true,    false, false>();
    UseMap<int,          IntArrayList,     true,    true,  false>();
    UseMap<int,          FloatArrayList,   true,    false, false>();
    UseMap<int,          StringArrayList,  true,    true,  false>();
    UseMap<int,          IntFixedArray,    true,    false, false>();
    UseMap<int,          DoubleFixedArray, true,    false, false>();
    UseMap<int,          cow_String,       true,    false, false>();
    UseMap<int,          omi_BlkBitVect,   true,    false, false>();
    UseMap<unsigned int, int,              false,   false, false>();
    UseMap<unsigned int, unsigned int,     true,    false, false>();
    UseMap<unsigned int, atr_String,       true,    true,  false>();
    UseMap<unsigned int, cow_String,       true,    false, false>();
    UseMap<cow_String,   int,              true,    true,  false>();
    UseMap<cow_String,   unsigned int,     true,    true,  false>();
    UseMap<cow_String,   float,            true,    false, true>();
    UseMap<cow_String,   double,           true,    true,  false>();
    UseMap<cow_String,   cow_String,       true,    true,  true>();
    UseMap<cow_String,   IntArrayList,     true,    false, false>();
    UseMap<cow_String,   FloatArrayList,   true,    false, false>();
    UseMap<cow_String,   StringArrayList,  true,    true,  false>();
    UseMap<cow_String,   DoubleFixedArray, true,    false, false>();
    UseMap<cow_String,   IntList,          true,    false, false>();
    UseMap<cow_String,   StringList,       true,    false, false>();
    UseMap<cow_String,   atr_String,       true,    true,  false>();
}

// ---------------------------------------------------------------------------
// Tables

int CompareNothing(void const*, void const*) {
    return 0;
}

void UseTables() {
    using Iter = omi_IntTableIterator<cow_String>;
    Keep(&omi_UintTableBlock<cow_String>::Insert, &omi_UintTable<cow_String>::Insert,
         &omi_UintTable<cow_String>::Remove, &Iter::First, &Iter::Last, &Iter::Next, &Iter::IsDone, &Iter::CurrentKey,
         &Iter::CurrentValue);

    omi_UintTableBlock<cow_String> block(24, 10);
    omi_UintTable<cow_String> unsignedTable;
    Check(block.Insert(5, cow_String("v")) && unsignedTable.Insert(7, cow_String("v")) && unsignedTable.Remove(7),
          "unsigned keys come and go");
    omi_UintTableIterator<cow_String> unsignedWalk(unsignedTable);

    omi_IntTable<cow_String> table, shaped(16, 8, 4);
    table.Insert(-3, cow_String("a"));
    table.Insert(2, cow_String("b"));
    IntTableCopy copy(table);
    Iter walk(copy), unordered(shaped, &CompareNothing);
    walk.First();
    Check(walk.CurrentKey() == -3 && walk.CurrentValue().GetLength() == 1, "the table walk goes in signed order");
    walk.Next();
    walk.Last();
    unordered.First();
    Check(!walk.IsDone() && unordered.IsDone(), "an empty table's walk is done at once");

    //          Delete  =(handle)  =(T*), Copy
    UseHandle<omi_IntTable<cow_String>, true, false, true>(table);
    omi_IntTable<int> integers;
    UseHandle<omi_IntTable<int>, true, false, false>(integers);
}

// ---------------------------------------------------------------------------
// Plain classes and free functions

void UseCore() {
    Keep(&cow_Counter::operator new, &cow_Counter::operator delete);
    cow_Counter* counter = new cow_Counter;
    cow_IntrusiveCountedBase base;
    base.SetCounter(counter);
    delete counter;
    // An empty value prints nothing.
    aio_ostream out(stdout);
    out << cow_String();
    cow_String text = cow_SystemErrorCode(10004).GetText();
    Check(std::strcmp(text.GetCString(), "WSAEINTR (10004) Interrupted function call.") == 0, "a socket code's text");
}

void UseArrays() {
    //        T                walk-off head  table copy
    UseArray<int,              false,         false>();
    UseArray<unsigned int,     false,         false>();
    UseArray<float,            false,         false>();
    UseArray<double,           false,         false>();
    UseArray<bool,             false,         false>();
    UseArray<cow_String,       false,         false>();
    UseArray<atr_String,       false,         false>();
    UseArray<IntArrayList,     true,          true>();
    UseArray<FloatArrayList,   true,          true>();
    UseArray<DoubleArrayList,  true,          true>();
    UseArray<IntTree,          true,          false>();
    UseIntArrayEquality();
}

void UseLists() {
    //            T                nested
    UseArrayList<int,             false>();
    UseArrayList<unsigned int,    false>();
    UseArrayList<float,           false>();
    UseArrayList<double,          false>();
    UseArrayList<cow_String,      false>();
    UseArrayList<IntArrayList,    true>();
    UseArrayList<FloatArrayList,  true>();
    UseArrayList<DoubleArrayList, true>();

    //       T             search, sort, difference
    UseList<int,          true>();
    UseList<unsigned int, true>();
    UseList<bool,         true>();
    UseList<float,        true>();
    UseList<double,       true>();
    UseList<cow_String,   true>();
    UseList<atr_String,   true>();
    UseList<IntArrayList, false>();
    UseList<IntTree,      false>();
    UseStringLengths();
}

}  // namespace

int main() {
    int started = 0;
    cow_initialize(started);
    UseCore();
    UseArrays();
    UseLists();
    UseShapes();
    UseTrees();
    UseMaps();
    UseTables();
    cow_finalize(started);
    if (failures != 0) std::fprintf(stderr, "all_exports_consumer: %d failures\n", failures);
    return failures == 0 ? 0 : 1;
}
