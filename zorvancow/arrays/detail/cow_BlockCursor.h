#ifndef ZORVANCOW_ARRAYS_DETAIL_COW_BLOCKCURSOR_H
#define ZORVANCOW_ARRAYS_DETAIL_COW_BLOCKCURSOR_H

// The one walk over a blocked array's storage. Every walk of the array
// family (cow_1DArrayIter, the standard iterator, the block ranges, the
// lists' search and equality, the hand-over) turns positions into blocks
// here and nowhere else.

#include <cstddef>
#include <type_traits>

#include "zorvancow/core/cow_Export.h"

template <class T>
class ZORVANCOW_TYPE cow_1DArray;

namespace cow_detail {
// A place in a range of a blocked array, told block by block: from an
// absolute position (as cow_1DArray counts them, head first) and the array's
// shift, the slot of its block and its offset there, and the run of elements
// from it to the end of the block or of the range, whichever comes first.
//
// Three ints and no array: it reads no table by itself, so the walk that
// holds it decides what a slot means (read it, create its block, skip a
// hole). The array calls below are the ways the family reads a block, and
// the one way its iterators write one.
class BlockCursor {
public:
    // At position 0 of an empty range.
    BlockCursor() = default;
    // At `position` of the range that ends before `stop`, over blocks of
    // 1 << shift elements. `position` may stand at `stop` (a walk's end).
    BlockCursor(int position_, int shift_, int stop_) : position(position_), shift(shift_), stop(stop_) {}

    int Position() const { return position; }
    int Stop() const { return stop; }
    int Shift() const { return shift; }
    // The block length, the slot of the position's block, the offset in it,
    // and the first position of that block.
    int Length() const { return 1 << shift; }
    int Slot() const { return position >> shift; }
    int Offset() const { return position & (Length() - 1); }
    int BlockStart() const { return position - Offset(); }
    // Elements from here to the end of the block or to the stop.
    int Run() const {
        int const toBlockEnd = Length() - Offset();
        return toBlockEnd < stop - position ? toBlockEnd : stop - position;
    }
    // True once the position has reached the stop.
    bool Done() const { return position >= stop; }

    // Moves to the first position of the next block, or to the stop when the
    // range ends first. Never passes the stop, so a range that ends near the
    // largest int does not overflow.
    BlockCursor& NextRun() {
        position += Run();
        return *this;
    }
    // Moves to `position_` in the same range.
    BlockCursor& MoveTo(int position_) {
        position = position_;
        return *this;
    }

    // The storage of the block at the position, null where the slot holds no
    // block (a hole). A pure read: nothing is created, no count changes.
    template <class T>
    T* BlockData(cow_1DArray<T> const& array) const {
        auto const* block = array.GetBlock(Slot());
        return block != nullptr ? block->GetData() : nullptr;
    }
    // The same, for a position inside the array's extent, creating an absent
    // block as the array's own const read does (PartialArrayConstGet): the
    // new block holds the default elements that the slot stood for.
    template <class T>
    T const* ReadBlockData(cow_1DArray<T> const& array) const {
        if (T const* data = BlockData(array)) return data;
        return &array.PartialArrayConstGet(position - array.GetHeadPosition()) - Offset();
    }

    // Whether the block at the position may be written in place: the array's
    // table and the block are both held once (the gate's test, cow_IsSole).
    template <class T>
    bool IsPrivate(cow_1DArray<T> const& array) const {
        return array.GetTableShareCount() == 1 && array.GetBlockCount(Slot()) == 1;
    }
    // The storage of the block at the position, made writable by the array's
    // own write access (Get of that element): a shared table is copied, then
    // an absent block created or a shared one copied. The position must lie
    // inside the array's extent, so nothing grows.
    template <class T>
    T* WriteBlockData(cow_1DArray<T>& array) const {
        return &array.Get(position - array.GetHeadPosition()) - Offset();
    }

private:
    int position = 0;
    int shift = 0;
    int stop = 0;
};

// An element of a blocked array as an iterator stands on it: a pointer into
// its block's storage and the end of that storage, so that a step inside a
// block is one increment and one compare, and the cursor, consulted once
// per block. `Array` is `cow_1DArray<T> const` for a walk that reads, or
// `cow_1DArray<T>` for one that may write (cow_ElementRef); the latter also
// learns, once per block on entering it, whether the block is private.
template <class T, class Array>
class BlockPlace {
public:
    BlockPlace() = default;
    // On element `index` (0 to `count`) of `array`, whose walk ends after
    // element `count` - 1, counted from the head.
    BlockPlace(Array& array_, std::ptrdiff_t index, int count_)
        : array(&array_),
          at(array_.GetHeadPosition(), array_.GetShift(), array_.GetHeadPosition() + count_),
          head(array_.GetHeadPosition()) {
        Seek(index);
    }

    // The element's index counted from the head.
    std::ptrdiff_t Index() const {
        if (current == nullptr) return 0;
        return at.BlockStart() + (current - BlockBase()) - head;
    }
    // Elements from here to the end of the block's storage, and the slot:
    // together they name an element even while two walks hold different
    // storage for one block.
    std::ptrdiff_t ToBlockEnd() const { return blockEnd - current; }
    int Slot() const { return at.Slot(); }
    T const* Current() const { return current; }

    void Seek(std::ptrdiff_t index) {
        if (array == nullptr || at.Stop() == head) {
            current = blockEnd = nullptr;
            writable = false;
            return;
        }
        int const p = head + static_cast<int>(index);
        // The end lies one past the last element, in that element's block.
        if (p == at.Stop()) {
            Enter(p - 1);
            ++current;
        } else {
            Enter(p);
        }
    }
    // The step inside a block is kept apart from the block change, so that
    // it stays small enough to inline into a loop.
    void Increment() {
        if (++current == blockEnd) NextBlock();
    }
    void Decrement() {
        if (current == BlockBase()) {
            Enter(at.BlockStart() - 1);
        } else {
            --current;
        }
    }

protected:
    std::ptrdiff_t Length() const { return at.Length(); }
    T const* BlockBase() const { return blockEnd - Length(); }
    // Takes `base` as the storage of the current block, keeping the offset.
    void Rebase(T const* base) const {
        current = base + (current - BlockBase());
        blockEnd = base + Length();
    }
    // Stands on position `p`, in the block `at` has moved to.
    void Enter(int p) {
        at.MoveTo(p);
        T const* base = at.ReadBlockData(*array);
        current = base + at.Offset();
        blockEnd = base + Length();
        writable = !std::is_const<Array>::value && at.IsPrivate(*array);
    }
    void NextBlock() {
        BlockCursor next = at;
        if (next.NextRun().Done()) return;  // one past the last element: the end
        Enter(next.Position());
    }

    Array* array = nullptr;
    mutable T const* current = nullptr;   // the element
    mutable T const* blockEnd = nullptr;  // one past the storage of its block
    BlockCursor at;                       // a position in the element's block; the walk's stop
    int head = 0;                         // the array's head position
    mutable bool writable = false;        // a writing walk: the block is known to be private
};

// The side-by-side walk of two arrays, for a comparison: elements 0 to n - 1
// of each (counted from each one's head), in runs that cross no block
// boundary of either. `differ(i, k, x, y)` gets each run of k elements from
// element i whose storage is not the same: x and y point at element i in
// each array's block, null where the slot holds no block (default
// elements). A run that reads one storage in both (the same block at the same
// offset, or holes in both) is skipped unread: that is what copies share.
// A pure read, like BlockData.
//
// Cost: arrays on one table with one head, nothing. Arrays of one block
// length whose heads lie at one offset in a block (the usual case: one is a
// changed copy of the other) walk their tables slot by slot, one pointer
// compare per block, and read only blocks that differ. Otherwise every run
// is handed over.
template <class T, class Differ>
void PairedBlockRuns(cow_1DArray<T> const& a, cow_1DArray<T> const& b, int n, Differ&& differ) {
    int const headA = a.GetHeadPosition();
    int const headB = b.GetHeadPosition();
    if (n <= 0 || (a.GetTableCounter() == b.GetTableCounter() && headA == headB)) return;
    BlockCursor x(headA, a.GetShift(), headA + n);
    BlockCursor y(headB, b.GetShift(), headB + n);
    bool const inStep = x.Shift() == y.Shift() && x.Offset() == y.Offset();
    while (!x.Done()) {
        if (inStep && x.Offset() == 0) {
            // Whole blocks in step: skip those both tables hold.
            int slotA = x.Slot();
            int slotB = y.Slot();
            int const lastA = (x.Stop() - 1) >> x.Shift();
            while (slotA < lastA && a.GetBlock(slotA) == b.GetBlock(slotB)) ++slotA, ++slotB;
            int const skipped = (slotA - x.Slot()) << x.Shift();
            x.MoveTo(x.Position() + skipped);
            y.MoveTo(y.Position() + skipped);
        }
        int const run = x.Run() < y.Run() ? x.Run() : y.Run();
        T const* dataA = x.BlockData(a);
        T const* dataB = y.BlockData(b);
        if (dataA != nullptr) dataA += x.Offset();
        if (dataB != nullptr) dataB += y.Offset();
        if (dataA != dataB) differ(x.Position() - headA, run, dataA, dataB);
        x.MoveTo(x.Position() + run);
        y.MoveTo(y.Position() + run);
    }
}
}  // namespace cow_detail

#endif
