#ifndef ZORVANCOW_ARRAYS_COW_1DARRAY_H
#define ZORVANCOW_ARRAYS_COW_1DARRAY_H

// The blocked array: the storage under every list of the library.
//
// Elements live in equal blocks of 1 << shift elements, reached through a
// table of block pointers. Sharing happens at two levels: arrays share a
// table (one count on the table), and tables share blocks (one count in each
// block, counting tables, not arrays). Copying an array is one increment. The
// first write through a copy duplicates the table (pointers only), and then
// each block at the moment it is first written; the rest stays shared. A slot
// that was never touched holds no block at all and reads as default elements.
//
// Positions are absolute: element i (counted from the first element) lies at
// position head + i, in slot position >> shift. The size is end - head. Each
// operation states what the caller must keep; checked mode (core/cow_Check.h)
// stops on a negative index, a negative size given to Grow, a read at or
// past the size, and the preconditions of RemoveHead and SetFromArray.
// Positions that would pass 2147483647 are refused in every build.
//
// Tables live in mem_Malloc storage (the only storage that is ever resized);
// blocks and counters come from the global operator new through cow_Counter,
// and each block's elements are one run of cow_Element<T>.
//
// Counts are plain integers, and even a const read may create a block in a
// shared table: arrays that share storage belong to one thread at a time.
//
// A move takes the table, its counter and the positions, and leaves the
// source with no counter at all: the state of a default array that has not
// yet made its counter. Such an array reads as empty, copies (into another
// array without a counter, allocating nothing), and makes its counter at its
// first write, from where it behaves as a default array in every count,
// position and capacity. Only GetTableCounter() tells it apart (null). So a
// move allocates nothing, changes no count and cannot throw.

#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <type_traits>
#include <utility>

#include "zorvancow/core/cow_COW.h"
#include "zorvancow/core/cow_Check.h"
#include "zorvancow/core/cow_Element.h"
#include "zorvancow/core/cow_Export.h"
#include "zorvancow/arrays/cow_BlockLength.h"
#include "zorvancow/arrays/detail/cow_BlockCursor.h"
#include "zorvancow/arrays/detail/cow_BlockSequence.h"
#include "zorvancow/arrays/detail/cow_1DArrayStd.h"
#include "zorvancow/core/cow_String.h"
#include "zorvanmem/mem_Heap.h"


template <class T>
class ZORVANCOW_TYPE cow_1DArray;
template <class T>
class ZORVANCOW_TYPE cow_1DArrayIter;
template <class T>
class cow_BlockIterator;

// One block of a blocked array: a count of the tables that hold it (the
// inherited cow_Counter, starting at 1) and storage for the elements. A block
// does not know its length; every array holding it has the same shift and
// passes the length in. Allocated and freed through cow_Counter's operators.
template <class T>
class ZORVANCOW_TYPE cow_1DArrayBlock : public cow_Counter {
public:
    // A block of n default elements (zero bytes, empty strings or containers).
    explicit cow_1DArrayBlock(int n);
    // A block of n elements copied from src: containers and strings share
    // their content through their own counts, nothing is copied deeply.
    cow_1DArrayBlock(int n, T const* src);
    // Destroys the elements and frees their storage.
    ~cow_1DArrayBlock();

    cow_1DArrayBlock(cow_1DArrayBlock const&) = delete;
    cow_1DArrayBlock& operator=(cow_1DArrayBlock const&) = delete;

    // Inspection: the element storage of the block.
    T* GetData() const { return data; }

private:
    friend class cow_1DArray<T>;
    friend class cow_1DArrayIter<T>;

    T* data;
};

// A growable array in counted blocks, copy-on-write at table and block level,
// growable at both ends. Built for the lists, which keep their own element
// count and use the array's end as a high-water mark.
// The per-element members (Get, PartialArrayConstGet, RemoveHead, the copy)
// are defined inline below: a caller compiles in the common case (private
// table, private block, inside the table) and calls into the library only
// for growth, unsharing or a new block.
template <class T>
class ZORVANCOW_TYPE cow_1DArray : public cow_BlockSequence<cow_1DArray<T>, T> {
public:
    typedef cow_1DArrayBlock<T> Block;

    // An empty array with no table: allocates its counter only. Its block
    // length is fixed at the first growth (16 elements).
    cow_1DArray();
    // An array of size n with a table and no blocks: allocates a counter and
    // a table of 16 slots, or for n from 256 on enough slots for 8 to 16
    // blocks plus 16 free ones. The block length is chosen from n: blocks of
    // n/16 to n/8 elements, 16 below 256; no element is created until it is
    // touched. n must not be negative (checked mode stops on it).
    explicit cow_1DArray(int n);
    // An empty array with the given block length (arrays/cow_BlockLength.h),
    // which it keeps through copies, moves and resets. With
    // cow_BlockLength() it is the array above.
    explicit cow_1DArray(cow_BlockLength length);
    // An array of size n with blocks of the given length: a table of the
    // blocks needed plus 16 slots, and no blocks. With cow_BlockLength() it
    // is cow_1DArray(n).
    cow_1DArray(int n, cow_BlockLength length);
    // Shares the other's table: one increment, no allocation.
    cow_1DArray(cow_1DArray const& other) noexcept;
    // Takes the other's table without a count moving; `other` is left empty
    // (see the top of this file).
    cow_1DArray(cow_1DArray&& other) noexcept
        : capacity(other.capacity),
          shift(other.shift),
          endPosition(other.endPosition),
          head(other.head),
          tableCounter(other.tableCounter),
          table(other.table),
          blockRule(other.blockRule) {
        other.capacity = 0;
        other.shift = 0;
        other.endPosition = 0;
        other.head = 0;
        other.tableCounter = nullptr;
        other.table = nullptr;
    }
    // Leaves the table; the last array on it releases its blocks and frees it.
    ~cow_1DArray();
    // Leaves this table (releasing it when last), then shares the other's.
    // Assigning an array to itself changes nothing.
    cow_1DArray& operator=(cow_1DArray const& other);
    // Leaves this table (releasing it when last), then takes the other's;
    // `other` is left empty. Moving an array into itself changes nothing.
    cow_1DArray& operator=(cow_1DArray&& other) noexcept {
        cow_1DArray taken(std::move(other));
        swap(taken);
        return *this;
    }
    // Exchanges the two arrays' tables and positions; no count moves.
    void swap(cow_1DArray& other) noexcept {
        std::swap(capacity, other.capacity);
        std::swap(shift, other.shift);
        std::swap(endPosition, other.endPosition);
        std::swap(head, other.head);
        std::swap(tableCounter, other.tableCounter);
        std::swap(table, other.table);
        std::swap(blockRule, other.blockRule);
    }

    // Write access to element i (0 or more), counted from the head. Always a
    // write: it makes the table and the block of element i private (copying
    // the table's pointers and that one block when shared) and creates the
    // block if absent. With i at or past the size the array grows to i + 1;
    // the slots skipped over stay empty.
    T& Get(int i);
    // Read access to element i, which must be below the size, on an array
    // with a table. Copies nothing and changes no count, but creates an
    // absent block (default content) in the table, shared or not.
    T const& PartialArrayConstGet(int i) const;
    // Sets the size to n counted from the head, making the table private
    // first. Growing adds the missing slots plus 16 to the table. Grow(0)
    // resets the array to the state of a default one, giving up this array's
    // hold on every block (on a shared table in constant time: the table
    // stays with the other arrays, and no block count moves). Shrinking
    // (0 < n < size) keeps the table's capacity and lets go of every block
    // wholly beyond the new end: its count falls (freeing it at 0) and its
    // slot becomes empty, so a later growth starts from default elements
    // there. Elements inside the new extent are untouched. A balanced array
    // (cow_BlockLength::Balanced()) whose table would grow past four times
    // its block length re-blocks first (see arrays/cow_BlockLength.h).
    // Always true.
    bool Grow(int n);
    // Adds one element in front of the first and returns it (a default
    // element). No element moves: when the head reaches position 0, the used
    // slots move to the back of the table by their pointers, and the table
    // grows by 17 slots only when it has no free slot.
    T& GetHead();
    // Drops the first element position; end stays. When the head leaves a
    // block that block is released. Needs a private table, a private first
    // block and a non-empty array (the list's RemoveFirst writes element 0
    // through Get first).
    void RemoveHead();
    // Loads n elements from src, one Get per block-length run. A sized array
    // keeps its size; a shorter one grows only to the first index of the
    // last run plus one. Needs head on a block boundary.
    void SetFromArray(T const* src, int n);
    // Element-wise equality (int arrays only): same size, and each pair of
    // elements at one address or equal in value. Creates absent blocks of
    // both arrays.
    bool IsEqual(cow_1DArray const& other) const;

    // Number of elements, end - head.
    int GetSize() const { return endPosition - head; }

    // The table size from which the queue rules act. A list used as a queue
    // (Append then RemoveFirst, or Prepend then RemoveLast, at a steady
    // length) would otherwise grow its table, and in reverse its blocks,
    // without bound. From this many slots on, when the elements fill a
    // quarter of the table or less, a growth that would lengthen the table
    // moves the blocks within it instead. Below it the growth rules hold
    // exactly. 2048 slots of pointers are 16 KiB; the blocks that a reverse
    // queue leaves behind its count until the next move stay below 1 MB for
    // small elements.
    static constexpr int kQueueSlots = 2048;

    // Inspection, read-only: the table's slot count, log2 of the block
    // length, the absolute head and end positions, how many arrays share the
    // table (iterators included) and the counter itself (equal counters mean
    // a shared table), and the block in a slot (null when absent) with the
    // number of tables that hold it (0 when absent).
    int GetCapacity() const { return capacity; }
    int GetShift() const { return shift; }
    int GetHeadPosition() const { return head; }
    int GetEndPosition() const { return endPosition; }
    int GetTableShareCount() const { return tableCounter != nullptr ? tableCounter->GetCount() : 1; }
    cow_Counter const* GetTableCounter() const { return tableCounter; }
    // The block length this array was made with: cow_BlockLength() for the
    // growth rules, else what the constructor took.
    cow_BlockLength GetBlockLength() const { return cow_BlockLength(blockRule, 0); }
    Block const* GetBlock(int slot) const { return table[slot]; }
    int GetBlockCount(int slot) const { return table[slot] != nullptr ? table[slot]->GetCount() : 0; }

    // Standard interface (arrays/detail/cow_BlockSequence.h: iterators, size,
    // element access; arrays/detail/cow_1DArrayStd.h). Iterators of a const
    // array read only; those of a non-const one also write, unsharing at
    // block grain (arrays/detail/cow_BlockWriteIterator.h). Any change of the
    // extent invalidates them.
    // A sized array holding `values`.
    cow_1DArray(std::initializer_list<T> values);
    // A sized array holding the elements of [first, last).
    template <class It, class = cow_detail::EnableIterator<It>>
    cow_1DArray(It first, It last);
    // A sized array holding the elements of a range (a std::vector, a list, ...).
    template <class R, class = cow_detail::EnableRange<R, cow_1DArray>>
    explicit cow_1DArray(R const& range);

private:
    friend class cow_1DArrayIter<T>;
    friend class cow_BlockSequence<cow_1DArray, T>;
    static constexpr char const kSequenceName[] = "cow_1DArray";
    cow_1DArray const& SequenceArray() const { return *this; }
    cow_1DArray& SequenceArray() { return *this; }
    int SequenceLength() const { return GetSize(); }
    T const& SequenceElement(int i) const { return PartialArrayConstGet(i); }

    // Write access to absolute position p on a private table: creates the
    // block when absent, copies it when another table holds it too.
    T& FullArrayGet(int p);
    // Makes the table private: copies its pointers and counts the new table
    // as one more holder of every block in use. No element is copied.
    void CopyArray();

    // The slot of absolute position p and its offset in that slot's block.
    int SlotOf(int p) const { return p >> shift; }
    int OffsetOf(int p) const { return p & ((1 << shift) - 1); }
    // The one write fast path, on a private table: position p in place when
    // its block is private too, else through FullArrayGet.
    T& PrivateTableGet(int p) {
        Block* block = table[SlotOf(p)];
        if (block != nullptr && cow_IsSole(block)) return block->data[OffsetOf(p)];
        return FullArrayGet(p);
    }
    int BlockStart() const { return head >> shift; }
    // Widened, so that an end near the largest int (a sized array of
    // 2147483647 elements) does not overflow on rounding up.
    int BlockEnd() const {
        return static_cast<int>((static_cast<std::int64_t>(endPosition) + (std::int64_t{1} << shift) - 1) >> shift);
    }
    // Gives up this array's hold on the table, freeing it when last.
    void ReleaseTable();
    // Before growth to n elements: when the table would have to grow, has
    // kQueueSlots slots or more, and its used slots are a quarter of it or
    // less with the rest empty in front of the head (a list used as a queue
    // leaves that behind), moves the used slots to the front instead.
    // An internal step of Grow.
    void ReclaimFront(int n);
    // The shift of the first growth to n elements from an empty extent:
    // 4 for the growth rules, the chosen one, or the balanced one for n.
    int FirstShift(int n) const;
    // Whether `used` blocks of 1 << k elements are too many for a balanced
    // array, which keeps them at four times the block length or fewer.
    static bool Crowded(std::int64_t used, int k) { return k < cow_BlockLength::kMost && used > (std::int64_t{4} << k); }
    // Moves a balanced array to blocks of 1 << newShift elements (newShift
    // above shift) on a new table of its own; positions do not move, and
    // the old table and blocks are released as by the destructor.
    void Reblock(int newShift);
    // Lowers a block's count, destroying it at 0; true when destroyed.
    static bool ReleaseBlock(Block* block) {
        if (!block->Decrement()) return false;
        delete block;
        return true;
    }

    std::int32_t capacity;
    std::int32_t shift;
    std::int32_t endPosition;
    std::int32_t head;
    cow_Counter* tableCounter;
    Block** table;
    // The block length chosen at construction (cow_BlockLength's code):
    // 0 for the growth rules. Only assignment and swap change it.
    std::int32_t blockRule;
};

// Walks an array in position order over a snapshot: it holds its own copy of
// the array (one more count on the table), so later writes to the source go
// to private storage and the walk sees the array as it was. Per element a
// step costs two increments and a compare; the table is read once per block.
// The iterator never creates a block: at a slot that was never created (a
// hole) GetBlockData() is null while the position is still below the limit.
// The end of the walk is told by position, not by the block pointer, and is
// the caller's to test (the list iterators do it). Every member is defined
// inline, so a walk calls into the library only when its copy of the array
// is released at the end.
template <class T>
class ZORVANCOW_TYPE cow_1DArrayIter {
public:
    // Copies the array and stands on its first element. When the head's
    // block is absent the whole walk counts as empty (limit 0).
    explicit cow_1DArrayIter(cow_1DArray<T> const& source);
    // Releases the iterator's copy of the array.
    ~cow_1DArrayIter();

    // Goes back to the first element.
    cow_1DArrayIter& First();
    // Moves on by one element; no guard past the end, it only counts on.
    cow_1DArrayIter& Next();
    // The same step as Next, taking the step inside a block first.
    cow_1DArrayIter& Advance() {
        if (!StepInBlock()) Next();
        return *this;
    }
    // Skips the rest of the current block and stands on the first element
    // of the next one, as Next does from the last element of a block.
    cow_1DArrayIter& NextBlock() {
        position += blockLength - 1 - offset;
        offset = blockLength - 1;
        return Next();
    }

    // The current element; valid while GetBlockData() is not null and the
    // position is below the caller's stop.
    T const& ConstGet() const { return blockData[offset]; }

    // Inspection: the current block's storage (null at a hole or past the
    // limit), the limit (the array's end when made, or 0), the block length,
    // the absolute position and the offset in the block, and the snapshot.
    T* GetBlockData() const { return blockData; }
    int GetLimit() const { return limit; }
    int GetBlockLength() const { return blockLength; }
    int GetPosition() const { return position; }
    int GetOffset() const { return offset; }
    cow_1DArray<T> const& GetArray() const { return array; }

    cow_1DArrayIter(cow_1DArrayIter const&) = default;
    cow_1DArrayIter& operator=(cow_1DArrayIter const&) = default;

protected:
    // The within-block step, for the derived iterators' inline Next: true
    // when the step stayed inside the block, false (nothing changed) when
    // the caller must take the full Next.
    bool StepInBlock() {
        if (offset + 1 >= blockLength) return false;
        ++position;
        ++offset;
        return true;
    }

    cow_1DArray<T> array;
    T* blockData;
    std::int32_t limit;
    std::int32_t blockLength;
    std::int32_t position;
    std::int32_t offset;

private:
    // Position p of the walk, which ends at the limit.
    cow_detail::BlockCursor At(int p) const { return cow_detail::BlockCursor(p, array.shift, limit); }
};

// ---------------------------------------------------------------------------
// Blocks

template <class T>
cow_1DArrayBlock<T>::cow_1DArrayBlock(int n) : data(cow_Element<T>::NewRun(static_cast<std::size_t>(n))) {}

template <class T>
cow_1DArrayBlock<T>::cow_1DArrayBlock(int n, T const* src)
    : data(cow_Element<T>::NewRunCopy(src, static_cast<std::size_t>(n))) {}

template <class T>
cow_1DArrayBlock<T>::~cow_1DArrayBlock() {
    cow_Element<T>::DeleteRun(data);
}

// ---------------------------------------------------------------------------
// Construction, release, assignment, table unsharing

template <class T>
cow_1DArray<T>::cow_1DArray()
    : capacity(0), shift(0), endPosition(0), head(0), tableCounter(new cow_Counter), table(nullptr), blockRule(0) {}

template <class T>
inline cow_1DArray<T>::cow_1DArray(cow_BlockLength length) : cow_1DArray() {
    blockRule = length.rule;
}

template <class T>
inline cow_1DArray<T>::cow_1DArray(int n, cow_BlockLength length) : cow_1DArray(n) {
    if (length.IsGrowthRules()) return;
    blockRule = length.rule;
    shift = FirstShift(n);
    capacity = static_cast<int>(((static_cast<std::int64_t>(n) + (std::int64_t{1} << shift) - 1) >> shift) + 16);
    table = static_cast<Block**>(mem_Realloc(table, sizeof(Block*) * static_cast<std::size_t>(capacity)));
    for (int s = 0; s < capacity; ++s) table[s] = nullptr;
}

template <class T>
cow_1DArray<T>::cow_1DArray(int n)
    : capacity((ZORVANCOW_CHECK(n >= 0, "cow_1DArray::cow_1DArray", "negative size", "size %d", n), 16)),
      shift(4),
      endPosition(n),
      head(0),
      tableCounter(new cow_Counter),
      table(nullptr),
      blockRule(0) {
    // The block length comes from the exponent of n as a float: blocks of
    // 2^(exponent - 3) give 8 to 16 blocks for the whole array, and the
    // table gets that many slots (read from the top mantissa bits, rounded
    // up) plus 16 spare ones. Below 256 the blocks stay at 16 elements.
    float asFloat = static_cast<float>(n);
    std::int32_t bits;
    std::memcpy(&bits, &asFloat, sizeof bits);
    std::int32_t k = (bits >> 23) - 130;
    if (k > 4) {
        capacity += ((bits & 0x7fffff) + 0x8fffff) >> 20;
        shift = k;
    }
    table = static_cast<Block**>(mem_Malloc(sizeof(Block*) * static_cast<std::size_t>(capacity)));
    for (int s = 0; s < capacity; ++s) table[s] = nullptr;
}

template <class T>
inline cow_1DArray<T>::cow_1DArray(cow_1DArray const& other) noexcept
    : capacity(other.capacity),
      shift(other.shift),
      endPosition(other.endPosition),
      head(other.head),
      tableCounter(other.tableCounter),
      table(other.table),
      blockRule(other.blockRule) {
    if (tableCounter != nullptr) tableCounter->Increment();
}

template <class T>
cow_1DArray<T>::~cow_1DArray() {
    ReleaseTable();
}

template <class T>
void cow_1DArray<T>::ReleaseTable() {
    if (tableCounter == nullptr || !tableCounter->Decrement()) return;
    for (int s = BlockStart(), stop = BlockEnd(); s < stop; ++s) {
        if (table[s] != nullptr) ReleaseBlock(table[s]);
    }
    mem_Free(table);
    delete tableCounter;
}

template <class T>
cow_1DArray<T>& cow_1DArray<T>::operator=(cow_1DArray const& other) {
    if (&other == this) return *this;
    ReleaseTable();
    capacity = other.capacity;
    shift = other.shift;
    endPosition = other.endPosition;
    head = other.head;
    tableCounter = other.tableCounter;
    if (tableCounter != nullptr) tableCounter->Increment();
    table = other.table;
    blockRule = other.blockRule;
    return *this;
}

template <class T>
void cow_1DArray<T>::CopyArray() {
    if (tableCounter == nullptr) {
        // A moved-from array makes the counter a default array has; it has
        // no table, so this is all it needs to be private.
        tableCounter = new cow_Counter;
        return;
    }
    if (cow_IsSole(tableCounter)) return;
    tableCounter = cow_Unshare(tableCounter);
    Block** shared = table;
    table = nullptr;
    if (capacity != 0) {
        table = static_cast<Block**>(mem_Malloc(sizeof(Block*) * static_cast<std::size_t>(capacity)));
        std::memcpy(static_cast<void*>(table), static_cast<void const*>(shared),
                    sizeof(Block*) * static_cast<std::size_t>(capacity));
    }
    for (int s = BlockStart(), stop = BlockEnd(); s < stop; ++s) {
        if (table[s] != nullptr) table[s]->Increment();
    }
}

// ---------------------------------------------------------------------------
// Access and growth

template <class T>
inline T& cow_1DArray<T>::Get(int i) {
    ZORVANCOW_CHECK(i >= 0, "cow_1DArray::Get", "negative index", "index %d, size %d", i, endPosition - head);
    if (i >= endPosition - head) {
        // On a private table whose slots already reach the new end, growing
        // is only a new end; everything else takes the whole of Grow.
        ZORVANCOW_REQUIRE(i < INT_MAX - head, "cow_1DArray::Get", "the position would pass 2147483647",
                          "index %d, head %d", i, head);
        int newEnd = head + i + 1;
        if (endPosition != 0 && cow_IsSole(tableCounter) && ((newEnd - 1) >> shift) < capacity) {
            endPosition = newEnd;
        } else {
            Grow(i + 1);
        }
    } else if (!cow_IsSole(tableCounter)) {
        CopyArray();
    }
    return PrivateTableGet(head + i);
}

template <class T>
T& cow_1DArray<T>::FullArrayGet(int p) {
    int const s = SlotOf(p);
    Block* block = table[s];
    if (block == nullptr) {
        block = new Block(1 << shift);
        table[s] = block;
    } else if (!cow_IsSole(block)) {
        block = cow_Unshare(block, 1 << shift, block->data);
        table[s] = block;
    }
    return block->data[OffsetOf(p)];
}

template <class T>
inline T const& cow_1DArray<T>::PartialArrayConstGet(int i) const {
    ZORVANCOW_CHECK(i >= 0 && i < endPosition - head && table != nullptr, "cow_1DArray::PartialArrayConstGet",
                    "index out of range", "index %d, size %d", i, table != nullptr ? endPosition - head : 0);
    int const p = head + i;
    Block* block = table[SlotOf(p)];
    if (block == nullptr) {
        // The slot stood for default elements; the new block holds exactly
        // those, so no array on this table sees a change of value.
        block = new Block(1 << shift);
        table[SlotOf(p)] = block;
    }
    return block->data[OffsetOf(p)];
}

template <class T>
bool cow_1DArray<T>::Grow(int n) {
    ZORVANCOW_CHECK(n >= 0, "cow_1DArray::Grow", "negative size", "size %d", n);
    ZORVANCOW_REQUIRE(n <= INT_MAX - head, "cow_1DArray::Grow", "the end position would pass 2147483647",
                      "size %d, head %d", n, head);
    // A moved-from array is already what a reset leaves.
    if (n == 0 && tableCounter == nullptr) return true;
    if (n == 0 && !cow_IsSole(tableCounter)) {
        // Resetting a shared array. The full route below would copy the
        // table, raise the count of every block in use, and then lower each
        // of them again: the other holders keep the table and every block
        // count ends where it started. Only what this array is left with can
        // be seen, so give it that directly, in constant time: a new counter
        // and the table a copy reset to 0 slots would be (a live block of
        // minimal size, or none when the copy would have had no slots).
        tableCounter = cow_Unshare(tableCounter);
        table = capacity != 0 ? static_cast<Block**>(mem_Realloc(nullptr, 0)) : nullptr;
        capacity = 0;
        shift = 0;
        endPosition = 0;
        head = 0;
        return true;
    }
    if (n > 0 && blockRule == cow_BlockLength::kBalancedRule && endPosition != 0) {
        // Before the table grows: a balanced array re-blocks when the blocks
        // in use would pass four times the block length. It needs no
        // private table first, since it leaves the old one as it is.
        std::int64_t const newEnd = static_cast<std::int64_t>(head) + n;
        if (((newEnd + (std::int64_t{1} << shift) - 1) >> shift) > capacity) {
            int k = shift;
            while (Crowded(((newEnd + (std::int64_t{1} << k) - 1) >> k) - (head >> k), k)) ++k;
            if (k != shift) Reblock(k);
        }
    }
    CopyArray();
    if (n > 0) ReclaimFront(n);
    int oldBlockEnd = BlockEnd();
    int newCapacity = capacity;
    if (n != 0) {
        if (endPosition == 0) shift = FirstShift(n);
        endPosition = head + n;
        int blockEnd = BlockEnd();
        if (blockEnd > capacity) newCapacity = blockEnd + 16;
        // Shrinking: the blocks wholly beyond the new end would otherwise
        // sit in slots that neither the release nor the table copy visits.
        // Let go of them now, so every block in the table stays counted.
        int keep = blockEnd > BlockStart() ? blockEnd : BlockStart();
        for (int s = keep; s < oldBlockEnd; ++s) {
            if (table[s] != nullptr) {
                ReleaseBlock(table[s]);
                table[s] = nullptr;
            }
        }
    } else {
        shift = 0;
        endPosition = 0;
        head = 0;
        newCapacity = 0;
    }
    if (newCapacity > capacity) {
        table = static_cast<Block**>(mem_Realloc(table, sizeof(Block*) * static_cast<std::size_t>(newCapacity)));
        for (int s = capacity; s < newCapacity; ++s) table[s] = nullptr;
    } else if (newCapacity < capacity) {
        for (int s = 0; s < oldBlockEnd; ++s) {
            if (table[s] != nullptr) ReleaseBlock(table[s]);
        }
        table = static_cast<Block**>(mem_Realloc(table, 0));
    }
    capacity = newCapacity;
    return true;
}

template <class T>
void cow_1DArray<T>::ReclaimFront(int n) {
    int const start = BlockStart();
    if (endPosition == 0 || start <= 0 || capacity < kQueueSlots || 4 * (BlockEnd() - start) > capacity) return;
    std::int64_t const newEnd = static_cast<std::int64_t>(head) + n;
    if (((newEnd + (std::int64_t{1} << shift) - 1) >> shift) <= capacity) return;
    // Every slot in front of the head is empty (the head released each block
    // it left), so whole blocks move by their pointers: each element keeps
    // its offset in its block, and head and end fall by the same multiple of
    // the block length. The array's value does not change.
    int const stop = BlockEnd();
    int const used = stop - start;
    std::memmove(static_cast<void*>(table), static_cast<void const*>(table + start),
                 sizeof(Block*) * static_cast<std::size_t>(used));
    for (int s = used > start ? used : start; s < stop; ++s) table[s] = nullptr;
    head -= start << shift;
    endPosition -= start << shift;
}

template <class T>
int cow_1DArray<T>::FirstShift(int n) const {
    if (blockRule != cow_BlockLength::kBalancedRule) return blockRule != 0 ? blockRule : 4;
    int k = cow_BlockLength::kLeast;
    while (Crowded((static_cast<std::int64_t>(n) + (std::int64_t{1} << k) - 1) >> k, k)) ++k;
    return k;
}

template <class T>
void cow_1DArray<T>::Reblock(int newShift) {
    int const ratio = newShift - shift;
    int const oldLength = 1 << shift;
    // The old slots' positions, plus 16 free slots as a growth leaves.
    int const newCapacity = static_cast<int>(((static_cast<std::int64_t>(capacity) + (1 << ratio) - 1) >> ratio) + 16);
    Block** fresh = static_cast<Block**>(mem_Malloc(sizeof(Block*) * static_cast<std::size_t>(newCapacity)));
    for (int s = 0; s < newCapacity; ++s) fresh[s] = nullptr;
    // New block j gathers old slots j << ratio onward, in order, so every
    // position keeps its place. Absent old blocks stay default elements.
    try {
        for (int s = BlockStart(), stop = BlockEnd(); s < stop; ++s) {
            Block const* old = table[s];
            if (old == nullptr) continue;
            Block*& gathered = fresh[s >> ratio];
            if (gathered == nullptr) gathered = new Block(1 << newShift);
            cow_Element<T>::CopyRun(gathered->data + (static_cast<std::size_t>(s & ((1 << ratio) - 1)) << shift),
                                    old->data, static_cast<std::size_t>(oldLength));
        }
    } catch (...) {
        // An element copy threw: the array has not changed yet.
        for (int s = 0; s < newCapacity; ++s) {
            if (fresh[s] != nullptr) ReleaseBlock(fresh[s]);
        }
        mem_Free(fresh);
        throw;
    }
    cow_Counter* counter = new cow_Counter;
    ReleaseTable();
    tableCounter = counter;
    table = fresh;
    capacity = newCapacity;
    shift = newShift;
}

template <class T>
T& cow_1DArray<T>::GetHead() {
    if (head != 0) {
        // The slot is made private before the head moves: a copy that throws
        // while unsharing its block leaves the array as it was.
        if (!cow_IsSole(tableCounter)) CopyArray();
        T& slot = PrivateTableGet(head - 1);
        --head;
        return slot;
    }
    int b = BlockEnd();
    if (b == capacity) {
        std::int64_t const grown = (static_cast<std::int64_t>(b) << shift) + 1;
        ZORVANCOW_REQUIRE(grown <= INT_MAX, "cow_1DArray::GetHead", "the end position would pass 2147483647",
                          "blocks %d, shift %d", b, shift);
        int const oldShift = shift;
        Grow(static_cast<int>(grown));
        // A balanced array may have re-blocked: the used slots to move are
        // then those that hold the old b blocks' positions.
        if (shift != oldShift) b = static_cast<int>(((grown - 1) + (std::int64_t{1} << shift) - 1) >> shift);
    } else {
        ZORVANCOW_REQUIRE(endPosition < INT_MAX, "cow_1DArray::GetHead", "the end position would pass 2147483647",
                          "end %d", endPosition);
        CopyArray();
        ++endPosition;
    }
    // Move all free table space in front of the used slots, by pointer, so
    // that the next (gap << shift) - 1 calls only step the head back.
    // The two ranges overlap whenever more slots are in use than are free.
    // This move is the cost of front growth: b pointers every time the head
    // reaches position 0.
    int gap = capacity - b;
    // Positions are ints: a large sized array (blocks of 2^27 elements and
    // more) cannot put all its free slots in front, since the end would pass
    // 2147483647. It then uses as many as the positions allow and leaves
    // the rest at the back.
    std::int64_t const room = (static_cast<std::int64_t>(INT_MAX) - endPosition + 1) >> shift;
    if (gap > room) gap = static_cast<int>(room);
    ZORVANCOW_REQUIRE(gap > 0, "cow_1DArray::GetHead", "no position left in front of the head",
                      "end %d, shift %d", endPosition, shift);
    if (b > 0) {
        std::memmove(static_cast<void*>(table + gap), static_cast<void const*>(table),
                     sizeof(Block*) * static_cast<std::size_t>(b));
    }
    for (int j = 0, stop = gap < b ? gap : b; j < stop; ++j) table[j] = nullptr;
    head = (gap << shift) - 1;
    endPosition += head;
    return FullArrayGet(head);
}

template <class T>
inline void cow_1DArray<T>::RemoveHead() {
    ZORVANCOW_CHECK(head < endPosition && cow_IsSole(tableCounter), "cow_1DArray::RemoveHead",
                    "needs a non-empty array on a private table", "size %d, table shared by %d", endPosition - head,
                    GetTableShareCount());
    int s = head >> shift;
    ++head;
    if ((head >> shift) > s && table[s] != nullptr) {
        ReleaseBlock(table[s]);
        table[s] = nullptr;
    }
}

template <class T>
void cow_1DArray<T>::SetFromArray(T const* src, int n) {
    ZORVANCOW_CHECK(n >= 0 && (head & ((1 << shift) - 1)) == 0, "cow_1DArray::SetFromArray",
                    "needs a count of 0 or more and a head on a block boundary", "count %d, head %d, block length %d",
                    n, head, 1 << shift);
    int run = 1 << shift;
    for (int i = 0; i < n; i += run) {
        if (run > n - i) run = n - i;
        T* dst = &Get(i);
        cow_Element<T>::CopyRun(dst, src + i, static_cast<std::size_t>(run));
    }
}

// ---------------------------------------------------------------------------
// Iterator

template <class T>
inline cow_1DArrayIter<T>::cow_1DArrayIter(cow_1DArray<T> const& source)
    : array(source),
      blockData(nullptr),
      limit(source.endPosition),
      blockLength(1 << source.shift),
      position(0),
      offset(0) {
    if (array.endPosition - array.head > 0 && At(array.head).BlockData(array) == nullptr) limit = 0;
    First();
}

template <class T>
inline cow_1DArrayIter<T>::~cow_1DArrayIter() {}

template <class T>
inline cow_1DArrayIter<T>& cow_1DArrayIter<T>::First() {
    cow_detail::BlockCursor const at = At(array.head);
    position = at.Position();
    offset = at.Offset();
    blockData = at.Done() ? nullptr : at.BlockData(array);
    return *this;
}

template <class T>
inline cow_1DArrayIter<T>& cow_1DArrayIter<T>::Next() {
    ++position;
    if (++offset == blockLength) {
        offset = 0;
        cow_detail::BlockCursor const at = At(position);
        blockData = at.Done() ? nullptr : at.BlockData(array);
    }
    return *this;
}

// ---------------------------------------------------------------------------
// Construction from values and ranges (the standard interface)

template <class T>
inline cow_1DArray<T>::cow_1DArray(std::initializer_list<T> values) : cow_1DArray(values.begin(), values.end()) {}

template <class T>
template <class It, class>
inline cow_1DArray<T>::cow_1DArray(It first, It last) : cow_1DArray() {
    if constexpr (std::is_base_of<std::forward_iterator_tag,
                                  typename std::iterator_traits<It>::iterator_category>::value) {
        // A sized array: its block length and table follow from the size.
        *this = cow_1DArray(cow_detail::RangeLength(first, last, "cow_1DArray::cow_1DArray"));
    }
    for (int i = 0; first != last; ++first, ++i) Get(i) = *first;
}

template <class T>
template <class R, class>
inline cow_1DArray<T>::cow_1DArray(R const& range) : cow_1DArray(cow_detail::Begin(range), cow_detail::End(range)) {}

// Exchanges two arrays; no count moves.
template <class T>
inline void swap(cow_1DArray<T>& a, cow_1DArray<T>& b) noexcept {
    a.swap(b);
}

// An array is a few words on counted storage: it may move as bytes (cow_ElementBytewise).
template <class T>
struct cow_ElementBytewise<cow_1DArray<T>> : std::true_type {};

#include "zorvancow/arrays/detail/cow_1DArrayExports.h"

#endif
