#include <functional>

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

/// Observers a, b and c; when reference number `when` is taken in the change, b leaves.
std::string leaveAtReference(int when, unsigned from, unsigned to)
{
    EventLog log;
    RecordingGroupObserver a(log, "a");
    RecordingGroupObserver b(log, "b");
    RecordingGroupObserver c(log, "c");
    const TYPtr<HookedGroup> group(new HookedGroup("B"));
    String message;
    const bool notifyCurrent = false;
    for (RecordingGroupObserver* observer : {&a, &b, &c})
        group.get()->addChannelGroupObserver(message, observer, 1, true, notifyCurrent);
    group.get()->setTimeslots(message, from);
    log.take();
    group.get()->watch();
    group.get()->when = when;
    group.get()->then = [&] { group.get()->removeChannelGroupObserver(&b, notifyCurrent); };
    group.get()->setTimeslots(message, to);
    return log.take();
}

// The operation itself takes the first reference, the event the second, then each clone one; the
// newest observer comes first. So b leaves before it was told, but for the last case.
TEST(GroupCallOuts, ObserverLeavesWhileAnEventIsCloned)
{
    const std::string c = "c: asked 00000000->0000000f: 0000000f\n";
    const std::string b = "b: asked 00000000->0000000f: 0000000f\n";
    const std::string a = "a: asked 00000000->0000000f: 0000000f\n";
    for (int when = 1; when <= 4; ++when)
        EXPECT_EQ(c + a, leaveAtReference(when, 0, 0xf)) << when;
    EXPECT_EQ(c + b + a, leaveAtReference(6, 0, 0xf));
}

TEST(GroupCallOuts, ObserverLeavesWhileAGoingIsCloned)
{
    const std::string a = "a: removed 0000000f->00000000: 0000000f\n";
    const std::string b = "b: removed 0000000f->00000000: 0000000f\n";
    const std::string c = "c: removed 0000000f->00000000: 0000000f\n";
    for (int when = 1; when <= 4; ++when)
        EXPECT_EQ(a + c, leaveAtReference(when, 0xf, 0)) << when;
    EXPECT_EQ(a + b + c, leaveAtReference(6, 0xf, 0));
}

} // namespace
