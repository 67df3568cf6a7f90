#ifndef DRVSH_SHELLGROUP_H
#define DRVSH_SHELLGROUP_H

#include "Notice.h"
#include "Refusals.h"

#include <drvrepo/CChannelGroup.h>
#include <drvrepo/IChannelGroupObserver.h>

#include <map>
#include <memory>
#include <string>

class Output;

/// An observer of a channel group: writes what it hears into the transcript, and refuses what it
/// is told to refuse ("added TIMESLOTS": any of these).
class GroupObserver : public IChannelGroupObserver
{
public:
    /// `self` says how it is registered, and with which group.
    GroupObserver(Output& output, Hearer const& self, Refusals const& refusals);
    GroupObserver(GroupObserver const&) = delete;
    GroupObserver& operator=(GroupObserver const&) = delete;
    ~GroupObserver() override;

    XCode onTimeslotsAdded(String& message, ObserverEvent<IChannelGroup>& event) override;
    void onTimeslotsAdded(ObserverEvent<IChannelGroup>& event) override;
    void onTimeslotsRemoved(ObserverEvent<IChannelGroup>& event) override;

private:
    Output& output_;
    Hearer self_;
    Refusals refusals_;
};

/// A channel group of the shell. It owns its observers, and knows how many references are held on
/// it.
class ShellGroup : public CChannelGroup
{
public:
    explicit ShellGroup(String const& name) : CChannelGroup(name) {}

    void addRef() override;
    void release() override;

    int references() const { return references_; }

    /// How an observer is registered.
    struct Wish
    {
        std::string name;
        unsigned priority = 0;
        bool veto = false;
        bool current = false; ///< Whether it is told the timeslots that are there.
        Refusals refusals;
    };
    /// Registers an observer. Fails as the group does, and if the name is taken.
    XCode observe(Output& output, String& error, Wish const& wish);
    /// Removes an observer; `current`: it is told that the timeslots are gone. Returns false if
    /// there is none of that name.
    bool unobserve(std::string const& name, bool current);
    /// The names of the observers, in the alphabet's order.
    std::vector<std::string> observers() const;

private:
    int references_ = 1;
    std::map<std::string, std::unique_ptr<GroupObserver>> observers_;
};

/// The group that a driver of the shell is; null if it is none. Every channel group in the shell's
/// repository is a ShellGroup.
ShellGroup* shellGroup(IDriver& driver);

/// Timeslots as a text.
std::string timeslotText(unsigned timeslots);

#endif
