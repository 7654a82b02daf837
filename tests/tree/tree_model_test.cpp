// Trees that share nodes through copies and assignments take random writes;
// after every step each one must match a std::map of its own, both ways.

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "support/ModelTest.h"
#include "zorvancow/tree/cow_Btree.h"

namespace {

using Tree = cow_Btree<cow_String, cow_String>;
using Node = cow_BtreeNode<cow_String, cow_String>;
using Model = std::map<std::string, std::string>;

std::string Text(cow_String const& value) { return value.GetCString(); }

// The exact depth of a subtree, -1 when empty, checking that no stored depth
// lies below it and that leaves store 0 (the walks check the key order).
int Depth(Tree::Handle const* link) {
    if (link == nullptr) return -1;
    Node const* node = link->ConstGet();
    int const exact = 1 + std::max(Depth(node->GetLeft()), Depth(node->GetRight()));
    EXPECT_TRUE(exact == 0 ? node->GetMaxDepth() == 0 : node->GetMaxDepth() >= exact) << Text(node->GetKey());
    return exact;
}

TEST(TreeModel, WritesToOneTreeNeverShowInItsCopies) {
    testing_support::ModelTest<Tree, Model> run(20261123, 4);
    std::string key, value;
    auto pickKey = [&] {
        key = "k" + std::to_string(100 + run.Below(160));
        value = "v" + std::to_string(run.Step());
    };
    using Slot = decltype(run)::Slot;
    run.Run(20000,
            {{3, [&](Slot& s) {
                  pickKey();
                  EXPECT_EQ(s.value.InsertUnlessMember(cow_String(key.c_str()), cow_String(value.c_str())),
                            s.model.emplace(key, value).second);
              }},
             {2, [&](Slot& s) {
                  pickKey();
                  EXPECT_EQ(s.value.Remove(cow_String(key.c_str())), s.model.erase(key) == 1);
              }},
             {2, [&](Slot& s) {
                  pickKey();
                  cow_String* held = s.value.Get(cow_String(key.c_str()));
                  ASSERT_EQ(held != nullptr, s.model.count(key) == 1);
                  if (held != nullptr) *held = cow_String(value.c_str()), s.model[key] = value;
              }},
             run.CopyFromAny(1),
             {1, [&](Slot& s) {
                  Slot const& from = run.Below(8) == 0 ? Slot{} : run.Any();  // rarely the empty state
                  Tree* copy = from.value.Copy();
                  s.value = *copy, s.model = from.model;
                  delete copy;
              }}},
            [&](Slot const& s) {
                ASSERT_EQ(s.value.GetCount(), static_cast<int>(s.model.size()));
                ASSERT_EQ(s.value.GetRoot() == nullptr, s.model.empty());
                cow_BtreeIterator<cow_String, cow_String> it(s.value);
                std::vector<std::pair<std::string, std::string>> walked;
                for (it.First(); !it.IsDone() && walked.size() <= s.model.size(); it.Next())
                    walked.emplace_back(Text(it.CurrentKey()), Text(it.CurrentValue()));
                ASSERT_EQ(walked, (std::vector<std::pair<std::string, std::string>>(s.model.begin(), s.model.end())));
                auto reverse = s.model.rbegin();
                for (it.Last(); !it.IsDone(); it.Previous(), ++reverse) ASSERT_EQ(Text(it.CurrentKey()), reverse->first);
                if (run.Step() % 16 == 0) Depth(s.value.GetRoot());
            });
}

}  // namespace
