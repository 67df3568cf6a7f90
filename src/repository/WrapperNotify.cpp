#include "repository/WrapperNotify.h"

using Record = CDriverRepository::DriverWrapper;

// The wording is the same for listeners without the right of veto.

void Record::DriverAdded::log(Record const& record, Listener const& l) const
{
    logDebug(0, "DrvRepo:   %s: Notify listener '%s' with right of veto: onDriverAdded()",
             record.getDriverName().cString(), l.name().cString());
}

void Record::DriverRemoved::log(Record const& record, Listener const& l) const
{
    logDebug(0, "DrvRepo:   %s: Notify listener '%s': onDriverRemoved()",
             record.getDriverName().cString(), l.name().cString());
}

void Record::AttachmentSet::log(Record const& record, Listener const& l) const
{
    logDebug(0, "DrvRepo:   %s: Notify listener '%s': onDriverAttachmentSet(%s=%s)",
             record.getDriverName().cString(), l.name().cString(), key.cString(), value.cString());
}

void Record::AttachmentCleared::log(Record const& record, Listener const& l) const
{
    logDebug(0, "DrvRepo:   %s: Notify listener '%s': onDriverAttachmentCleared(%s=%s)",
             record.getDriverName().cString(), l.name().cString(), key.cString(), value.cString());
}

void Record::logRefusal(Listener const& l, String const& error) const
{
    logError("DrvRepo:   %s: NOTIFY LISTENER '%s' FAILED: %s", getDriverName().cString(),
             l.name().cString(), error.cString());
}

namespace
{

/// For notifications that are asked for directly: nothing can overtake them.
template <class Voice> struct Directly
{
    bool begin() const { return true; }
    bool stands() const { return true; }
    void refuse() const {}
    Voice voice = {};
};

} // namespace

XCode Record::notifyOnDriverAdded(String& error, Listener* l)
{
    Directly<Voice> occasion;
    return ask(error, l, DriverAdded(), occasion);
}

void Record::notifyOnDriverRemoved(Listener* l)
{
    Directly<Voice> occasion;
    tell(l, DriverRemoved(), occasion);
}

XCode Record::notifyOnDriverAttachmentSet(String& error, Listener* l, String const& key,
                                          String const& value)
{
    const String ownKey(key);
    const String ownValue(value);
    Directly<Voice> occasion;
    return ask(error, l, AttachmentSet{ownKey, ownValue}, occasion);
}

void Record::notifyOnDriverAttachmentCleared(Listener* l, String const& key, String const& value)
{
    const String ownKey(key);
    const String ownValue(value);
    Directly<Voice> occasion;
    tell(l, AttachmentCleared{ownKey, ownValue}, occasion);
}
