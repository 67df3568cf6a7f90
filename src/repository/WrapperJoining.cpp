#include "repository/WrapperJoining.h"

using Record = CDriverRepository::DriverWrapper;

// A listener comes to the driver: it is told of the driver, then of the attachments.

/// Undoes a refused coming, unless it was ended meanwhile.
void Record::takeBack(Joining const& joining, GoingKind refused)
{
    if (joining.withdrawn)
        return;
    if (refused == REFUSED_OFFER)
        joining.entry->decRef();
    deactivate(joining.entry);
    if (joining.told)
        tellBack(joining, refused);
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

XCode Record::snapshotInitial(String& error, Listener* l)
{
    if (!l->wantsSnapshot()) {
        succeed(error);
        return XCode();
    }
    const Entry entry = find(l);
    if (entry == listeners_.end())
        return XCode(-1);
    Voice voice;
    Joining joining(*this, entry, voice);
    joining.told = true;
    return orUndo([&] { return tellAttachments(error, joining); },
                  [&] { tellBack(joining, REFUSED_SNAPSHOT); });
}

/// Begins the match of an inactive entry.
XCode Record::join(String& error, Entry entry, Voice& voice)
{
    activate(entry);
    Joining joining(*this, entry, voice);
    return welcome(error, joining, REFUSED_SNAPSHOT);
}

void Record::tellBack(Joining const& joining, GoingKind refused)
{
    Leaving leaving(*this, joining.entry, &joining, refused, nullptr, joining.voice);
    throughout([&] { tellRest(leaving); });
}

/// The snapshot of a listener that wants one.
XCode Record::tellAttachments(String& error, Joining& joining)
{
    const Entry entry = joining.entry;
    if (entry->isValid() && entry->isActive()) {
        joining.beginSnapshot();
        while (joining.next != attachments_.end() && !joining.withdrawn) {
            XCode rc = tellAttachment(error, joining);
            if (rc.code() != 0)
                return rc;
        }
    }
    succeed(error);
    return XCode();
}

/// Tells the next attachment, unless it is empty, implied by the listener's criteria, or was set
/// since the snapshot began and so told by that change. A refused one stays the next.
XCode Record::tellAttachment(String& error, Joining& joining)
{
    struct Told
    {
        bool stillThere() const
        {
            return !joining.withdrawn && at->mark < joining.level && at->value == value;
        }
        bool begin()
        {
            if (stillThere())
                ++joining.next;
            return joining.next != at;
        }
        bool stands() const { return stillThere(); }
        void refuse() { joining.next = at; }
        Joining& joining;
        Voice& voice;
        const Attachment at;
        const String value;
    };
    Listener* const l = joining.entry->listener();
    Told occasion = {joining, joining.voice, joining.next, joining.next->value};
    const Attachment at = occasion.at;
    XCode rc;
    if (!occasion.value.isEmpty() && at->mark < joining.level &&
        talksTo(l, at->key, String::EMPTY()))
        rc = ask(error, l, AttachmentSet{at->key, occasion.value}, occasion);
    if (rc.code() == 0 && joining.next == at)
        ++joining.next;
    return rc;
}

/// Whether a listener that is coming has heard of an attachment; anybody else has.
bool Record::hasReached(Joining const* joining, Attachment at) const
{
    return joining == nullptr || joining->hasTold(at, joining->hasPassed(at));
}
