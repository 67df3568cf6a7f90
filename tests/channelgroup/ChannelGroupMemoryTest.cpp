#include <functional>

#include <gtest/gtest.h>

#include <drvrepo/CChannelGroup.h>

#include <support/Allocations.h>

namespace
{

using Event = ObserverEvent<IChannelGroup>;

/// Counts what it is told, and does something then.
class Busy : public IChannelGroupObserver
{
public:
    XCode onTimeslotsAdded(String&, Event&) override
    {
        hear();
        return XCode();
    }
    void onTimeslotsAdded(Event&) override { hear(); }
    void onTimeslotsRemoved(Event&) override { hear(); }

    std::function<void()> action;
    int told = 0;

private:
    void hear()
    {
        ++told;
        if (action)
            action();
    }
};

/// Sets timeslots without memory from inside a change of another group, whose event has the block
/// that is kept for the next. Returns the code.
std::int32_t withoutMemory(CChannelGroup& group, String& message, unsigned timeslots)
{
    const TYPtr<CChannelGroup> outer(new CChannelGroup("A"));
    Busy busy;
    std::int32_t code = 77;
    busy.action = [&] {
        const allocations::Failing failing(0);
        code = group.setTimeslots(message, timeslots).code();
    };
    String none;
    outer.get()->addChannelGroupObserver(none, &busy, 1, false, false);
    outer.get()->setTimeslots(none, 1);
    outer.get()->removeChannelGroupObserver(&busy, false);
    return code;
}

TEST(ChannelGroupWithoutMemory, OnlyAChangeThatSomebodyHearsNeedsAnEvent)
{
    const TYPtr<CChannelGroup> owner(new CChannelGroup("B"));
    CChannelGroup& group = *owner;
    Busy observer;
    String message("before");
    EXPECT_EQ(0, withoutMemory(group, message, 6));
    EXPECT_EQ(0, withoutMemory(group, message, 12));
    EXPECT_EQ(0, group.addChannelGroupObserver(message, &observer, 1, true, false).code());
    EXPECT_EQ(0, withoutMemory(group, message, 12));
    EXPECT_STREQ("before", message.cString());
    EXPECT_EQ(-1, withoutMemory(group, message, 6));
    EXPECT_STREQ("Out of memory", message.cString());
    EXPECT_EQ(12u, group.getTimeslots());
    EXPECT_EQ(0, observer.told);
    group.removeChannelGroupObserver(&observer, false);
}

} // namespace
