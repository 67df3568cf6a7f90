#include "ModelDriverRecord.h"

namespace model
{
DriverRecord::DriverRecord(Process& process, Repository* repository, Driver* driver)
    : process_(process), repository_(repository), driver_(driver)
{
    if (driver_ != nullptr)
        driver_->addRef();
}

void DriverRecord::end()
{
    listeners_.clear();
    if (driver_ != nullptr)
        driver_->release();
    driver_ = nullptr;
}

std::string DriverRecord::says(Listener const& l) const
{
    return "DrvRepo:   " + shown(driver_->name()) + ": Notify listener '" + shown(l.name) + "'";
}

void DriverRecord::failed(Listener const& l, std::string const& error)
{
    process_.error("DrvRepo:   " + shown(driver_->name()) + ": NOTIFY LISTENER '" + shown(l.name) +
                   "' FAILED: " + shown(error));
}

Event DriverRecord::event(std::string const& key, std::string const& value) const
{
    return {repository_, driver_, key, value};
}

Code DriverRecord::notifyOnDriverAdded(std::string& error, Listener& l)
{
    if (!l.delegate)
        return 0;
    process_.debug(0, says(l) + " with right of veto: onDriverAdded()");
    ++l.counters.added;
    if (l.delegate->observer == nullptr)
        return 0;
    const Code answer = l.delegate->observer->onDriverAdded(error, event("", ""));
    if (!l.rightOfVeto || answer == 0)
        return 0;
    failed(l, error);
    return answer;
}

void DriverRecord::notifyOnDriverRemoved(Listener& l)
{
    if (!l.delegate)
        return;
    process_.debug(0, says(l) + ": onDriverRemoved()");
    ++l.counters.removed;
    if (l.delegate->observer != nullptr)
        l.delegate->observer->onDriverRemoved(event("", ""));
}

Code DriverRecord::notifyOnDriverAttachmentSet(std::string& error, Listener& l,
                                               std::string const& key, std::string const& value)
{
    if (!l.delegate)
        return 0;
    process_.debug(0, says(l) + ": onDriverAttachmentSet(" + shown(key) + "=" + shown(value) + ")");
    ++l.counters.set;
    if (l.delegate->observer == nullptr)
        return 0;
    const Code answer = l.delegate->observer->onDriverAttachmentSet(error, event(key, value));
    if (!l.rightOfVeto || answer == 0)
        return 0;
    failed(l, error);
    return answer;
}

void DriverRecord::notifyOnDriverAttachmentCleared(Listener& l, std::string const& key,
                                                   std::string const& value)
{
    if (!l.delegate)
        return;
    process_.debug(0, says(l) + ": onDriverAttachmentCleared(" + shown(key) + "=" + shown(value) +
                          ")");
    ++l.counters.cleared;
    if (l.delegate->observer != nullptr)
        l.delegate->observer->onDriverAttachmentCleared(event(key, value));
}

} // namespace model
