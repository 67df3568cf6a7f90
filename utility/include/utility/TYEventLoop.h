#ifndef UTILITY_TYEVENTLOOP_H
#define UTILITY_TYEVENTLOOP_H

#include <mutex>

#include <utility/Export.h>
#include <utility/Lock.h>

/// What components need of an event loop: an identity and a lock. The lock is recursive and
/// cannot fail.
class UTILITY_EXPORT TYEventLoop
{
public:
    TYEventLoop() = default;
    TYEventLoop(TYEventLoop const&) = delete;
    TYEventLoop& operator=(TYEventLoop const&) = delete;

    /// The loop's lock; lives as long as the loop.
    Lock* lock() const { return &lock_; }

private:
    class UTILITY_EXPORT LoopLock final : public Lock
    {
    public:
        XCode lock() override;
        void unlock() override;

    private:
        std::recursive_mutex mutex_;
    };

    mutable LoopLock lock_;
};

/// The process-wide event loop.
class UTILITY_EXPORT CRIT
{
public:
    /// Made by the first call, from any thread; never destroyed.
    static TYEventLoop& INSTANCE();
};

#endif
