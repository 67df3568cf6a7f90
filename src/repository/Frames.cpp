#include "repository/Frames.h"

using Record = CDriverRepository::DriverWrapper;

namespace
{

/// A mark of `level` or deeper belongs to the frame that ends: what it marks is late no more.
template <class Mark> void settle(Mark& mark, std::uint16_t level)
{
    if (mark >= level)
        mark = static_cast<Mark>(level - 1);
}

} // namespace

/// Settles the marks of the snapshot that ends, which somebody left.
void Record::settleValues()
{
    for (auto& attachment : attachments_)
        settle(attachment.mark, snapshotLevel_);
}

void Record::Joining::beginSnapshot()
{
    level = ++record.snapshotLevel_;
    next = record.attachments_.begin();
}

bool Record::Joining::hasTold(Attachment at, bool passed) const
{
    if (!told || !entry->listener()->wantsSnapshot())
        return told;
    return level != 0 && (at->mark >= level || passed);
}

bool Record::Joining::hasPassed(Attachment at) const
{
    Attachment ahead = next;
    while (ahead != record.attachments_.end() && ahead != at)
        ++ahead;
    return ahead != at;
}

bool Record::Leaving::hadHeard(Attachment at) const
{
    // What ends the match is told here, whatever has become of it since.
    const bool isEnd =
        changed != nullptr && at->key == changed->key && !isRollback() && !changed->value.isEmpty();
    return (isEnd || at->mark < level) && (joining == nullptr || joining->hasTold(at, passed));
}

bool Record::Leaving::owes(Attachment at) const
{
    for (Attachment past = next; past != record.attachments_.end(); ++past)
        if (past == at)
            return false;
    return at->mark < level && (joining == nullptr || joining->hasTold(at, joining->hasPassed(at)));
}

Record::Walk::Walk(DriverWrapper& ofRecord, String const& ofKey, String const& ofValue, Entry start)
    : record(ofRecord), key(ofKey), value(ofValue), outer(ofRecord.walks_),
      level(++ofRecord.walkLevel_), cursor(start)
{
    record.walks_ = this;
}

Record::Walk::~Walk()
{
    if (record.lateEntries_)
        for (ListenerWrapper& entry : record.listeners_)
            settle(entry.joinedIn_, level);
    --record.walkLevel_;
    record.lateEntries_ = record.lateEntries_ && record.walkLevel_ != 0;
    record.walks_ = outer;
}
