// Maps as deep as they are large: string keys whose bytes are all even have
// only 0 digits, so each one lands a level below the last.

#include <gtest/gtest.h>
#include <pthread.h>

#include <functional>
#include <string>
#include <vector>

#include "support/NoLeaks.h"
#include "zorvancow/map/cow_Map.h"

namespace {

using testing_support::NoLeaks;

// Runs `work` on a thread with a 256 KiB stack: a walk that recursed once
// per level would overflow it a few thousand levels down.
void OnSmallStack(std::function<void()> work) {
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, 256 * 1024), 0);
    pthread_t thread;
    auto body = [](void* argument) -> void* {
        (*static_cast<std::function<void()>*>(argument))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, body, &work), 0);
    ASSERT_EQ(pthread_join(thread, nullptr), 0);
    pthread_attr_destroy(&attributes);
}

// Key i: three even bytes, all distinct for i below 10^6.
std::string EvenKey(int i) {
    return {static_cast<char>(2 * (1 + i % 100)), static_cast<char>(2 * (1 + i / 100 % 100)),
            static_cast<char>(2 * (1 + i / 10000))};
}

TEST(MapDepth, ChainsOnEitherDigitWalkCopyAndDieOnASmallStack) {
    // Building the chain costs one step per level per key (quadratic: about
    // two seconds here for 20,000 keys, see the README), which is why the
    // chain is not longer; 20,000 levels are four times what a 256 KiB stack
    // held with one call per level.
    int const n = 20000;
    NoLeaks noLeaks;
    OnSmallStack([n] {
        std::vector<cow_String> keys;
        for (int i = 0; i < n; ++i) keys.emplace_back(EvenKey(i).c_str());
        cow_Map<cow_String, int> map;
        for (int i = 0; i < n; ++i) map.Insert(keys[i], i);
        ASSERT_EQ(map.GetDepth(keys[n - 1]), n - 1);

        // Both walks and both lists reach every level.
        auto steps = [](auto&& it) { int k = 0; for (it.First(); !it.IsDone(); it.Next()) ++k; return k; };
        EXPECT_EQ(steps(cow_ConstMapIterator<cow_String, int>(map)), n);
        EXPECT_EQ(steps(cow_ConstMapSortedIt<cow_String, int>(map)), n);
        using Utils = cow_MapUtils<cow_String, int>;
        EXPECT_EQ(Utils::cow_Keys(map).GetCount() + Utils::cow_Values(map).GetCount(), 2 * n);

        // A copy written at the bottom owns the whole path; the original
        // keeps its value. Dropping the original then frees only the nodes
        // the copy does not share, and the copy frees the rest.
        cow_Map<cow_String, int>* copy = new cow_Map<cow_String, int>(map);
        copy->Get(keys[n - 1]) = -1;
        EXPECT_TRUE(copy->Remove(keys[n / 2]));
        EXPECT_EQ(map.ConstGet(keys[n - 1]), n - 1);
        map = cow_Map<cow_String, int>();
        EXPECT_EQ(copy->ConstGet(keys[n - 1]), -1);
        EXPECT_EQ(copy->GetCount(), n - 1);
        delete copy;

        // A text's digits run over its bytes from both ends inward, so a
        // chain on digit 1 needs keys as long as the chain is deep, every
        // byte odd; each key then lands a level below the last. They differ
        // in their first two bytes, so that comparing two of them stops
        // early. Dropping the map frees the whole chain without a call per
        // level.
        int const m = 4000;
        cow_Map<cow_String, int> odd;
        std::string key(m + 2, '\x01');
        for (int i = 0; i < m; ++i) {
            key[0] = static_cast<char>(1 + 2 * (i % 128));
            key[1] = static_cast<char>(1 + 2 * (i / 128));
            odd.Insert(cow_String(key.c_str()), i);
        }
        ASSERT_EQ(odd.GetDepth(cow_String(key.c_str())), m - 1);
    });
}

}  // namespace
