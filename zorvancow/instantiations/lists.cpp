// The lists the library holds, for each element type, and the blocked
// arrays whose elements are lists.

#include "zorvancow/lists/cow_1DArrayList.h"
#include "zorvancow/lists/cow_List.h"

template class cow_1DArrayBlock<cow_1DArrayList<int>>;
template class cow_1DArrayBlock<cow_1DArrayList<float>>;
template class cow_1DArrayBlock<cow_1DArrayList<double>>;
template class cow_1DArray<cow_1DArrayList<int>>;
template class cow_1DArray<cow_1DArrayList<float>>;
template class cow_1DArray<cow_1DArrayList<double>>;
template class cow_1DArrayIter<cow_1DArrayList<int>>;
template class cow_1DArrayIter<cow_1DArrayList<float>>;
template class cow_1DArrayIter<cow_1DArrayList<double>>;

template class cow_1DArrayList<int>;
template class cow_1DArrayList<unsigned int>;
template class cow_1DArrayList<float>;
template class cow_1DArrayList<double>;
template class cow_1DArrayList<cow_String>;
template class cow_1DArrayList<cow_1DArrayList<int>>;
template class cow_1DArrayList<cow_1DArrayList<float>>;
template class cow_1DArrayList<cow_1DArrayList<double>>;

template class cow_1DArrayListIter<int>;
template class cow_1DArrayListIter<unsigned int>;
template class cow_1DArrayListIter<float>;
template class cow_1DArrayListIter<double>;
template class cow_1DArrayListIter<cow_String>;
template class cow_1DArrayListIter<cow_1DArrayList<int>>;
template class cow_1DArrayListIter<cow_1DArrayList<float>>;
template class cow_1DArrayListIter<cow_1DArrayList<double>>;

template class cow_List<int>;
template class cow_List<unsigned int>;
template class cow_List<bool>;
template class cow_List<float>;
template class cow_List<double>;
template class cow_List<cow_String>;
template class cow_List<atr_String>;

template class cow_ListIter<int>;
template class cow_ListIter<unsigned int>;
template class cow_ListIter<bool>;
template class cow_ListIter<float>;
template class cow_ListIter<double>;
template class cow_ListIter<cow_String>;
template class cow_ListIter<atr_String>;

// A list of array lists has no search, sort or difference: its elements
// have no order, and the library offers no search on them.
template cow_List<cow_1DArrayList<int>>::~cow_List();
template cow_List<cow_1DArrayList<int>>& cow_List<cow_1DArrayList<int>>::Append(cow_1DArrayList<int> const&);
template cow_List<cow_1DArrayList<int>>& cow_List<cow_1DArrayList<int>>::Append(cow_List<cow_1DArrayList<int>> const&);
template cow_List<cow_1DArrayList<int>>& cow_List<cow_1DArrayList<int>>::Prepend(cow_1DArrayList<int> const&);
template cow_List<cow_1DArrayList<int>>& cow_List<cow_1DArrayList<int>>::InsertAfter(int, cow_1DArrayList<int> const&);
template cow_List<cow_1DArrayList<int>>& cow_List<cow_1DArrayList<int>>::RemoveIndex(int);
template cow_List<cow_1DArrayList<int>>& cow_List<cow_1DArrayList<int>>::RemoveFirst();
template cow_List<cow_1DArrayList<int>>& cow_List<cow_1DArrayList<int>>::RemoveLast();
template cow_List<cow_1DArrayList<int>>& cow_List<cow_1DArrayList<int>>::Clear();
template cow_1DArrayList<int> const& cow_List<cow_1DArrayList<int>>::ConstGet(int) const;
template cow_1DArrayList<int>& cow_List<cow_1DArrayList<int>>::Get(int);
