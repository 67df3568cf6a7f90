#include <new>

#include <utility/TYEventLoop.h>

#include <drvrepo/CChannelGroup.h>
#include <drvrepo/Identifiers.h>

#include "foundation/InfoRows.h"
#include "foundation/Interfaces.h"
#include "foundation/Log.h"
#include "foundation/Texts.h"
#include "foundation/Undo.h"

const char IChannelGroup::D_CHANNEL_DEFAULT_NAME[] = "D-CHANNEL";
const char IChannelGroup::B_CHANNELS_DEFAULT_NAME[] = "B-CHANNELS";

IChannelGroupObserver::~IChannelGroupObserver() = default;

namespace
{

using Event = ObserverEvent<IChannelGroup>;
using DoMethod = XCode (IChannelGroupObserver::*)(String&, Event&);
using NotifyMethod = void (IChannelGroupObserver::*)(Event&);

const DoMethod ASK_ADDED = &IChannelGroupObserver::onTimeslotsAdded;
const NotifyMethod TELL_ADDED = &IChannelGroupObserver::onTimeslotsAdded;
const NotifyMethod TELL_REMOVED = &IChannelGroupObserver::onTimeslotsRemoved;

/// The event of a change: the mask before, the mask after, the bits changed. Three words fit into
/// the event itself, so that making it cannot fail.
Event changeEvent(IChannelGroup* group, std::uint32_t before, std::uint32_t after,
                  std::uint32_t changed)
{
    Event event(group);
    for (std::uint32_t word : {before, after, changed})
        event.data.copyOnWrite().addTail(&word, sizeof word);
    return event;
}

} // namespace

CChannelGroup::CChannelGroup(String const& name) : name_(name), timeslots_(0) {}

CChannelGroup::~CChannelGroup() = default;

XCode CChannelGroup::queryInterface(TOVA_UUID const& iid, void** out)
{
    return answerInterface({{IID_Unknown(), static_cast<IDriver*>(this)},
                            {IDriver::IID(), static_cast<IDriver*>(this)},
                            {IChannelGroup::IID(), static_cast<IChannelGroup*>(this)},
                            {IInfo::IID(), static_cast<IInfo*>(this)}},
                           iid, out);
}

void CChannelGroup::addRef()
{
    refs_.increment();
}

void CChannelGroup::release()
{
    if (refs_.decrement())
        delete this;
}

Lock* CChannelGroup::getLock()
{
    return CRIT::INSTANCE().lock();
}

TOVA_UUID const& CChannelGroup::getDID() const
{
    return DID_ChannelGroup();
}

String const& CChannelGroup::getDriverName() const
{
    return name_;
}

unsigned int CChannelGroup::getTimeslots() const
{
    return timeslots_;
}

XCode CChannelGroup::setTimeslots(String& message, unsigned int requested)
{
    const TYPtr<IDriver> life = TYPtr<IDriver>::share(this);
    logDebug(0, "%s: Set Timeslots '%8.8lx'", name_.cString(), printable(requested));
    const std::uint32_t added = requested & ~timeslots_;
    const std::uint32_t removed = timeslots_ & ~requested;
    try {
        // A change inside another finds the spare block taken; once begun it cannot fail.
        if ((added | removed) != 0 && observers_.size() != 0)
            Event::reserve();
    } catch (std::bad_alloc const&) {
        return XCode::OUT_OF_MEMORY(message);
    }
    XCode rc;
    // A refused addition doesn't keep the removals from being carried out.
    inTurn(
        [&] {
            if (added != 0)
                rc = addTimeslots(message, added);
        },
        [&] { removeTimeslots(removed); });
    return rc;
}

XCode CChannelGroup::addTimeslots(String& message, std::uint32_t added)
{
    const std::uint32_t before = timeslots_;
    timeslots_ = before | added;
    const Observers::BusyScope busy(observers_); // keeps the refuser's place for the withdrawal
    Observers::Stop stop = observers_.atFront();
    return orUndo(
        [&] {
            logDebug(0, "%s:   Notify observers: onTimeslotsAdded(%8.8lx->%8.8lx: %8.8lx)",
                     name_.cString(), printable(before), printable(before | added),
                     printable(added));
            const Event event = changeEvent(this, before, before | added, added);
            return observers_.broadcastDoEvent(message, event, ASK_ADDED, TELL_ADDED, stop);
        },
        [&] { withdraw(added, stop); });
}

/// Takes back what of an addition is still there, and tells those who had heard of it.
void CChannelGroup::withdraw(std::uint32_t added, Observers::Stop const& stop)
{
    const std::uint32_t before = timeslots_;
    const std::uint32_t withdrawn = before & added;
    if (withdrawn == 0)
        return;
    timeslots_ = before & ~added;
    const std::uint32_t after = timeslots_;
    inTurn(
        [&] {
            logDebug(0, "%s:   Notify observers: onTimeslotsRemoved(%8.8lx->%8.8lx: %8.8lx)",
                     name_.cString(), printable(before), printable(after), printable(withdrawn));
        },
        [&] {
            const Event event = changeEvent(this, before, after, withdrawn);
            observers_.broadcastUndoEvent(event, TELL_REMOVED, stop);
        });
}

void CChannelGroup::removeTimeslots(std::uint32_t removed)
{
    withdraw(removed, observers_.nowhere());
}

XCode CChannelGroup::addChannelGroupObserver(String& message, IChannelGroupObserver* observer,
                                             unsigned int priority, bool veto, bool notifyCurrent)
{
    if (observer == nullptr)
        return fail(message, TEXT_NO_GROUP_OBSERVER);
    const TYPtr<IDriver> life = TYPtr<IDriver>::share(this);
    void const* const address = observer;
    logDebug(0, "%s: Add observer '%p'", name_.cString(), address);
    const TYPtr<Observers::Delegate> delegate(new (std::nothrow) Observers::Delegate(observer));
    if (!delegate)
        return XCode::OUT_OF_MEMORY(message);
    try {
        observers_.add(delegate.get(), priority, veto);
    } catch (std::bad_alloc const&) {
        return XCode::OUT_OF_MEMORY(message);
    }
    if (!notifyCurrent || timeslots_ == 0)
        return XCode();
    observers_.setInformed(delegate.get());
    return orUndo([&] { return tellCurrent(message, observer, veto); },
                  [&] {
                      if (observers_.has(delegate.get()))
                          observers_.remove(observer);
                  });
}

XCode CChannelGroup::tellCurrent(String& message, IChannelGroupObserver* observer, bool veto)
{
    void const* const address = observer;
    const std::uint32_t current = timeslots_;
    logDebug(0, "%s:   Notify observer '%p': onTimeslotsAdded(%8.8lx->%8.8lx: %8.8lx)",
             name_.cString(), address, printable(0), printable(current), printable(current));
    Event event = changeEvent(this, 0, current, current);
    if (veto)
        return observer->onTimeslotsAdded(message, event);
    observer->onTimeslotsAdded(event);
    return XCode();
}

void CChannelGroup::removeChannelGroupObserver(IChannelGroupObserver* observer, bool notifyCurrent)
{
    if (observer == nullptr)
        return;
    const TYPtr<IDriver> life = TYPtr<IDriver>::share(this);
    void const* const address = observer;
    logDebug(0, "%s: Remove observer '%p'", name_.cString(), address);
    observers_.remove(observer);
    if (!notifyCurrent || timeslots_ == 0)
        return;
    const std::uint32_t current = timeslots_;
    inTurn(
        [&] {
            logDebug(0, "%s:   Notify observer '%p': onTimeslotsRemoved(%8.8lx->%8.8lx: %8.8lx)",
                     name_.cString(), address, printable(current), printable(0),
                     printable(current));
        },
        [&] {
            Event event = changeEvent(this, current, 0, current);
            observer->onTimeslotsRemoved(event);
        });
}

InfoContainer& CChannelGroup::getInfo(InfoContainer& info, unsigned int maxDepth,
                                      unsigned int depth, unsigned int maxDetail,
                                      unsigned int detail, String const& prefix) const
{
    const InfoRows rows(info, maxDepth, depth, maxDetail, detail);
    String timeslots;
    TIMESLOTS_UINT_TO_TEXT(timeslots_, timeslots);
    rows.add(0, 0, String(prefix).concat("Configuration"), "");
    rows.add(1, 1, "Timeslot(s)", timeslots);
    return info;
}
