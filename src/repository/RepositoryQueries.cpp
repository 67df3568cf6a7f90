#include "foundation/Interfaces.h"
#include "repository/Operation.h"
#include "repository/WrapperMatching.h"

// Queries walk the drivers in the order of adding. Their arguments may belong to what the result
// list lets go, so they are read before it is emptied.

namespace
{

/// A result that grows out of the nodes of the last one, which the list held: asking again and
/// again with the same list asks for no memory. The list is empty until the result is there.
template <class T> class Result
{
public:
    explicit Result(TOVA_List<TYPPtr<T>>& list) : list_(list)
    {
        spare_.swap(list);
        for (TYPPtr<T>& old : spare_)
            old.reset();
    }
    void append(TYPPtr<T> object)
    {
        if (spare_.count() != 0)
            *found_.takeFirst(spare_) = std::move(object);
        else
            found_.append(std::move(object));
    }
    TOVA_List<TYPPtr<T>>& deliver()
    {
        list_.swap(found_);
        return list_;
    }

private:
    TOVA_List<TYPPtr<T>>& list_;
    TOVA_List<TYPPtr<T>> spare_;
    TOVA_List<TYPPtr<T>> found_;
};

} // namespace

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
    Result<IDriver> result(drivers);
    select(filter, [&](IDriver& driver) { result.append(TYPPtr<IDriver>::share(&driver)); });
    return result.deliver();
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
    Result<IUnknown> result(interfaces);
    select(filter, [&](IDriver& driver) {
        TYPtr<IUnknown> face = interfaceOf<IUnknown>(driver, wanted);
        if (face)
            result.append(TYPPtr<IUnknown>(face.detach()));
    });
    return result.deliver();
}

/// Visits the drivers that are there now, stay until their turn, and pass the filter.
template <class Visit> void CDriverRepository::select(Filter const& filter, Visit visit) const
{
    const Stamp began = clock_;
    const bool anyType = !filter.did.isValid();
    for (DriverWrapper const* record = oldest_; record != nullptr; record = record->newer_) {
        if (record->gone_ || record->stamp_ > began)
            continue;
        if ((anyType || record->isOfType(filter.did)) && record->isNamed(filter.pattern) &&
            record->carries(filter.attributes) && !record->gone_)
            visit(*record->getDriver());
    }
}
