#include "Model.h"

namespace model
{
namespace
{
bool startsWith(std::string const& text, std::string const& beginning)
{
    return text.compare(0, beginning.size(), beginning) == 0;
}

void releaseAll(std::vector<Driver*>& list)
{
    for (Driver* driver : list)
        driver->release();
    list.clear();
}
} // namespace

bool Repository::meets(DriverRecord const& record, Identifier const& did,
                       std::string const& pattern, Table const* attributes)
{
    Driver const& driver = *record.driver();
    if (did != wellKnown().invalid && did != driver.did())
        return false;
    if (!startsWith(driver.name(), pattern))
        return false;
    if (attributes == nullptr)
        return true;
    for (Table::Entry const& wanted : attributes->entries())
        if (!wanted.second.empty() &&
            !startsWith(record.getAttachment(wanted.first), wanted.second))
            return false;
    return true;
}

Code Repository::getDriverInterface(std::string const& name, Identifier const& iid, Driver** object)
{
    Driver* driver = nullptr;
    Code rc = getDriver(name, &driver);
    if (rc != 0)
        return rc;
    if (object == nullptr) {
        rc = driver->queryInterface(iid, nullptr);
    } else {
        bool got = false;
        rc = driver->queryInterface(iid, &got);
        *object = got ? driver : nullptr;
        // Success without an object is no interface.
        if (rc == 0 && !got)
            rc = -1;
    }
    driver->release();
    return rc;
}

void Repository::getDrivers(Identifier const& did, std::string const& pattern,
                            Table const* attributes, std::vector<Driver*>& drivers)
{
    releaseAll(drivers);
    for (Named& named : drivers_) {
        if (!meets(*named.second, did, pattern, attributes))
            continue;
        named.second->driver()->addRef();
        drivers.push_back(named.second->driver());
    }
}

void Repository::getDriverInterfaces(Identifier const& did, std::string const& pattern,
                                     Table const* attributes, Identifier const& iid,
                                     std::vector<Driver*>& interfaces)
{
    releaseAll(interfaces);
    for (Named& named : drivers_) {
        if (!meets(*named.second, did, pattern, attributes))
            continue;
        bool got = false;
        if (named.second->driver()->queryInterface(iid, &got) == 0 && got)
            interfaces.push_back(named.second->driver());
    }
}

} // namespace model
