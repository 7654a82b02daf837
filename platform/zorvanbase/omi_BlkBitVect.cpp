#include "zorvanbase/omi_BlkBitVect.h"

#include <cstring>

#include "zorvanmem/mem_Heap.h"

namespace {

std::uint32_t WordsPerBlock(std::uint32_t blockShift) { return std::uint32_t{1} << (blockShift - 6); }

}  // namespace

omi_BlkBitVect::omi_BlkBitVect(std::uint32_t shift)
    : blocks(nullptr),
      blockCount(0),
      blockShift(shift),
      blockMask(static_cast<std::uint32_t>((std::uint64_t{1} << shift) - 1)),
      usedBlocks(0),
      lowWord(UINT32_MAX),
      highWord(0),
      count(0) {}

omi_BlkBitVect::omi_BlkBitVect(omi_BlkBitVect const& other)
    : blocks(nullptr),
      blockCount(0),
      blockShift(other.blockShift),
      blockMask(other.blockMask),
      usedBlocks(0),
      lowWord(UINT32_MAX),
      highWord(0),
      count(0) {
    CopyFrom(other);
}

omi_BlkBitVect& omi_BlkBitVect::operator=(omi_BlkBitVect const& other) {
    if (this == &other) return *this;
    FreeAll();
    blockShift = other.blockShift;
    blockMask = other.blockMask;
    CopyFrom(other);
    return *this;
}

omi_BlkBitVect::~omi_BlkBitVect() { FreeAll(); }

void omi_BlkBitVect::Clear() {
    for (std::uint32_t b = 0; b < blockCount; ++b) {
        mem_Free(blocks[b]);
        blocks[b] = nullptr;
    }
    usedBlocks = 0;
    count = 0;
    ResetBounds();
}

bool omi_BlkBitVect::operator==(omi_BlkBitVect const& other) const {
    if (count != other.count) return false;
    if (count == 0) return true;
    std::uint32_t const from = lowWord < other.lowWord ? lowWord : other.lowWord;
    std::uint32_t const to = highWord > other.highWord ? highWord : other.highWord;
    for (std::uint32_t w = from; w < to; ++w)
        if (WordAt(w) != other.WordAt(w)) return false;
    return true;
}

void omi_BlkBitVect::GrowTable(std::uint32_t block) {
    // Doubling keeps a run of ascending SetBit calls at amortized constant
    // cost; the table never needs more than one entry per possible block.
    std::uint64_t const limit = std::uint64_t{1} << (32 - blockShift);
    std::uint64_t grown = blockCount == 0 ? 4 : std::uint64_t{blockCount} * 2;
    if (grown <= block) grown = std::uint64_t{block} + 1;
    if (grown > limit) grown = limit;
    auto** table = static_cast<std::uint64_t**>(mem_Realloc(blocks, grown * sizeof(std::uint64_t*)));
    for (std::uint64_t b = blockCount; b < grown; ++b) table[b] = nullptr;
    blocks = table;
    blockCount = static_cast<std::uint32_t>(grown);
}

std::uint64_t* omi_BlkBitVect::NewBlock(std::uint32_t block) {
    std::size_t const bytes = WordsPerBlock(blockShift) * sizeof(std::uint64_t);
    auto* words = static_cast<std::uint64_t*>(mem_Malloc(bytes));
    std::memset(words, 0, bytes);
    blocks[block] = words;
    ++usedBlocks;
    return words;
}

void omi_BlkBitVect::CopyFrom(omi_BlkBitVect const& other) {
    count = other.count;
    lowWord = other.lowWord;
    highWord = other.highWord;
    usedBlocks = other.usedBlocks;
    blockCount = other.blockCount;
    if (blockCount == 0) return;
    std::size_t const bytes = WordsPerBlock(blockShift) * sizeof(std::uint64_t);
    blocks = static_cast<std::uint64_t**>(mem_Malloc(blockCount * sizeof(std::uint64_t*)));
    for (std::uint32_t b = 0; b < blockCount; ++b) {
        if (other.blocks[b] == nullptr) {
            blocks[b] = nullptr;
        } else {
            blocks[b] = static_cast<std::uint64_t*>(mem_Malloc(bytes));
            std::memcpy(blocks[b], other.blocks[b], bytes);
        }
    }
}

void omi_BlkBitVect::FreeAll() {
    for (std::uint32_t b = 0; b < blockCount; ++b) mem_Free(blocks[b]);
    mem_Free(blocks);
    blocks = nullptr;
    blockCount = 0;
    usedBlocks = 0;
    count = 0;
    ResetBounds();
}

std::uint64_t omi_BlkBitVect::WordAt(std::uint32_t wordIndex) const {
    std::uint32_t const block = wordIndex >> (blockShift - 6);
    if (block >= blockCount || blocks[block] == nullptr) return 0;
    return blocks[block][wordIndex & (blockMask >> 6)];
}

omi_BlkBitVectTrav::omi_BlkBitVectTrav(omi_BlkBitVect const* walked)
    : vector(walked), current(0), started(false) {}

omi_BlkBitVectTrav::~omi_BlkBitVectTrav() = default;

bool omi_BlkBitVectTrav::First(std::uint32_t& index) {
    if (vector->count == 0) return false;
    return ScanUp(vector->lowWord, index);
}

bool omi_BlkBitVectTrav::Last(std::uint32_t& index) {
    if (vector->count == 0) return false;
    return ScanDown(std::int64_t{vector->highWord} - 1, index);
}

bool omi_BlkBitVectTrav::Prev(std::uint32_t& index) {
    if (!started) return Last(index);
    std::uint32_t const wordIndex = current >> 6;
    std::uint32_t const place = current & 63;
    std::uint64_t const below = place == 0 ? 0 : CurrentWord(wordIndex) & ((std::uint64_t{1} << place) - 1);
    if (below != 0) {
        current = (wordIndex << 6) | static_cast<std::uint32_t>(63 - __builtin_clzll(below));
        index = current;
        return true;
    }
    return ScanDown(std::int64_t{wordIndex} - 1, index);
}

bool omi_BlkBitVectTrav::ScanUp(std::uint64_t from, std::uint32_t& index) {
    std::uint32_t const wordShift = vector->blockShift - 6;
    std::uint64_t const wordMask = vector->blockMask >> 6;
    std::uint64_t const end = vector->highWord;
    for (std::uint64_t w = from; w < end;) {
        std::uint64_t const* words = vector->blocks[w >> wordShift];
        if (words == nullptr) {
            // A missing block holds no bit: go to the next block's first word.
            w = ((w >> wordShift) + 1) << wordShift;
            continue;
        }
        std::uint64_t const word = words[w & wordMask];
        if (word != 0) {
            current = static_cast<std::uint32_t>(w << 6) | static_cast<std::uint32_t>(__builtin_ctzll(word));
            started = true;
            index = current;
            return true;
        }
        ++w;
    }
    return false;
}

bool omi_BlkBitVectTrav::ScanDown(std::int64_t from, std::uint32_t& index) {
    std::uint32_t const wordShift = vector->blockShift - 6;
    std::uint64_t const wordMask = vector->blockMask >> 6;
    std::int64_t const end = vector->lowWord;
    for (std::int64_t w = from; w >= end;) {
        std::uint64_t const* words = vector->blocks[w >> wordShift];
        if (words == nullptr) {
            // A missing block holds no bit: go to the previous block's last word.
            w = ((w >> wordShift) << wordShift) - 1;
            continue;
        }
        std::uint64_t const word = words[w & wordMask];
        if (word != 0) {
            current = static_cast<std::uint32_t>(w << 6) | static_cast<std::uint32_t>(63 - __builtin_clzll(word));
            started = true;
            index = current;
            return true;
        }
        --w;
    }
    return false;
}
