#include <drvrepo/DriverWrapper.h>

using Record = CDriverRepository::DriverWrapper;

Record::DriverWrapper() : DriverWrapper(nullptr, nullptr) {}

Record::DriverWrapper(IDriverRepository* repository, IDriver* driver)
    : repository_(repository), driver_(TYPtr<IDriver>::share(driver))
{}

Record::~DriverWrapper()
{
    listeners_.clear();
}

String const& Record::getDriverName() const
{
    return driver_.get() != nullptr ? driver_->getDriverName() : String::EMPTY();
}

TOVA_UUID const& Record::getDID() const
{
    return driver_.get() != nullptr ? driver_->getDID() : TOVA_UUID::INVALID();
}
