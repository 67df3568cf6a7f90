#include <deque>
#include <functional>
#include <map>
#include <unordered_map>

#include <boost/signals2/dummy_mutex.hpp>
#include <boost/signals2/signal.hpp>

#include "Cases.h"
#include "PeerGroup.h"
#include "PeerRegistry.h"
#include "UntilRefused.h"

// c1: listeners connected to signals in groups, a combiner that stops at a refusal. Without the
// signals' mutex: nobody else locks either.

namespace
{

using peers::Event;
using peers::Listener;
using peers::UntilRefused;

template <class Told, class Order>
using Signal =
    boost::signals2::signal<bool(Told const&), UntilRefused, unsigned, Order,
                            boost::function<bool(Told const&)>,
                            boost::function<bool(boost::signals2::connection const&, Told const&)>,
                            boost::signals2::dummy_mutex>;

class Listeners
{
public:
    void add(Listener const& listener)
    {
        Entry& entry = entries_.try_emplace(listener.name, Entry{listener, {}, {}}).first->second;
        const auto call = [&entry](Event const& event) {
            entry.listener.tell(event);
            return true;
        };
        entry.forward = forward_.connect(listener.priority, call, boost::signals2::at_front);
        entry.backward = backward_.connect(listener.priority, call, boost::signals2::at_back);
    }
    Listener take(std::string const& name)
    {
        const auto place = entries_.find(name);
        place->second.forward.disconnect();
        place->second.backward.disconnect();
        Listener taken = std::move(place->second.listener);
        entries_.erase(place);
        return taken;
    }
    void tellForward(Event const& event) const { forward_(event); }
    void tellBackward(Event const& event) const { backward_(event); }

private:
    struct Entry
    {
        Listener listener;
        boost::signals2::connection forward;
        boost::signals2::connection backward;
    };

    std::map<std::string, Entry> entries_;
    Signal<Event, std::less<unsigned>> forward_;
    Signal<Event, std::greater<unsigned>> backward_;
};

class Group
{
public:
    void observe(unsigned priority, bool refuses, load::Told& told)
    {
        peers::GroupStub& stub = stubs_.emplace_back(refuses, told);
        added_.connect(
            priority, [&stub](peers::Change const& change) { return stub.added(change); },
            boost::signals2::at_front);
        removed_.connect(
            priority,
            [&stub](peers::Change const& change) {
                stub.removed(change);
                return true;
            },
            boost::signals2::at_back);
    }
    [[gnu::noinline]] bool announce()
    {
        ++serial_;
        if (added_({peers::BEFORE, peers::AFTER, peers::CHANGED, serial_}))
            return true;
        removed_({peers::AFTER, peers::BEFORE, peers::CHANGED, serial_});
        return false;
    }

private:
    std::deque<peers::GroupStub> stubs_;
    Signal<peers::Change, std::less<unsigned>> added_;
    Signal<peers::Change, std::greater<unsigned>> removed_;
    std::uint32_t serial_ = 0;
};

class C1 : public peers::Registry<std::unordered_map<std::string, peers::Record>, Listeners>
{
public:
    using Group = ::Group;
    static char const* name() { return "c1"; }
};

} // namespace

void addC1(Cases& cases)
{
    addSystem<C1>(cases);
}
