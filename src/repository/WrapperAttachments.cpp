#include "foundation/Undo.h"
#include "repository/Frames.h"

using Record = CDriverRepository::DriverWrapper;

// The attachments themselves; how a change is told stands in AttachmentWalks.

String const& Record::getAttachment(String const& key) const
{
    const Attributes::ConstIterator found = attachments_.find(key);
    return found != attachments_.end() ? found->value : String::EMPTY();
}

XCode Record::setAttachment(String& error, String const& key, String const& value)
{
    const String ownKey(key);
    const String ownValue(value);
    Change change(*this, ownKey, ownValue);
    return change.run(error);
}

void Record::store(String const& key, String const& value)
{
    const Attachment at = attachments_.put(key, value);
    if (!value.isEmpty())
        markLate(at);
}

/// Marks an attachment as changed since the snapshots under way began: they leave it to whoever
/// changed it.
void Record::markLate(Attachment at)
{
    at->mark = snapshotLevel_;
    lateValues_ = lateValues_ || snapshotLevel_ != 0;
}

/// The walk under way that says who holds which value of an attachment; null when all do alike.
Record::Walk* Record::walkOf(String const& key) const
{
    Walk* walk = walks_;
    while (walk != nullptr && !(walk->isLive() && walk->key == key))
        walk = walk->outer;
    return walk;
}

/// Lets the active entries be those whose listeners match, first to last.
void Record::rematch()
{
    Entry next = listeners_.begin();
    throughout([&] {
        while (next != listeners_.end() && !gone_) {
            const Entry entry = next;
            ++next;
            rematch(entry);
        }
    });
}

void Record::rematch(Entry entry)
{
    Listener* const l = entry->listener();
    bool matches = false;
    const auto isWrong = [&] {
        if (!entry->isValid() || l->isGone())
            return false;
        matches = talksTo(l);
        return entry->isValid() && !l->isGone() && !gone_ && matches != entry->isActive();
    };
    if (!isWrong() || (finishLeaving(entry) && !isWrong()))
        return;
    Voice voice;
    if (!matches) {
        dismiss(entry, nullptr, voice);
        return;
    }
    String refusal; // leaves just this listener out
    static_cast<void>(join(refusal, entry, voice));
}
