#ifndef REPOSITORY_WRAPPERLEAVING_H
#define REPOSITORY_WRAPPERLEAVING_H

#include "repository/WrapperListeners.h"
#include "repository/WrapperNotify.h"

// How a listener and a driver part, as far as every going takes it: without an attachment to tell.
// The rest stands in WrapperLeaving.cpp.

/// Tells what a going still owes, as far as it has come.
inline void CDriverRepository::DriverWrapper::tellGoing(Leaving& leaving)
{
    struct Removed
    {
        bool begin()
        {
            const bool owed = leaving.tellsRemoved;
            leaving.tellsRemoved = false;
            return owed;
        }
        Leaving& leaving;
        Voice& voice;
    };
    while (leaving.next != attachments_.begin())
        tellAttachmentGone(leaving);
    if (!leaving.tellsRemoved)
        return;
    Removed occasion = {leaving, leaving.voice};
    tell(leaving.entry->listener(), DriverRemoved(), occasion);
    leaving.tellsRemoved = false;
}

/// Tells the listener of an entry that has just become inactive. One that is still on its way in
/// and has not heard of the driver hears nothing.
inline void CDriverRepository::DriverWrapper::farewell(Entry entry, Joining const* joining,
                                                       Override const* before, Voice& voice)
{
    if (joining != nullptr && !joining->told)
        return;
    Leaving leaving(*this, entry, joining, FAREWELL, before, voice);
    try {
        tellGoing(leaving);
    } catch (...) {
        tellRest(leaving);
        throw;
    }
}

/// Takes one recording of a listener back; the last one says farewell.
inline void CDriverRepository::DriverWrapper::part(Entry entry, Voice& voice)
{
    if (leavings_ != nullptr)
        finishLeaving(entry);
    if (!entry->isValid())
        return;
    Joining const* const joining = joiningOf(entry);
    const bool toldOf = entry->isActive() && entry->getRefCount() == 1;
    entry->decRef();
    withdraw(entry);
    if (toldOf)
        farewell(entry, joining, nullptr, voice);
}

#endif
