#ifndef FOUNDATION_LOG_H
#define FOUNDATION_LOG_H

#include <cstdint>

#include <utility/Export.h>

// The library's log lines go to the monitor MON_DRV; without one nothing is written.

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
