// The sibling stand-ins: the heap's one line when memory runs out (its live
// counter is what every leak check of the tests reads), and natural order.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "zorvanmem/mem_Heap.h"
#include "zorvanstr/atr_String.h"

namespace {

TEST(Heap, ExhaustionAbortsWithOneLine) {
    EXPECT_DEATH(mem_Malloc(static_cast<std::size_t>(-1) / 2), "zorvanmem: out of memory");
}

// Natural order, as one table in ascending order: digit runs compare by
// value however long they are (leading zeros add nothing), a run ranks as
// the byte '0' against any other byte, bytes compare unsigned, and texts
// equal by value ("a01", "a1") fall back to byte order, so that only equal
// texts compare equal.
TEST(NaturalOrder, TheWholeOrderInOneTable) {
    std::vector<std::string> const ascending = {
        "", "0", "00", "01", "1", "9", "10", "A2", "a", "a 1", "a-1", "a001", "a01", "a1", "a1a", "a01b",
        "a1b", "a02", "a2", "a9", "a9z", "a010", "a10", "a20", "a_", "ab", "b", "v1.9", "v1.10",
        "x99999999999999999999999", "x0100000000000000000000000", "x100000000000000000000000", "\xE4"};
    for (std::size_t i = 0; i < ascending.size(); ++i) {
        char const* left = ascending[i].c_str();
        EXPECT_EQ(strnatcmp(left, left), 0) << left;
        for (std::size_t j = i + 1; j < ascending.size(); ++j) {
            char const* right = ascending[j].c_str();
            EXPECT_LT(strnatcmp(left, right), 0) << left << " before " << right;
            EXPECT_GT(strnatcmp(right, left), 0) << right << " after " << left;
        }
    }
}

}  // namespace
