#ifndef DRVREPO_SCOPEDDRIVER_H
#define DRVREPO_SCOPEDDRIVER_H

#include <memory>
#include <new>
#include <utility>

#include <drvrepo/IDriverRepository.h>

/// A driver that is in the repository until its scope ends, if nobody removed it before.
///
/// Ownership   holds a reference on the driver and one on the repository, whose event loop must
///             live longer.
/// Reentrancy  may be ended, moved and destroyed from inside any call.
/// Locking     takes the repository's lock for each operation.
/// Failure     what observers throw at the end of a scope ends the program; where they may, call
///             `remove` before it.
class ScopedDriver
{
public:
    /// Holds no driver.
    ScopedDriver() = default;
    /// Takes over what the other has.
    ScopedDriver(ScopedDriver&&) noexcept = default;
    /// Removes what it has, and takes over.
    ScopedDriver& operator=(ScopedDriver&& other) noexcept
    {
        ScopedDriver taken(std::move(other));
        std::swap(stay_, taken.stay_);
        return *this;
    }
    ~ScopedDriver() { remove(); }

    /// Removes what it has, and adds a driver; see IDriverRepository. After a failure it holds
    /// none.
    XCode add(String& error, IDriverRepository& repository, IDriver& driver)
    {
        remove();
        Owner made;
        try {
            made = std::make_shared<Stay>();
        } catch (std::bad_alloc const&) {
            return XCode::OUT_OF_MEMORY(error);
        }
        made->repository = TYPtr<IDriverRepository>::share(&repository);
        made->driver = TYPtr<IDriver>::share(&driver);
        stay_ = made;
        const LockScope held(repository.getLock());
        try {
            XCode rc = repository.addDriver(error, &driver);
            if (rc.code() != 0)
                made->fail();
            return rc;
        } catch (...) {
            made->fail();
            throw;
        }
    }
    /// Removes the driver.
    void remove()
    {
        if (const Owner ended = std::exchange(stay_, nullptr))
            ended->end();
    }

    /// The driver that it added and did not remove, not counted; null without one.
    IDriver* driver() const { return stay_ != nullptr ? stay_->driver.get() : nullptr; }

private:
    /// Shared with an operation under way, so that the scope may end inside it.
    struct Stay
    {
        void end()
        {
            if (!repository)
                return;
            const LockScope held(repository.get()->getLock());
            if (isIn())
                repository.get()->removeDriver(driver.get());
        }
        /// The repository does not know the driver any more.
        void fail()
        {
            driver.reset();
            repository.reset();
        }
        /// Repositories remove by name, and another driver may have it now.
        bool isIn() const
        {
            IDriver* found = nullptr;
            const XCode rc = repository.get()->getDriver(driver.get()->getDriverName(), &found);
            const TYPtr<IDriver> counted(found);
            return rc.code() == 0 && found == driver.get();
        }

        TYPtr<IDriverRepository> repository;
        TYPtr<IDriver> driver;
    };
    using Owner = std::shared_ptr<Stay>;

    Owner stay_;
};

#endif
