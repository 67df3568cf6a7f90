#include <utility/Monitor.h>

#include <syslog.h>

RTD::Monitor::~Monitor() = default;

void RTD::Monitor::vmonitor(int level, char const* fmt, std::va_list arguments) const
{
    write(level, fmt, arguments);
}

void RTD::FileMonitor::write(int level, char const* fmt, std::va_list arguments) const
{
    if (file_ == nullptr)
        return;
    ::flockfile(file_);
    std::fprintf(file_, "<%d> ", level);
    std::vfprintf(file_, fmt, arguments);
    std::fputc('\n', file_);
    ::funlockfile(file_);
}

void RTD::SyslogMonitor::write(int level, char const* fmt, std::va_list arguments) const
{
    ::vsyslog(level, fmt, arguments);
}
