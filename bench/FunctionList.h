#ifndef BENCH_FUNCTIONLIST_H
#define BENCH_FUNCTIONLIST_H

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "PeerGroup.h"
#include "PeerRecord.h"

namespace peers
{

/// Listeners as a vector of functions, sorted by priority.
class FunctionList
{
public:
    void add(Listener const& listener)
    {
        const auto place = std::lower_bound(
            listeners_.begin(), listeners_.end(), listener.priority,
            [](Listener const& at, unsigned priority) { return at.priority < priority; });
        listeners_.insert(place, listener);
    }
    /// Takes out the listener of that name, which there is.
    Listener take(std::string const& name)
    {
        const auto place =
            std::find_if(listeners_.begin(), listeners_.end(),
                         [&](Listener const& listener) { return listener.name == name; });
        Listener taken = std::move(*place);
        listeners_.erase(place);
        return taken;
    }
    void tellForward(Event const& event) const
    {
        for (Listener const& listener : listeners_)
            listener.tell(event);
    }
    void tellBackward(Event const& event) const
    {
        for (auto at = listeners_.rbegin(); at != listeners_.rend(); ++at)
            at->tell(event);
    }

private:
    std::vector<Listener> listeners_;
};

/// A group's observers as a vector of functions that may refuse, sorted by priority.
class FunctionGroup
{
public:
    void observe(unsigned priority, bool refuses, load::Told& told)
    {
        const auto place = std::lower_bound(
            observers_.begin(), observers_.end(), priority,
            [](Observer const& observer, unsigned p) { return observer.priority < p; });
        observers_.insert(place, {priority,
                                  [refuses, &told](Change const&) {
                                      ++told.added;
                                      return !refuses;
                                  },
                                  [&told](Change const&) { ++told.removed; }});
    }
    [[gnu::noinline]] bool announce() const
    {
        const Change added = {BEFORE, AFTER, CHANGED, 0};
        for (auto at = observers_.begin(); at != observers_.end(); ++at)
            if (!at->added(added)) {
                const Change removed = {AFTER, BEFORE, CHANGED, 0};
                while (at != observers_.begin())
                    (--at)->removed(removed);
                return false;
            }
        return true;
    }

private:
    struct Observer
    {
        unsigned priority;
        std::function<bool(Change const&)> added;
        std::function<void(Change const&)> removed;
    };

    std::vector<Observer> observers_;
};

} // namespace peers

#endif
