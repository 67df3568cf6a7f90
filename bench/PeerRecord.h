#ifndef BENCH_PEERRECORD_H
#define BENCH_PEERRECORD_H

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "PeerPort.h"

namespace peers
{

/// A registered driver.
struct Record
{
    std::shared_ptr<Port> port;
    std::vector<std::pair<std::string, std::string>> attachments;

    /// Null when there is none.
    std::string const* find(std::string const& key) const
    {
        for (auto const& attachment : attachments)
            if (attachment.first == key)
                return &attachment.second;
        return nullptr;
    }
    std::string& at(std::string const& key)
    {
        for (auto& attachment : attachments)
            if (attachment.first == key)
                return attachment.second;
        return attachments.emplace_back(key, std::string()).second;
    }
};

/// What listeners are told.
struct Event
{
    enum Kind { ADDED, REMOVED, SET, CLEARED };

    Kind kind;
    Record const& record;
    std::string const& key;
    std::string const& value;
};

using Callback = std::function<void(Event const&)>;

/// Which drivers a listener wants.
struct Criteria
{
    Type type;
    std::string prefix;
    std::vector<std::pair<std::string, std::string>> attributes;

    explicit Criteria(load::Criteria const& wanted)
        : type(typeOf(wanted.type)), prefix(wanted.prefix)
    {
        if (!wanted.key.empty())
            attributes.emplace_back(wanted.key, wanted.value);
    }

    /// Whether they select the driver while the event's attachment has the event's value.
    bool select(Event const& event) const
    {
        Port const& port = *event.record.port;
        if (!type.isAny() && !(port.type() == type))
            return false;
        if (port.name().compare(0, prefix.size(), prefix) != 0)
            return false;
        for (auto const& [key, begin] : attributes) {
            std::string const* const value =
                key == event.key ? &event.value : event.record.find(key);
            if (value == nullptr || value->compare(0, begin.size(), begin) != 0)
                return false;
        }
        return true;
    }
    /// Whether the attachment decides.
    bool asksFor(std::string const& key) const
    {
        for (auto const& attribute : attributes)
            if (attribute.first == key)
                return true;
        return false;
    }
};

/// A registered listener.
struct Listener
{
    std::string name;
    unsigned priority;
    Criteria criteria;
    Callback call;

    /// Tells of an event that concerns it. If it asks for the very attachment that changes, the
    /// driver comes or goes with it.
    void tell(Event const& event) const
    {
        if (!criteria.select(event))
            return;
        if (!criteria.asksFor(event.key))
            call(event);
        else
            call({event.kind == Event::SET ? Event::ADDED : Event::REMOVED, event.record, event.key,
                  event.value});
    }
};

} // namespace peers

#endif
