#include <iterator>

#include "foundation/Undo.h"
#include "repository/WrapperLeaving.h"
#include "repository/WrapperMatching.h"

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
    const Override before = {ownKey, ownValue};
    Leaving leaving(*this, entry, joiningOf(entry), FINAL_SNAPSHOT, &before, voice);
    throughout([&] { tellRest(leaving); });
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

/// Ends the match of an active entry. The farewell sees that attachment at the value `before`, if
/// given.
void Record::dismiss(Entry entry, Override const* before, Voice& voice)
{
    Joining const* const joining = joiningOf(entry);
    deactivate(entry);
    farewell(entry, joining, before, voice);
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
    tellGoing(leaving);
}

void Record::tellAttachmentGone(Leaving& leaving)
{
    struct Gone
    {
        explicit Gone(Leaving& l)
            : leaving(l), voice(l.voice), before(l.next), at(std::prev(before)),
              value(l.record.goingValue(l, at))
        {}
        bool isNext() const { return leaving.next == before; }
        bool isOwed() const { return isNext() && leaving.record.goingValue(leaving, at) == value; }
        bool begin()
        {
            const bool owed = isOwed();
            if (owed)
                leaving.next = at;
            return owed;
        }
        Leaving& leaving;
        Voice& voice;
        const Attachment before;
        const Attachment at;
        const String value;
    };
    Joining const* const joining = leaving.joining;
    leaving.passed = leaving.passed || (joining != nullptr && leaving.next == joining->next);
    Gone occasion(leaving);
    if (isToldGone(leaving, occasion.at, occasion.value) && occasion.isOwed())
        tell(leaving.entry->listener(), AttachmentCleared{occasion.at->key, occasion.value},
             occasion);
    if (occasion.isNext())
        leaving.next = occasion.at;
}

/// The value of an attachment as the listener heard it; empty when it heard none.
String const& Record::goingValue(Leaving const& leaving, Attachment at) const
{
    if (!leaving.hadHeard(at))
        return String::EMPTY();
    Override const* const changed = leaving.changed;
    if (at->key == (changed != nullptr ? changed->key : String::EMPTY()) && !leaving.isRollback())
        return changed != nullptr ? changed->value : String::EMPTY();
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
    Override const* const changed =
        leaving.changed != nullptr && !leaving.changed->value.isEmpty() ? leaving.changed : nullptr;
    return hasDID(*l) && isNamed(l->prefix()) && carries(l->attributes(), &without, changed);
}
