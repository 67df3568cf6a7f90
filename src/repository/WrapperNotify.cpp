#include <drvrepo/IDriverRepositoryObserver.h>

#include "foundation/Log.h"
#include "repository/Frames.h"

using Record = CDriverRepository::DriverWrapper;
using Observer = IDriverRepositoryObserver;
using Event = ObserverEvent<IDriverRepository>;

// The only place where observers are called. Each tells one listener once.

namespace
{

void logRefusal(Record const& record, CDriverRepository::Listener const* l, String const& error)
{
    logError("DrvRepo:   %s: NOTIFY LISTENER '%s' FAILED: %s", record.getDriverName().cString(),
             l->name().cString(), error.cString());
}

/// Calls a method that may refuse, and returns the refusal if it counts.
template <class Occasion>
XCode deliver(Record const& record, String& error, CDriverRepository::Listener* l,
              XCode (Observer::*method)(String&, Event&), Event& event, Occasion& occasion)
{
    if (!occasion.begin())
        return XCode();
    XCode rc = l->delegate()->notifyEvent(error, method, event);
    if (rc.code() == 0 || !l->hasRightOfVeto() || !occasion.stands())
        return XCode();
    occasion.refuse();
    logRefusal(record, l, error);
    return rc;
}

} // namespace

XCode Record::ask(String& error, Listener* l, Occasion& occasion)
{
    if (l->delegate() == nullptr)
        return XCode();
    try {
        // The wording is the same for listeners without the right.
        if (isMonitored())
            logDebug(0, "DrvRepo:   %s: Notify listener '%s' with right of veto: onDriverAdded()",
                     getDriverName().cString(), l->name().cString());
        l->addCount(Listener::DRIVER_ADDED);
        const Loan<IDriverRepository::EvDriver> event(occasion.voice, repository_, getDriver());
        return deliver(*this, error, l, &Observer::onDriverAdded, *event, occasion);
    } catch (...) {
        occasion.refuse();
        logRefusal(*this, l, error);
        throw;
    }
}

XCode Record::ask(String& error, Listener* l, String const& key, String const& value,
                  Occasion& occasion)
{
    if (l->delegate() == nullptr)
        return XCode();
    try {
        if (isMonitored())
            logDebug(0, "DrvRepo:   %s: Notify listener '%s': onDriverAttachmentSet(%s=%s)",
                     getDriverName().cString(), l->name().cString(), key.cString(),
                     value.cString());
        l->addCount(Listener::ATTACHMENT_SET);
        const Loan<IDriverRepository::EvAttachment> event(occasion.voice, repository_, getDriver(),
                                                          key, value);
        return deliver(*this, error, l, &Observer::onDriverAttachmentSet, *event, occasion);
    } catch (...) {
        occasion.refuse();
        logRefusal(*this, l, error);
        throw;
    }
}

void Record::tell(Listener* l, Occasion& occasion)
{
    if (l->delegate() == nullptr)
        return;
    if (isMonitored())
        logDebug(0, "DrvRepo:   %s: Notify listener '%s': onDriverRemoved()",
                 getDriverName().cString(), l->name().cString());
    l->addCount(Listener::DRIVER_REMOVED);
    const Loan<IDriverRepository::EvDriver> event(occasion.voice, repository_, getDriver());
    if (occasion.begin())
        l->delegate()->notifyEvent(&Observer::onDriverRemoved, *event);
}

void Record::tell(Listener* l, String const& key, String const& value, Occasion& occasion)
{
    if (l->delegate() == nullptr)
        return;
    if (isMonitored())
        logDebug(0, "DrvRepo:   %s: Notify listener '%s': onDriverAttachmentCleared(%s=%s)",
                 getDriverName().cString(), l->name().cString(), key.cString(), value.cString());
    l->addCount(Listener::ATTACHMENT_CLEARED);
    const Loan<IDriverRepository::EvAttachment> event(occasion.voice, repository_, getDriver(), key,
                                                      value);
    if (occasion.begin())
        l->delegate()->notifyEvent(&Observer::onDriverAttachmentCleared, *event);
}

namespace
{

/// For notifications that are asked for directly: nothing can overtake them.
template <class Base> struct Directly final : Base
{
    using Base::Base;
    bool begin() override { return true; }
};

} // namespace

XCode Record::notifyOnDriverAdded(String& error, Listener* l)
{
    Voice voice;
    Directly<Occasion> occasion(voice);
    return ask(error, l, occasion);
}

void Record::notifyOnDriverRemoved(Listener* l)
{
    Voice voice;
    Directly<Occasion> occasion(voice);
    tell(l, occasion);
}

XCode Record::notifyOnDriverAttachmentSet(String& error, Listener* l, String const& key,
                                          String const& value)
{
    Voice voice;
    Directly<Occasion> occasion(voice);
    return ask(error, l, String(key), String(value), occasion);
}

void Record::notifyOnDriverAttachmentCleared(Listener* l, String const& key, String const& value)
{
    Voice voice;
    Directly<Occasion> occasion(voice);
    tell(l, String(key), String(value), occasion);
}
