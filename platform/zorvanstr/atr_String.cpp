#include "zorvanstr/atr_String.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

#include "zorvanmem/mem_Heap.h"

char const atr_emptyText[1] = {0};

namespace {

// Texts are made and freed on any thread; their counters are atomic.
std::atomic<long> liveTexts{0};
std::atomic<long> deleteCalls{0};
std::atomic<int> naturalOrder{0};
std::atomic<int> liveAllocators{0};
std::atomic<int> madeAllocators{0};
zorvan_LifecycleRecord lifecycle;

bool IsDigit(unsigned char c) { return c >= '0' && c <= '9'; }

// Compares the digit runs at `left` and `right` by value, however long they
// are, and moves both past their run.
int CompareDigitRuns(unsigned char const*& left, unsigned char const*& right) {
    while (*left == '0') ++left;
    while (*right == '0') ++right;
    unsigned char const* leftStart = left;
    unsigned char const* rightStart = right;
    while (IsDigit(*left)) ++left;
    while (IsDigit(*right)) ++right;
    std::ptrdiff_t leftDigits = left - leftStart;
    std::ptrdiff_t rightDigits = right - rightStart;
    if (leftDigits != rightDigits) return leftDigits < rightDigits ? -1 : 1;
    int order = std::memcmp(leftStart, rightStart, static_cast<std::size_t>(leftDigits));
    return order < 0 ? -1 : (order > 0 ? 1 : 0);
}

int CompareNaturally(unsigned char const* left, unsigned char const* right) {
    for (;;) {
        bool leftDigit = IsDigit(*left);
        bool rightDigit = IsDigit(*right);
        if (leftDigit && rightDigit) {
            int order = CompareDigitRuns(left, right);
            if (order != 0) return order;
            continue;
        }
        // A digit run ranks as the byte '0' against any other byte.
        unsigned char leftRank = leftDigit ? '0' : *left;
        unsigned char rightRank = rightDigit ? '0' : *right;
        if (leftRank != rightRank) return leftRank < rightRank ? -1 : 1;
        if (*left == 0) return 0;
        ++left;
        ++right;
    }
}

}  // namespace

atr_StringBase::atr_StringBase(char const* source) {
    std::size_t length = std::strlen(source);
    if (length > 0x7FFFFFFFu) {
        // The header counts bytes in 32 signed bits.
        std::fprintf(stderr, "atr_StringBase::atr_StringBase: a text of 2^31 bytes or more (%zu bytes)\n", length);
        std::fflush(stderr);
        std::abort();
    }
    void* block = std::malloc(sizeof(atr_StringHeader) + length + 1);
    if (block == nullptr) std::abort();
    header = new (block) atr_StringHeader{1, 0, static_cast<std::int32_t>(length)};
    char* bytes = reinterpret_cast<char*>(header + 1);
    std::memcpy(bytes, source, length + 1);
    text = bytes;
    liveTexts.fetch_add(1, std::memory_order_relaxed);
}

void atr_StringBase::Delete() {
    deleteCalls.fetch_add(1, std::memory_order_relaxed);
    liveTexts.fetch_sub(1, std::memory_order_relaxed);
    std::free(header);
}

atr_Allocator::atr_Allocator(int blockShift, int flags, int reserve)
    : blockShift(blockShift), flags(flags), reserve(reserve) {
    ++liveAllocators;
    ++madeAllocators;
}

atr_Allocator::~atr_Allocator() { --liveAllocators; }

int atr_Allocator::GetLiveCount() { return liveAllocators; }
int atr_Allocator::GetMadeCount() { return madeAllocators; }

void atr_initialize(int& caller) { mem_RecordStart(lifecycle, caller); }
void atr_finalize(int& caller) { mem_RecordStop(lifecycle, caller); }
zorvan_LifecycleRecord const& atr_GetLifecycle() { return lifecycle; }

int atr_getNaturalOrder() { return naturalOrder; }
void atr_setNaturalOrder(int on) { naturalOrder = on; }

extern "C" int strnatcmp(char const* left, char const* right) {
    auto const* l = reinterpret_cast<unsigned char const*>(left);
    auto const* r = reinterpret_cast<unsigned char const*>(right);
    int order = CompareNaturally(l, r);
    if (order != 0) return order;
    order = std::strcmp(left, right);  // strcmp compares as unsigned char
    return order < 0 ? -1 : (order > 0 ? 1 : 0);
}

long atr_GetLiveTexts() { return liveTexts.load(std::memory_order_relaxed); }
long atr_GetDeleteCalls() { return deleteCalls.load(std::memory_order_relaxed); }
