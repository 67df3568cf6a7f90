#ifndef PLATFORM_REFCOUNT_H
#define PLATFORM_REFCOUNT_H

#define UTILITY_SINGLE_THREADED false

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
