#ifndef BENCH_PEERREGISTRY_H
#define BENCH_PEERREGISTRY_H

#include <memory>
#include <string>
#include <vector>

#include "PeerRecord.h"

namespace peers
{

/// A registry as an engineer would write it for one process: a map from names to drivers, and
/// listeners that are told of what they asked for, comings in order of priority, goings in the
/// opposite order. No locks, no veto, no callbacks that call in.
///
/// Map is a map from std::string to Record, Listeners keeps and tells the listeners. Operations
/// are not inlined: they would stand in a source file of their own.
template <class Map, class Listeners> class Registry
{
public:
    using Text = std::string;
    using Driver = std::shared_ptr<Port>;
    using Found = std::vector<Driver>;

    static Driver make(Text const& name, load::Type type)
    {
        return std::make_shared<Port>(name, typeOf(type));
    }

    [[gnu::noinline]] bool add(Driver const& driver)
    {
        const auto [place, isNew] = drivers_.try_emplace(driver->name(), Record{driver, {}});
        if (!isNew)
            return false;
        driver->setRegistry(this);
        listeners_.tellForward({Event::ADDED, place->second, NONE, NONE});
        return true;
    }
    [[gnu::noinline]] void remove(Driver const& driver)
    {
        const auto place = drivers_.find(driver->name());
        if (place == drivers_.end())
            return;
        const Record record = std::move(place->second);
        drivers_.erase(place);
        listeners_.tellBackward({Event::REMOVED, record, NONE, NONE});
        driver->setRegistry(nullptr);
    }
    [[gnu::noinline]] Driver find(Text const& name) const
    {
        const auto place = drivers_.find(name);
        return place != drivers_.end() ? place->second.port : nullptr;
    }
    bool lookUp(Text const& name) const { return find(name) != nullptr; }

    [[gnu::noinline]] bool set(Text const& name, Text const& key, Text const& value)
    {
        const auto place = drivers_.find(name);
        if (place == drivers_.end())
            return false;
        Record& record = place->second;
        std::string& stored = record.at(key);
        if (stored == value)
            return true;
        if (!stored.empty()) {
            const std::string old = std::move(stored);
            stored.clear();
            listeners_.tellBackward({Event::CLEARED, record, key, old});
        }
        if (!value.empty()) {
            stored = value;
            listeners_.tellForward({Event::SET, record, key, value});
        }
        return true;
    }
    [[gnu::noinline]] std::uint64_t query(Text const& prefix, Text const& key, Text const& value,
                                          Found& found) const
    {
        found.clear();
        for (auto const& [name, record] : drivers_) {
            if (name.compare(0, prefix.size(), prefix) != 0)
                continue;
            std::string const* const has = record.find(key);
            if (has != nullptr && has->compare(0, value.size(), value) == 0)
                found.push_back(record.port);
        }
        return found.size();
    }

    [[gnu::noinline]] void listen(load::Criteria const& wanted, load::Told& told)
    {
        const Callback call = [&told](Event const& event) {
            switch (event.kind) {
            case Event::ADDED:
                ++told.added;
                break;
            case Event::REMOVED:
                ++told.removed;
                break;
            case Event::SET:
                ++told.set;
                break;
            case Event::CLEARED:
                ++told.cleared;
                break;
            }
        };
        const Listener listener{wanted.name, wanted.priority, Criteria(wanted), call};
        tellOfAll(listener, Event::ADDED);
        listeners_.add(listener);
    }
    [[gnu::noinline]] void unlisten(std::string const& name)
    {
        tellOfAll(listeners_.take(name), Event::REMOVED);
    }

private:
    void tellOfAll(Listener const& listener, Event::Kind kind) const
    {
        for (auto const& place : drivers_)
            listener.tell({kind, place.second, NONE, NONE});
    }

    inline static const std::string NONE;
    Map drivers_;
    Listeners listeners_;
};

} // namespace peers

#endif
