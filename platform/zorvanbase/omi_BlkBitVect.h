#ifndef ZORVANBASE_OMI_BLKBITVECT_H
#define ZORVANBASE_OMI_BLKBITVECT_H

// Stand-in for the base sibling's blocked bit vector and its walker.
//
// A bit vector over the whole unsigned 32-bit index range whose storage
// follows use: the bits live in word blocks of 1 << blockShift bits each
// (512 by default), and a block exists only once a bit in it has been set.
// A vector with a few bits set far apart costs a few small blocks and one
// pointer table; a dense run costs one bit per index plus a pointer per
// block. Word blocks and the pointer table come from mem_Malloc, so a test
// sees them in mem_GetLiveBlocks().
//
// The vector is a plain value: a copy is deep and independent of its source.
// Nothing is locked; a vector and its walkers belong to one thread at a time.

#include <cstdint>

#include "zorvan_export.h"

class omi_BlkBitVectTrav;

class ZORVAN_EXPORT omi_BlkBitVect {
public:
    // Bits per word block when the constructor is given no shift: 512, one
    // cache line of words.
    static constexpr std::uint32_t defaultBlockShift = 9;

    // An empty vector: no block, no pointer table, `count` 0. Allocates
    // nothing. `blockShift` (at least 6, at most 31) sets the bits per block.
    explicit omi_BlkBitVect(std::uint32_t blockShift = defaultBlockShift);
    // An independent vector with the same bits, the same `count` and the same
    // block size: every word block of the source is copied.
    omi_BlkBitVect(omi_BlkBitVect const& other);
    // Replaces this vector's content by a deep copy of `other` (its block
    // size included). Assigning a vector to itself changes nothing.
    omi_BlkBitVect& operator=(omi_BlkBitVect const& other);
    // Frees all word blocks and the pointer table.
    virtual ~omi_BlkBitVect();

    // Sets bit `index`; any unsigned index is valid. `count` rises by one if
    // the bit was clear. The first bit set in a block allocates the block
    // (and, past the end of the pointer table, grows the table).
    void SetBit(std::uint32_t index) {
        std::uint32_t const block = index >> blockShift;
        if (block >= blockCount) GrowTable(block);
        std::uint64_t* words = blocks[block];
        if (words == nullptr) words = NewBlock(block);
        std::uint64_t& word = words[(index & blockMask) >> 6];
        std::uint64_t const bit = std::uint64_t{1} << (index & 63);
        if ((word & bit) != 0) return;
        word |= bit;
        ++count;
        std::uint32_t const wordIndex = index >> 6;
        if (wordIndex < lowWord) lowWord = wordIndex;
        if (wordIndex >= highWord) highWord = wordIndex + 1;
    }
    // Clears bit `index`. `count` falls by one if the bit was set; a bit that
    // was never set (even one past every block) is valid and changes nothing.
    // Blocks are kept even when they become all clear.
    void UnsetBit(std::uint32_t index) {
        std::uint32_t const block = index >> blockShift;
        if (block >= blockCount || blocks[block] == nullptr) return;
        std::uint64_t& word = blocks[block][(index & blockMask) >> 6];
        std::uint64_t const bit = std::uint64_t{1} << (index & 63);
        if ((word & bit) == 0) return;
        word &= ~bit;
        if (--count == 0) ResetBounds();
    }
    // Whether bit `index` is set. Any index is valid; reads only.
    bool TestBit(std::uint32_t index) const {
        std::uint32_t const block = index >> blockShift;
        if (block >= blockCount || blocks[block] == nullptr) return false;
        return (blocks[block][(index & blockMask) >> 6] >> (index & 63) & 1) != 0;
    }
    // Clears every bit: frees the word blocks and keeps the pointer table.
    // `count` becomes 0.
    void Clear();

    // Same set bits, whatever the block sizes and which blocks exist.
    bool operator==(omi_BlkBitVect const& other) const;
    bool operator!=(omi_BlkBitVect const& other) const { return !(*this == other); }

    // Inspection: bits per block as a shift, length of the pointer table, and
    // word blocks allocated now.
    std::uint32_t GetBlockShift() const { return blockShift; }
    std::uint32_t GetBlockCount() const { return blockCount; }
    std::uint32_t GetUsedBlocks() const { return usedBlocks; }

private:
    friend class omi_BlkBitVectTrav;

    void GrowTable(std::uint32_t block);
    std::uint64_t* NewBlock(std::uint32_t block);
    void ResetBounds() {
        lowWord = UINT32_MAX;
        highWord = 0;
    }
    void CopyFrom(omi_BlkBitVect const& other);
    void FreeAll();
    // The word at `wordIndex`, 0 where no block holds it.
    std::uint64_t WordAt(std::uint32_t wordIndex) const;

    std::uint64_t** blocks;      // blockCount entries, each null or a block
    std::uint32_t blockCount;    // length of the pointer table
    std::uint32_t blockShift;    // bits per word block, as a shift
    std::uint32_t blockMask;     // bits per word block - 1
    std::uint32_t usedBlocks;    // word blocks allocated
    std::uint32_t lowWord;       // no set bit lies in a word below this one
    std::uint32_t highWord;      // nor in this word or above; empty when low >= high

public:
    // Number of set bits. Callers may read it directly, before and after a
    // change, to learn whether SetBit or UnsetBit changed anything; it is
    // written only by the vector itself.
    std::uint32_t count;
};

// Walks the set bits of one vector in either direction, never visiting a
// clear bit: empty words are passed a word at a time and missing blocks a
// block at a time. The vector must outlive the walker and must not change
// while it walks. A new walker stands before the first bit: Next acts as
// First and Prev as Last. Each call writes the bit it reaches into `index`
// and returns true; when there is none it returns false and the walker stays
// where it was.
class ZORVAN_EXPORT omi_BlkBitVectTrav {
public:
    // A walker over `vector` (not owned). Allocates nothing.
    explicit omi_BlkBitVectTrav(omi_BlkBitVect const* vector);
    virtual ~omi_BlkBitVectTrav();

    // The lowest set bit; false if no bit is set.
    bool First(std::uint32_t& index);
    // The highest set bit; false if no bit is set.
    bool Last(std::uint32_t& index);
    // The next higher set bit; false if there is none.
    bool Next(std::uint32_t& index) {
        if (!started) return First(index);
        std::uint32_t const wordIndex = current >> 6;
        std::uint64_t const above = CurrentWord(wordIndex) & (~std::uint64_t{1} << (current & 63));
        if (above != 0) {
            current = (wordIndex << 6) | static_cast<std::uint32_t>(__builtin_ctzll(above));
            index = current;
            return true;
        }
        return ScanUp(wordIndex + 1, index);
    }
    // The next lower set bit; false if there is none.
    bool Prev(std::uint32_t& index);

private:
    // The word at `wordIndex`, which lies in an existing block.
    std::uint64_t CurrentWord(std::uint32_t wordIndex) const {
        return vector->blocks[wordIndex >> (vector->blockShift - 6)]
                             [wordIndex & (vector->blockMask >> 6)];
    }
    // The lowest set bit in words `from` and up, or in words `from` and down.
    bool ScanUp(std::uint64_t from, std::uint32_t& index);
    bool ScanDown(std::int64_t from, std::uint32_t& index);

    omi_BlkBitVect const* vector;
    std::uint32_t current;  // the bit reached last
    bool started;           // whether any bit has been reached
};

#endif
