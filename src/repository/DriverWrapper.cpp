#include <drvrepo/DriverWrapper.h>

#include <new>

using Record = CDriverRepository::DriverWrapper;

Record::DriverWrapper() : DriverWrapper(nullptr, nullptr) {}

Record::DriverWrapper(IDriverRepository* repository, IDriver* driver)
    : repository_(repository), driver_(TYPtr<IDriver>::share(driver)), entriesApart_(false),
      hadMatch_(false)
{}

Record::~DriverWrapper()
{
    // Entries own nothing: those in somebody's room may just be forgotten.
    if (entriesApart_)
        while (listeners_.count() != 0)
            unlink(listeners_.begin());
    listeners_.abandon();
}

Record* Record::create(IDriverRepository* repository, IDriver* driver, std::uint32_t entries)
{
    static_assert(Drivers::ENTRY_SIZE % alignof(Record) == 0, "the record follows it");
    void* const block = ::operator new(
        Drivers::ENTRY_SIZE + sizeof(Record) + entries * EntryRoom::ENTRY_SIZE, std::nothrow);
    if (block == nullptr)
        return nullptr;
    Record* const record =
        new (static_cast<char*>(block) + Drivers::ENTRY_SIZE) Record(repository, driver);
    record->room_ = EntryRoom(entries);
    return record;
}

void Record::destroy()
{
    void* const block = placeInTable();
    this->~DriverWrapper();
    ::operator delete(block);
}

String const& Record::getDriverName() const
{
    return driver_.get() != nullptr ? driver_->getDriverName() : String::EMPTY();
}

TOVA_UUID const& Record::getDID() const
{
    return driver_.get() != nullptr ? driver_->getDID() : TOVA_UUID::INVALID();
}
