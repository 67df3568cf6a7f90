#include <climits>
#include <deque>
#include <map>
#include <unordered_map>

#include <Poco/Mutex.h>
#include <Poco/PriorityDelegate.h>
#include <Poco/PriorityEvent.h>

#include "Cases.h"
#include "PeerGroup.h"
#include "PeerRegistry.h"

// e3: listeners are delegates of two events, one in order of priority and one in the opposite
// order. An event can't be stopped: a refusal is a mark in it that the others respect. Without the
// events' mutex: nobody else locks either.

namespace
{

using peers::Listener;

template <class Args> using Signal = Poco::PriorityEvent<Args, Poco::NullMutex>;

int backward(unsigned priority)
{
    return INT_MAX - static_cast<int>(priority);
}

/// The target of a listener's delegates.
class ListenerStub
{
public:
    explicit ListenerStub(Listener const& l) : listener(l) {}
    void onEvent(void const*, peers::Event const& event) { listener.tell(event); }

    Listener listener;
};

class Listeners
{
public:
    void add(Listener const& listener)
    {
        ListenerStub& stub = stubs_.try_emplace(listener.name, listener).first->second;
        forward_ += Poco::priorityDelegate(&stub, &ListenerStub::onEvent,
                                           static_cast<int>(listener.priority));
        backward_ +=
            Poco::priorityDelegate(&stub, &ListenerStub::onEvent, ::backward(listener.priority));
    }
    Listener take(std::string const& name)
    {
        const auto place = stubs_.find(name);
        ListenerStub& stub = place->second;
        forward_ -= Poco::priorityDelegate(&stub, &ListenerStub::onEvent,
                                           static_cast<int>(stub.listener.priority));
        backward_ -= Poco::priorityDelegate(&stub, &ListenerStub::onEvent,
                                            ::backward(stub.listener.priority));
        Listener taken = std::move(stub.listener);
        stubs_.erase(place);
        return taken;
    }
    void tellForward(peers::Event const& event) { forward_.notify(this, event); }
    void tellBackward(peers::Event const& event) { backward_.notify(this, event); }

private:
    std::map<std::string, ListenerStub> stubs_;
    Signal<peers::Event const> forward_;
    Signal<peers::Event const> backward_;
};

class Group
{
public:
    void observe(unsigned priority, bool refuses, load::Told& told)
    {
        Stub& stub = stubs_.emplace_back(refuses, told);
        added_ += Poco::priorityDelegate(&stub, &Stub::onAdded, static_cast<int>(priority));
        removed_ += Poco::priorityDelegate(&stub, &Stub::onRemoved, ::backward(priority));
    }
    [[gnu::noinline]] bool announce()
    {
        ++serial_;
        Announcement added = {{peers::BEFORE, peers::AFTER, peers::CHANGED, serial_}, false};
        added_.notify(this, added);
        if (!added.refused)
            return true;
        Announcement removed = {{peers::AFTER, peers::BEFORE, peers::CHANGED, serial_}, false};
        removed_.notify(this, removed);
        return false;
    }

private:
    struct Announcement
    {
        peers::Change change;
        bool refused;
    };
    class Stub
    {
    public:
        Stub(bool refuses, load::Told& told) : stub_(refuses, told) {}
        void onAdded(void const*, Announcement& announcement)
        {
            if (!announcement.refused)
                announcement.refused = !stub_.added(announcement.change);
        }
        void onRemoved(void const*, Announcement& announcement)
        {
            stub_.removed(announcement.change);
        }

    private:
        peers::GroupStub stub_;
    };

    std::deque<Stub> stubs_;
    Signal<Announcement> added_;
    Signal<Announcement> removed_;
    std::uint32_t serial_ = 0;
};

class E3 : public peers::Registry<std::unordered_map<std::string, peers::Record>, Listeners>
{
public:
    using Group = ::Group;
    static char const* name() { return "e3"; }
};

} // namespace

void addE3(Cases& cases)
{
    addSystem<E3>(cases);
}
