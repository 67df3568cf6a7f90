#include <new>

#include <support/Allocations.h>

#include "ContainerFixture.h"

namespace
{

using ObserverMemory = ContainerFixture;

/// Keeps no story: that would ask for memory.
class Silent : public TestObserver
{
public:
    using TestObserver::TestObserver;
    XCode onAdding(String&, TestEvent&) override { return XCode(); }
    void onAdded(TestEvent&) override {}
    void onRemoved(TestEvent&) override {}
};

TEST_F(ObserverMemory, BroadcastsAskForNone)
{
    Silent first(log_, "first");
    Silent second(log_, "second");
    add(first, 1);
    add(second, 2, false);
    TestEvent event;
    const std::uint32_t words[3] = {1, 2, 3};
    event.data.copyOnWrite().addTail(words, sizeof words);

    const std::uint64_t before = allocations::count();
    EXPECT_EQ(0, tell(event).code());
    container_->broadcastUndoEvent(event, &TestObserver::onRemoved, nullptr);
    EXPECT_EQ(before, allocations::count());
}

TEST_F(ObserverMemory, WithoutItNobodyIsAdded)
{
    add(a_, 1);
    SubjectDelegate* const delegate = new SubjectDelegate(&b_);
    {
        const allocations::Failing failing(0);
        EXPECT_THROW(container_->add(delegate, 2, true), std::bad_alloc);
    }
    EXPECT_EQ(1, delegate->references());
    EXPECT_EQ(1u, container_->size());
    tell();
    EXPECT_EQ("a: asked\n", heard());
    delegate->release();
}

/// An event that always needs a new block.
class LargeEvent : public TestEvent
{
public:
    LargeEvent* clone() const override { return new LargeEvent(*this); }
    char room[100] = {};
};

TEST_F(ObserverMemory, WithoutItABroadcastFails)
{
    add(a_, 1);
    const LargeEvent event;
    XCode rc;
    {
        const allocations::Failing failing(0);
        rc = tell(event);
    }
    EXPECT_EQ(-1, rc.code());
    EXPECT_STREQ("Out of memory", message_.cString());
    EXPECT_EQ(&stranger_, refuser_); // nobody refused
    EXPECT_EQ("", heard());
    EXPECT_EQ(0, container_->busy());
}

// The first has agreed, and the second was never asked.
TEST_F(ObserverMemory, WithoutItForTheSecondNobodyHasRefused)
{
    Silent first(log_, "first");
    Silent second(log_, "second");
    add(first, 1);
    add(second, 2);
    const LargeEvent event;
    XCode rc;
    {
        const allocations::Failing failing(1);
        rc = tell(event);
    }
    EXPECT_EQ(-1, rc.code());
    EXPECT_STREQ("Out of memory", message_.cString());
    EXPECT_EQ(&stranger_, refuser_);
}

} // namespace
