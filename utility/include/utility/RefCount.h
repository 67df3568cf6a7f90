#ifndef UTILITY_REFCOUNT_H
#define UTILITY_REFCOUNT_H

#include <atomic>
#include <cstdint>

#if __has_include(<sys/single_threaded.h>)
#include <sys/single_threaded.h>
#define UTILITY_SINGLE_THREADED __libc_single_threaded
#else
#define UTILITY_SINGLE_THREADED false
#endif

/// A reference count that several threads may change at once; starts at 1.
///
/// While the C library says that the process has one thread, a plain change does the same work
/// without the locked instruction: nobody is there who could see it half done.
class AtomicRefCount
{
public:
    constexpr AtomicRefCount() = default;
    AtomicRefCount(AtomicRefCount const&) = delete;
    AtomicRefCount& operator=(AtomicRefCount const&) = delete;

    /// Counts one reference more.
    void increment() { change(1); }

    /// Returns true for the caller that gave back the last reference.
    bool decrement() { return change(-1) == 0; }

    /// The count at this moment.
    std::int32_t value() const { return count_.load(std::memory_order_acquire); }

private:
    std::int32_t change(std::int32_t by)
    {
        if (UTILITY_SINGLE_THREADED) {
            const std::int32_t now = count_.load(std::memory_order_relaxed) + by;
            count_.store(now, std::memory_order_relaxed);
            return now;
        }
        return count_.fetch_add(by, std::memory_order_seq_cst) + by;
    }

    std::atomic<std::int32_t> count_{1};
};

/// A reference count for objects that stay on one thread or under one lock; starts at 1.
class PlainRefCount
{
public:
    PlainRefCount() = default;
    PlainRefCount(PlainRefCount const&) = delete;
    PlainRefCount& operator=(PlainRefCount const&) = delete;

    /// Counts one reference more.
    void increment() { ++count_; }

    /// Returns true for the caller that gave back the last reference.
    bool decrement() { return --count_ == 0; }

    /// The count.
    std::int32_t value() const { return count_; }

private:
    std::int32_t count_ = 1;
};

#endif
