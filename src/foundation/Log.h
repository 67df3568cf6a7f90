#ifndef FOUNDATION_LOG_H
#define FOUNDATION_LOG_H

#include <cstdint>

#include <utility/Export.h>

#include <drvrepo/MON_DRV.h>

// The library's log lines go to the monitor MON_DRV; without one nothing is written.

/// Whether there is a monitor: worth asking where what a line says takes time to find out.
inline bool isMonitored()
{
    return MON_DRV != nullptr;
}

/// Writes a line at the error level.
void logError(char const* fmt, ...) UTILITY_PRINTF(1, 2);

/// Writes a line at the debug level, if `verbosity` is not above the monitor's threshold.
void logDebug(std::int32_t verbosity, char const* fmt, ...) UTILITY_PRINTF(2, 3);

/// A 32-bit number as "%lu" and "%lx" take it: `long` has 64 bits on some machines.
inline unsigned long printable(std::uint32_t number)
{
    return number;
}

#endif
