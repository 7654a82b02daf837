// Counted handles: who shares, who copies, who frees, and when. Trees, maps
// and tables hold their storage through these handles, so their sharing
// tests count the same things again at scale.

#include "zorvancow/core/cow_COW.h"

#include <gtest/gtest.h>

#include "support/AllocationCounter.h"
#include "support/NoLeaks.h"
#include "support/Probe.h"

using testing_support::AllocationScope;

namespace {

using testing_support::Probe;
using Handle = cow_COW<Probe>;

// Every test ends with no pointee alive and every counter given back.
class CountedHandle : public ::testing::Test {
protected:
    void SetUp() override { Probe::live = 0; Probe::copies = 0; }
    void TearDown() override { EXPECT_EQ(Probe::live, 0); }
    testing_support::NoLeaks noLeaks;
};

TEST_F(CountedHandle, CopiesShareUntilTheFirstWriteCopiesOnceOnTheWritersSide) {
    Handle a(Probe(1));  // built from a value: a private copy
    EXPECT_EQ(Probe::copies, 1);
    AllocationScope scope;
    Handle b = a;
    { Handle gone(b); }
    EXPECT_EQ(scope.News(), 0u);
    EXPECT_EQ(a.ConstGet(), b.ConstGet());
    EXPECT_EQ(a.GetShareCount(), 2);

    Probe const* original = a.ConstGet();
    Probe& written = b.Get();
    EXPECT_EQ(scope.News(), 2u) << "one new object and one new counter";
    EXPECT_NE(&written, original);
    EXPECT_EQ(a.ConstGet(), original) << "the reader keeps the old object";
    EXPECT_EQ(a.GetShareCount(), 1);
    // Both are sole holders now: neither write copies again.
    b.Get(), a.Get();
    EXPECT_EQ(scope.News(), 2u);
    EXPECT_EQ(Probe::copies, 2);
}

TEST_F(CountedHandle, AssigningAHandleReleasesTheOldPointeeOnlyAtItsLastHolder) {
    // To itself at count 1, and between two holders of one pointee.
    Handle a(new Probe(1));
    Probe const* object = a.ConstGet();
    Handle& alias = a;
    a = alias;
    EXPECT_EQ(a.ConstGet(), object);
    Handle b = a;
    b = a;
    EXPECT_EQ(a.GetShareCount(), 2);

    // From another pointee while the old one is still held elsewhere: nothing
    // dies; by the old one's last holder: it dies.
    Handle other(new Probe(2));
    b = other;
    EXPECT_EQ(Probe::live, 2);
    EXPECT_EQ(a.GetShareCount(), 1);
    a = other;
    EXPECT_EQ(Probe::live, 1);
    EXPECT_EQ(other.GetShareCount(), 3);

    // Handles on null share their counter like any other.
    Handle empty(static_cast<Probe*>(nullptr));
    Handle copy = empty;
    Handle sole(static_cast<Probe*>(nullptr));
    sole = copy;
    EXPECT_EQ(sole.GetCounter(), empty.GetCounter());
    EXPECT_EQ(empty.GetShareCount(), 3);
}

TEST_F(CountedHandle, AssigningAPointerLeavesTheOtherHoldersTheOldObject) {
    // On a shared handle: the others keep the object with a count one lower.
    Handle a(new Probe(1));
    Handle b = a;
    Handle c = a;
    cow_Counter const* shared = a.GetCounter();
    b = new Probe(2);
    EXPECT_EQ(a.GetShareCount(), 2);
    EXPECT_NE(b.GetCounter(), shared);
    EXPECT_EQ(Probe::live, 2);

    // On a sole handle: the old object dies and the counter stays.
    cow_Counter const* own = b.GetCounter();
    AllocationScope scope;
    b = new Probe(3);
    EXPECT_EQ(scope.News(), 1u) << "the new object only; the counter is kept";
    EXPECT_EQ(b.GetCounter(), own);
    EXPECT_EQ(Probe::live, 2);

    // Null leaves a live, empty handle.
    b = static_cast<Probe*>(nullptr);
    EXPECT_EQ(b.ConstGet(), nullptr);
    EXPECT_EQ(b.GetShareCount(), 1);
    EXPECT_EQ(Probe::live, 1);
}

TEST(IntrusiveCountedBase, SetCounterWarnsOnlyWhenReplacingAnotherCounter) {
    auto capture = [](auto&& action) {
        ::testing::internal::CaptureStderr();
        action();
        return ::testing::internal::GetCapturedStderr();
    };
    cow_Counter* first = new cow_Counter;
    cow_Counter* second = new cow_Counter;
    cow_IntrusiveCountedBase base;
    EXPECT_EQ(base.GetCounter(), nullptr);
    EXPECT_EQ(capture([&] { base.SetCounter(first); }), "");
    EXPECT_EQ(capture([&] { base.SetCounter(first); }), "");
    EXPECT_EQ(capture([&] { base.SetCounter(second); }),
              "ERROR: Resetting counter on cow_IntrusiveCountedBase\n");
    EXPECT_EQ(base.GetCounter(), second);
    EXPECT_EQ(first->GetCount(), 1) << "the old counter is not released";
    delete first;
    delete second;
}

}  // namespace
