#include "foundation/Interfaces.h"
#include "repository/Operation.h"

// Queries walk the drivers in the order of adding. Their arguments may belong to what the result
// list lets go, so they are read before it is emptied.

XCode CDriverRepository::getDriverInterface(String const& name, TOVA_UUID const& iid, void** object)
{
    const Operation operation(*this);
    if (object != nullptr)
        *object = nullptr;
    IDriver* driver = nullptr;
    XCode rc = getDriver(name, &driver);
    if (rc.code() != 0)
        return rc;
    const TYPtr<IDriver> held(driver);
    rc = driver->queryInterface(iid, object);
    if (rc.code() == 0 && object != nullptr && *object == nullptr)
        return XCode(-1); // says yes and gives nothing: it hasn't got it
    return rc;
}

TOVA_List<TYPPtr<IDriver>>& CDriverRepository::getDrivers(TOVA_UUID const& did,
                                                          String const& pattern,
                                                          TOVA_List<TYPPtr<IDriver>>& drivers)
{
    return getDrivers(did, pattern, Attributes(), drivers);
}

TOVA_List<TYPPtr<IDriver>>& CDriverRepository::getDrivers(TOVA_UUID const& did,
                                                          String const& pattern,
                                                          Attributes const& attributes,
                                                          TOVA_List<TYPPtr<IDriver>>& drivers)
{
    const Operation operation(*this);
    const Filter filter = {did, pattern, attributes};
    drivers.clear();
    TOVA_List<TYPPtr<IDriver>> found;
    select(filter, [&](IDriver& driver) { found.append(TYPPtr<IDriver>::share(&driver)); });
    drivers.swap(found);
    return drivers;
}

TOVA_List<TYPPtr<IUnknown>>&
CDriverRepository::getDriverInterfaces(TOVA_UUID const& did, String const& pattern,
                                       TOVA_UUID const& iid,
                                       TOVA_List<TYPPtr<IUnknown>>& interfaces)
{
    return getDriverInterfaces(did, pattern, Attributes(), iid, interfaces);
}

TOVA_List<TYPPtr<IUnknown>>&
CDriverRepository::getDriverInterfaces(TOVA_UUID const& did, String const& pattern,
                                       Attributes const& attributes, TOVA_UUID const& iid,
                                       TOVA_List<TYPPtr<IUnknown>>& interfaces)
{
    const Operation operation(*this);
    const Filter filter = {did, pattern, attributes};
    const TOVA_UUID wanted(iid);
    interfaces.clear();
    TOVA_List<TYPPtr<IUnknown>> found;
    select(filter, [&](IDriver& driver) {
        TYPtr<IUnknown> face = interfaceOf<IUnknown>(driver, wanted);
        if (face)
            found.append(TYPPtr<IUnknown>(face.detach()));
    });
    interfaces.swap(found);
    return interfaces;
}

/// Visits the drivers that are there now, stay until their turn, and pass the filter.
template <class Visit> void CDriverRepository::select(Filter const& filter, Visit visit) const
{
    const Stamp began = clock_;
    for (DriverWrapper const* record = oldest_; record != nullptr; record = record->newer_) {
        if (record->gone_ || record->stamp_ > began)
            continue;
        if (record->meets(filter.did, filter.pattern, filter.attributes) && !record->gone_)
            visit(*record->getDriver());
    }
}
