#include <drvrepo/IDriverRepository.h>

IDriverRepository::EvDriver::EvDriver(IDriverRepository* repository, IDriver* ofDriver)
    : ObserverEvent<IDriverRepository>(repository), driver(TYPtr<IDriver>::share(ofDriver))
{}

IDriverRepository::EvDriver::~EvDriver() = default;

IDriverRepository::EvDriver* IDriverRepository::EvDriver::clone() const
{
    return new EvDriver(*this);
}

IDriverRepository::EvAttachment::EvAttachment(IDriverRepository* repository, IDriver* ofDriver,
                                              String const& ofKey, String const& ofValue)
    : EvDriver(repository, ofDriver), key(ofKey), value(ofValue)
{}

IDriverRepository::EvAttachment::~EvAttachment() = default;

IDriverRepository::EvAttachment* IDriverRepository::EvAttachment::clone() const
{
    return new EvAttachment(*this);
}
