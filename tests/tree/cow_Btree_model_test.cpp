// Randomized model test: several trees that share nodes through copies and
// assignments take random writes, and after every step each one is checked
// against a std::map of its own. A write to one tree must never show in
// another, and nothing may be left alive at the end.

#include "zorvancow/tree/cow_Btree.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>

#include "support/AllocationCounter.h"
#include "zorvanmem/mem_Heap.h"

namespace {

using Tree = cow_Btree<cow_String, cow_String>;
using Node = cow_BtreeNode<cow_String, cow_String>;
using Model = std::map<std::string, std::string>;

std::string Text(cow_String const& value) { return value.GetCString(); }

// Checks key order, that no stored depth lies below the exact one, and that
// leaves store 0. Returns the exact depth of the subtree, -1 when empty.
int CheckStructure(Tree::Handle const* link, std::string const* low, std::string const* high) {
    if (link == nullptr) return -1;
    Node const* node = link->ConstGet();
    std::string const key = Text(node->GetKey());
    EXPECT_TRUE((low == nullptr || *low < key) && (high == nullptr || key < *high)) << key;
    int const l = CheckStructure(node->GetLeft(), low, &key);
    int const r = CheckStructure(node->GetRight(), &key, high);
    int const exact = 1 + (l > r ? l : r);
    EXPECT_TRUE(exact == 0 ? node->GetMaxDepth() == 0 : node->GetMaxDepth() >= exact) << "at key " << key;
    return exact;
}

void ExpectSame(Tree const& tree, Model const& model, int which, int step) {
    ASSERT_EQ(tree.GetCount(), static_cast<int>(model.size())) << "tree " << which << ", step " << step;
    ASSERT_EQ(tree.GetRoot() == nullptr, model.empty());
    cow_BtreeIterator<cow_String, cow_String> it(tree);
    auto expected = model.begin();
    for (it.First(); !it.IsDone(); it.Next(), ++expected) {
        ASSERT_NE(expected, model.end());
        ASSERT_EQ(Text(it.CurrentKey()), expected->first) << "tree " << which << ", step " << step;
        ASSERT_EQ(Text(it.CurrentValue()), expected->second) << "tree " << which << ", step " << step;
    }
    ASSERT_EQ(expected, model.end());
    auto reverse = model.rbegin();
    for (it.Last(); !it.IsDone(); it.Previous(), ++reverse)
        ASSERT_EQ(Text(it.CurrentKey()), reverse->first);
}

TEST(BtreeModel, SharingTreesFollowTheirMaps) {
    long const liveBlocks = mem_GetLiveBlocks();
    long const liveTexts = atr_GetLiveTexts();
    testing_support::AllocationScope scope;
    {
        constexpr int kTrees = 4;
        Tree trees[kTrees];
        Model models[kTrees];
        std::mt19937 random(20261123);
        for (int step = 0; step < 20000; ++step) {
            int const which = static_cast<int>(random() % kTrees);
            Tree& tree = trees[which];
            Model& model = models[which];
            std::string const key = "k" + std::to_string(100 + random() % 160);
            std::string const value = "v" + std::to_string(step);
            switch (random() % 10) {
            case 0: case 1: case 2: {
                bool const added = tree.InsertUnlessMember(cow_String(key.c_str()), cow_String(value.c_str()));
                EXPECT_EQ(added, model.emplace(key, value).second);
                break;
            }
            case 3: case 4:
                EXPECT_EQ(tree.Remove(cow_String(key.c_str())), model.erase(key) == 1);
                break;
            case 5: case 6: {
                cow_String* held = tree.Get(cow_String(key.c_str()));
                auto found = model.find(key);
                ASSERT_EQ(held != nullptr, found != model.end());
                if (held != nullptr) {
                    *held = cow_String(value.c_str());
                    found->second = value;
                }
                break;
            }
            case 7: {
                auto found = model.find(key);
                EXPECT_EQ(Text(tree.ConstGet(cow_String(key.c_str()))),
                          found == model.end() ? std::string() : found->second);
                break;
            }
            case 8: {
                int const source = static_cast<int>(random() % kTrees);
                tree = trees[source], model = models[source];
                break;
            }
            default: {
                // Rarely drop everything, to pass through the empty state.
                if (random() % 8 == 0) {
                    tree = Tree();
                    model.clear();
                } else {
                    Tree* copy = trees[(which + 1) % kTrees].Copy();
                    tree = *copy;
                    model = models[(which + 1) % kTrees];
                    delete copy;
                }
                break;
            }
            }
            for (int i = 0; i < kTrees; ++i) {
                ExpectSame(trees[i], models[i], i, step);
                if (HasFatalFailure()) return;
            }
            if (step % 16 == 0)
                for (Tree const& each : trees) CheckStructure(each.GetRoot(), nullptr, nullptr);
        }
    }
    EXPECT_EQ(mem_GetLiveBlocks(), liveBlocks);
    EXPECT_EQ(atr_GetLiveTexts(), liveTexts);
    EXPECT_EQ(scope.News(), scope.Deletes()) << "every handle, counter, node and frame freed";
}

}  // namespace
