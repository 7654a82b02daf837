#ifndef ZORVANCOW_TABLES_OMI_INTTABLE_H
#define ZORVANCOW_TABLES_OMI_INTTABLE_H

// Radix tables for 32-bit keys.
//
// A key is cut into three fields from the top: the high bits pick a table
// block, the middle bits an element block inside it, the low bits the place
// in that element block. There is no hashing, no search and no comparison of
// keys, and storage follows use: a pointer array grows only as far as the
// highest block used, an element block exists once a value is stored in it,
// and a table block exists while it holds at least one key.
//
//   omi_BlockedArray<T>     a sparse array of lazily made element blocks
//   omi_UintTableBlock<T>   that array plus a bit vector of the used indexes
//   omi_UintTable<T>        unsigned keys over an array of table blocks
//   omi_IntTable<T>         signed keys: two unsigned tables, one per sign
//   omi_UintTableIterator<T>, omi_IntTableIterator<T>   ascending walks
//
// None of these shares storage by itself: copies are deep. Sharing comes from
// a cow_COW handle on a whole omi_IntTable, whose first write through a shared
// handle copies the whole table (only cow_String texts stay shared).
// Nothing is locked; a table and its iterators belong to one thread at a time.

#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "zorvanbase/omi_BlkBitVect.h"
#include "zorvanbase/omi_IntTable.h"
#include "zorvancow/core/cow_COW.h"
#include "zorvancow/core/cow_String.h"

// A sparse array indexed by an unsigned integer: a growable array of pointers
// to element blocks of 1 << shift values each. An element block is made, with
// default values, at the first store into its range. Reaching an element costs
// a shift, a mask and two indexed reads. Copies are deep: every element block
// is duplicated, and the elements are copied by their own copy assignment.
template <class T>
class ZORVANCOW_TYPE omi_BlockedArray {
public:
    // `pointerCount` null entries (0 gives no pointer array; the array then
    // grows in units of 128), element blocks of 1 << `shift` values. A non-zero
    // `pointerCount` is also the unit of growth. `shift` is at most 31.
    omi_BlockedArray(unsigned int pointerCount, unsigned int shift)
        : growBy(pointerCount != 0 ? pointerCount : 128),
          blockCount(pointerCount),
          blockSize(1u << shift),
          blockShift(shift),
          blockMask((1u << shift) - 1),
          blocks(pointerCount != 0 ? new T*[pointerCount]() : nullptr) {}

    // A deep copy: a new pointer array and a new element block for each one
    // of the source, holding copies of all its values.
    omi_BlockedArray(omi_BlockedArray const& source)
        : growBy(source.growBy),
          blockCount(source.blockCount),
          blockSize(source.blockSize),
          blockShift(source.blockShift),
          blockMask(source.blockMask),
          blocks(source.blockCount != 0 ? new T*[source.blockCount]() : nullptr) {
        for (unsigned int b = 0; b < blockCount; ++b) {
            if (source.blocks[b] == nullptr) continue;
            blocks[b] = new T[blockSize]();
            CopyBlock(b, source);
        }
    }

    // Frees all element blocks with their values, and the pointer array.
    virtual ~omi_BlockedArray() {
        Clear();
        delete[] blocks;
    }

    // Makes this array a deep copy of `source`. Keeps its pointer array when
    // the lengths agree, and its element blocks when the block sizes agree as
    // well, copying the values into them. Assigning an array to itself does
    // nothing.
    omi_BlockedArray& operator=(omi_BlockedArray const& source) {
        if (this == &source) return *this;
        growBy = source.growBy;
        if (blockCount != source.blockCount) {
            Clear();
            delete[] blocks;
            blockShift = source.blockShift;
            blockSize = source.blockSize;
            blockMask = source.blockMask;
            blockCount = source.blockCount;
            blocks = blockCount != 0 ? new T*[blockCount]() : nullptr;
        } else if (blockSize != source.blockSize) {
            Clear();
            blockShift = source.blockShift;
            blockSize = source.blockSize;
            blockMask = source.blockMask;
        }
        for (unsigned int b = 0; b < blockCount; ++b) {
            if (source.blocks[b] != nullptr) {
                if (blocks[b] == nullptr) blocks[b] = new T[blockSize]();
                CopyBlock(b, source);
            } else if (blocks[b] != nullptr) {
                delete[] blocks[b];
                blocks[b] = nullptr;
            }
        }
        return *this;
    }

    // Frees every element block with its values; the pointer array stays, so
    // the next store into a range makes its block again.
    void Clear() {
        for (unsigned int b = 0; b < blockCount; ++b) {
            delete[] blocks[b];
            blocks[b] = nullptr;
        }
    }

    // Lengthens the pointer array to `pointerCount` entries (the new ones
    // null); a count not above the current length changes nothing.
    void Grow(unsigned int pointerCount) {
        if (pointerCount <= blockCount) return;
        T** grown = new T*[pointerCount]();
        for (unsigned int b = 0; b < blockCount; ++b) grown[b] = blocks[b];
        delete[] blocks;
        blocks = grown;
        blockCount = pointerCount;
    }

    // Stores `value` at `index` with T's assignment. Past the pointer array
    // the array grows to the smallest multiple of `growBy` above the block
    // number; an absent element block is made first with default values.
    void Set(unsigned int index, T const& value) {
        unsigned int const b = index >> blockShift;
        if (b >= blockCount) Grow((b / growBy + 1) * growBy);
        if (blocks[b] == nullptr) blocks[b] = new T[blockSize]();
        blocks[b][index & blockMask] = value;
    }

    // Prints every element block to standard output: a line with its first
    // and last index, then the raw bytes of each element in hexadecimal, eight
    // elements a line. An array without element blocks prints nothing.
    void Dump() {
        for (unsigned int b = 0; b < blockCount; ++b) {
            if (blocks[b] == nullptr) continue;
            unsigned int const first = b << blockShift;
            std::printf("Block indices= %d - %d\n", static_cast<int>(first),
                        static_cast<int>(first + blockSize - 1));
            for (unsigned int j = 0; j < blockSize; ++j) {
                auto const* bytes = reinterpret_cast<unsigned char const*>(&blocks[b][j]);
                for (std::size_t k = 0; k < sizeof(T); ++k) std::printf("%02x", bytes[k]);
                std::printf((j & 7) == 7 ? "\n" : "|");
            }
            std::printf("\n");
        }
    }

    // The element at `index`, or null when its element block does not exist.
    // A place with no store holds a default or a stale value.
    T const* ConstGet(unsigned int index) const {
        unsigned int const b = index >> blockShift;
        if (b >= blockCount || blocks[b] == nullptr) return nullptr;
        return &blocks[b][index & blockMask];
    }
    // The element at `index`, whose element block must exist.
    T const& ElementAt(unsigned int index) const { return blocks[index >> blockShift][index & blockMask]; }

    // Inspection: unit of growth, pointer array length, block size and shift,
    // and whether element block `b` exists.
    unsigned int GetGrowBy() const { return growBy; }
    unsigned int GetBlockCount() const { return blockCount; }
    unsigned int GetBlockSize() const { return blockSize; }
    unsigned int GetBlockShift() const { return blockShift; }
    bool HasElementBlock(unsigned int b) const { return b < blockCount && blocks[b] != nullptr; }

private:
    void CopyBlock(unsigned int b, omi_BlockedArray const& source) {
        for (unsigned int j = 0; j < blockSize; ++j) blocks[b][j] = source.blocks[b][j];
    }

    unsigned int growBy;
    unsigned int blockCount;
    unsigned int blockSize;
    unsigned int blockShift;
    unsigned int blockMask;
    T** blocks;
};

template <class T>
class omi_UintTable;
template <class T>
class omi_UintTableIterator;

// A table block: a blocked array whose bit vector says which indexes hold an
// element. A clear bit may sit on a default or a stale value. A table block
// is a plain mutable object; its copy is deep, bit vector included.
template <class T>
class ZORVANCOW_TYPE omi_UintTableBlock : public omi_BlockedArray<T> {
public:
    // See omi_BlockedArray: `pointerCount` entries, blocks of 1 << `shift`.
    omi_UintTableBlock(unsigned int pointerCount, unsigned int shift)
        : omi_BlockedArray<T>(pointerCount, shift) {}
    // A deep copy of the elements and of the bit vector.
    omi_UintTableBlock(omi_UintTableBlock const& source) = default;
    omi_UintTableBlock& operator=(omi_UintTableBlock const& source) = default;
    // Frees the bit vector, then the element blocks and the pointer array.
    ~omi_UintTableBlock() override;

    // Marks `index` used and stores `value` there, in every case. True if the
    // index was not in use before: false means no element was added, not that
    // nothing was stored.
    bool Insert(unsigned int index, T const& value);

    // Clears every bit, then frees the element blocks.
    void Clear() {
        bits.Clear();
        omi_BlockedArray<T>::Clear();
    }

    // Whether `index` holds an element.
    bool IsMember(unsigned int index) const { return bits.TestBit(index); }
    // The element at `index`, or null when the index is not in use.
    T const* ConstGet(unsigned int index) const {
        return bits.TestBit(index) ? &this->ElementAt(index) : nullptr;
    }
    // Inspection: the bit vector of used indexes (its `count` is the number
    // of elements).
    omi_BlkBitVect const& GetBits() const { return bits; }

private:
    friend class omi_UintTable<T>;

    omi_BlkBitVect bits;
};

// Maps 32-bit unsigned keys to values of T. The construction arguments a, b, c
// split a key: the top a bits pick the table block (a pointer array that grows
// in units of 64), the next b bits the element block inside it, the rest the
// place. c is the first length and the growth unit of a table block's
// pointer array. A table block lives from the first key in its range to the
// removal of the last. A removal leaves the old value in place until the key
// is stored again or its table block goes. Copies are deep.
template <class T>
class ZORVANCOW_TYPE omi_UintTable {
public:
    // The arguments 12, 10, 24: 4096 table blocks of 2^20 keys, element
    // blocks of 1024 values.
    omi_UintTable() : omi_UintTable(12, 10, 24) {}
    // Needs a >= 1 and a + b <= 32; c >= 1. Nothing checks this.
    omi_UintTable(unsigned int a, unsigned int b, unsigned int c)
        : blocks(new omi_UintTableBlock<T>*[2]()),
          count(0),
          blockCount(2),
          keyMask(static_cast<unsigned int>((std::uint64_t{1} << (32 - a)) - 1)),
          keyShift(32 - a),
          blockPointers(c),
          elementShift(32 - a - b) {}
    // A deep copy: every table block and element block is duplicated; only
    // the texts of cow_String values stay shared.
    omi_UintTable(omi_UintTable const& source)
        : blocks(new omi_UintTableBlock<T>*[source.blockCount]()),
          count(source.count),
          blockCount(source.blockCount),
          keyMask(source.keyMask),
          keyShift(source.keyShift),
          blockPointers(source.blockPointers),
          elementShift(source.elementShift) {
        for (unsigned int n = 0; n < blockCount; ++n)
            if (source.blocks[n] != nullptr) blocks[n] = new omi_UintTableBlock<T>(*source.blocks[n]);
    }
    omi_UintTable& operator=(omi_UintTable const&) = delete;
    // Frees every table block with its values, then the pointer array.
    ~omi_UintTable();

    // Stores `value` under `key`; true if the key was absent. A present key
    // gets the new value and the count stays. Grows the pointer array for a
    // key past it, and makes the table block on the first key in its range.
    bool Insert(unsigned int key, T const& value);
    // True if the key was present. The value stays in its place; a table
    // block left without keys is freed with all its values.
    bool Remove(unsigned int key);

    // Removes every key and frees every table block; the pointer array stays.
    void Clear() {
        count = 0;
        for (unsigned int n = 0; n < blockCount; ++n) {
            delete blocks[n];
            blocks[n] = nullptr;
        }
    }

    // The value of `key`, or null when the key is absent. Valid until the
    // next write.
    T const* ConstGet(unsigned int key) const {
        omi_UintTableBlock<T> const* block = GetTableBlock(key >> keyShift);
        return block != nullptr ? block->ConstGet(key & keyMask) : nullptr;
    }
    bool IsMember(unsigned int key) const { return ConstGet(key) != nullptr; }
    // Number of keys.
    std::int32_t GetCount() const { return count; }

    // Inspection: the table block of number `n` (null when there is none or
    // `n` is past the pointer array), the pointer array length, and the
    // fields the construction arguments set.
    omi_UintTableBlock<T> const* GetTableBlock(unsigned int n) const {
        return n < blockCount ? blocks[n] : nullptr;
    }
    unsigned int GetBlockCount() const { return blockCount; }
    unsigned int GetKeyShift() const { return keyShift; }
    unsigned int GetKeyMask() const { return keyMask; }
    unsigned int GetBlockPointers() const { return blockPointers; }
    unsigned int GetElementShift() const { return elementShift; }

private:
    friend class omi_IntTable<T>;
    friend class omi_UintTableIterator<T>;

    void GrowTo(unsigned int n) {
        unsigned int const grown = (n / 64 + 1) * 64;
        auto** larger = new omi_UintTableBlock<T>*[grown]();
        for (unsigned int i = 0; i < blockCount; ++i) larger[i] = blocks[i];
        delete[] blocks;
        blocks = larger;
        blockCount = grown;
    }

    omi_UintTableBlock<T>** blocks;
    std::int32_t count;
    unsigned int blockCount;
    unsigned int keyMask;
    unsigned int keyShift;
    unsigned int blockPointers;
    unsigned int elementShift;
};

// Maps signed 32-bit keys to values of T: negative keys live in one unsigned
// table under their magnitude (-2^31 under 2^31), the others in a second one
// under their own bits. The table is a plain object with deep copies; share it
// through cow_COW<omi_IntTable<T>>, whose first write to a shared table copies
// both halves with all their blocks.
template <class T>
class ZORVANCOW_TYPE omi_IntTable {
public:
    // Both halves with the arguments 12, 10, 24 (see omi_UintTable).
    omi_IntTable();
    // Both halves with the arguments a, b, c, with the limits of omi_UintTable.
    omi_IntTable(unsigned int a, unsigned int b, unsigned int c);
    omi_IntTable& operator=(omi_IntTable const&) = delete;
    // Frees the negative half, then the non-negative one.
    virtual ~omi_IntTable();

    // A new heap copy made by the copy constructor; the caller owns it.
    omi_IntTable* Copy() const { return new omi_IntTable(*this); }

    // The table block whose range holds `key`, or null when there is none.
    // A block says only that the range is in use, not that the key is.
    omi_UintTableBlock<T>* FindBlock(int key) const {
        omi_UintTable<T> const& half = key < 0 ? *negative : *nonNegative;
        unsigned int const n = Magnitude(key) >> half.keyShift;
        return n < half.blockCount ? half.blocks[n] : nullptr;
    }

    // Stores `value` under `key`; true if the key was absent, else the value
    // is replaced.
    bool Insert(int key, T const& value) { return Half(key).Insert(Magnitude(key), value); }
    // True if the key was present; see omi_UintTable::Remove.
    bool Remove(int key) { return Half(key).Remove(Magnitude(key)); }
    // The value of `key`, or null when absent. Valid until the next write.
    T const* ConstGet(int key) const {
        omi_UintTableBlock<T> const* block = FindBlock(key);
        if (block == nullptr) return nullptr;
        return block->ConstGet(Magnitude(key) & (key < 0 ? negative : nonNegative)->keyMask);
    }
    bool IsMember(int key) const { return ConstGet(key) != nullptr; }
    // Number of keys in both halves.
    std::int32_t GetCount() const { return negative->GetCount() + nonNegative->GetCount(); }

    // Inspection: the two halves.
    omi_UintTable<T> const& GetNegative() const { return *negative; }
    omi_UintTable<T> const& GetNonNegative() const { return *nonNegative; }

protected:
    // A deep copy of both halves, the negative one first. Reached by
    // cow_Direct when a shared handle is written.
    omi_IntTable(omi_IntTable const& source);

private:
    friend struct cow_Direct<omi_IntTable<T>>;

    // The unsigned key of `key`: its magnitude when negative (modulo 2^32,
    // so that -2^31 gives 2^31), else its own bits.
    static unsigned int Magnitude(int key) {
        unsigned int const bits = static_cast<unsigned int>(key);
        return key < 0 ? 0u - bits : bits;
    }
    omi_UintTable<T>& Half(int key) { return key < 0 ? *negative : *nonNegative; }

    omi_UintTable<T>* negative;
    omi_UintTable<T>* nonNegative;
};

// Walks one unsigned table in ascending key order (from First) or descending
// order (from Last). Plain mode (no callback) visits the used keys block by
// block through the bit vector walker, touching no unused key; a step costs
// one walker call, and each new table block one walker allocation.
//
// Sorted mode (a non-null callback) collects records of all elements at the
// first First or Last and sorts them with qsort and the callback, which gets
// two pointers to array entries, each pointing to a SortedRecord. Next and
// Prev before the records exist do nothing; a sorted Prev stops at the first
// record and never reports the end, and a sorted Next past the end is the
// caller's to avoid.
//
// The table must outlive the iterator and must not be written while it
// exists. An iterator must be positioned with First or Last before anything
// else; CurrentKey and CurrentValue need IsDone() false.
template <class T>
class ZORVANCOW_TYPE omi_UintTableIterator {
public:
    // One element in sorted mode.
    struct SortedRecord {
        std::uint32_t key;
        T const* value;  // the element inside its element block
    };

    // Plain mode over `walked`. Allocates nothing.
    explicit omi_UintTableIterator(omi_UintTable<T> const& walked) : omi_UintTableIterator(walked, nullptr) {}
    // Sorted mode by `order`, or plain mode when `order` is null.
    omi_UintTableIterator(omi_UintTable<T> const& walked, int (*order)(void const*, void const*))
        : table(&walked),
          low(0),
          base(0),
          position(-1),
          block(nullptr),
          walker(nullptr),
          done(false),
          compare(order),
          sorted(nullptr) {}
    omi_UintTableIterator(omi_UintTableIterator const&) = delete;
    omi_UintTableIterator& operator=(omi_UintTableIterator const&) = delete;
    // Frees the walker and the sorted records.
    ~omi_UintTableIterator();

    // To the smallest key (in sorted mode: the first record).
    void First() {
        if (compare != nullptr) {
            position = -1;
            if (sorted == nullptr && !BuildSorted()) {
                done = true;
                return;
            }
            done = table->count < 1;
            position = 0;
            return;
        }
        position = -1;
        done = !NextBlock();
    }
    // To the greatest key (in sorted mode: the last record).
    void Last() {
        if (compare != nullptr) {
            if (sorted == nullptr && !BuildSorted()) {
                done = true;
                return;
            }
            position = table->count - 1;
            done = false;
            return;
        }
        position = static_cast<std::int32_t>(table->blockCount);
        done = !PrevBlock();
    }
    // To the next greater key; on the last one the iterator becomes done.
    void Next() {
        if (compare != nullptr) {
            if (sorted == nullptr) return;
            ++position;
            done = position == table->count;
            return;
        }
        if (walker != nullptr && !walker->Next(low)) done = !NextBlock();
    }
    // To the next smaller key; on the first one the iterator becomes done.
    void Prev() {
        if (compare != nullptr) {
            if (sorted == nullptr) return;
            if (position > 0) --position;
            done = false;
            return;
        }
        if (walker != nullptr && !walker->Prev(low)) done = !PrevBlock();
    }
    bool IsDone() const { return done; }
    unsigned int CurrentKey() const { return compare != nullptr ? sorted[position]->key : low + base; }
    T const& CurrentValue() const {
        return compare != nullptr ? *sorted[position]->value : block->ElementAt(low);
    }

private:
    bool NextBlock() {
        ++position;
        while (static_cast<unsigned int>(position) < table->blockCount && table->blocks[position] == nullptr)
            ++position;
        if (static_cast<unsigned int>(position) >= table->blockCount) return false;
        return EnterBlock() && walker->First(low);
    }
    bool PrevBlock() {
        --position;
        while (position >= 0 && table->blocks[position] == nullptr) --position;
        if (position < 0) return false;
        return EnterBlock() && walker->Last(low);
    }
    bool EnterBlock() {
        base = static_cast<unsigned int>(position) << table->keyShift;
        block = table->blocks[position];
        delete walker;
        walker = new omi_BlkBitVectTrav(&block->GetBits());
        return true;
    }
    // Collects and sorts the records; false on an empty table.
    bool BuildSorted();

    omi_UintTable<T> const* table;
    unsigned int low;
    unsigned int base;
    std::int32_t position;
    omi_UintTableBlock<T>* block;
    omi_BlkBitVectTrav* walker;
    bool done;
    int (*compare)(void const*, void const*);
    SortedRecord** sorted;
};

// Walks an omi_IntTable in ascending signed order: the negative half
// backwards (it holds magnitudes), then the non-negative half forwards. Both
// halves are positioned at once; `remaining` counts the negative keys still
// to come, the current one included, and tells when to change halves.
//
// The table must outlive the iterator and must not be written while it
// exists. Position with First or Last before anything else; CurrentKey and
// CurrentValue need IsDone() false. There is no backward step.
template <class T>
class ZORVANCOW_TYPE omi_IntTableIterator {
public:
    // Not yet positioned. Allocates nothing.
    explicit omi_IntTableIterator(omi_IntTable<T> const& walked);
    // The same walk: the callback is kept but orders nothing, since the
    // negative half would hand it magnitudes.
    omi_IntTableIterator(omi_IntTable<T> const& walked, int (*order)(void const*, void const*));
    omi_IntTableIterator(omi_IntTableIterator const&) = delete;
    omi_IntTableIterator& operator=(omi_IntTableIterator const&) = delete;

    // To the smallest key of the table.
    void First();
    // To the greatest key of the non-negative half: a table with negative
    // keys only is done at once.
    void Last();
    // To the next greater key.
    void Next();
    bool IsDone() const;
    int CurrentKey() const;
    T const& CurrentValue() const;

    // Inspection: negative keys still to visit, the current one included.
    std::int32_t GetRemaining() const { return remaining; }

private:
    std::int32_t remaining;
    std::int32_t negativeCount;
    omi_UintTableIterator<T> negativeWalk;
    omi_UintTableIterator<T> nonNegativeWalk;
    int (*compare)(void const*, void const*);
};

// ---- members the library exports ----

template <class T>
omi_UintTableBlock<T>::~omi_UintTableBlock() {}

template <class T>
bool omi_UintTableBlock<T>::Insert(unsigned int index, T const& value) {
    std::uint32_t const before = bits.count;
    bits.SetBit(index);
    this->Set(index, value);
    return bits.count != before;
}

template <class T>
omi_UintTable<T>::~omi_UintTable() {
    Clear();
    delete[] blocks;
}

template <class T>
bool omi_UintTable<T>::Insert(unsigned int key, T const& value) {
    unsigned int const n = key >> keyShift;
    if (n >= blockCount) GrowTo(n);
    omi_UintTableBlock<T>* block = blocks[n];
    if (block == nullptr) block = blocks[n] = new omi_UintTableBlock<T>(blockPointers, elementShift);
    if (!block->Insert(key & keyMask, value)) return false;
    ++count;
    return true;
}

template <class T>
bool omi_UintTable<T>::Remove(unsigned int key) {
    unsigned int const n = key >> keyShift;
    if (n >= blockCount || blocks[n] == nullptr) return false;
    omi_BlkBitVect& bits = blocks[n]->bits;
    std::uint32_t const before = bits.count;
    bits.UnsetBit(key & keyMask);
    std::uint32_t const after = bits.count;
    if (after == 0) {
        delete blocks[n];
        blocks[n] = nullptr;
    }
    if (after == before) return false;
    --count;
    return true;
}

template <class T>
omi_IntTable<T>::omi_IntTable() : negative(new omi_UintTable<T>), nonNegative(new omi_UintTable<T>) {}

template <class T>
omi_IntTable<T>::omi_IntTable(unsigned int a, unsigned int b, unsigned int c)
    : negative(new omi_UintTable<T>(a, b, c)), nonNegative(new omi_UintTable<T>(a, b, c)) {}

template <class T>
omi_IntTable<T>::omi_IntTable(omi_IntTable const& source)
    : negative(new omi_UintTable<T>(*source.negative)), nonNegative(new omi_UintTable<T>(*source.nonNegative)) {}

template <class T>
omi_IntTable<T>::~omi_IntTable() {
    delete negative;
    delete nonNegative;
}

template <class T>
omi_UintTableIterator<T>::~omi_UintTableIterator() {
    delete walker;
    if (sorted == nullptr) return;
    for (std::int32_t i = 0; i < table->count; ++i) delete sorted[i];
    delete[] sorted;
}

template <class T>
bool omi_UintTableIterator<T>::BuildSorted() {
    std::int32_t const n = table->count;
    if (n < 1) return false;
    sorted = new SortedRecord*[n];
    omi_UintTableIterator<T> plain(*table);
    std::int32_t i = 0;
    for (plain.First(); !plain.IsDone(); plain.Next())
        sorted[i++] = new SortedRecord{plain.CurrentKey(), &plain.CurrentValue()};
    std::qsort(sorted, static_cast<std::size_t>(n), sizeof(SortedRecord*), compare);
    return true;
}

template <class T>
omi_IntTableIterator<T>::omi_IntTableIterator(omi_IntTable<T> const& walked)
    : remaining(walked.GetNegative().GetCount()),
      negativeCount(remaining),
      negativeWalk(walked.GetNegative()),
      nonNegativeWalk(walked.GetNonNegative()),
      compare(nullptr) {}

template <class T>
omi_IntTableIterator<T>::omi_IntTableIterator(omi_IntTable<T> const& walked,
                                              int (*order)(void const*, void const*))
    : remaining(walked.GetNegative().GetCount()),
      negativeCount(remaining),
      negativeWalk(walked.GetNegative()),
      nonNegativeWalk(walked.GetNonNegative()),
      compare(order) {}

template <class T>
void omi_IntTableIterator<T>::First() {
    remaining = negativeCount;
    negativeWalk.Last();
    nonNegativeWalk.First();
}

template <class T>
void omi_IntTableIterator<T>::Last() {
    remaining = 0;
    negativeWalk.First();
    nonNegativeWalk.Last();
}

template <class T>
void omi_IntTableIterator<T>::Next() {
    if (remaining != 0) {
        --remaining;
        negativeWalk.Prev();
    } else {
        nonNegativeWalk.Next();
    }
}

template <class T>
bool omi_IntTableIterator<T>::IsDone() const {
    return remaining != 0 ? false : nonNegativeWalk.IsDone();
}

template <class T>
int omi_IntTableIterator<T>::CurrentKey() const {
    if (remaining == 0) return static_cast<int>(nonNegativeWalk.CurrentKey());
    return static_cast<int>(0u - negativeWalk.CurrentKey());
}

template <class T>
T const& omi_IntTableIterator<T>::CurrentValue() const {
    return remaining != 0 ? negativeWalk.CurrentValue() : nonNegativeWalk.CurrentValue();
}

#include "zorvancow/tables/omi_IntTableExports.h"

#endif
