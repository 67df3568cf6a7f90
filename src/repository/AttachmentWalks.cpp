#include "repository/Frames.h"

using Record = CDriverRepository::DriverWrapper;

// News of one attachment goes along the driver's listeners: a value gone, or a new one.

Record::Clearing::Clearing(DriverWrapper& ofRecord, String const& ofKey, String const& ofValue,
                           Setting const* heardIn, bool isRollback)
    : Walk(ofRecord, ofKey, ofValue, ofRecord.listeners_.end()), heardIn_(heardIn),
      isRollback_(isRollback), passed_(heardIn == nullptr || heardIn->cursor == cursor)
{}

void Record::Clearing::run()
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

/// Whether the entry heard the value, if only some did.
bool Record::Clearing::heard(Entry entry) const
{
    if (heardIn_ == nullptr)
        return true;
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

void Record::Clearing::tellOne()
{
    struct Cleared final : Occasion
    {
        Cleared(Clearing& w, Entry e) : Occasion(w.voice), walk(w), entry(e) {}
        bool begin() override
        {
            const bool due = walk.isDue(entry);
            walk.told = walk.told || due;
            return due;
        }
        Clearing& walk;
        const Entry entry;
    };
    const Entry entry = cursor;
    if (!isDue(entry))
        return;
    Cleared occasion(*this, entry);
    if (!entry->isActive()) {
        tellLeaving(*record.leavingOwing(entry, key), occasion);
        return;
    }
    Listener* const l = entry->listener();
    // Criteria that name neither the key nor an interface hold as they did.
    const bool leaves = (l->iid().isValid() || concernsKey(*l)) && record.talksTo(l, key, value) &&
                        !record.talksTo(l);
    if (!isDue(entry) || !entry->isActive())
        return;
    if (leaves) {
        told = true;
        record.dismiss(entry, isRollback_ ? String::EMPTY() : key,
                       isRollback_ ? String::EMPTY() : value, voice);
    } else if (record.hasReached(record.joiningOf(entry), record.attachments_.find(key))) {
        record.tell(l, key, value, occasion);
    }
}

/// The going has not come to this attachment, and will find it changed.
void Record::Clearing::tellLeaving(Leaving const& leaving, Occasion& occasion)
{
    if (record.isToldGone(leaving, record.attachments_.find(key), value))
        record.tell(leaving.entry->listener(), key, value, occasion);
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

XCode Record::Setting::run(String& error)
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
    struct Set final : Occasion
    {
        explicit Set(Setting& w) : Occasion(w.voice), walk(w), entry(w.cursor) {}
        bool isDue() const { return walk.isWanted(entry) && entry->isActive(); }
        bool begin() override { return walk.told = isDue(); }
        bool stands() const override { return isDue() && !entry->listener()->isGone(); }
        void refuse() override { walk.told = false; }
        Setting& walk;
        const Entry entry;
    };
    // Who is still coming, and will be told the attachments, hears of this one then.
    Joining const* const joining = record.joiningOf(cursor);
    if (joining != nullptr && !record.hasReached(joining, record.attachments_.find(key)))
        return XCode();
    Set occasion(*this);
    return record.ask(error, cursor->listener(), key, value, occasion);
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
    record.activate(entry);
    Joining joining(record, entry, voice);
    return record.welcome(error, joining, REFUSED_SNAPSHOT);
}

bool Record::Setting::holds(Entry entry) const
{
    if (entry->joinedIn_ >= level || (entry == cursor && told))
        return true;
    return record.isBefore(entry, cursor);
}

bool Record::Setting::isLive() const
{
    return !refused_ && !change_.isReplaced();
}
