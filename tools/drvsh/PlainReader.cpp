#include "LineReader.h"

#include <cerrno>
#include <csignal>
#include <poll.h>
#include <unistd.h>

namespace
{
class PlainReader : public LineReader
{
public:
    explicit PlainReader(std::string const& prompt) : prompt_(prompt) {}
    Got read(std::string& line) override;

private:
    bool takeLine(std::string& line);
    static bool isInterrupted();
    static void write(std::string const& text);

    std::string prompt_;
    std::string read_; // and not yet handed out
};

LineReader::Got PlainReader::read(std::string& line)
{
    write(prompt_);
    while (!takeLine(line)) {
        if (isInterrupted()) {
            // The terminal has dropped what was typed.
            read_.clear();
            write("\n");
            return Got::Cancelled;
        }
        char buffer[4096];
        ssize_t const count = ::read(STDIN_FILENO, buffer, sizeof buffer);
        if (count > 0) {
            read_.append(buffer, static_cast<std::size_t>(count));
        } else {
            line.swap(read_);
            read_.clear();
            return line.empty() ? Got::End : Got::Line;
        }
    }
    return Got::Line;
}

/// Waits until there is something to read. Returns true if Ctrl-C came first, also before the wait
/// began: the signal is let through nowhere else.
bool PlainReader::isInterrupted()
{
    pollfd waiting = {STDIN_FILENO, POLLIN, 0};
    sigset_t none;
    ::sigemptyset(&none);
    return ::ppoll(&waiting, 1, nullptr, &none) < 0 && errno == EINTR;
}

bool PlainReader::takeLine(std::string& line)
{
    std::size_t const end = read_.find('\n');
    if (end == std::string::npos)
        return false;
    line = read_.substr(0, end);
    read_.erase(0, end + 1);
    return true;
}

void PlainReader::write(std::string const& text)
{
    // If the terminal is gone, reading says so.
    ssize_t const ignored = ::write(STDOUT_FILENO, text.data(), text.size());
    static_cast<void>(ignored);
}

// How SIGINT was handled.
struct sigaction before;
sigset_t maskBefore;

void interrupted(int) {}
} // namespace

std::unique_ptr<LineReader> makePlainReader(LineReader::Setup const& setup)
{
    return std::make_unique<PlainReader>(setup.prompt);
}

InterruptGuard::InterruptGuard()
{
    struct sigaction action = {};
    action.sa_handler = interrupted;
    ::sigemptyset(&action.sa_mask);
    ::sigaction(SIGINT, &action, &before);
    sigset_t interrupt;
    ::sigemptyset(&interrupt);
    ::sigaddset(&interrupt, SIGINT);
    ::sigprocmask(SIG_BLOCK, &interrupt, &maskBefore);
}

InterruptGuard::~InterruptGuard()
{
    ::sigprocmask(SIG_SETMASK, &maskBefore, nullptr);
    ::sigaction(SIGINT, &before, nullptr);
}

#ifndef DRVSH_EDIT
std::unique_ptr<LineReader> makeLineReader(LineReader::Setup const& setup)
{
    return makePlainReader(setup);
}
#endif
