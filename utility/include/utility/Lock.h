#ifndef UTILITY_LOCK_H
#define UTILITY_LOCK_H

#include <utility/Export.h>
#include <utility/XCode.h>

/// A lock as the objects of the platform hand it out. The virtual operations are binary contract:
/// lock, unlock, destructor.
class UTILITY_EXPORT Lock
{
public:
    Lock() = default;
    Lock(Lock const&) = delete;
    Lock& operator=(Lock const&) = delete;

    /// Waits for the lock. The code is for implementations that can fail; callers go on anyway.
    virtual XCode lock() = 0;
    /// Gives the lock back.
    virtual void unlock() = 0;
    virtual ~Lock();
};

/// What a counted pointer says about locked access to its object.
struct LockRecord
{
    void const* object; ///< the object held, not counted
    Lock* lock;         ///< the lock to take, null for none
    bool held;          ///< whether the lock is taken
};

/// Holds a lock from construction to destruction, also when an exception passes. A null lock is
/// no lock: nothing is taken.
class LockScope
{
public:
    /// Takes `lock`, unless that is null.
    explicit LockScope(Lock* lock) : lock_(lock)
    {
        if (lock_ != nullptr)
            static_cast<void>(lock_->lock());
    }
    /// Takes the lock that a record names, if it names an object and is not yet held.
    explicit LockScope(LockRecord const& record)
        : LockScope(record.object != nullptr && !record.held ? record.lock : nullptr)
    {}
    LockScope(LockScope const&) = delete;
    LockScope& operator=(LockScope const&) = delete;
    ~LockScope()
    {
        if (lock_ != nullptr)
            lock_->unlock();
    }

private:
    Lock* lock_;
};

#endif
