#include <cstring>
#include <functional>
#include <stdexcept>

#include <support/GroupFixture.h>

// Call-outs of a channel group beside its observers and the log: the references that events take
// on it. They may not throw, but they may call in.

namespace
{

/// A group that does something the next time that a reference on it is taken.
class HookedGroup : public CChannelGroup
{
public:
    using CChannelGroup::CChannelGroup;

    void addRef() override
    {
        CChannelGroup::addRef();
        if (++taken_ != when)
            return;
        const std::function<void()> reaction = std::move(then);
        reaction();
    }
    void watch() { taken_ = 0; }

    std::function<void()> then;
    int when = 0;

private:
    int taken_ = 0;
};

/// Takes what is in the events it is handed.
class TakingObserver : public RecordingGroupObserver
{
public:
    using RecordingGroupObserver::RecordingGroupObserver;

    XCode onTimeslotsAdded(String& message, ObserverEvent<IChannelGroup>& event) override
    {
        XCode rc = RecordingGroupObserver::onTimeslotsAdded(message, event);
        event.source.reset();
        return rc;
    }
    void onTimeslotsRemoved(ObserverEvent<IChannelGroup>& event) override
    {
        RecordingGroupObserver::onTimeslotsRemoved(event);
        event.data = TYMarshaller();
    }
};

/// Observers a, b and c; when reference number `when` is taken in the change, b leaves. They take
/// what is in their events, or leave these as they are.
template <class Observer> std::string leaveAtReference(int when, unsigned from, unsigned to)
{
    EventLog log;
    Observer a(log, "a");
    Observer b(log, "b");
    Observer c(log, "c");
    const TYPtr<HookedGroup> group(new HookedGroup("B"));
    String message;
    const bool notifyCurrent = false;
    for (Observer* observer : {&a, &b, &c})
        group.get()->addChannelGroupObserver(message, observer, 1, true, notifyCurrent);
    group.get()->setTimeslots(message, from);
    log.take();
    group.get()->watch();
    group.get()->when = when;
    group.get()->then = [&] { group.get()->removeChannelGroupObserver(&b, notifyCurrent); };
    group.get()->setTimeslots(message, to);
    return log.take();
}

// The operation itself takes the first reference, the event the second, the first clone the third.
// A clone that was left as it was serves the next observer as well; one that wasn't is followed by
// another. The newest observer comes first. So b leaves before it was told, but for the last case.
TEST(GroupCallOuts, ObserverLeavesWhileAnEventIsCloned)
{
    const std::string c = "c: asked 00000000->0000000f: 0000000f\n";
    const std::string b = "b: asked 00000000->0000000f: 0000000f\n";
    const std::string a = "a: asked 00000000->0000000f: 0000000f\n";
    for (int when = 1; when <= 4; ++when)
        EXPECT_EQ(c + a, leaveAtReference<TakingObserver>(when, 0, 0xf)) << when;
    EXPECT_EQ(c + b + a, leaveAtReference<TakingObserver>(5, 0, 0xf));
    for (int when = 1; when <= 3; ++when)
        EXPECT_EQ(c + a, leaveAtReference<RecordingGroupObserver>(when, 0, 0xf)) << when;
    EXPECT_EQ(c + b + a, leaveAtReference<RecordingGroupObserver>(4, 0, 0xf)); // there is none
}

TEST(GroupCallOuts, ObserverLeavesWhileAGoingIsCloned)
{
    const std::string a = "a: removed 0000000f->00000000: 0000000f\n";
    const std::string b = "b: removed 0000000f->00000000: 0000000f\n";
    const std::string c = "c: removed 0000000f->00000000: 0000000f\n";
    for (int when = 1; when <= 4; ++when)
        EXPECT_EQ(a + c, leaveAtReference<TakingObserver>(when, 0xf, 0)) << when;
    EXPECT_EQ(a + b + c, leaveAtReference<TakingObserver>(5, 0xf, 0));
    for (int when = 1; when <= 3; ++when)
        EXPECT_EQ(a + c, leaveAtReference<RecordingGroupObserver>(when, 0xf, 0)) << when;
    EXPECT_EQ(a + b + c, leaveAtReference<RecordingGroupObserver>(4, 0xf, 0)); // there is none
}

/// Throws from the line that says that observers are told of an addition.
class ThrowingMonitor : public RTD::Monitor
{
public:
    ThrowingMonitor() { MON_DRV = this; }
    ~ThrowingMonitor() override { MON_DRV = nullptr; }

protected:
    void write(int, char const* fmt, std::va_list) const override UTILITY_PRINTF(3, 0)
    {
        if (std::strstr(fmt, "onTimeslotsAdded") != nullptr)
            throw std::runtime_error(fmt);
    }
};

// One of them is registered twice: its second place must not be taken for that of who was told.
TEST(GroupCallOuts, NobodyHearsTheGoingOfAnAdditionThatTheLogCutShort)
{
    EventLog log;
    RecordingGroupObserver a(log, "a");
    RecordingGroupObserver b(log, "b");
    const TYPtr<CChannelGroup> group(new CChannelGroup("B"));
    String message;
    for (RecordingGroupObserver* observer : {&a, &b, &a})
        group.get()->addChannelGroupObserver(message, observer, 1, true, false);
    log.take();
    {
        const ThrowingMonitor monitor;
        EXPECT_THROW(group.get()->setTimeslots(message, 0xf), std::runtime_error);
    }
    EXPECT_EQ("", log.take());
    EXPECT_EQ(0u, group.get()->getTimeslots());
}

} // namespace
