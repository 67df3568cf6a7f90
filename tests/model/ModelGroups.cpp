#include "ModelGroups.h"

#include <iterator>

namespace model
{
namespace
{
std::string change(TimeslotEvent const& event)
{
    return "(" + hex8(event.before) + "->" + hex8(event.after) + ": " + hex8(event.changed) + ")";
}
} // namespace

void GroupObservers::purge()
{
    if (busy_ == 0)
        list_.remove_if([](GroupEntry const& entry) { return entry.count < 1; });
}

void GroupObservers::add(GroupObserver* observer, std::uint32_t priority, bool veto)
{
    purge();
    auto at = list_.begin();
    while (at != list_.end() && at->priority < priority)
        ++at;
    list_.insert(at, GroupEntry{observer, priority, veto, 1});
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

Code GroupObservers::broadcastAdded(std::string& message, TimeslotEvent const& event,
                                    GroupObserver** refuser)
{
    Code rc = 0;
    ++busy_;
    for (GroupEntry& entry : list_) {
        if (entry.count < 1)
            continue;
        GroupObserver* observer = entry.observer;
        if (!entry.veto) {
            observer->onTimeslotsAdded(event);
            continue;
        }
        rc = observer->onTimeslotsAdded(message, event);
        if (rc != 0) {
            *refuser = observer;
            break;
        }
    }
    --busy_;
    return rc;
}

void GroupObservers::broadcastRemoved(TimeslotEvent const& event, GroupObserver* refuser)
{
    auto start = list_.end();
    if (refuser != nullptr) {
        while (start != list_.begin()) {
            auto before = std::prev(start);
            if (before->count >= 1 && before->observer == refuser)
                break;
            start = before;
        }
        // The refuser stands before `start`; not found, everybody is told.
        start = start == list_.begin() ? list_.end() : std::prev(start);
    }
    ++busy_;
    while (start != list_.begin()) {
        --start;
        if (start->count >= 1)
            start->observer->onTimeslotsRemoved(event);
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
    GroupObserver* refuser = nullptr;
    const Code rc = observers_.broadcastAdded(message, event, &refuser);
    if (rc != 0) {
        timeslots_ &= ~added;
        const TimeslotEvent undo{this, old | added, old, added};
        log("  Notify observers: onTimeslotsRemoved" + change(undo));
        observers_.broadcastRemoved(undo, refuser);
    }
    return rc;
}

void ChannelGroup::remove(std::uint32_t removed)
{
    const std::uint32_t before = timeslots_;
    timeslots_ = before & ~removed;
    const TimeslotEvent event{this, before, timeslots_, removed};
    log("  Notify observers: onTimeslotsRemoved" + change(event));
    observers_.broadcastRemoved(event, nullptr);
}

Code ChannelGroup::addObserver(std::string& message, GroupObserver* observer,
                               std::uint32_t priority, bool veto, bool notifyCurrent)
{
    if (observer == nullptr) {
        message = "NO CHANNEL-GROUP OBSERVER SPECIFIED";
        return -1;
    }
    const std::string pointer = process_.pointerText(observer);
    log("Add observer '" + pointer + "'");
    observers_.add(observer, priority, veto);
    if (!notifyCurrent || timeslots_ == 0)
        return 0;
    const TimeslotEvent event{this, 0, timeslots_, timeslots_};
    log("  Notify observer '" + pointer + "': onTimeslotsAdded" + change(event));
    if (!veto) {
        observer->onTimeslotsAdded(event);
        return 0;
    }
    const Code rc = observer->onTimeslotsAdded(message, event);
    // The first entry of this observer from the front goes, which need not be the new one.
    if (rc != 0)
        observers_.remove(observer);
    return rc;
}

void ChannelGroup::removeObserver(GroupObserver* observer, bool notifyCurrent)
{
    if (observer == nullptr)
        return;
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
