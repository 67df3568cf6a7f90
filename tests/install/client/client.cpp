// Uses every part of the library across its border: classes derived from its interfaces, objects
// deleted by the other side, a callback's exception, diagnostics.

#include <cstdio>
#include <stdexcept>

#include <drvrepo/CChannelGroup.h>
#include <drvrepo/CDriver.h>
#include <drvrepo/DRIVER.h>
#include <drvrepo/IDriverRepositoryObserver.h>
#include <utility/IInfo.h>
#include <utility/InfoContainer.h>

namespace
{

class Port : public CDriver
{
public:
    explicit Port(String const& name) : CDriver(IDriver::DID_UNKNOWN(), name) {}
    ~Port() override { std::printf("%s deleted\n", getDriverName().cString()); }
};

class Listener : public IDriverRepositoryObserver
{
public:
    XCode onDriverAdded(String& error, ObserverEvent<IDriverRepository>& event) override
    {
        const String name = nameOf(event);
        if (name == "fxs 13")
            throw std::runtime_error("unlucky");
        if (name == "fxs 99") {
            error = "no such port";
            return XCode(-3);
        }
        std::printf("added %s\n", name.cString());
        return XCode();
    }
    void onDriverRemoved(ObserverEvent<IDriverRepository>& event) override
    {
        std::printf("removed %s\n", nameOf(event).cString());
    }
    XCode onDriverAttachmentSet(String&, ObserverEvent<IDriverRepository>& event) override
    {
        auto const& change = static_cast<IDriverRepository::EvAttachment const&>(event);
        std::printf("set %s = %s\n", change.key.cString(), change.value.cString());
        return XCode();
    }
    void onDriverAttachmentCleared(ObserverEvent<IDriverRepository>& event) override
    {
        auto const& change = static_cast<IDriverRepository::EvAttachment const&>(event);
        std::printf("cleared %s = %s\n", change.key.cString(), change.value.cString());
    }

private:
    static String nameOf(ObserverEvent<IDriverRepository> const& event)
    {
        return static_cast<IDriverRepository::EvDriver const&>(event).driver->getDriverName();
    }
};

void add(char const* name)
{
    const TYPtr<Port> port(new Port(name));
    String error;
    try {
        const XCode rc = DRIVER::INSTANCE()->addDriver(error, port.get());
        std::printf("addDriver: %d \"%s\"\n", static_cast<int>(rc.code()), error.cString());
    } catch (std::runtime_error const& exception) {
        std::printf("addDriver threw: %s\n", exception.what());
    }
}

void showGroup()
{
    String message;
    const TYPtr<CChannelGroup> group(new CChannelGroup("e1t1 1/B-CHANNELS"));
    DRIVER::INSTANCE()->addDriver(message, group.get());
    unsigned int timeslots = 0;
    IChannelGroup::TIMESLOTS_TEXT_TO_UINT(message, "1-15;17-31", timeslots);
    group->setTimeslots(message, timeslots);

    InfoContainer info;
    group->getInfo(info, 9, 0, 9, 0, "");
    for (InfoContainer::Row const& row : info.rows())
        std::printf("%u %s|%s\n", row.depth, row.key.cString(), row.value.cString());
    DRIVER::INSTANCE()->removeDriver(group.get());
}

} // namespace

int main()
{
    Listener listener;
    String error;
    DRIVER::INSTANCE()->addDriverRepositoryObserver(
        error, "client", TOVA_UUID::INVALID(), TOVA_UUID::INVALID(), "", 1, true, true, &listener);
    add("fxs 1");
    add("fxs 1");
    add("fxs 13");
    add("fxs 99");
    DRIVER::INSTANCE()->setDriverAttachment(error, "fxs 1", "extension", "4711");
    showGroup();
    DRIVER::INSTANCE()->removeDriverRepositoryObserver("client");
    DRIVER::INSTANCE()->removeDriver("fxs 1");
    return 0;
}
