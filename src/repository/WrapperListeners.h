#ifndef REPOSITORY_WRAPPERLISTENERS_H
#define REPOSITORY_WRAPPERLISTENERS_H

#include <new>

#include "repository/Frames.h"

// The steps in the driver's list of listeners that each meeting and each parting takes.

/// The listener's entry, sought around that of another, `hint`: who walks the repository's list
/// finds the next one there in a step or two, also among equals, whose order may differ.
inline CDriverRepository::DriverWrapper::Entry
CDriverRepository::DriverWrapper::findNear(Entry hint, Listener const* l)
{
    // Around the list's end, too: what stands there names no listener.
    Entry near = hint;
    if ((++near)->listener() == l)
        return near;
    near = hint;
    if ((--near)->listener() == l)
        return near;
    return findAround(hint, l);
}

/// The first valid entry of no lower priority value, the end without one, sought from `hint`.
inline CDriverRepository::DriverWrapper::Entry
CDriverRepository::DriverWrapper::placeNear(Entry hint, Listener const* l)
{
    const auto isBefore = [l](Entry at) {
        return at->isValid() && at->listener()->priority() < l->priority();
    };
    Entry at = hint;
    if (at == listeners_.end() || !isBefore(at))
        for (Entry before = at; before != listeners_.begin(); at = before)
            if (isBefore(--before))
                break;
    while (at != listeners_.end() && (!at->isValid() || isBefore(at)))
        ++at;
    return at;
}

inline CDriverRepository::DriverWrapper::Entry
CDriverRepository::DriverWrapper::link(Entry place, Listener* l, bool active)
{
    void* room = l->stamp() > stamp_ ? l->room_.take(l->block_.get())
                                     : room_.take(this + 1); // the later one's
    const bool isApart = room == nullptr;
    if (isApart)
        room = roomApart();
    const Entry entry = listeners_.insert(place, ListenerWrapper(l, active), room);
    entry->isApart_ = isApart;
    entry->joinedIn_ = walkLevel_;
    lateEntries_ = lateEntries_ || walkLevel_ != 0;
    return entry;
}

inline void CDriverRepository::DriverWrapper::activate(Entry entry)
{
    entry->activate();
    entry->joinedIn_ = walkLevel_;
    lateEntries_ = lateEntries_ || walkLevel_ != 0;
}

inline void CDriverRepository::DriverWrapper::deactivate(Entry entry)
{
    entry->deactivate();
    withdraw(entry);
}

/// Ends a coming under way of an entry that is active no more.
inline void CDriverRepository::DriverWrapper::withdraw(Entry entry)
{
    if (entry->isActive())
        return;
    for (Joining* joining = joinings_; joining != nullptr; joining = joining->outer)
        if (joining->entry == entry)
            joining->withdrawn = true;
}

inline CDriverRepository::DriverWrapper::Joining*
CDriverRepository::DriverWrapper::joiningOf(Entry entry) const
{
    Joining* joining = joinings_;
    while (joining != nullptr && (joining->withdrawn || joining->entry != entry))
        joining = joining->outer;
    return joining;
}

#endif
