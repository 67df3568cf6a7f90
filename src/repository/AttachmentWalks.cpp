#include "repository/WrapperListeners.h"
#include "repository/WrapperNotify.h"

using Record = CDriverRepository::DriverWrapper;

// News of one attachment goes along the driver's listeners: a value gone, or a new one.

Record::Clearing::Clearing(DriverWrapper& ofRecord, String const& ofKey, String const& ofValue,
                           Setting const* heardIn, bool isRollback)
    : Walk(ofRecord, ofKey, ofValue, ofRecord.listeners_.end()), heardIn_(heardIn),
      isRollback_(isRollback), passed_(heardIn == nullptr || heardIn->cursor == cursor)
{}

[[gnu::flatten]] void Record::Clearing::run()
{
    while (visiting_ || cursor != record.listeners_.begin()) {
        if (!visiting_) {
            --cursor;
            told = false;
            visiting_ = true;
            passed_ = passed_ || cursor == heardIn_->cursor;
        }
        tellOne();
        visiting_ = false;
    }
    record.markLate(record.attachments_.find(key));
    done_ = true;
}

/// Whether the entry heard the value in the walk in which only some did.
bool Record::Clearing::heardThere(Entry entry) const
{
    if (entry == cursor && passed_ && entry != heardIn_->cursor)
        return true; // before that place, and no search is needed to know it
    return heardIn_->holds(entry);
}

/// Whether it is the entry's turn to hear that the value is gone: its listener is told about the
/// driver, or is just leaving and still owed this attachment.
bool Record::Clearing::isDue(Entry entry) const
{
    if (!visiting_ || cursor != entry || told || !wasHere(entry) || record.gone_)
        return false;
    const bool active = entry->isValid() && entry->isActive();
    return (active || record.leavingOwing(entry, key) != nullptr) && heard(entry);
}

struct Record::Clearing::Cleared
{
    bool begin()
    {
        const bool due = walk.isDue(entry);
        walk.told = walk.told || due;
        return due;
    }
    Clearing& walk;
    Voice& voice;
    const Entry entry;
};

void Record::Clearing::tellOne()
{
    const Entry entry = cursor;
    if (!isDue(entry))
        return;
    Cleared occasion = {*this, voice, entry};
    if (!entry->isActive()) {
        tellLeaving(*record.leavingOwing(entry, key), occasion);
        return;
    }
    Listener* const l = entry->listener();
    if (l->wantsInterface() || concernsKey(*l)) { // any other criteria hold as they did
        const bool leaves = record.talksTo(l, key, value) && !record.talksTo(l);
        if (!isDue(entry) || !entry->isActive())
            return;
        if (leaves) {
            told = true;
            const Override before = {key, value};
            record.dismiss(entry, isRollback_ ? nullptr : &before, voice);
            return;
        }
    }
    Joining const* const joining = record.joiningOf(entry);
    if (joining == nullptr || record.hasReached(joining, record.attachments_.find(key)))
        record.tell(l, AttachmentCleared{key, value}, occasion);
}

/// The going has not come to this attachment, and will find it changed.
void Record::Clearing::tellLeaving(Leaving const& leaving, Cleared& occasion)
{
    if (record.isToldGone(leaving, record.attachments_.find(key), value))
        record.tell(leaving.entry->listener(), AttachmentCleared{key, value}, occasion);
}

bool Record::Clearing::holds(Entry entry) const
{
    if (done_ || !wasHere(entry) || !heard(entry))
        return false;
    return record.isBefore(entry, cursor) || (entry == cursor && visiting_ && !told);
}

Record::Setting::Setting(Change const& change)
    : Walk(change.record_, change.key_, change.value_, change.record_.listeners_.begin()),
      change_(change)
{}

[[gnu::flatten]] XCode Record::Setting::run(String& error)
{
    for (; cursor != record.listeners_.end(); ++cursor) {
        told = false;
        if (!isWanted(cursor))
            continue;
        XCode rc = cursor->isActive() ? tellActive(error) : join(error);
        if (rc.code() != 0)
            return rc;
    }
    return XCode();
}

bool Record::Setting::isWanted(Entry entry) const
{
    return concerns(entry) && !change_.isReplaced();
}

XCode Record::Setting::tellActive(String& error)
{
    struct Set
    {
        bool isDue() const { return walk.isWanted(entry) && entry->isActive(); }
        bool begin() { return walk.told = isDue(); }
        bool stands() const { return isDue() && !entry->listener()->isGone(); }
        void refuse() { walk.told = false; }
        Setting& walk;
        Voice& voice;
        const Entry entry;
    };
    // Who is still coming, and will be told the attachments, hears of this one then.
    Joining const* const joining = record.joiningOf(cursor);
    if (joining != nullptr && !record.hasReached(joining, record.attachments_.find(key)))
        return XCode();
    Set occasion = {*this, voice, cursor};
    return record.ask(error, cursor->listener(), AttachmentSet{key, value}, occasion);
}

/// The new value may start a match.
XCode Record::Setting::join(String& error)
{
    const Entry entry = cursor;
    Listener* const l = entry->listener();
    const auto mayJoin = [&] { return isWanted(entry) && !entry->isActive() && !l->isGone(); };
    const auto joins = [&] {
        return mayJoin() && concernsKey(*l) && !record.talksTo(l, key, String::EMPTY()) &&
               record.talksTo(l) && mayJoin();
    };
    if (!joins() || (record.finishLeaving(entry) && !joins()))
        return XCode();
    return record.join(error, entry, voice);
}

bool Record::Setting::holds(Entry entry) const
{
    if (entry->joinedIn_ >= level || (entry == cursor && told))
        return true;
    return record.isBefore(entry, cursor);
}

bool Record::Setting::isLive() const
{
    return !change_.isReplaced();
}
