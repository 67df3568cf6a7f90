#ifndef UTILITY_MONITOR_H
#define UTILITY_MONITOR_H

#include <cstdarg>
#include <cstdint>
#include <cstdio>

#include <utility/Export.h>

namespace RTD
{

constexpr int LEVEL_ERROR = 3; ///< of lines that tell of failures
constexpr int LEVEL_DEBUG = 7; ///< of all other lines

/// Takes log lines. Derive from it to write them somewhere.
/// Locking: the sink's own affair; the ready-made ones may be used from several threads.
class UTILITY_EXPORT Monitor
{
public:
    /// Debug lines are wanted up to this verbosity.
    explicit Monitor(std::int32_t threshold = 0) : threshold_(threshold) {}
    Monitor(Monitor const&) = delete;
    Monitor& operator=(Monitor const&) = delete;
    virtual ~Monitor();

    /// @{
    /// Up to which verbosity debug lines are wanted.
    std::int32_t threshold() const { return threshold_; }
    void setThreshold(std::int32_t threshold) { threshold_ = threshold; }
    /// @}

    /// Writes one line, formatted as by printf, at a level (3 error, 7 debug). No line end is
    /// expected in `fmt`.
    void vmonitor(int level, char const* fmt, std::va_list arguments) const UTILITY_PRINTF(3, 0);

protected:
    /// Where the lines go.
    virtual void write(int level, char const* fmt, std::va_list arguments) const
        UTILITY_PRINTF(3, 0) = 0;

private:
    std::int32_t threshold_;
};

/// Writes lines as "<level> text" to a stream, which stays the caller's.
class UTILITY_EXPORT FileMonitor : public Monitor
{
public:
    /// Writes to `file`, which must outlive it.
    explicit FileMonitor(std::FILE* file, std::int32_t threshold = 0)
        : Monitor(threshold), file_(file)
    {}

protected:
    void write(int level, char const* fmt, std::va_list arguments) const override
        UTILITY_PRINTF(3, 0);

private:
    std::FILE* file_;
};

/// Hands lines to syslog; the levels are its severities (3 LOG_ERR, 7 LOG_DEBUG).
class UTILITY_EXPORT SyslogMonitor : public Monitor
{
public:
    using Monitor::Monitor;

protected:
    void write(int level, char const* fmt, std::va_list arguments) const override
        UTILITY_PRINTF(3, 0);
};

} // namespace RTD

#endif
