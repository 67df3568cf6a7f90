#include "Library.h"

#include <utility/TYEventLoop.h>

#include <drvrepo/DRIVER.h>

#include "Cases.h"

namespace
{

TOVA_UUID const& didOf(load::Type type)
{
    static const TOVA_UUID E1T1 = TOVA_UUID::create(0x0a1b2c3d, 0x4e5f6071, 0x8293a4b5, 1, "E1T1");
    static const TOVA_UUID FXS = TOVA_UUID::create(0x0a1b2c3d, 0x4e5f6071, 0x8293a4b5, 2, "FXS");
    return type == load::E1T1 ? E1T1 : type == load::FXS ? FXS : TOVA_UUID::INVALID();
}

/// A driver with state of its own: 112 bytes on 64-bit machines, like the peers'.
class Port final : public CDriver
{
public:
    using CDriver::CDriver;

private:
    [[maybe_unused]] unsigned char state_[112 - sizeof(CDriver)] = {};
};
static_assert(sizeof(void*) != 8 || sizeof(Port) == 112, "as large as the peers' drivers");

constexpr std::uint32_t BEFORE = 0x0f;
constexpr std::uint32_t ADDED = 0xf0;

using GroupEvent = ObserverEvent<IChannelGroup>;

GroupEvent changeEvent(IChannelGroup* group, std::uint32_t before, std::uint32_t after)
{
    GroupEvent event(group);
    const std::uint32_t changed = before ^ after;
    TYMarshaller::Buffer& data = event.data.copyOnWrite();
    data.addTail(&before, sizeof before);
    data.addTail(&after, sizeof after);
    data.addTail(&changed, sizeof changed);
    return event;
}

} // namespace

Library::Library() : repository_(*new CDriverRepository(CRIT::INSTANCE())) {}

Library::~Library()
{
    repository_.release();
}

Library::Driver Library::make(Text const& name, load::Type type)
{
    return Driver(new Port(didOf(type), name));
}

void Library::listen(load::Criteria const& criteria, load::Told& told)
{
    IDriverRepository::Attributes attributes;
    if (!criteria.key.empty())
        attributes.put(criteria.key.c_str(), criteria.value.c_str());
    const bool veto = true;
    Counter& counter = counters_.try_emplace(criteria.name, told).first->second;
    String error;
    repository_.addDriverRepositoryObserver(
        error, criteria.name.c_str(), didOf(criteria.type), TOVA_UUID::INVALID(),
        criteria.prefix.c_str(), attributes, criteria.priority, veto, criteria.snapshot, &counter);
}

void Library::unlisten(std::string const& name)
{
    repository_.removeDriverRepositoryObserver(name.c_str());
    counters_.erase(name);
}

LockedLibrary::LockedLibrary() : Library(*TYPtr<IDriverRepository>(DRIVER::INSTANCE()).detach()) {}

bool LockedLibrary::lookUp(Text const& name)
{
    IDriver* driver = nullptr;
    const bool found = DRIVER::INSTANCE()->getDriver(name, &driver).code() == 0;
    const Driver held(driver);
    return found;
}

XCode Library::Counter::onDriverAdded(String&, ObserverEvent<IDriverRepository>&)
{
    ++told_.added;
    return XCode();
}

void Library::Counter::onDriverRemoved(ObserverEvent<IDriverRepository>&)
{
    ++told_.removed;
}

XCode Library::Counter::onDriverAttachmentSet(String&, ObserverEvent<IDriverRepository>&)
{
    ++told_.set;
    return XCode();
}

void Library::Counter::onDriverAttachmentCleared(ObserverEvent<IDriverRepository>&)
{
    ++told_.cleared;
}

Library::Group::Group() : group_(new CChannelGroup("e1t1 3 17/B-CHANNELS")) {}

void Library::Group::observe(unsigned priority, bool refuses, load::Told& told)
{
    const bool veto = true;
    counters_.emplace_back(refuses, told);
    const TYPtr<ObserverDelegate<IChannelGroup>> delegate(
        new ObserverDelegate<IChannelGroup>(&counters_.back()));
    observers_.add(delegate.get(), priority, veto);
}

bool Library::Group::announce()
{
    String message;
    IChannelGroupObserver* refuser = nullptr;
    const GroupEvent added = changeEvent(group_.get(), BEFORE, BEFORE | ADDED);
    if (observers_
            .broadcastDoEvent(message, added, &IChannelGroupObserver::onTimeslotsAdded,
                              &IChannelGroupObserver::onTimeslotsAdded, &refuser)
            .code() == 0)
        return true;
    const GroupEvent removed = changeEvent(group_.get(), BEFORE | ADDED, BEFORE);
    observers_.broadcastUndoEvent(removed, &IChannelGroupObserver::onTimeslotsRemoved, refuser);
    return false;
}

XCode Library::Group::Counter::onTimeslotsAdded(String& message, ObserverEvent<IChannelGroup>&)
{
    ++told_.added;
    if (!refuses_)
        return XCode();
    message = "in use";
    return XCode(-1);
}

void Library::Group::Counter::onTimeslotsAdded(ObserverEvent<IChannelGroup>&)
{
    ++told_.added;
}

void Library::Group::Counter::onTimeslotsRemoved(ObserverEvent<IChannelGroup>&)
{
    ++told_.removed;
}

void addLibrary(Cases& cases)
{
    addSystem<Library>(cases);
    const bool grows = true;
    cases.push_back({"W1", LockedLibrary::name(), grows, !grows, makeWork<LookUp<LockedLibrary>>});
    cases.push_back(
        {"W7-snapshot", Library::name(), grows, !grows, makeWork<Register<Library, true>>});
}
