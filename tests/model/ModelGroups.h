#ifndef TESTS_MODEL_GROUPS_H
#define TESTS_MODEL_GROUPS_H

#include "ModelDrivers.h"

#include <list>
#include <memory>

namespace model
{
class ChannelGroup;

/// What an observer of a group is shown: the mask before, the mask after, the bits between.
struct TimeslotEvent
{
    ChannelGroup* source = nullptr;
    std::uint32_t before = 0;
    std::uint32_t after = 0;
    std::uint32_t changed = 0;
};

class GroupObserver
{
public:
    virtual ~GroupObserver() = default;
    /// Told to observers with the right of veto.
    virtual Code onTimeslotsAdded(std::string& message, TimeslotEvent const& event) = 0;
    /// Told to observers without it.
    virtual void onTimeslotsAdded(TimeslotEvent const& event) = 0;
    virtual void onTimeslotsRemoved(TimeslotEvent const& event) = 0;
};

/// One registration. Dead (count below 1) while a broadcast runs, gone afterwards.
struct GroupEntry
{
    GroupObserver* observer = nullptr; ///< null once the entry is dead
    std::uint32_t priority = 0;
    bool veto = false;
    std::int32_t count = 1;
    /// The broadcasts of additions whose news it was told when it was registered.
    std::vector<int> informed;
    int id = 0; ///< no other entry's
};

/// The observers of a group, lowest priority value first, newest first among equals.
class GroupObservers
{
public:
    using Place = std::list<GroupEntry>::iterator;

    /// Who refused, and at which entry; null: nobody did.
    struct Refusal
    {
        GroupObserver* observer = nullptr;
        Place at;
    };

    Place add(GroupObserver* observer, std::uint32_t priority, bool veto);
    void remove(GroupObserver* observer);
    /// Takes a refused registration back, if it still stands.
    void takeBack(int id, GroupObserver* observer);
    /// The entry is being told what the broadcasts of additions under way tell.
    void inform(Place entry) { entry->informed = adding_; }
    /// Front to back, up to the first refusal.
    Code broadcastAdded(std::string& message, TimeslotEvent const& event, Refusal& refusal);
    /// Back to front, everybody or, after a refusal, those who stand before the refuser.
    void broadcastRemoved(TimeslotEvent const& event, Refusal const& refusal);
    std::size_t size() const { return list_.size(); }

private:
    void purge();
    Place undoFrom(Refusal const& refusal);

    std::list<GroupEntry> list_;
    int busy_ = 0;
    std::vector<int> adding_; ///< the broadcasts of additions under way
    int broadcasts_ = 0;
    int entries_ = 0;
};

/// A driver that holds timeslots as a mask and tells its observers of changes.
class ChannelGroup : public Driver
{
public:
    ChannelGroup(Process& process, std::string label, std::string const& name);

    void setDriverRepository(Repository*) override {}
    std::uint32_t getTimeslots() const { return timeslots_; }
    Code setTimeslots(std::string& message, std::uint32_t requested);
    Code addObserver(std::string& message, GroupObserver* observer, std::uint32_t priority,
                     bool veto, bool notifyCurrent);
    void removeObserver(GroupObserver* observer, bool notifyCurrent);
    void getInfo(std::vector<InfoRow>& rows, InfoLimits const& limits,
                 std::string const& prefix) const;

private:
    void log(std::string const& line);
    Code add(std::string& message, std::uint32_t added);
    void remove(std::uint32_t removed);

    std::uint32_t timeslots_ = 0;
    GroupObservers observers_;
};

/// "1-15;17-31": ascending, runs of two and more as ranges.
std::string timeslotsToText(std::uint32_t timeslots);

/// The way back. On failure -1, `message` says why and `timeslots` is left alone.
Code timeslotsFromText(std::string& message, std::string const& text, std::uint32_t& timeslots);

} // namespace model

#endif
