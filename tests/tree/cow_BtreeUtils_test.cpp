// Keys and values as lists, and trees whose values are containers.

#include "zorvancow/tree/cow_Btree.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

std::vector<std::string> Texts(cow_List<cow_String> const& list) {
    std::vector<std::string> texts;
    for (int i = 0; i < list.GetCount(); ++i) texts.emplace_back(list.ConstGet(i).GetCString());
    return texts;
}

TEST(BtreeUtils, KeysAndValuesInKeyOrderSharingWithTheTree) {
    using Names = cow_BtreeUtils<cow_String, cow_String>;
    cow_Btree<cow_String, cow_String> tree;
    EXPECT_EQ(Names::cow_Keys(tree).GetCount(), 0);
    EXPECT_EQ(Names::cow_Values(tree).GetCount(), 0);

    for (char const* key : {"pear", "apple", "fig", "quince", "banana"})
        tree.InsertUnlessMember(cow_String(key), cow_String((std::string(key) + "!").c_str()));
    tree.Remove(cow_String("fig"));
    cow_List<cow_String> const keys = Names::cow_Keys(tree);
    cow_List<cow_String> const values = Names::cow_Values(tree);
    EXPECT_EQ(Texts(keys), (std::vector<std::string>{"apple", "banana", "pear", "quince"}));
    EXPECT_EQ(Texts(values), (std::vector<std::string>{"apple!", "banana!", "pear!", "quince!"}));
    cow_String const& held = tree.ConstGet(cow_String("pear"));
    EXPECT_EQ(values.ConstGet(2).GetHeader(), held.GetHeader()) << "values share the tree's texts";
    EXPECT_EQ(held.GetShareCount(), 2);

    cow_Btree<cow_String, unsigned int> counts;
    counts.InsertUnlessMember(cow_String("b"), 2u);
    counts.InsertUnlessMember(cow_String("a"), 1u);
    cow_List<unsigned int> const numbers = cow_BtreeUtils<cow_String, unsigned int>::cow_Values(counts);
    ASSERT_EQ(numbers.GetCount(), 2);
    EXPECT_EQ(numbers.ConstGet(0), 1u);
    EXPECT_EQ(numbers.ConstGet(1), 2u);

    // Values that are trees come out as copies on the same nodes.
    cow_Btree<cow_String, cow_Btree<int, int>> nested;
    cow_Btree<int, int> inner;
    inner.InsertUnlessMember(1, 10);
    nested.InsertUnlessMember(cow_String("x"), inner);
    cow_List<cow_Btree<int, int>> trees = cow_BtreeUtils<cow_String, cow_Btree<int, int>>::cow_Values(nested);
    ASSERT_EQ(trees.GetCount(), 1);
    EXPECT_EQ(trees.ConstGet(0).GetRoot()->ConstGet(), inner.GetRoot()->ConstGet());
    EXPECT_EQ(Texts(cow_BtreeUtils<cow_String, cow_Btree<int, int>>::cow_Keys(nested)),
              std::vector<std::string>{"x"});
}

TEST(BtreeUtils, ContainerValuesStayIndependentBetweenCopies) {
    cow_Btree<int, cow_1DArrayList<int>> lists;
    cow_1DArrayList<int> start;
    start.Append(1);
    lists.InsertUnlessMember(5, start);
    cow_Btree<int, cow_1DArrayList<int>> listsCopy = lists;
    listsCopy.Get(5)->Append(2);
    EXPECT_EQ(lists.ConstGet(5).GetCount(), 1);
    EXPECT_EQ(listsCopy.ConstGet(5).GetCount(), 2);
    EXPECT_EQ(lists.ConstGet(6).GetCount(), 0) << "an absent key reads an empty list";

    cow_Btree<atr_String, cow_List<atr_String>> byBytes;
    cow_List<atr_String> words;
    words.Append(atr_String("w"));
    byBytes.InsertUnlessMember(atr_String("k"), words);
    cow_Btree<atr_String, cow_List<atr_String>> byBytesCopy = byBytes;
    byBytesCopy.Get(atr_String("k"))->Append(atr_String("v"));
    EXPECT_EQ(byBytes.ConstGet(atr_String("k")).GetCount(), 1);
    EXPECT_EQ(byBytesCopy.ConstGet(atr_String("k")).GetCount(), 2);

    cow_Btree<cow_String, cow_FixedArray<int>> fixed;
    fixed.InsertUnlessMember(cow_String("f"), cow_FixedArray<int>(3, 7));
    cow_Btree<cow_String, cow_FixedArray<int>> fixedCopy = fixed;
    EXPECT_EQ(fixedCopy.ConstGet(cow_String("f")).GetShareCount(), 1) << "one shared node holds it";
    cow_FixedArray<int>* written = fixedCopy.Get(cow_String("f"));
    EXPECT_EQ(written->GetShareCount(), 2) << "the copied node shares the array";
    written->Get(0) = 9;
    EXPECT_EQ(fixed.ConstGet(cow_String("f")).ConstGet(0), 7);
    EXPECT_EQ(fixedCopy.ConstGet(cow_String("f")).ConstGet(0), 9);
    cow_BtreeIterator<cow_String, cow_FixedArray<int>> it(fixedCopy);
    it.First();
    EXPECT_EQ(it.CurrentValue().GetSize(), 3);

    cow_Btree<cow_String, cow_1DArray<cow_String>> lines;
    cow_1DArray<cow_String> line;
    line.Get(0) = cow_String("beta");
    lines.InsertUnlessMember(cow_String("w"), line);
    cow_Btree<cow_String, cow_1DArray<cow_String>> linesCopy = lines;
    linesCopy.Get(cow_String("w"))->Get(0) = cow_String("gamma");
    EXPECT_STREQ(lines.ConstGet(cow_String("w")).PartialArrayConstGet(0).GetCString(), "beta");
    EXPECT_EQ(line.GetTableShareCount(), 2) << "the tree and the caller's array";

    // Trees as list elements: a block copy shares each tree.
    cow_List<cow_Btree<int, int>> forest;
    forest.Append(cow_Btree<int, int>());
    forest.Get(0).InsertUnlessMember(1, 1);
    cow_List<cow_Btree<int, int>> forestCopy = forest;
    forestCopy.Get(0).Remove(1);
    forestCopy.RemoveFirst();
    EXPECT_EQ(forest.ConstGet(0).GetCount(), 1);
    EXPECT_EQ(forestCopy.GetCount(), 0);
}

}  // namespace
