#include "Refusals.h"

#include "ChannelList.h"

#include <algorithm>
#include <cstdint>

namespace
{
/// Whether `text` is `word`, alone or with something behind a blank, which `rest` takes.
bool startsWithWord(std::string const& text, std::string const& word, std::string& rest)
{
    if (text.compare(0, word.size(), word) != 0)
        return false;
    if (text.size() > word.size() && text[word.size()] != ' ')
        return false;
    rest = text.size() > word.size() ? text.substr(word.size() + 1) : "";
    return true;
}

bool readOrdinal(std::string const& text, unsigned& number)
{
    std::size_t const digits = std::min(text.find_first_not_of("0123456789"), text.size());
    std::string const ending = text.substr(digits);
    bool const known =
        ending.empty() || ending == "st" || ending == "nd" || ending == "rd" || ending == "th";
    return known && readNumber(text.substr(0, digits), UINT32_MAX, number) && number != 0;
}
} // namespace

bool Refusals::add(std::string const& rule)
{
    std::string rest;
    unsigned number = 0;
    if (startsWithWord(rule, "added", rest)) {
        rules_.push_back({Kind::Added, rest, "", 0});
    } else if (startsWithWord(rule, "set", rest) && !rest.empty()) {
        std::size_t const equals = rest.find('=');
        if (equals == std::string::npos)
            rules_.push_back({Kind::Set, rest, "", 0});
        else
            rules_.push_back({Kind::SetTo, rest.substr(0, equals), rest.substr(equals + 1), 0});
    } else if (readOrdinal(rule, number)) {
        rules_.push_back({Kind::Nth, "", "", number});
    } else {
        return false;
    }
    return true;
}

bool Refusals::refuses(std::function<bool(Rule const&)> const& meets)
{
    ++asked_;
    return std::any_of(rules_.begin(), rules_.end(), [&](Rule const& rule) {
        return rule.kind == Kind::Nth ? rule.number == asked_ : meets(rule);
    });
}

bool Refusals::refusesAdded(std::function<bool(std::string const&)> const& meets)
{
    return refuses([&](Rule const& rule) {
        return rule.kind == Kind::Added && (rule.text.empty() || meets(rule.text));
    });
}

bool Refusals::refusesSet(std::string const& key, std::string const& value)
{
    return refuses([&](Rule const& rule) {
        return (rule.kind == Kind::Set && key == rule.text) ||
               (rule.kind == Kind::SetTo && key == rule.text && value == rule.value);
    });
}
