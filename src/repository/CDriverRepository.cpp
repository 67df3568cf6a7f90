#include <drvrepo/CDriverRepository.h>
#include <drvrepo/IDriverRepositoryObserver.h>

#include "foundation/Interfaces.h"
#include "repository/Operation.h"

IDriverRepositoryObserver::~IDriverRepositoryObserver() = default;

CDriverRepository::CDriverRepository(TYEventLoop& loop) : loop_(loop), lock_(loop.lock()) {}

// Records and listeners that are still registered stay, with the references they hold.
CDriverRepository::~CDriverRepository()
{
    while (!drivers_.isEmpty())
        drivers_.extract(drivers_.begin());
    listeners_.abandon();
}

XCode CDriverRepository::queryInterface(TOVA_UUID const& iid, void** out)
{
    return answerInterface({{IID_Unknown(), static_cast<IDriverRepository*>(this)},
                            {IDriverRepository::IID(), static_cast<IDriverRepository*>(this)},
                            {IInfo::IID(), static_cast<IInfo*>(this)}},
                           iid, out);
}

void CDriverRepository::addRef()
{
    refs_.increment();
}

void CDriverRepository::release()
{
    if (refs_.decrement())
        delete this;
}

Lock* CDriverRepository::getLock()
{
    return lock_;
}

TYEventLoop& CDriverRepository::eventLoop()
{
    return loop_;
}

/// Frees what has gone, once nobody walks the lists any more. Its members are unlinked first: what
/// they give back may call in again.
void CDriverRepository::bury()
{
    while (graves_) {
        graves_ = false;
        Listener* goneListeners = nullptr;
        DriverWrapper* goneRecords = nullptr;
        for (Listeners::Iterator at = listeners_.begin(); at != listeners_.end();) {
            Listener* const listener = at->listener();
            if (!listener->gone_) {
                ++at;
                continue;
            }
            const Listeners::Iterator place = at;
            ++at;
            listeners_.extract(place);
            listener->nextGrave_ = goneListeners;
            goneListeners = listener;
        }
        for (DriverWrapper* record = oldest_; record != nullptr;) {
            DriverWrapper* const newer = record->newer_;
            record->forgetGone();
            if (record->gone_) {
                unlink(*record);
                record->newer_ = goneRecords;
                goneRecords = record;
            }
            record = newer;
        }
        free(goneRecords);
        free(goneListeners);
    }
}

void CDriverRepository::free(DriverWrapper* records)
{
    while (records != nullptr) {
        DriverWrapper* const record = records;
        records = record->newer_;
        record->destroy();
    }
}

void CDriverRepository::free(Listener* listeners)
{
    while (listeners != nullptr) {
        Listener* const listener = listeners;
        listeners = listener->nextGrave_;
        listener->destroy();
    }
}
