// The sibling stand-ins: the heap's counters and contract, and natural order.

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "zorvanmem/mem_Heap.h"
#include "zorvanstr/atr_String.h"

namespace {

TEST(Heap, CountsLiveBlocksThroughMallocReallocFree) {
    long live = mem_GetLiveBlocks();
    char* block = static_cast<char*>(mem_Malloc(8));
    std::memcpy(block, "1234567", 8);
    EXPECT_EQ(mem_GetLiveBlocks(), live + 1);
    block = static_cast<char*>(mem_Realloc(block, 4096));
    EXPECT_STREQ(block, "1234567") << "content kept";
    EXPECT_EQ(mem_GetLiveBlocks(), live + 1);
    block = static_cast<char*>(mem_Realloc(block, 0));
    EXPECT_NE(block, nullptr) << "a reset keeps a live block";
    mem_Free(block);
    mem_Free(nullptr);
    void* fresh = mem_Realloc(nullptr, 16);
    EXPECT_EQ(mem_GetLiveBlocks(), live + 1);
    mem_Free(fresh);
    EXPECT_EQ(mem_GetLiveBlocks(), live);
}

TEST(Heap, ExhaustionAbortsWithOneLine) {
    EXPECT_DEATH(mem_Malloc(static_cast<std::size_t>(-1) / 2), "zorvanmem: out of memory");
}

int Sign(int value) { return (value > 0) - (value < 0); }

TEST(NaturalOrder, DigitRunsCompareByValue) {
    EXPECT_LT(strnatcmp("file9", "file10"), 0);
    EXPECT_GT(strnatcmp("file10", "file9"), 0);
    EXPECT_LT(strnatcmp("a9", "a010"), 0) << "leading zeros do not make a fraction";
    EXPECT_LT(strnatcmp("x99999999999999999999999", "x100000000000000000000000"), 0)
        << "runs longer than any machine integer";
    EXPECT_LT(strnatcmp("v1.9", "v1.10"), 0);
    EXPECT_LT(strnatcmp("abc", "abd"), 0);
    EXPECT_LT(strnatcmp("ab", "ab1"), 0);
    EXPECT_GT(strnatcmp("\xE4", "z"), 0) << "bytes compare unsigned";
    EXPECT_EQ(strnatcmp("", ""), 0);
    EXPECT_EQ(strnatcmp("same42", "same42"), 0);
}

TEST(NaturalOrder, IsATotalOrder) {
    // Equal by value but different texts are told apart, and the order is
    // consistent: sorting gives the same result whatever the start order.
    EXPECT_NE(strnatcmp("a01", "a1"), 0);
    EXPECT_EQ(Sign(strnatcmp("a01", "a1")), -Sign(strnatcmp("a1", "a01")));
    std::vector<std::string> words = {"a1",  "a01", "a001", "a10", "a2", "a",   "a-1", "a 1",
                                      "ab",  "a1b", "a1a",  "0",   "00", "9",   "10",  "",
                                      "a9z", "a10", "b",    "a_",  "A2", "a20", "a02"};
    auto less = [](std::string const& l, std::string const& r) {
        return strnatcmp(l.c_str(), r.c_str()) < 0;
    };
    for (auto const& a : words)
        for (auto const& b : words) {
            EXPECT_EQ(Sign(strnatcmp(a.c_str(), b.c_str())), -Sign(strnatcmp(b.c_str(), a.c_str())));
            EXPECT_EQ(strnatcmp(a.c_str(), b.c_str()) == 0, a == b);
            for (auto const& c : words)
                if (less(a, b) && less(b, c)) {
                    EXPECT_TRUE(less(a, c)) << a << " " << b << " " << c;
                }
        }
}

}  // namespace
