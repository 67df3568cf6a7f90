#include "Output.h"

#include <algorithm>
#include <cstdio>

namespace
{
std::string addressText(void const* address)
{
    char text[32];
    std::snprintf(text, sizeof text, "%p", address);
    return text;
}
} // namespace

void Output::beginCommand(std::string const& text)
{
    command_ = "> " + text;
    if (showCommands_) {
        out_ << command_ << '\n';
        command_.clear();
    }
}

void Output::indented(std::string const& text)
{
    if (!command_.empty()) {
        out_ << command_ << '\n';
        command_.clear();
    }
    out_ << "  " << text << '\n';
}

void Output::line(std::string const& text)
{
    out_ << text << '\n';
}

void Output::table(std::vector<std::pair<std::string, std::string>> const& rows)
{
    std::size_t width = 0;
    for (auto const& row : rows)
        width = std::max(width, row.first.size());
    for (auto const& row : rows) {
        out_ << row.first;
        if (!row.second.empty())
            out_ << std::string(width + 2 - row.first.size(), ' ') << row.second;
        out_ << '\n';
    }
}

void Output::heard(std::string const& name, std::string const& text)
{
    std::size_t const width = widths_.empty() ? 0 : *widths_.rbegin();
    std::string const blanks(width > name.size() ? width - name.size() : 0, ' ');
    indented(name + ": " + blanks + text);
}

void Output::logged(int level, std::string const& text)
{
    indented("[" + std::to_string(level) + "] " + named(text));
}

void Output::outcome(std::string const& text)
{
    indented(text);
}

void Output::complain(std::string const& text)
{
    out_.flush();
    err_ << text << '\n';
    err_.flush();
}

void Output::addName(std::string const& name, void const* observer)
{
    widths_.insert(name.size());
    names_[addressText(observer)] = name;
}

void Output::removeName(std::string const& name, void const* observer)
{
    auto const width = widths_.find(name.size());
    if (width != widths_.end())
        widths_.erase(width);
    names_.erase(addressText(observer));
}

std::string Output::named(std::string const& text) const
{
    std::string result;
    std::size_t done = 0;
    for (std::size_t at = text.find("0x"); at != std::string::npos; at = text.find("0x", at + 2)) {
        std::size_t const end = text.find_first_not_of("0123456789abcdef", at + 2);
        auto const name = names_.find(text.substr(at, end - at));
        if (name == names_.end())
            continue;
        result += text.substr(done, at - done) + name->second;
        done = at + name->first.size();
    }
    return result + text.substr(done);
}
