#include <algorithm>
#include <deque>
#include <map>
#include <unordered_map>
#include <vector>

#include <sigc++/sigc++.h>

#include "Cases.h"
#include "PeerGroup.h"
#include "PeerRegistry.h"
#include "UntilRefused.h"

// e2: listeners connected to signals. These know no priorities, so each slot is put where its
// priority wants it.

namespace
{

using peers::Event;
using peers::Listener;
using peers::UntilRefused;

/// A signal whose slots stand in order of priority, the newest first among equals.
template <class Told> class Sorted
{
public:
    using Slot = sigc::slot<bool, Told const&>;

    sigc::connection connect(unsigned priority, Slot const& slot)
    {
        auto place = signal_.slots().begin();
        auto at = priorities_.begin();
        for (; at != priorities_.end() && *at < priority; ++at)
            ++place;
        priorities_.insert(at, priority);
        return sigc::connection(signal_.slots().insert(place, slot));
    }
    void disconnect(unsigned priority, sigc::connection connection)
    {
        connection.disconnect();
        priorities_.erase(std::find(priorities_.begin(), priorities_.end(), priority));
    }
    bool forward(Told const& told) const { return signal_.emit(told); }
    bool backward(Told const& told) const { return signal_.emit_reverse(told); }

private:
    typename sigc::signal<bool, Told const&>::template accumulated<UntilRefused> signal_;
    std::vector<unsigned> priorities_;
};

class Listeners
{
public:
    void add(Listener const& listener)
    {
        Entry& entry = entries_.try_emplace(listener.name, Entry{listener, {}}).first->second;
        entry.connection = signal_.connect(listener.priority, [&entry](Event const& event) {
            entry.listener.tell(event);
            return true;
        });
    }
    Listener take(std::string const& name)
    {
        const auto place = entries_.find(name);
        Listener taken = std::move(place->second.listener);
        signal_.disconnect(taken.priority, place->second.connection);
        entries_.erase(place);
        return taken;
    }
    void tellForward(Event const& event) const { signal_.forward(event); }
    void tellBackward(Event const& event) const { signal_.backward(event); }

private:
    struct Entry
    {
        Listener listener;
        sigc::connection connection;
    };

    std::map<std::string, Entry> entries_;
    Sorted<Event> signal_;
};

class Group
{
public:
    void observe(unsigned priority, bool refuses, load::Told& told)
    {
        peers::GroupStub& stub = stubs_.emplace_back(refuses, told);
        added_.connect(priority, sigc::mem_fun(stub, &peers::GroupStub::added));
        removed_.connect(priority, [&stub](peers::Change const& change) {
            stub.removed(change);
            return true;
        });
    }
    [[gnu::noinline]] bool announce()
    {
        ++serial_;
        if (added_.forward({peers::BEFORE, peers::AFTER, peers::CHANGED, serial_}))
            return true;
        removed_.backward({peers::AFTER, peers::BEFORE, peers::CHANGED, serial_});
        return false;
    }

private:
    std::deque<peers::GroupStub> stubs_;
    Sorted<peers::Change> added_;
    Sorted<peers::Change> removed_;
    std::uint32_t serial_ = 0;
};

class E2 : public peers::Registry<std::unordered_map<std::string, peers::Record>, Listeners>
{
public:
    using Group = ::Group;
    static char const* name() { return "e2"; }
};

} // namespace

void addE2(Cases& cases)
{
    addSystem<E2>(cases);
}
