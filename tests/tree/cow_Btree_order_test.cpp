// Key orders: natural order for cow_String keys when the switch is on, bytes
// for atr_String keys always, and the wrapped difference for int keys.

#include "zorvancow/tree/cow_Btree.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <vector>

namespace {

// Turns natural order on for one scope.
struct NaturalOrder {
    NaturalOrder() { atr_setNaturalOrder(1); }
    ~NaturalOrder() { atr_setNaturalOrder(0); }
};

template <class K, class V>
std::vector<std::string> TextKeys(cow_Btree<K, V> const& tree) {
    std::vector<std::string> keys;
    cow_BtreeIterator<K, V> it(tree);
    for (it.First(); !it.IsDone(); it.Next()) keys.emplace_back(it.CurrentKey().GetCString());
    return keys;
}

TEST(BtreeOrder, NaturalOrderForCowStringKeysBytesForAtrStringKeys) {
    char const* const texts[] = {"file10", "file9", "file1", "file100", "File2", "\xe4x"};
    std::vector<std::string> const natural = {"File2", "file1", "file9", "file10", "file100", "\xe4x"};
    std::vector<std::string> const bytes = {"File2", "file1", "file10", "file100", "file9", "\xe4x"};
    {
        NaturalOrder on;
        cow_Btree<cow_String, int> cowKeys;
        cow_Btree<atr_String, int> atrKeys;
        int i = 0;
        for (char const* text : texts) {
            EXPECT_TRUE(cowKeys.InsertUnlessMember(cow_String(text), i));
            EXPECT_TRUE(atrKeys.InsertUnlessMember(atr_String(text), i));
            ++i;
        }
        EXPECT_EQ(TextKeys(cowKeys), natural);
        EXPECT_EQ(TextKeys(atrKeys), bytes);
        EXPECT_EQ(cowKeys.ConstGet(cow_String("file9")), 1);
        EXPECT_EQ(atrKeys.ConstGet(atr_String("file9")), 1);
        EXPECT_TRUE(cowKeys.Remove(cow_String("file10")));
        EXPECT_FALSE(cowKeys.Remove(cow_String("file10")));
        EXPECT_TRUE(atrKeys.Remove(atr_String("file10")));
        EXPECT_EQ(cowKeys.GetCount(), 5);
    }
    // With the switch off, cow_String keys go by bytes too.
    cow_Btree<cow_String, int> plain;
    for (char const* text : texts) plain.InsertUnlessMember(cow_String(text), 0);
    EXPECT_EQ(TextKeys(plain), bytes);
}

TEST(BtreeOrder, IntegerOrderIsTheWrappedDifference) {
    EXPECT_LT(cow_BtreeKeyCompare(INT_MAX, -1), 0);
    EXPECT_LT(cow_BtreeKeyCompare(-1, INT_MAX), 0);
    EXPECT_GT(cow_BtreeKeyCompare(INT_MAX, INT_MAX - 1), 0);
    EXPECT_LT(cow_BtreeKeyCompare(INT_MIN, INT_MIN + 1), 0);
    EXPECT_EQ(cow_BtreeKeyCompare(INT_MIN, INT_MIN), 0);

    // Keys within a span below 2^31 order as integers, across zero too.
    cow_Btree<int, int> tree;
    std::vector<int> const keys = {-1000, 7, -3, INT_MAX / 2, 0, -(INT_MAX / 2)};
    for (int key : keys) tree.InsertUnlessMember(key, key);
    std::vector<int> walked;
    cow_BtreeIterator<int, int> it(tree);
    for (it.First(); !it.IsDone(); it.Next()) walked.push_back(it.CurrentKey());
    EXPECT_EQ(walked, (std::vector<int>{-(INT_MAX / 2), -1000, -3, 0, 7, INT_MAX / 2}));

    // Outside the span the wrapped sign stands: the greatest int goes left
    // of -1, and both are still found.
    cow_Btree<int, int> wide;
    wide.InsertUnlessMember(-1, 1);
    wide.InsertUnlessMember(INT_MAX, 2);
    ASSERT_NE(wide.GetRoot()->ConstGet()->GetLeft(), nullptr);
    EXPECT_EQ(wide.GetRoot()->ConstGet()->GetLeft()->ConstGet()->GetKey(), INT_MAX);
    EXPECT_EQ(wide.ConstGet(INT_MAX), 2);
    EXPECT_EQ(wide.ConstGet(-1), 1);
}

}  // namespace
