// cow_HandOver between threads: a handed value is used on another thread
// while the sender goes on writing its own values. The tsan preset runs every
// HandOver test. (That a handed copy of any value holds nothing another value
// holds, and keeps its value and the shape of a tree or map, is checked by
// the operation interpreters, whose copies go by hand-over too.)

#include "zorvancow/zorvancow.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "support/NoLeaks.h"

namespace {

// Every test gives back all it allocated.
class HandOver : public ::testing::Test {
    testing_support::NoLeaks noLeaks;
};

// The point of it all: values go to other threads by cow_HandOver while the
// sender keeps copying and writing its own values, which share storage among
// themselves. Under ThreadSanitizer any count touched from two threads (the
// stand-ins' live counters too) shows as a race.
TEST_F(HandOver, HandedValuesWorkOnOtherThreadsWhileTheSenderWrites) {
    using Map = cow_Map<cow_String, cow_1DArrayList<cow_String>>;
    using Words = cow_Btree<cow_String, int>;
    using Table = cow_COW<omi_IntTable<cow_String>>;
    Map map;
    Words tree;
    Table table(new omi_IntTable<cow_String>());
    cow_String text("kept");
    cow_1DArrayList<cow_String> words;
    for (int i = 0; i < 50; ++i) {
        cow_String word(("w" + std::to_string(i)).c_str());
        words.Append(word);
        tree.InsertUnlessMember(word, i);
        table.Get().Insert((i - 25) * 4099, text);
    }
    for (int i = 0; i < 20; ++i) map.Insert(cow_String(("m" + std::to_string(i)).c_str()), words);
    // A handed table shares no block and no text with the sender's, not even
    // the text of a value that a removal left in place.
    cow_String const stale("stale");
    table.Get().Insert(1, stale);
    table.Get().Remove(1);
    Table const handed = cow_HandOver(table);
    EXPECT_EQ(stale.GetShareCount(), 2) << "held by the sender's table alone besides this one";
    for (int key : {-4099, 0, 4099 * 24}) {
        EXPECT_NE(handed.ConstGet()->FindBlock(key), table.ConstGet()->FindBlock(key));
        cow_String const* value = handed.ConstGet()->ConstGet(key);
        EXPECT_TRUE(*value == "kept" && value->GetShareCount() == 1) << key;
    }

    std::vector<std::thread> workers;
    std::vector<int> results(8, 0);
    for (int round = 0; round < 8; ++round) {
        // Each worker reads, copies and writes its values; the copies it
        // makes share storage with one another on its own thread. The map
        // goes across by value (std::thread moves it), the tree behind a pointer.
        workers.emplace_back(
            [&results, round](Map m, std::unique_ptr<Words> t, Table tab, cow_String s) {
                int total = 0;
                for (int k = 0; k < 20; ++k) {
                    Map copy = m;
                    cow_String key(("m" + std::to_string(k)).c_str());
                    total += copy.ConstGet(key).GetCount();
                    copy.Get(key).Append(key);
                    Words treeCopy = *t;
                    *treeCopy.Get(cow_String("w3")) += 1;
                    total += t->ConstGet(cow_String("w3"));
                    Table tableCopy = tab;
                    tableCopy.Get().Insert(k, s);
                    total += tableCopy.ConstGet()->GetCount() - tab.ConstGet()->GetCount();
                    omi_IntTable<int> base;
                    base.Insert(k, k);
                    atr_String bytes(s.GetCString());
                    cow_String again = s;
                    again = cow_String("other");
                }
                results[round] = total;
            },
            cow_HandOver(map), cow_HandOverPtr(tree), cow_HandOver(table), cow_HandOver(text));

        // Meanwhile the sender writes its own values and their copies.
        for (int k = 0; k < 20; ++k) {
            auto keep = map;
            map.Get(cow_String("m1")).Append(cow_String("more"));
            map.Get(cow_String("m1")).Remove(0);
            auto treeKeep = tree;
            *tree.Get(cow_String("w3")) = 3;
            words.Append(cow_String("x"));
            words.Pop();
            Table tableKeep = table;
            table.Get().Insert(1, cow_String("sender"));
            table.Get().Remove(1);
            text = cow_String(k % 2 ? "kept" : "changed");
        }
    }
    for (auto& worker : workers) worker.join();
    // 20 lookups of 50 words, 20 reads of w3 (3), and 20 new keys but 0, held already.
    for (int total : results) EXPECT_EQ(total, 20 * 50 + 20 * 3 + 19);
}

}  // namespace
