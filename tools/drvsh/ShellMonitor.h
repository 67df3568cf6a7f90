#ifndef DRVSH_SHELLMONITOR_H
#define DRVSH_SHELLMONITOR_H

#include <utility/Monitor.h>

class Output;

/// Writes the library's log lines into the transcript while it lives; the process has one log, so
/// there is one such monitor at a time.
class ShellMonitor : public RTD::Monitor
{
public:
    ShellMonitor(Output& output, std::int32_t threshold);
    ~ShellMonitor() override;

protected:
    void write(int level, char const* fmt, std::va_list arguments) const override
        UTILITY_PRINTF(3, 0);

private:
    Output& output_;
};

#endif
