#ifndef SUPPORT_RECORDINGMONITOR_H
#define SUPPORT_RECORDINGMONITOR_H

#include <cstdio>
#include <string>
#include <vector>

#include <drvrepo/MON_DRV.h>

/// Keeps the library's log lines. It is MON_DRV while it lives; then the monitor before it is
/// again.
class RecordingMonitor : public RTD::Monitor
{
public:
    struct Line
    {
        int level;
        std::string text;
    };

    explicit RecordingMonitor(std::int32_t threshold = 0) : Monitor(threshold), before_(MON_DRV)
    {
        MON_DRV = this;
    }
    ~RecordingMonitor() override { MON_DRV = before_; }

    std::vector<Line> const& lines() const { return lines_; }

    /// All lines as "<level> text\n" since the last call.
    std::string take()
    {
        std::string all;
        for (Line const& line : lines_)
            all += "<" + std::to_string(line.level) + "> " + line.text + "\n";
        lines_.clear();
        return all;
    }

protected:
    void write(int level, char const* fmt, std::va_list arguments) const override
        UTILITY_PRINTF(3, 0)
    {
        std::va_list again;
        va_copy(again, arguments);
        const int length = std::vsnprintf(nullptr, 0, fmt, again);
        va_end(again);
        std::string text(static_cast<std::size_t>(length), '\0');
        std::vsnprintf(text.data(), text.size() + 1, fmt, arguments);
        lines_.push_back(Line{level, text});
    }

private:
    mutable std::vector<Line> lines_;
    RTD::Monitor const* before_;
};

#endif
