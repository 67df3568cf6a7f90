#include "foundation/Undo.h"
#include "repository/Frames.h"

using Record = CDriverRepository::DriverWrapper;

// A listener comes to the driver: it is told of the driver, then of the attachments.

XCode Record::snapshotInitial(String& error, Listener* l)
{
    if (!l->wantsSnapshot()) {
        error = String::EMPTY();
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

/// Tells a listener whose entry has just become active. Undoes a refusal of the driver by taking
/// the entry back, one of an attachment by also telling back what had been told; `refused` says
/// which kind of going that is.
XCode Record::welcome(String& error, Joining& joining, GoingKind refused)
{
    struct Added final : Occasion
    {
        explicit Added(Joining& j) : Occasion(j.voice), joining(j) {}
        bool begin() override { return joining.told = !joining.withdrawn; }
        bool stands() const override { return !joining.withdrawn; }
        void refuse() override { joining.told = false; }
        Joining& joining;
    };
    Added occasion(joining);
    bool snapshot = false;
    return orUndo(
        [&] {
            XCode rc = ask(error, joining.entry->listener(), occasion);
            if (rc.code() != 0 || joining.withdrawn)
                return rc;
            joining.told = true; // also without a delegate, which nobody asked
            snapshot = true;
            return tellAttachments(error, joining);
        },
        [&] {
            if (joining.withdrawn)
                return;
            if (refused == REFUSED_OFFER)
                joining.entry->decRef();
            deactivate(joining.entry);
            if (snapshot)
                tellBack(joining, refused);
        });
}

void Record::tellBack(Joining const& joining, GoingKind refused)
{
    Leaving leaving(*this, joining.entry, &joining, refused, String::EMPTY(), String::EMPTY(),
                    joining.voice);
    throughout([&] { tellRest(leaving); });
}

XCode Record::tellAttachments(String& error, Joining& joining)
{
    const Entry entry = joining.entry;
    if (entry->listener()->wantsSnapshot() && entry->isValid() && entry->isActive()) {
        joining.beginSnapshot();
        while (joining.next != attachments_.end() && !joining.withdrawn) {
            XCode rc = tellAttachment(error, joining);
            if (rc.code() != 0)
                return rc;
        }
    }
    error = String::EMPTY();
    return XCode();
}

/// Tells the next attachment, unless it is empty, implied by the listener's criteria, or was set
/// since the snapshot began and so told by that change. A refused one stays the next.
XCode Record::tellAttachment(String& error, Joining& joining)
{
    struct Told final : Occasion
    {
        Told(Joining& j, String const& v) : Occasion(j.voice), joining(j), at(j.next), value(v) {}
        bool stillThere() const
        {
            return !joining.withdrawn && at->mark < joining.level && at->value == value;
        }
        bool begin() override
        {
            if (stillThere())
                ++joining.next;
            return joining.next != at;
        }
        bool stands() const override { return stillThere(); }
        void refuse() override { joining.next = at; }
        Joining& joining;
        const Attachment at;
        const String value;
    };
    Listener* const l = joining.entry->listener();
    Told occasion(joining, joining.next->value);
    const Attachment at = occasion.at;
    XCode rc;
    if (!occasion.value.isEmpty() && at->mark < joining.level &&
        talksTo(l, at->key, String::EMPTY()))
        rc = ask(error, l, at->key, occasion.value, occasion);
    if (rc.code() == 0 && joining.next == at)
        ++joining.next;
    return rc;
}

Record::Joining* Record::joiningOf(Entry entry) const
{
    Joining* joining = joinings_;
    while (joining != nullptr && (joining->withdrawn || joining->entry != entry))
        joining = joining->outer;
    return joining;
}

/// Whether a listener that is coming has heard of an attachment; anybody else has.
bool Record::hasReached(Joining const* joining, Attachment at) const
{
    return joining == nullptr || joining->hasTold(at, joining->hasPassed(at));
}
