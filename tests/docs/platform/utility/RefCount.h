#ifndef PLATFORM_REFCOUNT_H
#define PLATFORM_REFCOUNT_H

class AtomicRefCount
{
public:
    void increment();
    bool decrement();
};

class PlainRefCount
{
public:
    void increment();
    bool decrement();
};

#endif
