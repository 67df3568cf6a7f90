#include <drvrepo/CDriver.h>

#include <drvrepo/IDriverRepository.h>

#include "foundation/Interfaces.h"

IDriverRepository* IDriver::getDriverRepository()
{
    return nullptr;
}

void IDriver::setDriverRepository(IDriverRepository*) {}

CDriver::CDriver(TOVA_UUID const& did, String const& name)
    : did_(did), name_(name), repository_(nullptr)
{}

CDriver::~CDriver() = default;

XCode CDriver::queryInterface(TOVA_UUID const& iid, void** out)
{
    return answerInterface({{IID_Unknown(), static_cast<IDriver*>(this)},
                            {IDriver::IID(), static_cast<IDriver*>(this)}},
                           iid, out);
}

void CDriver::addRef()
{
    refs_.increment();
}

void CDriver::release()
{
    if (refs_.decrement())
        delete this;
}

Lock* CDriver::getLock()
{
    return repository_ != nullptr ? repository_->getLock() : nullptr;
}

TOVA_UUID const& CDriver::getDID() const
{
    return did_;
}

String const& CDriver::getDriverName() const
{
    return name_;
}

IDriverRepository* CDriver::getDriverRepository()
{
    return repository_;
}

void CDriver::setDriverRepository(IDriverRepository* repository)
{
    repository_ = repository;
}

TYEventLoop& CDriver::eventLoop() const
{
    return repository_ != nullptr ? repository_->eventLoop() : CRIT::INSTANCE();
}
