#include "ModelDriverRecord.h"

namespace model
{
std::string DriverRecord::getAttachment(std::string const& key) const
{
    std::string const* value = attachments_.find(key);
    return value == nullptr ? "" : *value;
}

Code DriverRecord::setAttachment(std::string& error, std::string const& key,
                                 std::string const& value)
{
    const std::string cur = getAttachment(key);
    if (value != cur) {
        if (!cur.empty()) {
            attachments_.put(key, "");
            tellCleared(key, cur);
        }
        if (!value.empty()) {
            attachments_.put(key, value);
            const std::string prev; // the clear phase left nothing
            const Code rc = tellSet(error, key, prev, value);
            if (rc != 0)
                return rc;
        }
    }
    error.clear();
    return 0;
}

/// The listener's match ends: final snapshot, then the farewell.
void DriverRecord::leave(Entry& entry, std::string const& key, std::string const& value)
{
    Listener& l = *entry.listener;
    snapshotFinal(&l, key, value);
    entry.active = false;
    notifyOnDriverRemoved(l);
}

void DriverRecord::tellCleared(std::string const& key, std::string const& prev)
{
    for (auto at = listeners_.end(); at != listeners_.begin();) {
        --at;
        if (!at->isValid() || !at->active)
            continue;
        Listener& l = *at->listener;
        if (!talksTo(l, key, prev) || talksTo(l))
            notifyOnDriverAttachmentCleared(l, key, prev);
        else
            leave(*at, key, prev);
    }
}

Code DriverRecord::tellSet(std::string& error, std::string const& key, std::string const& prev,
                           std::string const& value)
{
    for (auto at = listeners_.begin(); at != listeners_.end(); ++at) {
        if (!at->isValid())
            continue;
        const Code rc = tellSetTo(error, *at, key, prev, value);
        if (rc != 0) {
            rollBackSet(at, key, value);
            return rc;
        }
    }
    return 0;
}

Code DriverRecord::tellSetTo(std::string& error, Entry& entry, std::string const& key,
                             std::string const& prev, std::string const& value)
{
    Listener& l = *entry.listener;
    if (entry.active)
        return notifyOnDriverAttachmentSet(error, l, key, value);
    if (talksTo(l, key, prev) || !talksTo(l))
        return 0;
    entry.active = true;
    Code rc = notifyOnDriverAdded(error, l);
    if (rc == 0)
        rc = snapshotInitial(error, &l);
    // A refusal here is not followed by onDriverRemoved, on purpose.
    if (rc != 0)
        entry.active = false;
    return rc;
}

/// The key ends empty, whatever it held before the call; those before the refuser are told.
void DriverRecord::rollBackSet(EntryList::iterator refuser, std::string const& key,
                               std::string const& value)
{
    attachments_.put(key, "");
    for (auto at = refuser; at != listeners_.begin();) {
        --at;
        if (!at->isValid() || !at->active)
            continue;
        Listener& l = *at->listener;
        if (talksTo(l, key, value) && !talksTo(l))
            leave(*at, "", "");
        else
            notifyOnDriverAttachmentCleared(l, key, value);
    }
}

} // namespace model
