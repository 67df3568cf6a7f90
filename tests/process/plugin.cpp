#include <drvrepo/CChannelGroup.h>
#include <drvrepo/CDriver.h>
#include <drvrepo/DRIVER.h>
#include <drvrepo/IChannelGroupObserver.h>
#include <drvrepo/IDriverRepositoryObserver.h>
#include <drvrepo/Identifiers.h>

// A component that a program loads, lets work and unloads, and the library with it.

namespace
{

class Listener : public IDriverRepositoryObserver
{
public:
    using Event = ObserverEvent<IDriverRepository>;

    XCode onDriverAdded(String&, Event&) override { return accept(); }
    void onDriverRemoved(Event&) override { ++heard; }
    XCode onDriverAttachmentSet(String&, Event&) override { return accept(); }
    void onDriverAttachmentCleared(Event&) override { ++heard; }

    int heard = 0;

private:
    XCode accept()
    {
        ++heard;
        return XCode();
    }
};

class GroupObserver : public IChannelGroupObserver
{
public:
    using Event = ObserverEvent<IChannelGroup>;

    XCode onTimeslotsAdded(String&, Event&) override { return accept(); }
    void onTimeslotsAdded(Event&) override { ++heard; }
    void onTimeslotsRemoved(Event&) override { ++heard; }

    int heard = 0;

private:
    XCode accept()
    {
        ++heard;
        return XCode();
    }
};

} // namespace

/// Uses the registry and a group, leaves nothing inside, and returns how many calls were heard: 6.
extern "C" __attribute__((visibility("default"))) int work()
{
    String error;
    Listener listener;
    DRIVER& registry = DRIVER::INSTANCE();
    registry->addDriverRepositoryObserver(error, "plugin", TOVA_UUID::INVALID(), IDriver::IID(), "",
                                          1, true, true, &listener);
    const TYPtr<CDriver> driver(new CDriver(CID_Driver(), "fxs 1"));
    registry->addDriver(error, driver.get());
    registry->setDriverAttachment(error, driver.get(), "key", "value");
    registry->removeDriver(driver.get());
    registry->removeDriverRepositoryObserver("plugin");

    GroupObserver observer;
    const TYPtr<CChannelGroup> group(new CChannelGroup("B"));
    group.get()->addChannelGroupObserver(error, &observer, 1, true, true);
    group.get()->setTimeslots(error, 0xf0);
    group.get()->setTimeslots(error, 0);
    group.get()->removeChannelGroupObserver(&observer, true);
    return listener.heard + observer.heard;
}
