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
//
// This header holds the general omi_IntTable<T>. The table of ints is the
// base library's own specialization, declared in zorvanbase/omi_IntTable.h
// (hence the same file name in the two trees); this library only shares such
// tables through cow_COW.

#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "zorvanbase/omi_BlkBitVect.h"
#include "zorvanbase/omi_IntTable.h"
#include "zorvancow/core/cow_COW.h"
#include "zorvancow/core/cow_Check.h"
#include "zorvancow/core/cow_CollectSorted.h"
#include "zorvancow/core/cow_String.h"
#include "zorvancow/tables/detail/omi_BlockedArray.h"

template <class T>
class ZORVANCOW_TYPE omi_UintTable;
template <class T>
class ZORVANCOW_TYPE omi_UintTableIterator;

// A table block: a blocked array whose bit vector says which indexes hold an
// element. A clear bit may sit on a default or a stale value. A table block
// is a plain mutable object; its copy is deep, bit vector included.
template <class T>
class omi_UintTableBlock : public omi_BlockedArray<T> {
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
//
// A move takes the pointer array with every block and leaves the source a
// table of the same arguments without a pointer array: it reads as empty,
// reports the two entries a new table has, and makes that array at its first
// insertion, so from there on it grows as a new table does. The move
// allocates nothing and cannot throw.
template <class T>
class ZORVANCOW_TYPE omi_UintTable {
public:
    // The arguments 12, 10, 24: 4096 table blocks of 2^20 keys, element
    // blocks of 1024 values.
    omi_UintTable() : omi_UintTable(12, 10, 24) {}
    // Needs a >= 1 and a + b <= 32, so that both shifts lie between 0 and
    // 31; other arguments are refused in every build. c of 0 gives table
    // blocks that start without a pointer array (see omi_BlockedArray).
    omi_UintTable(unsigned int a, unsigned int b, unsigned int c)
        : blocks((ZORVANCOW_REQUIRE(a >= 1 && a <= 32 && b <= 32 - a, "omi_UintTable::omi_UintTable",
                                    "needs a from 1 to 32 and a + b at most 32", "a %u, b %u", a, b),
                  cow_Allocate([] { return new omi_UintTableBlock<T>*[2](); }))),
          count(0),
          blockCount(2),
          keyMask(static_cast<unsigned int>((std::uint64_t{1} << (32 - a)) - 1)),
          keyShift(32 - a),
          blockPointers(c),
          elementShift(32 - a - b) {}
    // A deep copy: every table block and element block is duplicated; only
    // the texts of cow_String values stay shared.
    // A moved-from source gives a new, empty table of its arguments.
    omi_UintTable(omi_UintTable const& source)
        : blocks(cow_Allocate([&source] { return new omi_UintTableBlock<T>*[source.GetBlockCount()](); })),
          count(source.count),
          blockCount(source.GetBlockCount()),
          keyMask(source.keyMask),
          keyShift(source.keyShift),
          blockPointers(source.blockPointers),
          elementShift(source.elementShift) {
        try {
            for (unsigned int n = 0; n < source.blockCount; ++n)
                if (source.blocks[n] != nullptr)
                    blocks[n] = cow_Allocate([&source, n] { return new omi_UintTableBlock<T>(*source.blocks[n]); });
        } catch (...) {
            // An element's copy threw: the table blocks made so far go with it.
            Clear();
            delete[] blocks;
            throw;
        }
    }
    omi_UintTable& operator=(omi_UintTable const&) = delete;
    // Takes the other's blocks; `other` keeps its arguments and is left
    // empty, without a pointer array (see above).
    omi_UintTable(omi_UintTable&& other) noexcept
        : blocks(other.blocks),
          count(other.count),
          blockCount(other.blockCount),
          keyMask(other.keyMask),
          keyShift(other.keyShift),
          blockPointers(other.blockPointers),
          elementShift(other.elementShift) {
        other.blocks = nullptr;
        other.count = 0;
        other.blockCount = 0;
    }
    // Frees this table's blocks and takes the other's, arguments included;
    // `other` is left empty.
    omi_UintTable& operator=(omi_UintTable&& other) noexcept {
        omi_UintTable taken(std::move(other));
        swap(taken);
        return *this;
    }
    // Exchanges the two tables, arguments included; nothing is copied.
    void swap(omi_UintTable& other) noexcept {
        std::swap(blocks, other.blocks);
        std::swap(count, other.count);
        std::swap(blockCount, other.blockCount);
        std::swap(keyMask, other.keyMask);
        std::swap(keyShift, other.keyShift);
        std::swap(blockPointers, other.blockPointers);
        std::swap(elementShift, other.elementShift);
    }
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
    unsigned int GetBlockCount() const { return blocks != nullptr ? blockCount : kFirstBlockCount; }
    unsigned int GetKeyShift() const { return keyShift; }
    unsigned int GetKeyMask() const { return keyMask; }
    unsigned int GetBlockPointers() const { return blockPointers; }
    unsigned int GetElementShift() const { return elementShift; }

private:
    friend class omi_IntTable<T>;
    friend class omi_UintTableIterator<T>;

    // The pointer array length of a new table.
    static constexpr unsigned int kFirstBlockCount = 2;
    // A moved-from table of the default arguments, empty and without a
    // pointer array: what omi_IntTable reads for a half it does not have.
    // Allocates nothing.
    static omi_UintTable const& Empty() {
        static omi_UintTable const empty{Bare{}};
        return empty;
    }
    // The fields the arguments 12, 10, 24 set, without a pointer array.
    struct Bare {};
    explicit omi_UintTable(Bare)
        : blocks(nullptr),
          count(0),
          blockCount(0),
          keyMask((1u << 20) - 1),
          keyShift(20),
          blockPointers(24),
          elementShift(10) {}

    void GrowTo(unsigned int n) {
        // In 64 bits: with a = 32 a key near 2^32 has a block number whose
        // next multiple of 64 does not fit 32 bits. The array then grows to
        // the largest length it can have, which holds every block number
        // but the last.
        std::uint64_t wanted = (std::uint64_t{n} / 64 + 1) * 64;
        if (wanted > 0xFFFFFFFFu) wanted = 0xFFFFFFFFu;
        ZORVANCOW_REQUIRE(n < wanted, "omi_UintTable::Insert", "the table block array would need 2^32 entries",
                          "block number %u", n);
        unsigned int const grown = static_cast<unsigned int>(wanted);
        auto** larger = cow_Allocate([grown] { return new omi_UintTableBlock<T>*[grown](); });
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
    // Takes both halves; `other` is left without halves, which reads as an
    // empty table and makes two halves of the arguments 12, 10, 24 at its
    // first insertion. Allocates nothing, cannot throw.
    omi_IntTable(omi_IntTable&& other) noexcept : negative(other.negative), nonNegative(other.nonNegative) {
        other.negative = nullptr;
        other.nonNegative = nullptr;
    }
    // Frees this table's halves and takes the other's; `other` is left empty.
    omi_IntTable& operator=(omi_IntTable&& other) noexcept {
        omi_IntTable taken(std::move(other));
        swap(taken);
        return *this;
    }
    // Exchanges the two tables' halves; nothing is copied.
    void swap(omi_IntTable& other) noexcept {
        std::swap(negative, other.negative);
        std::swap(nonNegative, other.nonNegative);
    }
    // Frees the negative half, then the non-negative one.
    virtual ~omi_IntTable();

    // A new heap copy made by the copy constructor; the caller owns it.
    omi_IntTable* Copy() const {
        return cow_Allocate([this] { return new omi_IntTable(*this); });
    }

    // The table block whose range holds `key`, or null when there is none.
    // A block says only that the range is in use, not that the key is.
    omi_UintTableBlock<T>* FindBlock(int key) const {
        omi_UintTable<T> const& half = key < 0 ? GetNegative() : GetNonNegative();
        unsigned int const n = Magnitude(key) >> half.keyShift;
        return n < half.blockCount ? half.blocks[n] : nullptr;
    }

    // Stores `value` under `key`; true if the key was absent, else the value
    // is replaced.
    bool Insert(int key, T const& value) { return Half(key).Insert(Magnitude(key), value); }
    // True if the key was present; see omi_UintTable::Remove.
    bool Remove(int key) { return negative != nullptr && Half(key).Remove(Magnitude(key)); }
    // The value of `key`, or null when absent. Valid until the next write.
    T const* ConstGet(int key) const {
        omi_UintTableBlock<T> const* block = FindBlock(key);
        if (block == nullptr) return nullptr;
        return block->ConstGet(Magnitude(key) & (key < 0 ? GetNegative() : GetNonNegative()).keyMask);
    }
    bool IsMember(int key) const { return ConstGet(key) != nullptr; }
    // Number of keys in both halves.
    std::int32_t GetCount() const { return GetNegative().GetCount() + GetNonNegative().GetCount(); }

    // Inspection: the two halves (a moved-from table reads two empty ones).
    omi_UintTable<T> const& GetNegative() const { return negative != nullptr ? *negative : omi_UintTable<T>::Empty(); }
    omi_UintTable<T> const& GetNonNegative() const {
        return nonNegative != nullptr ? *nonNegative : omi_UintTable<T>::Empty();
    }

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
    omi_UintTable<T>& Half(int key) {
        if (negative == nullptr) {
            // A moved-from table makes the halves a new one has.
            omi_IntTable fresh;
            swap(fresh);
        }
        return key < 0 ? *negative : *nonNegative;
    }

    omi_UintTable<T>* negative;
    omi_UintTable<T>* nonNegative;
};

// Walks one unsigned table in ascending key order (from First) or descending
// order (from Last). Plain mode (no callback) visits the used keys block by
// block through the bit vector walker, touching no unused key; a step costs
// one walker call, and each new table block one walker allocation.
//
// Sorted mode (a non-null callback) collects records of all elements at the
// first First or Last and sorts them with qsort and the callback (as the map
// does, core/cow_CollectSorted.h); the callback gets
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
    void First() { compare != nullptr ? SortedFirst() : PlainFirst(); }
    // To the greatest key (in sorted mode: the last record).
    void Last() { compare != nullptr ? SortedLast() : PlainLast(); }
    // To the next greater key; on the last one the iterator becomes done.
    void Next() { compare != nullptr ? SortedNext() : PlainNext(); }
    // To the next smaller key; on the first one the iterator becomes done.
    void Prev() { compare != nullptr ? SortedPrev() : PlainPrev(); }
    bool IsDone() const { return done; }
    unsigned int CurrentKey() const {
        ZORVANCOW_CHECK(!done && (compare == nullptr ? block != nullptr : sorted != nullptr),
                        "omi_UintTableIterator::CurrentKey", "the iterator is done or not positioned", "position %d",
                        position);
        return compare != nullptr ? sorted[position]->key : low + base;
    }
    T const& CurrentValue() const {
        ZORVANCOW_CHECK(!done && (compare == nullptr ? block != nullptr : sorted != nullptr),
                        "omi_UintTableIterator::CurrentValue", "the iterator is done or not positioned", "position %d",
                        position);
        return compare != nullptr ? *sorted[position]->value : block->ElementAt(low);
    }

private:
    // Plain mode: `position` is the current table block, `low` the key's
    // index inside it, and the walker steps over the block's used keys.
    void PlainFirst() {
        position = -1;
        done = !NextBlock();
    }
    void PlainLast() {
        position = static_cast<std::int32_t>(table->blockCount);
        done = !PrevBlock();
    }
    void PlainNext() {
        if (walker != nullptr && !walker->Next(low)) done = !NextBlock();
    }
    void PlainPrev() {
        if (walker != nullptr && !walker->Prev(low)) done = !PrevBlock();
    }

    // Sorted mode: `position` is the index in `sorted`, built at the first
    // First or Last; the steps before that do nothing.
    void SortedFirst() {
        position = -1;
        if (sorted == nullptr && !BuildSorted()) {
            done = true;
            return;
        }
        done = table->count < 1;
        position = 0;
    }
    void SortedLast() {
        if (sorted == nullptr && !BuildSorted()) {
            done = true;
            return;
        }
        position = table->count - 1;
        done = false;
    }
    void SortedNext() {
        if (sorted == nullptr) return;
        ++position;
        done = position == table->count;
    }
    void SortedPrev() {
        if (sorted == nullptr) return;
        if (position > 0) --position;
        done = false;
    }

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
        walker = cow_Allocate([this] { return new omi_BlkBitVectTrav(&block->GetBits()); });
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
    // The bit is set once the value is stored, so a copy that throws
    // leaves the index as it was.
    std::uint32_t const before = bits.count;
    this->Set(index, value);
    bits.SetBit(index);
    return bits.count != before;
}

template <class T>
omi_UintTable<T>::~omi_UintTable() {
    Clear();
    delete[] blocks;
}

template <class T>
bool omi_UintTable<T>::Insert(unsigned int key, T const& value) {
    if (blocks == nullptr) {
        // A moved-from table makes the pointer array a new one starts with.
        blocks = cow_Allocate([] { return new omi_UintTableBlock<T>*[kFirstBlockCount](); });
        blockCount = kFirstBlockCount;
    }
    unsigned int const n = key >> keyShift;
    if (n >= blockCount) GrowTo(n);
    omi_UintTableBlock<T>* block = blocks[n];
    if (block == nullptr) {
        // A table block lives only while it holds a key: when the first
        // value's copy throws, the new block goes again.
        block = cow_Allocate([this] { return new omi_UintTableBlock<T>(blockPointers, elementShift); });
        try {
            block->Insert(key & keyMask, value);
        } catch (...) {
            delete block;
            throw;
        }
        blocks[n] = block;
    } else if (!block->Insert(key & keyMask, value)) {
        return false;
    }
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
omi_IntTable<T>::omi_IntTable()
    : negative(cow_Allocate([] { return new omi_UintTable<T>; })),
      nonNegative(cow_Allocate([] { return new omi_UintTable<T>; })) {}

template <class T>
omi_IntTable<T>::omi_IntTable(unsigned int a, unsigned int b, unsigned int c)
    : negative(cow_Allocate([=] { return new omi_UintTable<T>(a, b, c); })),
      nonNegative(cow_Allocate([=] { return new omi_UintTable<T>(a, b, c); })) {}

template <class T>
omi_IntTable<T>::omi_IntTable(omi_IntTable const& source)
    : negative(cow_Allocate([&source] { return new omi_UintTable<T>(source.GetNegative()); })), nonNegative(nullptr) {
    try {
        nonNegative = cow_Allocate([&source] { return new omi_UintTable<T>(source.GetNonNegative()); });
    } catch (...) {
        // An element's copy threw: the half made first goes with it.
        delete negative;
        throw;
    }
}

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
    sorted = cow_detail::CollectSorted(static_cast<std::size_t>(n), compare, [this, n] {
        SortedRecord** records = cow_Allocate([n] { return new SortedRecord*[static_cast<std::size_t>(n)]; });
        omi_UintTableIterator<T> plain(*table);
        std::int32_t i = 0;
        for (plain.First(); !plain.IsDone(); plain.Next())
            records[i++] = cow_Allocate([&plain] { return new SortedRecord{plain.CurrentKey(), &plain.CurrentValue()}; });
        return records;
    });
    return true;
}

template <class T>
omi_IntTableIterator<T>::omi_IntTableIterator(omi_IntTable<T> const& walked) : omi_IntTableIterator(walked, nullptr) {}

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

template <class T>
inline void swap(omi_UintTable<T>& a, omi_UintTable<T>& b) noexcept {
    a.swap(b);
}
template <class T>
inline void swap(omi_IntTable<T>& a, omi_IntTable<T>& b) noexcept {
    a.swap(b);
}

#include "zorvancow/tables/detail/omi_IntTableExports.h"

#endif
