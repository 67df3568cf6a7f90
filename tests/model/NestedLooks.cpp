#include <algorithm>
#include <cstdio>
#include <map>

#include "NestedObjects.h"
#include "Raised.h"

// How a nested run sees the registry, and what it checks in quiet.

using library::toString;

int NestedRun::idOf(IDriver const* driver) const
{
    return driver == nullptr ? -1 : static_cast<Driver const*>(driver)->id();
}

Judge::Look NestedRun::lookAt(std::string const& driver, std::string const& key)
{
    const Raised looking(looking_);
    Judge::Look look;
    IDriver* found = nullptr;
    repository_->getDriver(toString(driver), &found);
    look.driver = idOf(found);
    if (found != nullptr)
        found->release();
    String value;
    repository_->getDriverAttachment(toString(driver), toString(key), value);
    look.value = library::text(value);
    return look;
}

bool NestedRun::isRegistered(int registration)
{
    const Judge::State now = state();
    return std::any_of(now.listeners.begin(), now.listeners.end(),
                       [registration](Judge::ListenerState const& listener) {
                           return listener.registration == registration;
                       });
}

/// The registration of that name whose delegate was stopped while a listener held it.
int NestedRun::stoppedOne(std::string const& name) const
{
    for (std::size_t i = registrations_.size(); i-- > 0;) {
        Registration const& each = *registrations_[i];
        if (each.delegate != nullptr && each.delegate->observer() == nullptr &&
            each.count.refs > 1 && each.name == name)
            return static_cast<int>(i);
    }
    return -1;
}

/// The registry as its own description shows it.
Judge::State NestedRun::state()
{
    const Raised looking(looking_);
    InfoContainer info;
    repository_->getInfo(info, 99, 0, 99, 0, String());
    Judge::State state;
    state.overtaken = overtaken_;
    std::map<std::string, int> byName;
    std::vector<std::vector<std::string>> active;
    bool inListeners = false;
    std::string section;
    std::string name;
    std::map<std::string, int> observers;
    for (std::size_t i = 0; i < registrations_.size(); ++i) {
        char text[40];
        std::snprintf(text, sizeof text, "%p",
                      static_cast<void const*>(&registrations_[i]->observer));
        observers[text] = static_cast<int>(i);
    }
    for (InfoContainer::Row const& row : info.rows()) {
        const std::string key = library::text(row.key);
        const std::string value = library::text(row.value);
        if (row.depth == 0) {
            continue;
        } else if (row.depth == 1) {
            inListeners = key == "Listeners";
        } else if (row.depth == 2 && !inListeners) {
            IDriver* found = nullptr;
            repository_->getDriver(row.key, &found);
            state.drivers.push_back({idOf(found), {}, {}});
            active.emplace_back();
            if (found != nullptr)
                found->release();
        } else if (row.depth == 2) {
            name = key;
            state.listeners.push_back({-1, {0, 0, 0, 0}});
        } else if (row.depth == 3) {
            section = key;
            if (inListeners && key == "Observer") {
                const int id = observers.count(value) != 0 ? observers[value] : stoppedOne(name);
                state.listeners.back().registration = id;
                byName[name] = id;
            }
        } else if (!inListeners && section == "Attachments") {
            state.drivers.back().attachments.emplace_back(key, value);
        } else if (!inListeners) {
            active.back().push_back(key);
        } else if (row.detail == 3) {
            const char* const keys[] = {"onDriverAdded", "onDriverRemoved", "onAttachmentSet",
                                        "onAttachmentCleared"};
            for (int i = 0; i < 4; ++i)
                if (key == keys[i])
                    state.listeners.back().counts[i] =
                        static_cast<std::uint32_t>(std::stoul(value));
        }
    }
    for (std::size_t i = 0; i < state.drivers.size(); ++i)
        for (std::string const& who : active[i])
            state.drivers[i].active.push_back(byName[who]);
    return state;
}

void NestedRun::checkReferences()
{
    const Judge::State now = state();
    if (repositoryCount_.refs != 1)
        complain("the repository has " + std::to_string(repositoryCount_.refs) + " references");
    for (std::size_t i = 0; i < drivers_.size(); ++i) {
        const int id = static_cast<int>(i);
        const auto held = std::count(slots_.begin(), slots_.end(), id);
        const auto listed =
            std::count_if(now.drivers.begin(), now.drivers.end(),
                          [id](Judge::DriverState const& driver) { return driver.driver == id; });
        if (drivers_[i]->count.refs != held + listed)
            complain("driver #" + std::to_string(id) + " has " +
                     std::to_string(drivers_[i]->count.refs) + " references instead of " +
                     std::to_string(held + listed));
    }
    for (std::size_t i = 0; i < registrations_.size(); ++i) {
        Registration const& mine = *registrations_[i];
        if (mine.delegate == nullptr || mine.delegate->observer() == nullptr)
            continue;
        const auto listed = std::count_if(now.listeners.begin(), now.listeners.end(),
                                          [i](Judge::ListenerState const& listener) {
                                              return listener.registration == static_cast<int>(i);
                                          });
        if (mine.count.refs != 1 + listed)
            complain("the delegate of listener #" + std::to_string(i) + " has " +
                     std::to_string(mine.count.refs) + " references instead of " +
                     std::to_string(1 + listed));
    }
}

void NestedRun::checkQuiet()
{
    if (left_ || !violations_.empty())
        return;
    judge_.quiet(state());
    adoptViolations();
    if (violations_.empty())
        checkReferences();
}
