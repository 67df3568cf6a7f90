#include "LineHistory.h"

#include "Expectations.h"
#include "Files.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
constexpr std::size_t MOST = 1000;

std::string environment(char const* name)
{
    char const* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

/// Makes a folder and those it lies in, where they are missing, for the user alone.
bool makeFolder(std::string const& folder)
{
    if (folder.empty() || ::mkdir(folder.c_str(), 0700) == 0 || errno == EEXIST)
        return true;
    std::size_t const slash = folder.rfind('/');
    if (errno != ENOENT || slash == std::string::npos)
        return false;
    return makeFolder(folder.substr(0, slash)) && ::mkdir(folder.c_str(), 0700) == 0;
}

/// Adds a line to a file. Returns whether that went well.
bool append(std::string const& file, std::string const& line)
{
    int const descriptor = ::open(file.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600);
    if (descriptor < 0)
        return false;
    // In one call, so that the lines of two sessions don't mix.
    ssize_t const written = ::write(descriptor, line.data(), line.size());
    return ::close(descriptor) == 0 && written == static_cast<ssize_t>(line.size());
}
} // namespace

LineHistory LineHistory::ofUser()
{
    std::string state = environment("XDG_STATE_HOME");
    std::string const home = environment("HOME");
    // A relative path is none, by the rules for that variable.
    if (state.compare(0, 1, "/") != 0)
        state = home.empty() ? "" : home + "/.local/state";
    return LineHistory(state.empty() ? "" : state + "/drvsh/history");
}

std::vector<std::string> LineHistory::load() const
{
    std::string text;
    if (file_.empty() || !readFile(file_, text).empty())
        return {};
    std::vector<std::string> lines = linesOf(text);
    if (lines.size() <= MOST)
        return lines;
    bool const isLong = lines.size() > 2 * MOST;
    lines.erase(lines.begin(), lines.end() - MOST);
    std::string kept;
    for (std::string const& line : lines)
        kept += line + "\n";
    if (isLong)
        replaceFile(file_, kept);
    return lines;
}

void LineHistory::add(std::string const& line)
{
    if (line.empty() || line == last_ || line.find('\0') != std::string::npos)
        return;
    last_ = line;
    if (file_.empty() || !problem_.empty())
        return;
    std::string const folder = file_.substr(0, file_.rfind('/'));
    if (!makeFolder(folder) || !append(file_, line + "\n"))
        problem_ = std::strerror(errno);
}
