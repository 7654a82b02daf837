#ifndef ZORVANSTR_ATR_STRING_H
#define ZORVANSTR_ATR_STRING_H

// Stand-in for the string sibling: the counted, read-only text under every
// string value, the natural-order comparison and its switch, and the
// allocator object that a library makes at its start.

#include <cstdint>

#include "zorvan_export.h"
#include "zorvan_lifecycle.h"

// The counted block shared by all copies of one text. `count` is its first
// field and `length` lies 8 bytes from its start; the bytes of the text
// follow the header in the same allocation.
struct atr_StringHeader {
    std::int32_t count;     // string values that point here
    std::int32_t reserved;  // kept zero
    std::int32_t length;    // bytes of text, terminator not counted
};
static_assert(sizeof(atr_StringHeader) == 12, "header layout");

// The one empty text that every value without a header reads as.
extern ZORVAN_EXPORT char const atr_emptyText[1];

// Base of the two string values, `cow_String` and `atr_String`: exactly two
// words, `text` and `header`. The copy, assignment and destruction below are
// inline so that each copy costs two word moves and one increment; the
// sibling's own code only makes and frees texts.
class ZORVAN_EXPORT atr_StringBase {
public:
    // The bytes of the text; the shared empty text when there is no header.
    char const* GetCString() const { return header != nullptr ? text : atr_emptyText; }
    // Bytes of the text, terminator not counted; 0 when there is no header.
    std::int32_t GetLength() const { return header != nullptr ? header->length : 0; }

    // Inspection: how many values share this text (0 without a header), and
    // the header itself, so that a caller can tell whether two values share.
    std::int32_t GetShareCount() const { return header != nullptr ? header->count : 0; }
    atr_StringHeader const* GetHeader() const { return header; }

protected:
    // The empty-by-default value: no header, nothing allocated.
    atr_StringBase() : text(nullptr), header(nullptr) {}
    // A value holding its own copy of `source`, with `count` 1.
    explicit atr_StringBase(char const* source);
    // Shares the other value's text: one increment.
    atr_StringBase(atr_StringBase const& other) : text(other.text), header(other.header) {
        if (header != nullptr) ++header->count;
    }
    // Takes the source's count before giving up its own, which makes
    // self-assignment and assignment between copies of one text safe.
    atr_StringBase& operator=(atr_StringBase const& source) {
        if (source.header != nullptr) ++source.header->count;
        Release();
        text = source.text;
        header = source.header;
        return *this;
    }
    ~atr_StringBase() { Release(); }

    // Frees the header and text of a value whose count has just reached 0.
    // The count is not changed here, and the two words are not read again.
    void Delete();

    char const* text;
    atr_StringHeader* header;

private:
    void Release() {
        if (header != nullptr && --header->count == 0) Delete();
    }
};

// The sibling's own string value: the same layout and copying as
// `cow_String`, ordered by bytes wherever the library orders strings.
class ZORVAN_EXPORT atr_String : public atr_StringBase {
public:
    atr_String() = default;
    explicit atr_String(char const* source) : atr_StringBase(source) {}
};

// The allocator object that a library makes at its start and destroys at its
// stop. The stand-in only remembers that it exists and how it was made.
class ZORVAN_EXPORT atr_Allocator {
public:
    atr_Allocator(int blockShift, int flags, int reserve);
    ~atr_Allocator();

    int GetBlockShift() const { return blockShift; }
    int GetFlags() const { return flags; }
    int GetReserve() const { return reserve; }

    // Inspection: allocator objects alive now, and made since the process started.
    static int GetLiveCount();
    static int GetMadeCount();

private:
    int blockShift;
    int flags;
    int reserve;
};

ZORVAN_EXPORT void atr_initialize(int& caller);
ZORVAN_EXPORT void atr_finalize(int& caller);
ZORVAN_EXPORT zorvan_LifecycleRecord const& atr_GetLifecycle();

// The natural-order switch: non-zero makes the library's ordered string
// operations use strnatcmp. Off (0) at load.
ZORVAN_EXPORT int atr_getNaturalOrder();
ZORVAN_EXPORT void atr_setNaturalOrder(int on);

// Natural order: runs of decimal digits compare by their numeric value, any
// other byte by its unsigned value, and a digit run sorts where the byte '0'
// would. Texts that are equal under that rule (such as "a01" and "a1") fall
// back to plain unsigned byte order, so the result is a total order: 0 only
// for identical texts. Negative, 0 or positive as `left` sorts before, with
// or after `right`.
extern "C" ZORVAN_EXPORT int strnatcmp(char const* left, char const* right);

// Inspection for tests: texts alive now, and Delete calls since the process started.
ZORVAN_EXPORT long atr_GetLiveTexts();
ZORVAN_EXPORT long atr_GetDeleteCalls();

#endif
