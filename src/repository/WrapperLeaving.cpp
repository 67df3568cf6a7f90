#include <iterator>

#include "foundation/Undo.h"
#include "repository/Frames.h"

using Record = CDriverRepository::DriverWrapper;

// A listener goes from the driver: it is told that the attachments go, then the driver.

void Record::snapshotFinal(Listener* l, String const& key, String const& value)
{
    const Entry entry = find(l);
    if (entry == listeners_.end() || !entry->isValid() || !entry->isActive())
        return;
    const String ownKey(key);
    const String ownValue(value);
    Voice voice;
    Leaving leaving(*this, entry, joiningOf(entry), FINAL_SNAPSHOT, ownKey, ownValue, voice);
    throughout([&] { tellRest(leaving); });
}

/// Takes one recording of a listener back; the last one says farewell.
void Record::part(Entry entry, Voice& voice)
{
    finishLeaving(entry);
    if (!entry->isValid())
        return;
    Joining const* const joining = joiningOf(entry);
    const bool toldOf = entry->isActive() && entry->getRefCount() == 1;
    entry->decRef();
    withdraw(entry);
    if (toldOf)
        farewell(entry, joining, String::EMPTY(), String::EMPTY(), voice);
}

/// Ends the match of an active entry. The farewell sees attachment `key` at `value`, unless that
/// is empty.
void Record::dismiss(Entry entry, String const& key, String const& value, Voice& voice)
{
    Joining const* const joining = joiningOf(entry);
    deactivate(entry);
    farewell(entry, joining, key, value, voice);
}

/// Tells the listener of an entry that has just become inactive. One that is still on its way in
/// and has not heard of the driver hears nothing.
void Record::farewell(Entry entry, Joining const* joining, String const& key, String const& value,
                      Voice& voice)
{
    if (joining != nullptr && !joining->told)
        return;
    Leaving leaving(*this, entry, joining, FAREWELL, key, value, voice);
    throughout([&] { tellRest(leaving); });
}

/// Tells what goings of the entry's listener that are under way still owe it. Returns whether there
/// was one.
bool Record::finishLeaving(Entry entry)
{
    bool found = false;
    for (Leaving* leaving = leavings_; leaving != nullptr; leaving = leaving->outer)
        if (leaving->entry == entry) {
            found = true;
            throughout([&] { tellRest(*leaving); });
        }
    return found;
}

/// The going under way that still owes the entry's listener attachment `key`; null without one.
Record::Leaving* Record::leavingOwing(Entry entry, String const& key)
{
    Leaving* leaving = leavings_;
    while (leaving != nullptr &&
           !(leaving->entry == entry && leaving->owes(attachments_.find(key))))
        leaving = leaving->outer;
    return leaving;
}

void Record::tellRest(Leaving& leaving)
{
    struct Removed final : Occasion
    {
        explicit Removed(Leaving& l) : Occasion(l.voice), leaving(l) {}
        bool begin() override
        {
            const bool owed = leaving.tellsRemoved;
            leaving.tellsRemoved = false;
            return owed;
        }
        Leaving& leaving;
    };
    while (leaving.next != attachments_.begin())
        tellAttachmentGone(leaving);
    if (!leaving.tellsRemoved)
        return;
    Removed occasion(leaving);
    tell(leaving.entry->listener(), occasion);
    leaving.tellsRemoved = false;
}

void Record::tellAttachmentGone(Leaving& leaving)
{
    struct Gone final : Occasion
    {
        explicit Gone(Leaving& l)
            : Occasion(l.voice), leaving(l), before(l.next), at(std::prev(before)),
              value(l.record.goingValue(l, at))
        {}
        bool isNext() const { return leaving.next == before; }
        bool isOwed() const { return isNext() && leaving.record.goingValue(leaving, at) == value; }
        bool begin() override
        {
            const bool owed = isOwed();
            if (owed)
                leaving.next = at;
            return owed;
        }
        Leaving& leaving;
        const Attachment before;
        const Attachment at;
        const String value;
    };
    Joining const* const joining = leaving.joining;
    leaving.passed = leaving.passed || (joining != nullptr && leaving.next == joining->next);
    Gone occasion(leaving);
    if (isToldGone(leaving, occasion.at, occasion.value) && occasion.isOwed())
        tell(leaving.entry->listener(), occasion.at->key, occasion.value, occasion);
    if (occasion.isNext())
        leaving.next = occasion.at;
}

/// The value of an attachment as the listener heard it; empty when it heard none.
String const& Record::goingValue(Leaving const& leaving, Attachment at) const
{
    if (!leaving.hadHeard(at))
        return String::EMPTY();
    if (at->key == leaving.key && !leaving.isRollback())
        return leaving.value;
    Walk const* const walk = walkOf(at->key);
    if (walk != nullptr && walk->holds(leaving.entry))
        return walk->value;
    return walk == nullptr || leaving.isRollback() ? at->value : String::EMPTY();
}

/// Whether the going of an attachment is told: not when the criteria depend on it. On purpose the
/// way back from a refused snapshot also tells the empty ones, which the way there passed over.
bool Record::isToldGone(Leaving const& leaving, Attachment at, String const& value) const
{
    if (value.isEmpty())
        return leaving.isRollback() && leaving.hadHeard(at) && leaving.passed;
    Listener const* const l = leaving.entry->listener();
    const Override without = {at->key, String::EMPTY()};
    const Override before = {leaving.key, leaving.value};
    Override const* const changed = leaving.value.isEmpty() ? nullptr : &before;
    return hasDID(l->did()) && isNamed(l->prefix()) && carries(l->attributes(), &without, changed);
}
