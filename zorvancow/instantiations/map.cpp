// The digital maps the library holds: for each key/value row the node, its
// handle classes and the map; the node walk for every row but
// <unsigned int, int>; the sorted walk for two string-keyed rows; keys and
// values as lists for nine rows.

#include "zorvancow/map/cow_Map.h"

#define ZORVANCOW_INSTANTIATE_MAP(K, V)                                        \
    ZORVANCOW_INSTANTIATE_COW(cow_MapNode<K, V>);                              \
    template struct cow_MapNode<K, V>;                                         \
    template class cow_Map<K, V>

ZORVANCOW_INSTANTIATE_MAP(int, int);
ZORVANCOW_INSTANTIATE_MAP(int, unsigned int);
ZORVANCOW_INSTANTIATE_MAP(int, float);
ZORVANCOW_INSTANTIATE_MAP(int, double);
ZORVANCOW_INSTANTIATE_MAP(int, cow_1DArrayList<int>);
ZORVANCOW_INSTANTIATE_MAP(int, cow_1DArrayList<float>);
ZORVANCOW_INSTANTIATE_MAP(int, cow_1DArrayList<cow_String>);
ZORVANCOW_INSTANTIATE_MAP(int, cow_FixedArray<int>);
ZORVANCOW_INSTANTIATE_MAP(int, cow_FixedArray<double>);
ZORVANCOW_INSTANTIATE_MAP(int, cow_String);
ZORVANCOW_INSTANTIATE_MAP(int, omi_BlkBitVect);
ZORVANCOW_INSTANTIATE_MAP(unsigned int, int);
ZORVANCOW_INSTANTIATE_MAP(unsigned int, unsigned int);
ZORVANCOW_INSTANTIATE_MAP(unsigned int, atr_String);
ZORVANCOW_INSTANTIATE_MAP(unsigned int, cow_String);
ZORVANCOW_INSTANTIATE_MAP(cow_String, int);
ZORVANCOW_INSTANTIATE_MAP(cow_String, unsigned int);
ZORVANCOW_INSTANTIATE_MAP(cow_String, float);
ZORVANCOW_INSTANTIATE_MAP(cow_String, double);
ZORVANCOW_INSTANTIATE_MAP(cow_String, cow_String);
ZORVANCOW_INSTANTIATE_MAP(cow_String, cow_1DArrayList<int>);
ZORVANCOW_INSTANTIATE_MAP(cow_String, cow_1DArrayList<float>);
ZORVANCOW_INSTANTIATE_MAP(cow_String, cow_1DArrayList<cow_String>);
ZORVANCOW_INSTANTIATE_MAP(cow_String, cow_List<int>);
ZORVANCOW_INSTANTIATE_MAP(cow_String, cow_List<cow_String>);
ZORVANCOW_INSTANTIATE_MAP(cow_String, cow_FixedArray<double>);
ZORVANCOW_INSTANTIATE_MAP(cow_String, atr_String);

template class cow_ConstMapIterator<int, int>;
template class cow_ConstMapIterator<int, unsigned int>;
template class cow_ConstMapIterator<int, float>;
template class cow_ConstMapIterator<int, double>;
template class cow_ConstMapIterator<int, cow_1DArrayList<int>>;
template class cow_ConstMapIterator<int, cow_1DArrayList<float>>;
template class cow_ConstMapIterator<int, cow_1DArrayList<cow_String>>;
template class cow_ConstMapIterator<int, cow_FixedArray<int>>;
template class cow_ConstMapIterator<int, cow_FixedArray<double>>;
template class cow_ConstMapIterator<int, cow_String>;
template class cow_ConstMapIterator<int, omi_BlkBitVect>;
template class cow_ConstMapIterator<unsigned int, unsigned int>;
template class cow_ConstMapIterator<unsigned int, atr_String>;
template class cow_ConstMapIterator<unsigned int, cow_String>;
template class cow_ConstMapIterator<cow_String, int>;
template class cow_ConstMapIterator<cow_String, unsigned int>;
template class cow_ConstMapIterator<cow_String, float>;
template class cow_ConstMapIterator<cow_String, double>;
template class cow_ConstMapIterator<cow_String, cow_String>;
template class cow_ConstMapIterator<cow_String, cow_1DArrayList<int>>;
template class cow_ConstMapIterator<cow_String, cow_1DArrayList<float>>;
template class cow_ConstMapIterator<cow_String, cow_1DArrayList<cow_String>>;
template class cow_ConstMapIterator<cow_String, cow_List<int>>;
template class cow_ConstMapIterator<cow_String, cow_List<cow_String>>;
template class cow_ConstMapIterator<cow_String, cow_FixedArray<double>>;
template class cow_ConstMapIterator<cow_String, atr_String>;

template class cow_ConstMapSortedIt<cow_String, cow_String>;
template class cow_ConstMapSortedIt<cow_String, float>;

template class cow_MapUtils<int, cow_1DArrayList<int>>;
template class cow_MapUtils<int, cow_1DArrayList<cow_String>>;
template class cow_MapUtils<unsigned int, atr_String>;
template class cow_MapUtils<cow_String, int>;
template class cow_MapUtils<cow_String, unsigned int>;
template class cow_MapUtils<cow_String, double>;
template class cow_MapUtils<cow_String, cow_String>;
template class cow_MapUtils<cow_String, cow_1DArrayList<cow_String>>;
template class cow_MapUtils<cow_String, atr_String>;
