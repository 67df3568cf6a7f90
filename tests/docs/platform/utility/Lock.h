#ifndef PLATFORM_LOCK_H
#define PLATFORM_LOCK_H

#include <utility/XCode.h>

class Lock
{
public:
    virtual XCode lock() = 0;
    virtual void unlock() = 0;
    virtual ~Lock();
};

struct LockRecord
{
    void const* object;
    Lock* lock;
    bool held;
};

class LockScope
{
public:
    explicit LockScope(Lock*);
    explicit LockScope(LockRecord const&);
    LockScope(LockScope const&) = delete;
    LockScope& operator=(LockScope const&) = delete;
    ~LockScope();
};

#endif
