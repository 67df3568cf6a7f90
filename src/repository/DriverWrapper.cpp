#include <drvrepo/DriverWrapper.h>

#include <algorithm>
#include <limits>
#include <new>

using Record = CDriverRepository::DriverWrapper;

namespace
{

constexpr std::uint32_t MOST_ROOM = std::numeric_limits<std::uint16_t>::max();

} // namespace

Record::DriverWrapper() : DriverWrapper(nullptr, nullptr) {}

Record::DriverWrapper(IDriverRepository* repository, IDriver* driver)
    : repository_(repository), driver_(TYPtr<IDriver>::share(driver))
{}

Record::~DriverWrapper()
{
    if (listeners_.count() != static_cast<std::uint32_t>(roomUsed_ - roomFreed_))
        while (listeners_.count() != 0)
            unlink(listeners_.begin());
    listeners_.abandon();
}

Record* Record::create(IDriverRepository* repository, IDriver* driver, std::uint32_t listeners)
{
    const std::uint16_t room = static_cast<std::uint16_t>(std::min(listeners, MOST_ROOM));
    void* const block = ::operator new(sizeof(Record) + room * Entries::NODE_SIZE, std::nothrow);
    if (block == nullptr)
        return nullptr;
    Record* const record = new (block) Record(repository, driver);
    record->roomSize_ = room;
    return record;
}

void Record::destroy()
{
    this->~DriverWrapper();
    ::operator delete(this);
}

String const& Record::getDriverName() const
{
    return driver_.get() != nullptr ? driver_->getDriverName() : String::EMPTY();
}

TOVA_UUID const& Record::getDID() const
{
    return driver_.get() != nullptr ? driver_->getDID() : TOVA_UUID::INVALID();
}
