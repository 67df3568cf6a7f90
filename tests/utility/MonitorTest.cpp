#include <cstdio>
#include <memory>
#include <string>

#include <syslog.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <utility/Monitor.h>

#include <support/TwoThreads.h>

namespace
{

void send(RTD::Monitor const& monitor, int level, char const* fmt, ...) UTILITY_PRINTF(3, 4);

void send(RTD::Monitor const& monitor, int level, char const* fmt, ...)
{
    std::va_list arguments;
    va_start(arguments, fmt);
    monitor.vmonitor(level, fmt, arguments);
    va_end(arguments);
}

struct CloseFile
{
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

std::string contentOf(std::FILE* file)
{
    std::fflush(file);
    std::rewind(file);
    std::string content;
    for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file))
        content += static_cast<char>(c);
    return content;
}

/// Sends standard error to a file while it lives.
class StandardErrorInFile
{
public:
    explicit StandardErrorInFile(std::FILE* file) : before_(::dup(STDERR_FILENO))
    {
        std::fflush(stderr);
        ::dup2(::fileno(file), STDERR_FILENO);
    }
    StandardErrorInFile(StandardErrorInFile const&) = delete;
    StandardErrorInFile& operator=(StandardErrorInFile const&) = delete;
    ~StandardErrorInFile()
    {
        std::fflush(stderr);
        ::dup2(before_, STDERR_FILENO);
        ::close(before_);
    }

private:
    int before_;
};

TEST(FileMonitor, WritesALineWithItsLevel)
{
    const File file(std::tmpfile());
    ASSERT_NE(nullptr, file);
    const RTD::FileMonitor monitor(file.get());
    send(monitor, RTD::LEVEL_ERROR, "DrvRepo: ADDING DRIVER '%s' FAILED: %s", "fxs 1", "busy");
    send(monitor, RTD::LEVEL_DEBUG, "%8.8lx", 0xful);
    send(monitor, 0, "%s", "");
    EXPECT_EQ("<3> DrvRepo: ADDING DRIVER 'fxs 1' FAILED: busy\n<7> 0000000f\n<0> \n",
              contentOf(file.get()));
}

TEST(FileMonitor, WithoutAFileWritesNothing)
{
    const File file(std::tmpfile());
    ASSERT_NE(nullptr, file);
    {
        const StandardErrorInFile redirected(file.get());
        const RTD::FileMonitor monitor(nullptr);
        send(monitor, RTD::LEVEL_ERROR, "%s", "lost");
    }
    EXPECT_EQ("", contentOf(file.get()));
}

TEST(FileMonitor, KeepsLinesOfTwoThreadsApart)
{
    const File file(std::tmpfile());
    ASSERT_NE(nullptr, file);
    const RTD::FileMonitor monitor(file.get());
    onTwoThreads([&monitor](int number) {
        char const* const who = number == 0 ? "first" : "second";
        for (int i = 0; i < 20000; ++i)
            send(monitor, RTD::LEVEL_DEBUG, "%s %s %s", who, who, who);
    });

    const std::string content = contentOf(file.get());
    unsigned firsts = 0;
    unsigned seconds = 0;
    for (std::size_t at = 0; at < content.size();) {
        const std::size_t end = content.find('\n', at);
        const std::string line = content.substr(at, end - at);
        firsts += line == "<7> first first first" ? 1 : 0;
        seconds += line == "<7> second second second" ? 1 : 0;
        at = end == std::string::npos ? content.size() : end + 1;
    }
    EXPECT_EQ(20000u, firsts);
    EXPECT_EQ(20000u, seconds);
}

TEST(Monitor, HasAThreshold)
{
    RTD::FileMonitor monitor(nullptr);
    EXPECT_EQ(0, monitor.threshold());
    monitor.setThreshold(-3);
    EXPECT_EQ(-3, monitor.threshold());
    EXPECT_EQ(5, RTD::FileMonitor(nullptr, 5).threshold());
    EXPECT_EQ(2, RTD::SyslogMonitor(2).threshold());
    EXPECT_EQ(0, RTD::SyslogMonitor().threshold());
}

// The threshold is for those who send: a monitor writes what it is handed.
TEST(Monitor, WritesWhatItIsHanded)
{
    const File file(std::tmpfile());
    ASSERT_NE(nullptr, file);
    const RTD::FileMonitor monitor(file.get(), -100);
    send(monitor, RTD::LEVEL_DEBUG, "%s", "written");
    EXPECT_EQ("<7> written\n", contentOf(file.get()));
}

TEST(Monitor, LevelsAreThoseOfSyslog)
{
    EXPECT_EQ(3, RTD::LEVEL_ERROR);
    EXPECT_EQ(7, RTD::LEVEL_DEBUG);
    EXPECT_EQ(LOG_ERR, RTD::LEVEL_ERROR);
    EXPECT_EQ(LOG_DEBUG, RTD::LEVEL_DEBUG);
}

/// What the system log prints on standard error when only one severity passes.
std::string loggedAt(int severity)
{
    const File file(std::tmpfile());
    if (file == nullptr)
        return "no file";
    {
        const StandardErrorInFile redirected(file.get());
        ::openlog("monitor", LOG_PERROR, LOG_USER);
        const int before = ::setlogmask(LOG_MASK(severity));
        const RTD::SyslogMonitor monitor;
        send(monitor, RTD::LEVEL_ERROR, "an error, %s %d", "number", 3);
        send(monitor, RTD::LEVEL_DEBUG, "a debug line, %d%%", 100);
        ::setlogmask(before);
        ::closelog();
    }
    return contentOf(file.get());
}

TEST(SyslogMonitor, HandsLinesToTheSystemLog)
{
    EXPECT_EQ("monitor: an error, number 3\n", loggedAt(LOG_ERR));
    EXPECT_EQ("monitor: a debug line, 100%\n", loggedAt(LOG_DEBUG));
    EXPECT_EQ("", loggedAt(LOG_INFO));
}

} // namespace
