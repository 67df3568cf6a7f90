#ifndef REPOSITORY_FRAMES_H
#define REPOSITORY_FRAMES_H

#include "repository/Voice.h"

// What is under way on one driver's record. Each frame lives on the stack of the operation that
// does the work and is chained to the record, so that calls from inside see how far it is, and can
// finish what must be finished first.

/// A listener is coming to the driver: told of the driver, then of its attachments.
struct CDriverRepository::DriverWrapper::Joining
{
    Joining(DriverWrapper& ofRecord, Entry ofEntry, Voice& ofVoice)
        : record(ofRecord), entry(ofEntry), voice(ofVoice), outer(ofRecord.joinings_),
          next(ofRecord.attachments_.begin())
    {
        record.joinings_ = this;
    }
    Joining(Joining const&) = delete;
    Joining& operator=(Joining const&) = delete;
    ~Joining()
    {
        if (level != 0)
            record.endSnapshotLevel();
        record.joinings_ = outer;
    }

    /// From now on the attachments are told; values set later are told by whoever sets them.
    void beginSnapshot();
    /// Whether the listener has heard of attachment `at`; `passed`: the snapshot is past its place.
    bool hasTold(Attachment at, bool passed) const;
    /// Whether the snapshot is past the place of attachment `at`; searches for it.
    bool hasPassed(Attachment at) const;

    DriverWrapper& record;
    const Entry entry;
    Voice& voice;
    Joining* const outer;
    bool told = false;       // the observer has heard of the driver
    bool withdrawn = false;  // somebody has ended this coming meanwhile
    std::uint16_t level = 0; // of the snapshot; 0 before it
    Attachment next;         // in the snapshot: the first attachment not yet told
};

/// What a going tells.
enum CDriverRepository::DriverWrapper::GoingKind : unsigned int {
    FAREWELL,        ///< attachments that the listener holds, then the driver
    FINAL_SNAPSHOT,  ///< these attachments only
    REFUSED_OFFER,   ///< back from the attachment that it refused, then the driver
    REFUSED_SNAPSHOT ///< back from that attachment only
};

/// A listener is going from the driver: told of its attachments, last to first, then of the
/// driver. Its entry is inactive already.
struct CDriverRepository::DriverWrapper::Leaving
{
    /// `ended`: the coming that this ends, null when that was over. `change`: the criteria see
    /// that attachment at that value, unless it is empty; null without one.
    Leaving(DriverWrapper& ofRecord, Entry ofEntry, Joining const* ended, GoingKind ofKind,
            Override const* change, Voice& ofVoice)
        : record(ofRecord), entry(ofEntry), joining(ended), kind(ofKind), changed(change),
          voice(ofVoice), outer(ofRecord.leavings_), level(++ofRecord.snapshotLevel_),
          next(entry->listener()->wantsSnapshot() ? record.attachments_.end()
                                                  : record.attachments_.begin()),
          tellsRemoved(kind == FAREWELL || kind == REFUSED_OFFER)
    {
        record.leavings_ = this;
    }
    Leaving(Leaving const&) = delete;
    Leaving& operator=(Leaving const&) = delete;
    ~Leaving()
    {
        record.endSnapshotLevel();
        record.leavings_ = outer;
    }

    bool isRollback() const { return kind == REFUSED_OFFER || kind == REFUSED_SNAPSHOT; }
    /// Whether the listener had heard of attachment `at`, just before `next`, when this began.
    bool hadHeard(Attachment at) const;
    /// Whether the going of attachment `at` is still to be told.
    bool owes(Attachment at) const;

    DriverWrapper& record;
    const Entry entry;
    Joining const* const joining;
    const GoingKind kind;
    Override const* const changed;
    Voice& voice;
    Leaving* const outer;
    const std::uint16_t level;
    Attachment next;     // the attachment before this one is told next
    bool passed = false; // the coming had come past that attachment
    bool tellsRemoved;   // the driver's going is still to be told
};

/// News of one attachment on its way along the listeners of the driver.
class CDriverRepository::DriverWrapper::Walk
{
public:
    Walk(Walk const&) = delete;
    Walk& operator=(Walk const&) = delete;

    /// Whether the listener believes that the attachment has the walk's value.
    virtual bool holds(Entry entry) const = 0;
    /// Whether the walk still says how the attachment stands.
    virtual bool isLive() const = 0;

    DriverWrapper& record;
    String const& key;
    String const& value;
    Voice voice;
    Walk* const outer;
    const std::uint16_t level; // entries that joined in this or a deeper walk came later than it
    Entry cursor;              // whose turn it is
    bool told = false;         // that one has been told

protected:
    Walk(DriverWrapper& record, String const& key, String const& value, Entry start);
    ~Walk();

    /// Whether the entry was here, as it is, when the walk began.
    bool wasHere(Entry entry) const { return entry->joinedIn_ < level; }
    /// Whether it was, and is to hear of the driver's attachments.
    bool concerns(Entry entry) const { return wasHere(entry) && entry->isValid() && !record.gone_; }
    /// Whether the listener's criteria name the attachment.
    bool concernsKey(Listener const& l) const
    {
        return l.attributes().find(key) != l.attributes().end();
    }
};

/// Tells, last to first, that a value is gone; resumes where it stands when run again.
class CDriverRepository::DriverWrapper::Clearing final : public Walk
{
public:
    /// `heardIn`: only who heard the value in that walk, which was refused or interrupted, holds
    /// it; null: all active listeners do. `isRollback`: farewells see the attachments as they
    /// stand, not as they were before.
    Clearing(DriverWrapper& record, String const& key, String const& value, Setting const* heardIn,
             bool isRollback);

    void run();
    bool holds(Entry entry) const override;
    bool isLive() const override { return !done_; }

private:
    bool heard(Entry entry) const { return heardIn_ == nullptr || heardThere(entry); }
    bool heardThere(Entry entry) const;
    bool isDue(Entry entry) const;
    struct Cleared;
    void tellOne();
    void tellLeaving(Leaving const& leaving, Cleared& occasion);

    Setting const* const heardIn_;
    const bool isRollback_;
    bool passed_;           // the cursor has been at that of `heardIn_`
    bool visiting_ = false; // the entry at the cursor is not finished
    bool done_ = false;
};

/// Tells, first to last, that an attachment has a new value, up to the first refusal.
class CDriverRepository::DriverWrapper::Setting final : public Walk
{
public:
    Setting(Change const& change);

    /// Stops at the refuser, with its answer and its text in `error`.
    XCode run(String& error);
    bool holds(Entry entry) const override;
    bool isLive() const override;

private:
    bool isWanted(Entry entry) const;
    XCode tellActive(String& error);
    XCode join(String& error);

    Change const& change_;
};

/// One attachment is being changed: first cleared, then set.
class CDriverRepository::DriverWrapper::Change
{
public:
    /// The texts must outlive the change.
    Change(DriverWrapper& record, String const& key, String const& value);
    Change(Change const&) = delete;
    Change& operator=(Change const&) = delete;

    /// Carries the change out; see DriverWrapper::setAttachment.
    XCode run(String& error);
    /// Whether the new value was on its way, so that a failure is a refusal.
    bool isComing() const { return coming_; }
    /// Whether another change of the key has taken this one's place.
    bool isReplaced() const { return replaced_; }

private:
    friend class Setting;

    bool isSetting() const { return setting_ != nullptr && clearing_ == nullptr; }
    XCode carryOut(String& error);
    bool isBringing(String const& value) const;
    Setting const* giveWay();
    void finishClearing();
    void clear(String const& old, Setting const* heardIn);
    XCode set(String& error);
    void rollBack(Setting& walk);
    void end();

    DriverWrapper& record_;
    String const& key_;
    String const& value_;
    Change* const outer_;
    Clearing* clearing_ = nullptr;
    Setting* setting_ = nullptr;
    bool coming_ = false;
    bool replaced_ = false;
    bool mixed_ = false; // changes of other keys ran inside this one
};

#endif
