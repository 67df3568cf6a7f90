#ifndef PLATFORM_TYEVENTLOOP_H
#define PLATFORM_TYEVENTLOOP_H

#include <utility/Lock.h>

class TYEventLoop
{
public:
    Lock* lock() const;
};

class CRIT
{
public:
    static TYEventLoop& INSTANCE();
};

#endif
