#include "foundation/Log.h"

#include <cstdarg>

#include <drvrepo/MON_DRV.h>

RTD::Monitor const* MON_DRV = nullptr;

namespace
{

/// Ends the use of a va_list however the scope is left: a monitor may throw.
class Arguments
{
public:
    explicit Arguments(std::va_list& list) : list_(list) {}
    Arguments(Arguments const&) = delete;
    Arguments& operator=(Arguments const&) = delete;
    ~Arguments() { va_end(list_); }

private:
    std::va_list& list_;
};

} // namespace

void logError(char const* fmt, ...)
{
    RTD::Monitor const* const monitor = MON_DRV;
    if (monitor == nullptr)
        return;
    std::va_list list;
    va_start(list, fmt);
    const Arguments scope(list);
    monitor->vmonitor(RTD::LEVEL_ERROR, fmt, list);
}

void logDebug(std::int32_t verbosity, char const* fmt, ...)
{
    RTD::Monitor const* const monitor = MON_DRV;
    if (monitor == nullptr || verbosity > monitor->threshold())
        return;
    std::va_list list;
    va_start(list, fmt);
    const Arguments scope(list);
    monitor->vmonitor(RTD::LEVEL_DEBUG, fmt, list);
}
