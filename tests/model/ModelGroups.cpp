#include "ModelGroups.h"

#include <algorithm>

namespace model
{
namespace
{
std::string change(TimeslotEvent const& event)
{
    return "(" + hex8(event.before) + "->" + hex8(event.after) + ": " + hex8(event.changed) + ")";
}

/// An operation that calls out keeps the group alive.
class Held
{
public:
    explicit Held(Driver& driver) : driver_(driver) { driver_.addRef(); }
    ~Held() { driver_.release(); }
    Held(Held const&) = delete;
    Held& operator=(Held const&) = delete;

private:
    Driver& driver_;
};
} // namespace

void GroupObservers::purge()
{
    if (busy_ == 0)
        list_.remove_if([](GroupEntry const& entry) { return entry.count < 1; });
}

GroupObservers::Place GroupObservers::add(GroupObserver* observer, std::uint32_t priority,
                                          bool veto)
{
    purge();
    auto at = list_.begin();
    while (at != list_.end() && at->priority < priority)
        ++at;
    return list_.insert(at, GroupEntry{observer, priority, veto, 1, {}, ++entries_});
}

void GroupObservers::remove(GroupObserver* observer)
{
    for (GroupEntry& entry : list_) {
        if (entry.count < 1 || entry.observer != observer)
            continue;
        --entry.count;
        entry.observer = nullptr;
        break;
    }
    purge();
}

void GroupObservers::takeBack(int id, GroupObserver* observer)
{
    // The first entry of this observer from the front goes, which need not be the new one.
    for (GroupEntry const& entry : list_) {
        if (entry.id == id && entry.count >= 1) {
            remove(observer);
            return;
        }
    }
    purge();
}

Code GroupObservers::broadcastAdded(std::string& message, TimeslotEvent const& event,
                                    Refusal& refusal)
{
    Code rc = 0;
    const int me = ++broadcasts_;
    adding_.push_back(me);
    ++busy_;
    for (auto at = list_.begin(); rc == 0 && at != list_.end(); ++at) {
        GroupObserver* const observer = at->observer;
        const bool informed =
            std::find(at->informed.begin(), at->informed.end(), me) != at->informed.end();
        if (at->count < 1 || informed)
            continue;
        if (!at->veto) {
            observer->onTimeslotsAdded(event);
            continue;
        }
        rc = observer->onTimeslotsAdded(message, event);
        if (rc != 0)
            refusal = {observer, at};
    }
    --busy_;
    adding_.pop_back();
    return rc;
}

/// The place behind the last entry that hears of the undoing.
GroupObservers::Place GroupObservers::undoFrom(Refusal const& refusal)
{
    if (refusal.observer == nullptr)
        return list_.end();
    // An entry that died since is looked for no more.
    if (refusal.at->count < 1)
        return refusal.at;
    for (auto at = list_.end(); at != list_.begin();) {
        --at;
        if (at->count >= 1 && at->observer == refusal.observer)
            return at;
    }
    return list_.end();
}

void GroupObservers::broadcastRemoved(TimeslotEvent const& event, Refusal const& refusal)
{
    auto at = undoFrom(refusal);
    ++busy_;
    while (at != list_.begin()) {
        --at;
        if (at->count >= 1)
            at->observer->onTimeslotsRemoved(event);
    }
    --busy_;
}

ChannelGroup::ChannelGroup(Process& process, std::string label, std::string const& name)
    : Driver(process, std::move(label), wellKnown().didChannelGroup, name)
{
    interfaces.push_back(wellKnown().channelGroup);
    interfaces.push_back(wellKnown().info);
    describe = [this](std::vector<InfoRow>& rows, InfoLimits const& limits) {
        getInfo(rows, limits, "");
    };
}

void ChannelGroup::log(std::string const& line)
{
    process_.debug(0, shown(name()) + ": " + line);
}

Code ChannelGroup::setTimeslots(std::string& message, std::uint32_t requested)
{
    const Held held(*this);
    log("Set Timeslots '" + hex8(requested) + "'");
    const std::uint32_t old = timeslots_;
    const std::uint32_t added = (requested ^ old) & requested;
    const std::uint32_t removed = (requested ^ old) & old;
    Code rc = 0;
    if (added != 0)
        rc = add(message, added);
    // Carried out even if the addition was refused.
    if (removed != 0)
        remove(removed);
    return rc;
}

Code ChannelGroup::add(std::string& message, std::uint32_t added)
{
    const std::uint32_t old = timeslots_;
    timeslots_ = old | added;
    const TimeslotEvent event{this, old, old | added, added};
    log("  Notify observers: onTimeslotsAdded" + change(event));
    GroupObservers::Refusal refusal;
    const Code rc = observers_.broadcastAdded(message, event, refusal);
    // What a nested change has taken out already is not taken back once more.
    const std::uint32_t gone = added & timeslots_;
    if (rc != 0 && gone != 0) {
        const TimeslotEvent undo{this, timeslots_, timeslots_ & ~gone, gone};
        timeslots_ &= ~gone;
        log("  Notify observers: onTimeslotsRemoved" + change(undo));
        observers_.broadcastRemoved(undo, refusal);
    }
    return rc;
}

void ChannelGroup::remove(std::uint32_t removed)
{
    const std::uint32_t before = timeslots_;
    const std::uint32_t gone = removed & before;
    if (gone == 0)
        return;
    timeslots_ = before & ~gone;
    const TimeslotEvent event{this, before, timeslots_, gone};
    log("  Notify observers: onTimeslotsRemoved" + change(event));
    observers_.broadcastRemoved(event, {});
}

Code ChannelGroup::addObserver(std::string& message, GroupObserver* observer,
                               std::uint32_t priority, bool veto, bool notifyCurrent)
{
    if (observer == nullptr) {
        message = "NO CHANNEL-GROUP OBSERVER SPECIFIED";
        return -1;
    }
    const Held held(*this);
    const std::string pointer = process_.pointerText(observer);
    log("Add observer '" + pointer + "'");
    const GroupObservers::Place entry = observers_.add(observer, priority, veto);
    if (!notifyCurrent || timeslots_ == 0)
        return 0;
    const TimeslotEvent event{this, 0, timeslots_, timeslots_};
    log("  Notify observer '" + pointer + "': onTimeslotsAdded" + change(event));
    observers_.inform(entry);
    const int id = entry->id;
    if (!veto) {
        observer->onTimeslotsAdded(event);
        return 0;
    }
    const Code rc = observer->onTimeslotsAdded(message, event);
    if (rc != 0)
        observers_.takeBack(id, observer);
    return rc;
}

void ChannelGroup::removeObserver(GroupObserver* observer, bool notifyCurrent)
{
    if (observer == nullptr)
        return;
    const Held held(*this);
    const std::string pointer = process_.pointerText(observer);
    log("Remove observer '" + pointer + "'");
    observers_.remove(observer);
    if (!notifyCurrent || timeslots_ == 0)
        return;
    const TimeslotEvent event{this, timeslots_, 0, timeslots_};
    log("  Notify observer '" + pointer + "': onTimeslotsRemoved" + change(event));
    observer->onTimeslotsRemoved(event);
}

void ChannelGroup::getInfo(std::vector<InfoRow>& rows, InfoLimits const& limits,
                           std::string const& prefix) const
{
    addRow(rows, limits, 0, 0, prefix + "Configuration", "");
    addRow(rows, limits, 1, 1, "Timeslot(s)", timeslotsToText(timeslots_));
}

} // namespace model
