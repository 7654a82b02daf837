#ifndef ZORVANCOW_LISTS_DETAIL_COW_LISTWALK_H
#define ZORVANCOW_LISTS_DETAIL_COW_LISTWALK_H

#include "zorvancow/arrays/cow_1DArray.h"

namespace cow_detail {
// The walk that both list iterators share: a snapshot walk of the list's
// array (cow_1DArrayIter) that ends at a position fixed when the iterator was
// made, the list's end at that moment. `Iter` is the concrete iterator, so
// that First and Next chain on it.
template <class T, class Iter>
class ListWalk : public cow_1DArrayIter<T> {
public:
    // Back to the first element.
    Iter& First() {
        cow_1DArrayIter<T>::First();
        return static_cast<Iter&>(*this);
    }
    // On to the next element.
    Iter& Next() {
        this->Advance();
        return static_cast<Iter&>(*this);
    }
    // True once every element has been visited.
    bool IsDone() const { return this->position >= end; }
    // The current element (not after IsDone).
    T const& Current() const { return this->ConstGet(); }

protected:
    ListWalk(cow_1DArray<T> const& array, int stop) : cow_1DArrayIter<T>(array), end(stop) {}

private:
    int end;
};
}  // namespace cow_detail

#endif
