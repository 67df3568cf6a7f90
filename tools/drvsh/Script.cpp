#include "Script.h"

#include "Expectations.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <sstream>

Script Script::file(std::string const& path)
{
    auto opened = std::make_unique<std::ifstream>();
    errno = 0;
    opened->open(path);
    Script script(path, opened.get());
    script.owned_ = std::move(opened);
    std::size_t const slash = path.rfind('/');
    if (slash != std::string::npos)
        script.folder_ = path.substr(0, slash + 1);
    if (!*script.stream_)
        script.noteFailure();
    return script;
}

Script Script::text(std::string const& name, std::string const& commands)
{
    auto held = std::make_unique<std::istringstream>(commands);
    Script script(name, held.get());
    script.owned_ = std::move(held);
    return script;
}

Script Script::stream(std::string const& name, std::istream& stream)
{
    return Script(name, &stream);
}

bool Script::next(std::string& line)
{
    if (!fetch(line))
        return false;
    while (isFence(line)) {
        unsigned const begin = line_;
        std::string const fence = line;
        while (fetch(line) && line != fence) {
        }
        if (line != fence && problem_.empty())
            problem_ = "what line " + std::to_string(begin) + " expects has no end, " + fence;
        if (!fetch(line))
            return false;
    }
    return true;
}

bool Script::fetch(std::string& line)
{
    if (!problem_.empty())
        return false;
    errno = 0;
    if (!std::getline(*stream_, line)) {
        // A folder opens like a file and fails only now.
        if (stream_->bad() || errno != 0)
            noteFailure();
        return false;
    }
    if (!line.empty() && line.back() == '\r')
        line.pop_back();
    ++line_;
    return true;
}

std::string Script::place() const
{
    return name_ + ":" + std::to_string(line_);
}

void Script::noteFailure()
{
    problem_ = errno != 0 ? std::strerror(errno) : "it can't be read";
}
