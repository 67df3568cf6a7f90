#include "ShellMonitor.h"

#include "Output.h"

#include <drvrepo/MON_DRV.h>

#include <string>

ShellMonitor::ShellMonitor(Output& output, std::int32_t threshold)
    : Monitor(threshold), output_(output)
{
    MON_DRV = this;
}

ShellMonitor::~ShellMonitor()
{
    MON_DRV = nullptr;
}

void ShellMonitor::write(int level, char const* fmt, std::va_list arguments) const
{
    std::va_list again;
    va_copy(again, arguments);
    int const length = std::vsnprintf(nullptr, 0, fmt, arguments);
    std::string text(static_cast<std::size_t>(length > 0 ? length : 0) + 1, '\0');
    std::vsnprintf(&text[0], text.size(), fmt, again);
    va_end(again);
    text.pop_back();
    output_.logged(level, text);
}
