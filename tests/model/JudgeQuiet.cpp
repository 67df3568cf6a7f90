#include "Judge.h"

#include "Trace.h"

#include <algorithm>

namespace
{
bool startsWith(std::string const& text, std::string const& beginning)
{
    return text.compare(0, beginning.size(), beginning) == 0;
}

std::string valueOf(Judge::Table const& table, std::string const& key)
{
    for (auto const& entry : table)
        if (entry.first == key)
            return entry.second;
    return "";
}
} // namespace

/// Whether the criteria select the driver, `without` the attachment `key` if asked so.
bool Judge::matches(Registration const& registration, Driver const& driver, Table const& table,
                    bool without, std::string const& key) const
{
    if (registration.classId != 0 && registration.classId != driver.type)
        return false;
    if (registration.interfaceId != 0 &&
        std::find(driver.interfaces.begin(), driver.interfaces.end(), registration.interfaceId) ==
            driver.interfaces.end())
        return false;
    if (!startsWith(driver.name, registration.prefix))
        return false;
    for (auto const& wanted : registration.attributes) {
        const bool left = without && wanted.first == key;
        if (!startsWith(left ? "" : valueOf(table, wanted.first), wanted.second))
            return false;
    }
    return true;
}

void Judge::quiet(State const& state)
{
    if (!frames_.empty())
        violation("not quiet");
    std::uint32_t priority = 0;
    for (ListenerState const& listener : state.listeners) {
        Told const& told = registrations_[static_cast<std::size_t>(listener.registration)];
        if (told.registration.priority < priority)
            violation(describe(listener.registration, -1) + ": stands behind a higher priority");
        priority = told.registration.priority;
        if (told.dead)
            violation(describe(listener.registration, -1) + ": removed, but in the list");
        const auto counts = [&state](std::uint32_t calls, std::uint32_t counted) {
            return state.overtaken ? calls <= counted : calls == counted;
        };
        if (!told.muted && !std::equal(told.counts, told.counts + 4, listener.counts, counts))
            violation(describe(listener.registration, -1) + ": wrong counters");
    }
    for (DriverState const& driver : state.drivers)
        quietDriver(state, driver);
    for (auto const& entry : pairs_) {
        const auto there = [&entry](DriverState const& d) {
            return d.driver == entry.first.second;
        };
        if (entry.second.in && !registrations_[static_cast<std::size_t>(entry.first.first)].muted &&
            std::none_of(state.drivers.begin(), state.drivers.end(), there))
            violation(describe(entry.first.first, entry.first.second) +
                      ": knows a driver that is gone");
    }
}

void Judge::quietDriver(State const& state, DriverState const& driver)
{
    std::uint32_t priority = 0;
    for (int active : driver.active) {
        Registration const& r = registrations_[static_cast<std::size_t>(active)].registration;
        if (r.priority < priority)
            violation(describe(active, driver.driver) + ": stands behind a higher priority");
        priority = r.priority;
    }
    for (ListenerState const& listener : state.listeners)
        quietPair(listener.registration, driver,
                  std::count(driver.active.begin(), driver.active.end(), listener.registration) ==
                      1);
}

void Judge::quietPair(int registration, DriverState const& driver, bool active)
{
    Told const& told = registrations_[static_cast<std::size_t>(registration)];
    Driver const& facts = drivers_[static_cast<std::size_t>(driver.driver)];
    Pair& known = pair(registration, driver.driver);
    const bool matching =
        matches(told.registration, facts, driver.attachments, false, std::string());
    const std::string who = describe(registration, driver.driver);
    // Thrown out of while joining through a change, it is out without a word.
    if (known.aborted && known.byChange && !active && known.in) {
        known = Pair();
        known.exempt = true;
    }
    if (active && !matching)
        violation(who + ": active without matching");
    if (!active && matching && !known.exempt)
        violation(who + ": matches but is not active");
    if (!matching || active)
        known.exempt = false;
    if (told.muted)
        return;
    if (active != known.in)
        violation(who + (active ? ": active without a coming" : ": inactive without a going"));
    if (!active)
        return;
    for (auto const& word : known.words) {
        const std::string value = valueOf(driver.attachments, word.first);
        if (word.second.set ? word.second.value != value : !value.empty())
            violation(who + ": last heard " + quoted(word.first) + "=" + quoted(word.second.value) +
                      ", but it is " + quoted(value));
    }
    for (auto const& entry : driver.attachments)
        if (told.registration.snapshot && !entry.second.empty() &&
            known.words.count(entry.first) == 0 &&
            matches(told.registration, facts, driver.attachments, true, entry.first))
            violation(who + ": never heard of " + quoted(entry.first) + "=" + quoted(entry.second));
}
