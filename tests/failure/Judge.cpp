#include "Judge.h"

void Judge::object(std::string const& what, char const* why)
{
    lies_ += what + ": " + why + "\n";
}

void Judge::hear(std::string const& what, bool failed)
{
    const std::size_t sign = what.find_first_of("+-");
    const std::size_t dot = what.find('.', sign);
    const bool coming = what[sign] == '+';
    Knowledge& known = known_[what.substr(0, sign) + " " + what.substr(sign + 1, dot - sign - 1)];
    if (dot == std::string::npos)
        hearDriver(known, coming, failed, what);
    else
        hearAttachment(known, what.substr(dot + 1), coming, failed, what);
}

void Judge::doubt(std::string const& listener)
{
    for (auto& at : known_)
        if (at.first.find(listener + " ") == 0)
            at.second.doubtful = true;
}

void Judge::hearDriver(Knowledge& known, bool coming, bool failed, std::string const& what)
{
    if (coming && known.in && !known.doubtful)
        object(what, "is there already");
    if (!coming && !known.in)
        object(what, "was not there");
    known.in = coming && !failed;
    known.doubtful = false;
    known.attachments.clear();
}

void Judge::hearAttachment(Knowledge& known, std::string const& change, bool coming, bool failed,
                           std::string const& what)
{
    const std::string key = change.substr(0, change.find('='));
    const std::string value = change.substr(change.find('=') + 1);
    if (!known.in) {
        object(what, "of a driver that is not there");
        return;
    }
    if (!coming) {
        const auto held = known.attachments.find(key);
        if (held != known.attachments.end() && held->second != value)
            object(what, "had another value");
        known.attachments.erase(key);
        return;
    }
    if (known.attachments.count(key) != 0)
        object(what, "had a value");
    if (!failed)
        known.attachments[key] = value;
    known.doubtful = known.doubtful || failed;
}

std::string Judge::verdict() const
{
    std::string all = lies_;
    for (auto const& at : known_)
        if (at.second.in && !at.second.doubtful)
            all += at.first + ": was never told the end\n";
    return all;
}
