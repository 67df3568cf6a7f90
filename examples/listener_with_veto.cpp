// A listener with the right of veto: it accepts four ports and refuses the fifth, and a second
// listener, told before it, hears that the refused port is gone again.

#include <cstdio>

#include <drvrepo/CDriver.h>
#include <drvrepo/CDriverRepository.h>
#include <drvrepo/IDriverRepositoryObserver.h>

namespace
{

String nameOf(ObserverEvent<IDriverRepository> const& event)
{
    // The events of a repository are EvDriver, with the driver, and for attachments EvAttachment.
    return static_cast<IDriverRepository::EvDriver const&>(event).driver.get()->getDriverName();
}

/// Writes down what it hears.
class Log : public IDriverRepositoryObserver
{
public:
    XCode onDriverAdded(String&, ObserverEvent<IDriverRepository>& event) override
    {
        std::printf("log: %s has come\n", nameOf(event).cString());
        ++known;
        return XCode();
    }
    void onDriverRemoved(ObserverEvent<IDriverRepository>& event) override
    {
        std::printf("log: %s has gone\n", nameOf(event).cString());
        --known;
    }
    XCode onDriverAttachmentSet(String&, ObserverEvent<IDriverRepository>&) override
    {
        return XCode();
    }
    void onDriverAttachmentCleared(ObserverEvent<IDriverRepository>&) override {}

    int known = 0;
};

/// Has licences for so many ports.
class Licence : public Log
{
public:
    XCode onDriverAdded(String& error, ObserverEvent<IDriverRepository>& event) override
    {
        if (known == 4) {
            error.format("no licence for %s", nameOf(event).cString());
            return XCode(-7);
        }
        ++known;
        return XCode();
    }
    void onDriverRemoved(ObserverEvent<IDriverRepository>&) override { --known; }
};

} // namespace

int main()
{
    TYEventLoop loop;
    const TYPPtr<CDriverRepository> repository(new CDriverRepository(loop));
    Log log;
    Licence licence;
    String error;
    const bool snapshot = false;

    // Any driver type, any interface, names that begin with "fxs "; the lower number is told first.
    repository->addDriverRepositoryObserver(error, "log", TOVA_UUID::INVALID(),
                                            TOVA_UUID::INVALID(), "fxs ", 1, false, snapshot, &log);
    repository->addDriverRepositoryObserver(error, "licence", TOVA_UUID::INVALID(),
                                            TOVA_UUID::INVALID(), "fxs ", 2, true, snapshot,
                                            &licence);

    int refusals = 0;
    for (int i = 1; i <= 5; ++i) {
        const TYPtr<CDriver> port(
            new CDriver(IDriver::DID_UNKNOWN(), String().format("fxs %d", i)));
        // The refusing observer's code and text come back to whoever adds.
        if (repository->addDriver(error, port.get()).code() == -7) {
            std::printf("refused: %s\n", error.cString());
            ++refusals;
        }
    }

    // Observers are not owned: they leave before they die, and hear of the going of what they had.
    repository->removeDriverRepositoryObserver("licence");
    repository->removeDriverRepositoryObserver("log");
    for (int i = 1; i <= 4; ++i)
        repository->removeDriver(String().format("fxs %d", i));
    return refusals == 1 && log.known == 0 && licence.known == 0 ? 0 : 1;
}
