#ifndef BENCH_LIBRARY_H
#define BENCH_LIBRARY_H

#include <deque>
#include <map>
#include <string>

#include <drvrepo/CChannelGroup.h>
#include <drvrepo/CDriver.h>
#include <drvrepo/CDriverRepository.h>
#include <drvrepo/IDriverRepositoryObserver.h>

#include "Load.h"

/// The library as its users call it: through a plain reference to IDriverRepository, with texts
/// they hold. Not inline: a user's compiler doesn't see which class is behind the reference.
class Library
{
public:
    using Text = String;
    using Driver = TYPtr<IDriver>;
    using Found = TOVA_List<TYPPtr<IDriver>>;
    class Group;

    Library();
    /// Works on a repository of which it takes over a reference.
    explicit Library(IDriverRepository& repository) : repository_(repository) {}
    ~Library();
    Library(Library const&) = delete;
    Library& operator=(Library const&) = delete;

    static char const* name() { return "drvrepo"; }
    static Driver make(Text const& name, load::Type type);

    bool add(Driver const& driver)
    {
        String error;
        return repository_.addDriver(error, driver.get()).code() == 0;
    }
    void remove(Driver const& driver) { repository_.removeDriver(driver.get()); }
    bool lookUp(Text const& name)
    {
        IDriver* driver = nullptr;
        const bool found = repository_.getDriver(name, &driver).code() == 0;
        const Driver held(driver);
        return found;
    }
    bool set(Text const& name, Text const& key, Text const& value)
    {
        String error;
        return repository_.setDriverAttachment(error, name, key, value).code() == 0;
    }
    std::uint64_t query(Text const& prefix, Text const& key, Text const& value, Found& found)
    {
        IDriverRepository::Attributes attributes;
        attributes.put(key, value);
        return repository_.getDrivers(TOVA_UUID::INVALID(), prefix, attributes, found).count();
    }
    void listen(load::Criteria const& criteria, load::Told& told);
    void unlisten(std::string const& name);

private:
    class Counter;

    IDriverRepository& repository_;
    std::map<std::string, Counter> counters_;
};

/// The same through the process's repository, each look-up under its lock.
class LockedLibrary : public Library
{
public:
    LockedLibrary();

    static char const* name() { return "drvrepo-locked"; }
    static bool lookUp(Text const& name);
};

/// Counts what a listener is told.
class Library::Counter final : public IDriverRepositoryObserver
{
public:
    explicit Counter(load::Told& told) : told_(told) {}

    XCode onDriverAdded(String& error, ObserverEvent<IDriverRepository>& event) override;
    void onDriverRemoved(ObserverEvent<IDriverRepository>& event) override;
    XCode onDriverAttachmentSet(String& error, ObserverEvent<IDriverRepository>& event) override;
    void onDriverAttachmentCleared(ObserverEvent<IDriverRepository>& event) override;

private:
    load::Told& told_;
};

/// A channel group's observers.
class Library::Group
{
public:
    Group();
    void observe(unsigned priority, bool refuses, load::Told& told);
    /// Tells the observers of new timeslots, and after a refusal those before that they are gone
    /// again. Returns whether all accepted.
    bool announce();

private:
    class Counter;

    const TYPtr<IChannelGroup> group_;
    ObserverContainer<IChannelGroup> observers_;
    std::deque<Counter> counters_;
};

class Library::Group::Counter final : public IChannelGroupObserver
{
public:
    Counter(bool refuses, load::Told& told) : refuses_(refuses), told_(told) {}

    XCode onTimeslotsAdded(String& message, ObserverEvent<IChannelGroup>& event) override;
    void onTimeslotsAdded(ObserverEvent<IChannelGroup>& event) override;
    void onTimeslotsRemoved(ObserverEvent<IChannelGroup>& event) override;

private:
    const bool refuses_;
    load::Told& told_;
};

#endif
