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

/// Whether a listener of that priority stands behind the entry.
inline bool CDriverRepository::DriverWrapper::isAhead(Entry at, std::uint32_t priority)
{
    return at->isValid() && at->listener()->priority() < priority;
}

/// The same for offers in priority order, where it is `hint` or the end. Only who knows an entry
/// already can bring one back out of order.
inline CDriverRepository::DriverWrapper::Entry
CDriverRepository::DriverWrapper::placeNear(Entry hint, std::uint32_t priority)
{
    const Entry end = listeners_.end();
    const Entry place = hint == end || isAhead(hint, priority) ? end : hint;
    Entry before = place;
    if ((place == listeners_.begin() || isAhead(--before, priority)) &&
        (place == end || place->isValid()))
        return place;
    return placeAround(hint, priority);
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
    hadMatch_ = true;
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
