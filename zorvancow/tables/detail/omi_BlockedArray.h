#ifndef ZORVANCOW_TABLES_DETAIL_OMI_BLOCKEDARRAY_H
#define ZORVANCOW_TABLES_DETAIL_OMI_BLOCKEDARRAY_H

#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "zorvancow/core/cow_Check.h"
#include "zorvancow/core/cow_Element.h"

// A sparse array indexed by an unsigned integer: a growable array of pointers
// to element blocks of 1 << shift values each. An element block is an element
// run (cow_Element<T>), made with zero values at the first store into its
// range. Reaching an element costs a shift, a mask and two indexed reads.
// Copies are deep: every element block is duplicated, and the elements are
// copied by the element rules (bytes for numbers, their own copy assignment
// otherwise).
template <class T>
class omi_BlockedArray {
public:
    // `pointerCount` null entries (0 gives no pointer array; the array then
    // grows in units of 128), element blocks of 1 << `shift` values. A non-zero
    // `pointerCount` is also the unit of growth. `shift` is at most 31; a
    // larger one is refused in every build.
    omi_BlockedArray(unsigned int pointerCount, unsigned int shift)
        : growBy((ZORVANCOW_REQUIRE(shift < 32, "omi_BlockedArray::omi_BlockedArray", "shift out of range", "shift %u",
                                    shift),
                  pointerCount != 0 ? pointerCount : 128)),
          blockCount(pointerCount),
          blockSize(1u << shift),
          blockShift(shift),
          blockMask((1u << shift) - 1),
          blocks(pointerCount != 0 ? cow_Allocate([pointerCount] { return new T*[pointerCount](); }) : nullptr) {}

    // A deep copy: a new pointer array and a new element block for each one
    // of the source, holding copies of all its values.
    omi_BlockedArray(omi_BlockedArray const& source)
        : growBy(source.growBy),
          blockCount(source.blockCount),
          blockSize(source.blockSize),
          blockShift(source.blockShift),
          blockMask(source.blockMask),
          blocks(source.blockCount != 0 ? cow_Allocate([&source] { return new T*[source.blockCount](); }) : nullptr) {
        try {
            for (unsigned int b = 0; b < blockCount; ++b) {
                if (source.blocks[b] != nullptr) blocks[b] = cow_Element<T>::NewRunCopy(source.blocks[b], blockSize);
            }
        } catch (...) {
            // An element's copy threw: the blocks made so far go with it.
            Clear();
            delete[] blocks;
            throw;
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
            blocks = blockCount != 0 ? cow_Allocate([this] { return new T*[blockCount](); }) : nullptr;
        } else if (blockSize != source.blockSize) {
            Clear();
            blockShift = source.blockShift;
            blockSize = source.blockSize;
            blockMask = source.blockMask;
        }
        for (unsigned int b = 0; b < blockCount; ++b) {
            if (source.blocks[b] == nullptr) {
                cow_Element<T>::DeleteRun(blocks[b]);
                blocks[b] = nullptr;
            } else if (blocks[b] == nullptr) {
                blocks[b] = cow_Element<T>::NewRunCopy(source.blocks[b], blockSize);
            } else {
                cow_Element<T>::CopyRun(blocks[b], source.blocks[b], blockSize);
            }
        }
        return *this;
    }

    // Frees every element block with its values; the pointer array stays, so
    // the next store into a range makes its block again.
    void Clear() {
        for (unsigned int b = 0; b < blockCount; ++b) {
            cow_Element<T>::DeleteRun(blocks[b]);
            blocks[b] = nullptr;
        }
    }

    // Lengthens the pointer array to `pointerCount` entries (the new ones
    // null); a count not above the current length changes nothing.
    void Grow(unsigned int pointerCount) {
        if (pointerCount <= blockCount) return;
        T** grown = cow_Allocate([pointerCount] { return new T*[pointerCount](); });
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
        if (b >= blockCount) {
            // Worked out in 64 bits: near the top of the index range the
            // next multiple of growBy does not fit 32 bits. The array then
            // grows to the largest length it can have.
            std::uint64_t grown = (std::uint64_t{b} / growBy + 1) * growBy;
            if (grown > 0xFFFFFFFFu) grown = 0xFFFFFFFFu;
            ZORVANCOW_REQUIRE(b < grown, "omi_BlockedArray::Set", "the pointer array would need 2^32 entries",
                              "index %u, shift %u", index, blockShift);
            Grow(static_cast<unsigned int>(grown));
        }
        if (blocks[b] == nullptr) blocks[b] = cow_Element<T>::NewRun(blockSize);
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
    unsigned int growBy;
    unsigned int blockCount;
    unsigned int blockSize;
    unsigned int blockShift;
    unsigned int blockMask;
    T** blocks;
};

#endif
