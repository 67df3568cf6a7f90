#include "foundation/Texts.h"
#include "repository/Frames.h"

using Record = CDriverRepository::DriverWrapper;

// The driver's list of listeners: who is in it, at which place, and who is told.

int Record::addListenerOnce(Listener* l, bool active)
{
    const Entry known = find(l);
    if (known != listeners_.end())
        return known->incRef();
    link(placeNear(listeners_.begin(), l), l, active);
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
    for (Entry at = listeners_.begin(); at != listeners_.end();)
        if (at->listener()->isGone())
            at = listeners_.remove(at);
        else
            ++at;
}

XCode Record::addListener(String& error, Listener* l)
{
    if (l == nullptr)
        return fail(error, TEXT_NO_LISTENER);
    const bool mayKnow = true;
    Entry hint = listeners_.begin();
    Voice voice;
    return meet(error, l, mayKnow, hint, voice);
}

void Record::removeListener(Listener* l)
{
    if (l == nullptr)
        return;
    const Entry entry = find(l);
    if (entry == listeners_.end())
        return;
    Voice voice;
    part(entry, voice);
}

/// Offers the driver to a listener whose entry, if it has one and `mayKnow` says so, is counted
/// up. A new one is sought near `hint`, which moves to it: offers in priority order cost a step.
XCode Record::meet(String& error, Listener* l, bool mayKnow, Entry& hint, Voice& voice)
{
    const bool matches = talksTo(l);
    if (gone_ || l->isGone()) {
        error = String::EMPTY();
        return XCode();
    }
    const Entry known = mayKnow ? find(l) : listeners_.end();
    if (known == listeners_.end()) {
        try {
            hint = link(placeNear(hint, l), l, matches);
        } catch (std::bad_alloc const&) {
            return XCode::OUT_OF_MEMORY(error);
        }
    } else {
        hint = known;
        known->incRef();
    }
    if (matches && hint->getRefCount() == 1) {
        Joining joining(*this, hint, voice);
        XCode rc = welcome(error, joining, REFUSED_OFFER);
        if (rc.code() != 0)
            return rc;
    }
    error = String::EMPTY();
    return XCode();
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

/// The listener's entry, sought around that of another, `hint`, in both directions at once: who
/// walks the repository's list finds the next one there in a step or two, also among equals, whose
/// order may differ.
Record::Entry Record::findNear(Entry hint, Listener const* l)
{
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

/// The first valid entry of no lower priority value, the end without one, sought from `hint`.
Record::Entry Record::placeNear(Entry hint, Listener const* l)
{
    Entry at = hint;
    while (at != listeners_.begin()) {
        Entry before = at;
        --before;
        if (before->isValid() && before->listener()->priority() < l->priority())
            break;
        at = before;
    }
    while (at != listeners_.end() && (!at->isValid() || at->listener()->priority() < l->priority()))
        ++at;
    return at;
}

Record::Entry Record::link(Entry place, Listener* l, bool active)
{
    const Entry entry = listeners_.insert(place, ListenerWrapper(l, active));
    entry->joinedIn_ = walkLevel_;
    lateEntries_ = lateEntries_ || walkLevel_ != 0;
    return entry;
}

void Record::activate(Entry entry)
{
    entry->activate();
    entry->joinedIn_ = walkLevel_;
    lateEntries_ = lateEntries_ || walkLevel_ != 0;
}

void Record::deactivate(Entry entry)
{
    entry->deactivate();
    withdraw(entry);
}

/// Ends a coming under way of an entry that is active no more.
void Record::withdraw(Entry entry)
{
    if (entry->isActive())
        return;
    for (Joining* joining = joinings_; joining != nullptr; joining = joining->outer)
        if (joining->entry == entry)
            joining->withdrawn = true;
}

bool Record::isBefore(Entry entry, Entry stop)
{
    for (Entry at = listeners_.begin(); at != stop; ++at)
        if (at == entry)
            return true;
    return false;
}
