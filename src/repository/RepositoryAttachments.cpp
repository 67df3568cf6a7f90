#include "foundation/Log.h"
#include "foundation/Texts.h"
#include "repository/Frames.h"
#include "repository/Operation.h"

// Attachments by driver: found here, changed and told in the driver's record.

namespace
{

void logFailure(String const& name, String const& key, String const& value, String const& error)
{
    logError("DrvRepo: SETTING DRIVER '%s' ATTACHMENT %s=%s FAILED: %s", name.cString(),
             key.cString(), value.cString(), error.cString());
}

} // namespace

void CDriverRepository::getDriverAttachment(IDriver* driver, String const& key, String& value) const
{
    if (driver == nullptr) {
        value = String::EMPTY();
        return;
    }
    const Operation operation(*this);
    const String ownKey(key);
    getDriverAttachment(String(driver->getDriverName()), ownKey, value);
}

String& CDriverRepository::getDriverAttachment(String const& driverName, String const& key,
                                               String& value) const
{
    DriverWrapper const* const record = recordOf(driverName);
    return value = record != nullptr ? record->getAttachment(key) : String::EMPTY();
}

XCode CDriverRepository::setDriverAttachment(String& error, IDriver* driver, String const& key,
                                             String const& value)
{
    if (driver == nullptr)
        return fail(error, TEXT_NO_DRIVER);
    // Not an operation of its own: the inner one answers when all that has gone has been freed.
    const TYPtr<IDriverRepository> life = TYPtr<IDriverRepository>::share(this);
    const String ownKey(key);
    const String ownValue(value);
    return setDriverAttachment(error, String(driver->getDriverName()), ownKey, ownValue);
}

XCode CDriverRepository::setDriverAttachment(String& error, String const& driverName,
                                             String const& key, String const& value)
{
    Operation operation(*this);
    const String name(driverName);
    const String ownKey(key);
    const String ownValue(value);
    finishDepartures(name, nullptr);
    if (isMonitored() && recordOf(name) != nullptr)
        logDebug(0, "DrvRepo: Set driver '%s' attachment %s=%s", name.cString(), ownKey.cString(),
                 ownValue.cString());
    DriverWrapper* const record = recordOf(name); // the monitor may have called in
    const Stamp stamp = record != nullptr ? record->stamp_ : 0;
    XCode rc;
    if (record != nullptr)
        rc = change(error, name, *record, ownKey, ownValue);
    bool stands = record != nullptr && !record->gone_;
    if (operation.settle()) {
        DriverWrapper const* const left = recordOf(name);
        stands = left != nullptr && left->stamp_ == stamp;
    }
    if (rc.code() == 0 && !stands)
        rc = failUnknown(error, name);
    if (rc.code() != 0)
        logFailure(name, ownKey, ownValue, error);
    return rc;
}

XCode CDriverRepository::change(String& error, String const& name, DriverWrapper& record,
                                String const& key, String const& value)
{
    DriverWrapper::Change change(record, key, value);
    XCode rc;
    try {
        rc = change.run(error);
    } catch (...) {
        if (change.isComing())
            logFailure(name, key, value, error);
        throw;
    }
    return rc;
}
