#include <memory>
#include <new>

#include "foundation/Log.h"
#include "foundation/Texts.h"
#include "foundation/Undo.h"
#include "repository/Operation.h"
#include "repository/WrapperJoining.h"
#include "repository/WrapperLeaving.h"

// Listeners come and go. A new one is offered the drivers, oldest first; one that goes parts from
// them, newest first.

namespace
{

using Delegate = ObserverDelegate<IDriverRepository>;

XCode failGone(String& error, String const& name)
{
    return failWith(error, [&] {
        error.format("Driver repository observer '%s' does not exist", name.cString());
    });
}

void logFailure(String const& name, String const& error)
{
    logError("DrvRepo: ADDING LISTENER '%s' FAILED: %s", name.cString(), error.cString());
}

} // namespace

XCode CDriverRepository::addDriverRepositoryObserver(
    String& error, String const& name, TOVA_UUID const& classId, TOVA_UUID const& interfaceId,
    String const& driverNamePattern, unsigned int priority, bool rightOfVeto, bool snapshot,
    IDriverRepositoryObserver* observer)
{
    return addDriverRepositoryObserver(error, name, classId, interfaceId, driverNamePattern,
                                       Attributes(), priority, rightOfVeto, snapshot, observer);
}

XCode CDriverRepository::addDriverRepositoryObserver(
    String& error, String const& name, TOVA_UUID const& classId, TOVA_UUID const& interfaceId,
    String const& driverNamePattern, unsigned int priority, bool rightOfVeto, bool snapshot,
    ObserverDelegate<IDriverRepository>* delegate)
{
    return addDriverRepositoryObserver(error, name, classId, interfaceId, driverNamePattern,
                                       Attributes(), priority, rightOfVeto, snapshot, delegate);
}

XCode CDriverRepository::addDriverRepositoryObserver(
    String& error, String const& name, TOVA_UUID const& classId, TOVA_UUID const& interfaceId,
    String const& driverNamePattern, Attributes const& attributes, unsigned int priority,
    bool rightOfVeto, bool snapshot, IDriverRepositoryObserver* observer)
{
    const TYPtr<Delegate> delegate(new (std::nothrow) Delegate(observer));
    if (!delegate) {
        XCode rc = XCode::OUT_OF_MEMORY(error);
        logFailure(name, error);
        return rc;
    }
    return addDriverRepositoryObserver(error, name, classId, interfaceId, driverNamePattern,
                                       attributes, priority, rightOfVeto, snapshot, delegate.get());
}

XCode CDriverRepository::addDriverRepositoryObserver(
    String& error, String const& name, TOVA_UUID const& classId, TOVA_UUID const& interfaceId,
    String const& driverNamePattern, Attributes const& attributes, unsigned int priority,
    bool rightOfVeto, bool snapshot, ObserverDelegate<IDriverRepository>* delegate)
{
    Operation operation(*this);
    const String own(name);
    const auto destroy = [](Listener* unused) { unused->destroy(); };
    std::unique_ptr<Listener, decltype(destroy)> listener(nullptr, destroy);
    try { // before the first call-out, which may change the arguments
        listener.reset(Listener::create(own, classId, interfaceId, driverNamePattern, attributes,
                                        priority, rightOfVeto, snapshot, delegate));
    } catch (std::bad_alloc const&) {
    }
    logDebug(0, "DrvRepo: Add listener '%s'", own.cString());
    finishDepartures(own);
    if (listenerOf(own) != listeners_.end())
        return failWith(error, [&] {
            error.format("Driver repository observer '%s' already exists", own.cString());
        });
    XCode rc = enter(error, listener.get());
    if (rc.code() != 0) {
        logFailure(own, error);
        return rc;
    }
    const Stamp stamp = listener->stamp_;
    rc = introduce(error, *listener.release());
    if (rc.code() != 0)
        return rc;
    operation.settle();
    const Listeners::Iterator place = listenerOf(own);
    if (place == listeners_.end() || place->listener()->stamp_ != stamp) {
        rc = failGone(error, own);
        logFailure(own, error);
        return rc;
    }
    error = String::EMPTY();
    return rc;
}

/// Takes the listener into the list: before the first of no lower priority value.
XCode CDriverRepository::enter(String& error, Listener* listener)
{
    if (listener == nullptr || !listener->makeRoom(drivers_.count()))
        return XCode::OUT_OF_MEMORY(error);
    Listeners::Iterator place = listeners_.begin();
    while (place != listeners_.end() &&
           (!place->isValid() || place->listener()->priority() < listener->priority()))
        ++place;
    const bool active = false;
    listeners_.insert(place, ListenerWrapper(listener, active), listener->placeInList());
    listener->stamp_ = ++clock_;
    return XCode();
}

/// Tells the listener of the drivers; takes it out again, with a line in the log, when it refuses
/// one.
XCode CDriverRepository::introduce(String& error, Listener& listener)
{
    const auto undo = [&] {
        inTurn([&] { takeOut(listener); },
               [&] {
                   inTurn([&] { logFailure(listener.name(), error); }, [&] { discard(listener); });
               });
    };
    return orUndo(
        [&] {
            XCode rc = offer(error, listener);
            return rc.code() == 0 && listener.gone_ ? failGone(error, listener.name())
                                                    : std::move(rc);
        },
        undo);
}

/// Offers the drivers that were there before the listener.
[[gnu::flatten]] XCode CDriverRepository::offer(String& error, Listener& listener)
{
    const bool mayKnow = false;
    DriverWrapper::Voice voice;
    for (DriverWrapper* record = oldest_; record != nullptr; record = record->newer_) {
        if (listener.gone_ || record->gone_ || record->stamp_ > listener.stamp_)
            continue;
        DriverWrapper::Entry hint = record->listeners_.begin();
        XCode rc = record->meet(error, &listener, mayKnow, hint, voice);
        if (rc.code() != 0)
            return rc;
    }
    return XCode();
}

void CDriverRepository::removeDriverRepositoryObserver(String const& name)
{
    const Operation operation(*this);
    const String own(name);
    finishDepartures(own);
    if (listenerOf(own) == listeners_.end())
        return;
    logDebug(0, "DrvRepo: Remove listener '%s'", own.cString());
    const Listeners::Iterator place = listenerOf(own); // the monitor may have called in
    if (place == listeners_.end())
        return;
    Listener& listener = *place->listener();
    inTurn([&] { takeOut(listener); }, [&] { discard(listener); });
}

/// Lets a listener part from every driver. One that has been taken out already stays so.
void CDriverRepository::takeOut(Listener& listener)
{
    if (listener.gone_)
        return;
    listener.gone_ = true;
    try {
        sayFarewells(listener);
    } catch (...) {
        graves_ = true; // should it be cut short again, its entries are found when it is buried
        sayFarewells(listener);
        throw;
    }
}

/// Parts from every driver that is linked, those just leaving included. The entries go with the
/// listener: another one at its address must not find them.
[[gnu::flatten]] void CDriverRepository::sayFarewells(Listener& listener)
{
    DriverWrapper::Voice voice;
    for (DriverWrapper* record = newest_; record != nullptr; record = record->older_) {
        const DriverWrapper::Entry entry = record->find(&listener);
        if (entry == record->listeners_.end())
            continue;
        record->part(entry, voice);
        if (running_ == 1)
            record->unlink(entry);
    }
}

void CDriverRepository::finishDepartures(String const& listenerName)
{
    for (Listeners::Iterator at = listeners_.begin(); at != listeners_.end(); ++at) {
        Listener& listener = *at->listener();
        if (listener.gone_ && listener.name() == listenerName)
            throughout([&] { sayFarewells(listener); });
    }
}

CDriverRepository::Listeners::Iterator CDriverRepository::listenerOf(String const& name)
{
    Listeners::Iterator at = listeners_.begin();
    while (at != listeners_.end() && (at->listener()->gone_ || at->listener()->name() != name))
        ++at;
    return at;
}

/// Frees a listener now, if nobody else can be looking at it.
void CDriverRepository::discard(Listener& listener)
{
    if (running_ > 1 || graves_) {
        graves_ = true;
        return;
    }
    Listeners::Iterator at = listeners_.begin();
    while (at->listener() != &listener)
        ++at;
    listeners_.extract(at);
    listener.destroy();
}
