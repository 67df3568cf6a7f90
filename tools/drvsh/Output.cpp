#include "Output.h"

#include "Json.h"

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

bool Output::good() const
{
    return std::all_of(narrators_.begin(), narrators_.end(),
                       [](Narrator const* narrator) { return narrator->good(); });
}

void Output::beginCommand(std::string const& text)
{
    each([&](Narrator& narrator) { narrator.command(text); });
}

void Output::result(std::string const& text, nlohmann::ordered_json const& value, bool asJson)
{
    each([&](Narrator& narrator) { narrator.result({text, value, asJson}); });
}

void Output::line(std::string const& text)
{
    result(text + "\n", Json(text), false);
}

void Output::say(std::string const& text)
{
    each([&](Narrator& narrator) { narrator.said(text); });
}

void Output::remark(std::string const& text)
{
    each([&](Narrator& narrator) { narrator.remarked(text); });
}

void Output::told(Notice const& notice)
{
    each([&](Narrator& narrator) { narrator.told(notice); });
}

void Output::logged(int level, std::string const& text)
{
    std::string const readable = named(text);
    each([&](Narrator& narrator) { narrator.logged(level, readable); });
}

void Output::failed(std::string const& text)
{
    each([&](Narrator& narrator) { narrator.failed(text); });
}

void Output::complain(Complaint const& complaint)
{
    each([&](Narrator& narrator) { narrator.complained(complaint); });
}

void Output::addHearer(Hearer const& hearer, void const* observer)
{
    names_[addressText(observer)] = hearer.name;
    each([&](Narrator& narrator) { narrator.came(hearer); });
}

void Output::removeHearer(Hearer const& hearer, void const* observer)
{
    names_.erase(addressText(observer));
    each([&](Narrator& narrator) { narrator.left(hearer); });
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

std::string tableText(Rows const& rows)
{
    std::size_t width = 0;
    for (auto const& row : rows)
        width = std::max(width, row.first.size());
    std::string text;
    for (auto const& row : rows) {
        text += row.first;
        if (!row.second.empty())
            text += std::string(width + 2 - row.first.size(), ' ') + row.second;
        text += '\n';
    }
    return text;
}
