#include "repository/WrapperListeners.h"

using Record = CDriverRepository::DriverWrapper;

// The driver's list of listeners: who is in it, at which place, and who is told.

int Record::addListenerOnce(Listener* l, bool active)
{
    const Entry known = find(l);
    if (known != listeners_.end())
        return known->incRef();
    link(placeAround(listeners_.begin(), l->priority()), l, active);
    return 1;
}

int Record::removeListenerOnce(Listener const* l)
{
    const Entry entry = find(l);
    if (entry == listeners_.end())
        return -1;
    if (!entry->isValid())
        return 0;
    const int count = entry->decRef();
    withdraw(entry);
    return count;
}

int Record::getListenerCount(Listener const* l)
{
    const Entry entry = find(l);
    return entry != listeners_.end() ? entry->getRefCount() : 0;
}

bool Record::isActive(Listener const* l) const
{
    const Entries::ConstIterator entry = find(l);
    return entry != listeners_.end() && entry->isActive();
}

/// Takes the entries of listeners out that the repository is about to free.
void Record::forgetGone()
{
    for (Entry at = listeners_.begin(); at != listeners_.end();) {
        const Entry entry = at;
        ++at;
        if (entry->listener()->isGone())
            unlink(entry);
    }
}

Record::Entry Record::find(Listener const* l)
{
    Entry at = listeners_.begin();
    while (at != listeners_.end() && at->listener() != l)
        ++at;
    return at;
}

Record::Entries::ConstIterator Record::find(Listener const* l) const
{
    return const_cast<DriverWrapper*>(this)->find(l);
}

/// The first valid entry of no lower priority value, the end without one, sought from `hint`.
Record::Entry Record::placeAround(Entry hint, std::uint32_t priority)
{
    Entry at = hint;
    if (at == listeners_.end() || !isAhead(at, priority))
        for (Entry before = at; before != listeners_.begin(); at = before)
            if (isAhead(--before, priority))
                break;
    while (at != listeners_.end() && (!at->isValid() || isAhead(at, priority)))
        ++at;
    return at;
}

/// Both ways at once, so that the distance counts and not the length; but only towards the
/// beginning when the priority says so.
Record::Entry Record::findAround(Entry hint, Listener const* l)
{
    if (hint != listeners_.end() && l->priority() < hint->listener()->priority())
        for (Entry at = hint; at != listeners_.begin();)
            if ((--at)->listener() == l)
                return at;
    Entry up = hint;
    Entry down = hint;
    while (up != listeners_.end() || down != listeners_.begin()) {
        if (down != listeners_.begin() && (--down)->listener() == l)
            return down;
        if (up != listeners_.end() && ++up != listeners_.end() && up->listener() == l)
            return up;
    }
    return listeners_.end();
}

/// Memory for one entry, of its own: for who came while the driver's record was being made, and for
/// records that are in no repository.
void* Record::roomApart()
{
    void* const room = ::operator new(EntryRoom::ENTRY_SIZE);
    entriesApart_ = true;
    return room;
}

void Record::unlink(Entry entry)
{
    const bool isApart = entry->isApart_;
    void* const room = listeners_.extract(entry);
    if (isApart)
        ::operator delete(room);
}

bool Record::isBefore(Entry entry, Entry stop)
{
    for (Entry at = listeners_.begin(); at != stop; ++at)
        if (at == entry)
            return true;
    return false;
}
