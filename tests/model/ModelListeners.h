#ifndef TESTS_MODEL_LISTENERS_H
#define TESTS_MODEL_LISTENERS_H

#include "ModelDrivers.h"

#include <list>
#include <memory>

namespace model
{
/// What an observer of the repository is shown.
struct Event
{
    Repository* source = nullptr;
    Driver* driver = nullptr;
    std::string key;
    std::string value;
};

class Observer
{
public:
    virtual ~Observer() = default;
    virtual Code onDriverAdded(std::string& error, Event const& event) = 0;
    virtual void onDriverRemoved(Event const& event) = 0;
    virtual Code onDriverAttachmentSet(std::string& error, Event const& event) = 0;
    virtual void onDriverAttachmentCleared(Event const& event) = 0;
};

/// Stands between a listener and its observer. Without an observer, or stopped, it swallows all.
struct Delegate
{
    std::int32_t refs = 1;
    Observer* observer = nullptr;

    void addRef() { ++refs; }
    void release() { --refs; }
    void stopNotifications() { observer = nullptr; }
};

struct Counters
{
    std::uint32_t added = 0;
    std::uint32_t removed = 0;
    std::uint32_t set = 0;
    std::uint32_t cleared = 0;
};

/// Everything a registration says, and its counters.
struct Listener
{
    std::string name;
    Identifier classId;
    Identifier interfaceId;
    std::string prefix;
    Table attributes;
    std::uint32_t priority = 0;
    bool rightOfVeto = false;
    bool snapshot = false;
    std::shared_ptr<Delegate> delegate; ///< null: nothing is ever told
    Counters counters;
};

/// Makes a listener, which takes a reference on its delegate.
std::shared_ptr<Listener> makeListener(Listener const& fields);

/// Ends a listener: it drops its reference on the delegate.
void endListener(Listener& listener);

/// A listener in a list. `active`: it was told that the driver came and not yet that it went.
struct Entry
{
    std::shared_ptr<Listener> listener;
    bool active = false;
    std::int32_t refCount = 1;

    bool isValid() const { return refCount > 0; }
    std::int32_t incRef() { return ++refCount; }
    std::int32_t decRef();
};

using EntryList = std::list<Entry>;

/// Inserts before the first valid entry of equal or greater priority, else at the end.
void insertByPriority(EntryList& list, Entry const& entry);

} // namespace model

#endif
