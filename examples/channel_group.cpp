// A channel group and an observer that reads the three values of each event.

#include <cstdio>

#include <drvrepo/CChannelGroup.h>

namespace
{

class Watcher : public IChannelGroupObserver
{
public:
    // Observers with the right of veto are asked here ...
    XCode onTimeslotsAdded(String& message, ObserverEvent<IChannelGroup>& event) override
    {
        if ((event.data.word(2) & 1u) != 0) {
            message = "timeslot 0 is for framing";
            return XCode(-1);
        }
        print("added", event);
        return XCode();
    }
    // ... the others are told here.
    void onTimeslotsAdded(ObserverEvent<IChannelGroup>& event) override { print("added", event); }
    void onTimeslotsRemoved(ObserverEvent<IChannelGroup>& event) override
    {
        print("removed", event);
    }

private:
    /// The event's data: the mask before, the mask after, the bits changed.
    static void print(char const* what, ObserverEvent<IChannelGroup> const& event)
    {
        String before;
        String after;
        String changed;
        IChannelGroup::TIMESLOTS_UINT_TO_TEXT(event.data.word(0), before);
        IChannelGroup::TIMESLOTS_UINT_TO_TEXT(event.data.word(1), after);
        IChannelGroup::TIMESLOTS_UINT_TO_TEXT(event.data.word(2), changed);
        std::printf("%s %s: \"%s\" -> \"%s\"\n", what, changed.cString(), before.cString(),
                    after.cString());
    }
};

} // namespace

int main()
{
    String name;
    String message;
    IDriver::BUILD_DRIVER_NAME(name, "e1t1 1", IChannelGroup::B_CHANNELS_DEFAULT_NAME, "", "", "");
    const TYPtr<CChannelGroup> group(new CChannelGroup(name));

    // A group takes no lock by itself; several threads hold getLock() around its use.
    const LockScope lock(group.get()->getLock());
    Watcher watcher;
    const bool veto = true;
    const bool notifyCurrent = true;
    group->addChannelGroupObserver(message, &watcher, 1, veto, notifyCurrent);

    unsigned int timeslots = 0;
    IChannelGroup::TIMESLOTS_TEXT_TO_UINT(message, "1-15;17-31", timeslots);
    group->setTimeslots(message, timeslots);

    // What is added is asked first, and withdrawn when refused; what is removed goes all the same.
    IChannelGroup::TIMESLOTS_TEXT_TO_UINT(message, "0-15", timeslots);
    const XCode rc = group->setTimeslots(message, timeslots);
    std::printf("refused: %s\n", message.cString());

    const unsigned int left = group->getTimeslots();
    group->removeChannelGroupObserver(&watcher, notifyCurrent);
    return rc.code() == -1 && left == 0x0000fffe ? 0 : 1;
}
