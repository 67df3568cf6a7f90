#ifndef REPOSITORY_WRAPPERJOINING_H
#define REPOSITORY_WRAPPERJOINING_H

#include "foundation/Texts.h"
#include "foundation/Undo.h"
#include "repository/WrapperListeners.h"
#include "repository/WrapperMatching.h"
#include "repository/WrapperNotify.h"

// How a listener and a driver meet, as far as every offer takes it: without an attachment to tell
// and without a refusal. The rest stands in WrapperJoining.cpp.

/// Tells a listener whose entry has just become active. Undoes a refusal of the driver by taking
/// the entry back, one of an attachment by also telling back what had been told; `refused` says
/// which kind of going that is. Success empties `error`.
inline XCode CDriverRepository::DriverWrapper::welcome(String& error, Joining& joining,
                                                       GoingKind refused)
{
    struct Added
    {
        bool begin() { return joining.told = !joining.withdrawn; }
        bool stands() const { return !joining.withdrawn; }
        void refuse() { joining.told = false; }
        Joining& joining;
        Voice& voice;
    };
    Added occasion = {joining, joining.voice};
    return orUndo(
        [&] {
            XCode rc = ask(error, joining.entry->listener(), DriverAdded(), occasion);
            if (rc.code() != 0)
                return rc;
            if (!joining.withdrawn) {
                joining.told = true; // also without a delegate, which nobody asked
                if (joining.entry->listener()->wantsSnapshot())
                    return tellAttachments(error, joining);
            }
            succeed(error);
            return rc;
        },
        [&] { takeBack(joining, refused); });
}

/// Offers the driver to a listener whose entry, if it has one and `mayKnow` says so, is counted
/// up. A new one is sought near `hint`, which moves to it: offers in priority order cost a step.
inline XCode CDriverRepository::DriverWrapper::meet(String& error, Listener* l, bool mayKnow,
                                                    Entry& hint, Voice& voice)
{
    const bool matches = selects(*l);
    if (gone_ || l->isGone()) {
        succeed(error);
        return XCode();
    }
    const Entry known = mayKnow ? find(l) : listeners_.end();
    if (known == listeners_.end()) {
        try {
            hint = link(mayKnow ? placeAround(hint, l->priority()) : placeNear(hint, l->priority()),
                        l, matches);
        } catch (std::bad_alloc const&) {
            return XCode::OUT_OF_MEMORY(error);
        }
    } else {
        hint = known;
        known->incRef();
    }
    if (!matches || hint->getRefCount() != 1) {
        succeed(error);
        return XCode();
    }
    hadMatch_ = true;
    Joining joining(*this, hint, voice);
    return welcome(error, joining, REFUSED_OFFER);
}

#endif
