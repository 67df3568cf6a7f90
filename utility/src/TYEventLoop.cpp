#include <utility/TYEventLoop.h>

#include <new>

XCode TYEventLoop::LoopLock::lock()
{
    mutex_.lock();
    return XCode();
}

void TYEventLoop::LoopLock::unlock()
{
    mutex_.unlock();
}

TYEventLoop& CRIT::INSTANCE()
{
    // Never destroyed, so that it outlives everything that is bound to it.
    alignas(TYEventLoop) static unsigned char place[sizeof(TYEventLoop)];
    static TYEventLoop* const loop = new (place) TYEventLoop();
    return *loop;
}
