#ifndef PLATFORM_MONITOR_H
#define PLATFORM_MONITOR_H

#include <cstdarg>
#include <cstdint>

#include <utility/Export.h>

namespace RTD
{

constexpr int LEVEL_ERROR = 3;
constexpr int LEVEL_DEBUG = 7;

class Monitor
{
public:
    virtual ~Monitor();
    std::int32_t threshold() const;
    void vmonitor(int, char const*, std::va_list) const UTILITY_PRINTF(3, 0);
};

} // namespace RTD

#endif
