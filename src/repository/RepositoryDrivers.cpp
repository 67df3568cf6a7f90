#include <memory>
#include <new>

#include "foundation/Log.h"
#include "foundation/Texts.h"
#include "foundation/Undo.h"
#include "repository/Operation.h"
#include "repository/WrapperJoining.h"
#include "repository/WrapperLeaving.h"

// Drivers come and go. A coming is offered to the listeners front to back, a going told back to
// front; a refused coming leaves the way an ordinary going does.

namespace
{

XCode failKnown(String& error, String const& name)
{
    return failWith(
        error, [&] { error.format("Driver already exists (CDriverRepo): %s", name.cString()); });
}

void logFailure(String const& name, String const& error)
{
    logError("DrvRepo: ADDING DRIVER '%s' FAILED: %s", name.cString(), error.cString());
}

} // namespace

XCode CDriverRepository::addDriver(String& error, IDriver* driver)
{
    if (driver == nullptr)
        return fail(error, TEXT_NO_DRIVER);
    Operation operation(*this);
    const String name(driver->getDriverName());
    finishDepartures(name, driver);
    const Stamp looked = clock_;
    if (recordOf(name) != nullptr)
        return failKnown(error, name);
    if (isMonitored())
        logDebug(0, "DrvRepo: Add driver '%s'", name.cString());
    DriverWrapper* record = nullptr;
    XCode rc = enter(error, name, driver, looked, record);
    if (rc.code() != 0) {
        logFailure(name, error);
        return rc;
    }
    rc = introduce(error, name, *record);
    const bool freed = operation.settle();
    if ((rc.code() == 0 && !freed) || holds(name, driver)) {
        succeed(error);
        return XCode();
    }
    if (rc.code() == 0) {
        rc = failUnknown(error, name);
        logFailure(name, error);
    }
    return rc;
}

/// Makes the driver's record and takes it in under the name, which was free at `looked`.
XCode CDriverRepository::enter(String& error, String const& name, IDriver* driver, Stamp looked,
                               DriverWrapper*& record)
{
    const auto destroy = [](DriverWrapper* unused) { unused->destroy(); };
    std::unique_ptr<DriverWrapper, decltype(destroy)> made(
        DriverWrapper::create(this, driver, listeners_.count()), destroy);
    if (made == nullptr)
        return XCode::OUT_OF_MEMORY(error);
    if (clock_ != looked && recordOf(name) != nullptr) // taken by a call from inside
        return failKnown(error, name);
    try {
        drivers_.add(name, made.get(), made->placeInTable());
    } catch (std::bad_alloc const&) {
        return XCode::OUT_OF_MEMORY(error);
    }
    record = made.release();
    record->stamp_ = ++clock_;
    record->older_ = newest_;
    (newest_ != nullptr ? newest_->newer_ : oldest_) = record;
    newest_ = record;
    return XCode();
}

/// Tells the driver and the listeners of each other; takes the driver out again, with a line in the
/// log, when one refuses. It may also have been taken out, or added anew, from inside.
XCode CDriverRepository::introduce(String& error, String const& name, DriverWrapper& record)
{
    IDriver* const driver = record.getDriver();
    Listeners::Iterator stop = listeners_.begin();
    const auto undo = [&] {
        inTurn(
            [&] {
                if (!record.gone_)
                    retire(name, drivers_.find(name), driver, stop);
            },
            [&] {
                if (!holds(name, driver))
                    logFailure(name, error);
            });
    };
    return orUndo(
        [&] {
            driver->setDriverRepository(this);
            XCode rc; // for nobody there, nothing is prepared
            if (listeners_.count() != 0)
                rc = offer(error, record, stop);
            return rc.code() == 0 && record.gone_ ? failUnknown(error, name) : std::move(rc);
        },
        undo);
}

XCode CDriverRepository::failUnknown(String& error, String const& driverName)
{
    return failWith(error,
                    [&] { error.format("Driver '%s' does not exist", driverName.cString()); });
}

bool CDriverRepository::holds(String const& name, IDriver const* driver) const
{
    DriverWrapper const* const record = recordOf(name);
    return record != nullptr && record->getDriver() == driver;
}

/// Offers the driver to the listeners that were there before it. `stop` is left at the one who
/// refused, at the end without one.
[[gnu::flatten]] XCode CDriverRepository::offer(String& error, DriverWrapper& record,
                                                Listeners::Iterator& stop)
{
    stop = listeners_.begin();
    const bool mayKnow = false;
    DriverWrapper::Entry hint = record.listeners_.begin();
    DriverWrapper::Voice voice;
    for (; stop != listeners_.end(); ++stop) {
        Listener* const listener = stop->listener();
        if (record.gone_ || listener->gone_ || listener->stamp_ > record.stamp_)
            continue;
        XCode rc = record.meet(error, listener, mayKnow, hint, voice);
        if (rc.code() != 0)
            return rc;
    }
    return XCode();
}

void CDriverRepository::removeDriver(IDriver* driver)
{
    if (driver == nullptr)
        return;
    const Operation operation(*this);
    const String name(driver->getDriverName());
    if (isMonitored())
        logDebug(0, "DrvRepo: Remove driver '%s'", name.cString());
    finishDepartures(name, driver);
    // Whichever driver stands under that name goes.
    const Drivers::Iterator place = drivers_.find(name);
    if (place != drivers_.end())
        retire(name, place, driver, listeners_.end());
}

void CDriverRepository::removeDriver(String const& name)
{
    // Not an operation of its own: the record is freed at once when the inner one is the outermost.
    const TYPtr<IDriverRepository> life = TYPtr<IDriverRepository>::share(this);
    const String own(name);
    finishDepartures(own, nullptr);
    IDriver* driver = nullptr;
    if (getDriver(own, &driver).code() != 0)
        return;
    const TYPtr<IDriver> held(driver);
    removeDriver(driver);
}

/// Takes the driver of that name, at that place, out and tells the listeners and, at last, `told`.
void CDriverRepository::retire(String const& name, Drivers::Iterator place, IDriver* told,
                               Listeners::Iterator stop)
{
    DriverWrapper& record = *place->value;
    record.gone_ = true;
    drivers_.extract(place);
    Departure departure(*this, record, name, told, stop);
    inTurn([&] { finish(departure); }, [&] { discard(record); });
}

void CDriverRepository::finish(Departure& departure)
{
    inTurn(
        [&] {
            if (departure.record.hadMatch_) // else nobody has been told of it
                throughout([&] { sayFarewells(departure); });
        },
        [&] {
            const TYPtr<IDriver> told(departure.told.detach());
            if (told)
                told.get()->setDriverRepository(nullptr);
        });
}

/// Tells the listeners that had their offer, last first. An entry's active flag says who is still
/// owed a farewell, so that the walk can be made again.
[[gnu::flatten]] void CDriverRepository::sayFarewells(Departure& departure)
{
    DriverWrapper& record = departure.record;
    bool offered = departure.stop == listeners_.end();
    DriverWrapper::Entry hint = record.listeners_.end();
    DriverWrapper::Voice voice;
    for (Listeners::Iterator at = listeners_.end(); at != listeners_.begin();) {
        --at;
        Listener* const listener = at->listener();
        offered = offered || at == departure.stop;
        if (offered || listener->stamp_ > record.stamp_) {
            const DriverWrapper::Entry entry = record.findNear(hint, listener);
            if (entry != record.listeners_.end()) {
                hint = entry;
                record.part(entry, voice);
            }
        }
    }
}

/// Does what is still owed for drivers that are just leaving under that name, or that driver.
void CDriverRepository::finishEach(String const& name, IDriver const* driver)
{
    for (Departure* at = departures_; at != nullptr; at = at->outer)
        if (at->name == name || (driver != nullptr && at->record.getDriver() == driver))
            finish(*at);
}

XCode CDriverRepository::getDriver(String const& name, IDriver** out)
{
    DriverWrapper const* const record = recordOf(name);
    IDriver* const driver = record != nullptr ? record->getDriver() : nullptr;
    if (driver != nullptr && out != nullptr)
        driver->addRef();
    if (out != nullptr)
        *out = driver;
    return XCode(driver != nullptr ? 0 : -1);
}

CDriverRepository::DriverWrapper* CDriverRepository::recordOf(String const& name) const
{
    const Drivers::ConstIterator found = drivers_.find(name);
    return found != drivers_.end() ? found->value : nullptr;
}

/// Frees a record now, if nobody else can be looking at it.
void CDriverRepository::discard(DriverWrapper& record)
{
    if (running_ > 1 || graves_) {
        graves_ = true;
        return;
    }
    unlink(record);
    record.destroy();
}

void CDriverRepository::unlink(DriverWrapper& record)
{
    (record.older_ != nullptr ? record.older_->newer_ : oldest_) = record.newer_;
    (record.newer_ != nullptr ? record.newer_->older_ : newest_) = record.older_;
}
