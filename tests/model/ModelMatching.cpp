#include "ModelDriverRecord.h"

namespace model
{
namespace
{
bool startsWith(std::string const& text, std::string const& beginning)
{
    return text.compare(0, beginning.size(), beginning) == 0;
}
} // namespace

bool DriverRecord::hasType(Listener const& l) const
{
    return l.classId == wellKnown().invalid || driver_->did() == l.classId;
}

bool DriverRecord::offers(Listener const& l) const
{
    return l.interfaceId == wellKnown().invalid ||
           driver_->queryInterface(l.interfaceId, nullptr) == 0;
}

bool DriverRecord::isNamed(Listener const& l) const
{
    return startsWith(driver_->name(), l.prefix);
}

/// The attribute criteria, with some attachments taken at another value than the stored one.
bool DriverRecord::carries(Listener const& l, std::vector<Change> const& instead) const
{
    for (Table::Entry const& wanted : l.attributes.entries()) {
        std::string has = getAttachment(wanted.first);
        for (Change const& change : instead)
            if (change.key == wanted.first)
                has = change.value;
        if (!startsWith(has, wanted.second))
            return false;
    }
    return true;
}

bool DriverRecord::talksTo(Listener const& l) const
{
    return hasType(l) && offers(l) && isNamed(l) && carries(l, {});
}

bool DriverRecord::talksTo(Listener const& l, std::string const& key,
                           std::string const& value) const
{
    // An attachment cannot change which interfaces a driver offers.
    return hasType(l) && isNamed(l) && carries(l, {{key, value}});
}

Entry* DriverRecord::entryOf(Listener const* l)
{
    for (Entry& entry : listeners_)
        if (entry.listener.get() == l)
            return &entry;
    return nullptr;
}

Entry const* DriverRecord::entryOf(Listener const* l) const
{
    return const_cast<DriverRecord*>(this)->entryOf(l);
}

std::int32_t DriverRecord::addListenerOnce(std::shared_ptr<Listener> const& l, bool active)
{
    if (Entry* entry = entryOf(l.get()))
        return entry->incRef();
    insertByPriority(listeners_, Entry{l, active, 1});
    return 1;
}

std::int32_t DriverRecord::removeListenerOnce(Listener const* l)
{
    Entry* entry = entryOf(l);
    if (entry == nullptr)
        return -1;
    return entry->refCount > 0 ? entry->decRef() : 0;
}

std::int32_t DriverRecord::getListenerCount(Listener const* l) const
{
    Entry const* entry = entryOf(l);
    return entry == nullptr ? 0 : entry->refCount;
}

bool DriverRecord::isActive(Listener const* l) const
{
    Entry const* entry = entryOf(l);
    return entry != nullptr && entry->active;
}

void DriverRecord::forget(Listener const* l)
{
    listeners_.remove_if([l](Entry const& entry) { return entry.listener.get() == l; });
}

Code DriverRecord::addListener(std::string& error, std::shared_ptr<Listener> const& l)
{
    if (!l) {
        error = "No listener specified";
        return -1;
    }
    if (!talksTo(*l)) {
        addListenerOnce(l, false);
        error.clear();
        return 0;
    }
    if (addListenerOnce(l, true) != 1) {
        error.clear();
        return 0;
    }
    Code rc = notifyOnDriverAdded(error, *l);
    if (rc != 0) {
        removeListenerOnce(l.get());
        return rc;
    }
    rc = snapshotInitial(error, l.get());
    if (rc != 0) {
        notifyOnDriverRemoved(*l);
        removeListenerOnce(l.get());
        return rc;
    }
    error.clear();
    return 0;
}

void DriverRecord::removeListener(Listener* l)
{
    if (l == nullptr)
        return;
    if (isActive(l) && getListenerCount(l) == 1) {
        snapshotFinal(l, "", "");
        removeListenerOnce(l);
        notifyOnDriverRemoved(*l);
    } else {
        removeListenerOnce(l);
    }
}

Code DriverRecord::snapshotInitial(std::string& error, Listener* l)
{
    if (l->snapshot) {
        Entry const* entry = entryOf(l);
        if (entry == nullptr)
            return -1;
        const std::vector<Table::Entry> all = attachments_.entries();
        const bool told = entry->isValid() && entry->active;
        for (std::size_t i = 0; told && i < all.size(); ++i) {
            if (all[i].second.empty() || !talksTo(*l, all[i].first, ""))
                continue;
            const Code rc = notifyOnDriverAttachmentSet(error, *l, all[i].first, all[i].second);
            if (rc != 0) {
                undoSnapshot(*l, i);
                return rc;
            }
        }
    }
    error.clear();
    return 0;
}

/// Back from before the refused attachment. Empty ones, never told as set, are told as cleared
/// all the same, on purpose.
void DriverRecord::undoSnapshot(Listener& l, std::size_t refusedAt)
{
    const std::vector<Table::Entry> all = attachments_.entries();
    for (std::size_t i = refusedAt; i-- > 0;)
        if (all[i].second.empty() || talksTo(l, all[i].first, ""))
            notifyOnDriverAttachmentCleared(l, all[i].first, all[i].second);
}

void DriverRecord::snapshotFinal(Listener* l, std::string const& key, std::string const& value)
{
    Entry const* entry = entryOf(l);
    if (!l->snapshot || entry == nullptr || !entry->isValid() || !entry->active)
        return;
    const bool changing = !key.empty() || !value.empty();
    const std::vector<Table::Entry> all = attachments_.entries();
    for (std::size_t i = all.size(); i-- > 0;) {
        std::string const& entryKey = all[i].first;
        const std::string effective = entryKey == key ? value : all[i].second;
        // The criteria see the changing attachment as it was: the listener matched with it.
        // The later of two changes to one key counts.
        std::vector<Change> instead;
        if (changing)
            instead.push_back({key, value});
        instead.push_back({entryKey, ""});
        if (!effective.empty() && hasType(*l) && isNamed(*l) && carries(*l, instead))
            notifyOnDriverAttachmentCleared(*l, entryKey, effective);
    }
}

} // namespace model
