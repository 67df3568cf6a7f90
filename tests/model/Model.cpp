#include "Model.h"

namespace model
{
Repository::DriverTable::iterator Repository::find(std::string const& name)
{
    auto at = drivers_.begin();
    while (at != drivers_.end() && at->first != name)
        ++at;
    return at;
}

Code Repository::offerToListeners(std::string& error, DriverRecord& record,
                                  EntryList::iterator& stop)
{
    for (stop = listeners_.begin(); stop != listeners_.end(); ++stop) {
        const Code rc = record.addListener(error, stop->listener);
        if (rc != 0)
            return rc;
    }
    return 0;
}

Code Repository::addDriver(std::string& error, Driver* driver)
{
    if (driver == nullptr) {
        error = "No driver specified";
        return -1;
    }
    const std::string name = driver->name();
    if (find(name) != drivers_.end()) {
        error = "Driver already exists (CDriverRepo): " + shown(name);
        return -1;
    }
    process_.debug(0, "DrvRepo: Add driver '" + shown(name) + "'");
    const auto record = std::make_shared<DriverRecord>(process_, this, driver);
    drivers_.emplace_back(name, record);
    driver->setDriverRepository(this);
    EntryList::iterator stop;
    const Code rc = offerToListeners(error, *record, stop);
    if (rc != 0) {
        drivers_.erase(find(name));
        while (stop != listeners_.begin())
            record->removeListener((--stop)->listener.get());
        driver->setDriverRepository(nullptr);
        record->end();
        process_.error("DrvRepo: ADDING DRIVER '" + shown(name) + "' FAILED: " + shown(error));
        return rc;
    }
    error.clear();
    return 0;
}

void Repository::removeDriver(Driver* driver)
{
    if (driver == nullptr)
        return;
    process_.debug(0, "DrvRepo: Remove driver '" + shown(driver->name()) + "'");
    const auto at = find(driver->name());
    if (at == drivers_.end())
        return;
    // Whatever driver is registered under the name goes; the given one is told.
    const std::shared_ptr<DriverRecord> record = at->second;
    drivers_.erase(at);
    for (auto entry = listeners_.rbegin(); entry != listeners_.rend(); ++entry)
        record->removeListener(entry->listener.get());
    driver->setDriverRepository(nullptr);
    record->end();
}

void Repository::removeDriver(std::string name)
{
    Driver* driver = nullptr;
    if (getDriver(name, &driver) != 0)
        return;
    removeDriver(driver);
    driver->release();
}

Code Repository::getDriver(std::string const& name, Driver** driver)
{
    const auto at = find(name);
    Driver* found = at == drivers_.end() ? nullptr : at->second->driver();
    if (driver != nullptr) {
        if (found != nullptr)
            found->addRef();
        *driver = found;
    }
    return found == nullptr ? -1 : 0;
}

Code Repository::failListener(std::string const& error, Listener& listener, Code rc)
{
    process_.error("DrvRepo: ADDING LISTENER '" + shown(listener.name) +
                   "' FAILED: " + shown(error));
    endListener(listener);
    return rc;
}

/// A listener that ends leaves no entry anywhere.
void Repository::forgetListener(std::shared_ptr<Listener> const& listener)
{
    for (Named& named : drivers_)
        named.second->forget(listener.get());
}

Code Repository::offerDrivers(std::string& error, std::shared_ptr<Listener> const& listener,
                              DriverTable::iterator& stop)
{
    for (stop = drivers_.begin(); stop != drivers_.end(); ++stop) {
        const Code rc = stop->second->addListener(error, listener);
        if (rc != 0)
            return rc;
    }
    return 0;
}

Code Repository::addObserver(std::string& error, Listener wanted)
{
    process_.debug(0, "DrvRepo: Add listener '" + shown(wanted.name) + "'");
    for (Entry const& entry : listeners_) {
        if (entry.listener->name == wanted.name) {
            error = "Driver repository observer '" + shown(wanted.name) + "' already exists";
            return -1;
        }
    }
    const std::shared_ptr<Listener> listener = makeListener(wanted);
    insertByPriority(listeners_, Entry{listener, false, 1});
    DriverTable::iterator stop;
    const Code rc = offerDrivers(error, listener, stop);
    if (rc != 0) {
        listeners_.remove_if([&](Entry const& entry) { return entry.listener == listener; });
        while (stop != drivers_.begin())
            (--stop)->second->removeListener(listener.get());
        forgetListener(listener);
        return failListener(error, *listener, rc);
    }
    error.clear();
    return 0;
}

Code Repository::addObserver(std::string& error, Listener wanted, Observer* observer)
{
    wanted.delegate = std::make_shared<Delegate>();
    wanted.delegate->observer = observer;
    return addObserver(error, wanted);
}

void Repository::removeObserver(std::string name)
{
    auto at = listeners_.begin();
    while (at != listeners_.end() && at->listener->name != name)
        ++at;
    if (at == listeners_.end())
        return;
    process_.debug(0, "DrvRepo: Remove listener '" + shown(name) + "'");
    const std::shared_ptr<Listener> listener = at->listener;
    listeners_.erase(at);
    for (auto named = drivers_.rbegin(); named != drivers_.rend(); ++named)
        named->second->removeListener(listener.get());
    forgetListener(listener);
    endListener(*listener);
}

std::string Repository::getDriverAttachment(std::string const& name, std::string const& key) const
{
    const auto at = const_cast<Repository*>(this)->find(name);
    return at == drivers_.end() ? "" : at->second->getAttachment(key);
}

std::string Repository::getDriverAttachment(Driver const* driver, std::string const& key) const
{
    return driver == nullptr ? "" : getDriverAttachment(driver->name(), key);
}

Code Repository::setDriverAttachment(std::string& error, std::string name, std::string key,
                                     std::string value)
{
    const std::string what =
        "'" + shown(name) + "' " + "ATTACHMENT " + shown(key) + "=" + shown(value);
    Code rc = -1;
    const auto at = find(name);
    if (at == drivers_.end()) {
        error = "Driver '" + shown(name) + "' does not exist";
    } else {
        process_.debug(0, "DrvRepo: Set driver '" + shown(name) + "' attachment " + shown(key) +
                              "=" + shown(value));
        rc = at->second->setAttachment(error, key, value);
    }
    if (rc != 0)
        process_.error("DrvRepo: SETTING DRIVER " + what + " FAILED: " + shown(error));
    return rc;
}

Code Repository::setDriverAttachment(std::string& error, Driver const* driver, std::string key,
                                     std::string value)
{
    if (driver == nullptr) {
        error = "No driver specified";
        return -1;
    }
    return setDriverAttachment(error, driver->name(), key, value);
}

} // namespace model
