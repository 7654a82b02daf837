// Get of a key that is not held, as a program built without checked mode
// sees it (checked mode stops there). The map types here are used by no
// other file of this program, so their code is this file's alone.
#undef ZORVANCOW_CHECKED
#define ZORVANCOW_CHECKED 0

#include <gtest/gtest.h>

#include "support/AllocationCounter.h"
#include "zorvancow/map/cow_Map.h"

namespace {

TEST(MapMiss, GetOfAnAbsentKeyMakesThePathPrivateAndWritesAScratchValue) {
    using Map = cow_Map<unsigned short, int>;
    Map a;
    for (unsigned short key = 0; key < 8; ++key) a.Insert(key, key * 10);
    Map b = a;
    {
        testing_support::AllocationScope scope;
        b.Get(9) = 1;
        EXPECT_EQ(scope.News(), 6u) << "the three nodes on the path 1, 3, 7 and their counters";
    }
    EXPECT_NE(a.GetRoot().ConstGet(), b.GetRoot().ConstGet());
    EXPECT_TRUE(!b.IsMember(9) && b.GetCount() == 8 && a.GetCount() == 8);
    EXPECT_TRUE(Map::IsAbsent(b.Get(9)) && !Map::IsAbsent(b.Get(7)));

    cow_Map<unsigned short, cow_String> texts{{1, cow_String("one")}};
    texts.Get(3) = cow_String("written");
    EXPECT_EQ(texts.Get(4).GetHeader(), nullptr) << "each miss starts from a default";
    EXPECT_EQ(texts.GetCount(), 1);
}

}  // namespace
