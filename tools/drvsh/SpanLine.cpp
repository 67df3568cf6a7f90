#include "SpanLine.h"

#include "ChannelList.h"

#include <algorithm>
#include <cctype>

namespace
{
constexpr unsigned T1_CHANNELS = 24;
constexpr unsigned E1_CHANNELS = 31;
constexpr unsigned BRI_CHANNELS = 3;

/// Which framing and coding go together, and what line they make.
struct Kind
{
    char const* framing;
    char const* coding;
    char const* type;
    unsigned channels;
};

Kind const KINDS[] = {
    {"d4", "ami", "e1t1", T1_CHANNELS},   {"d4", "b8zs", "e1t1", T1_CHANNELS},
    {"sf", "ami", "e1t1", T1_CHANNELS},   {"sf", "b8zs", "e1t1", T1_CHANNELS},
    {"esf", "ami", "e1t1", T1_CHANNELS},  {"esf", "b8zs", "e1t1", T1_CHANNELS},
    {"cas", "ami", "e1t1", E1_CHANNELS},  {"cas", "hdb3", "e1t1", E1_CHANNELS},
    {"ccs", "hdb3", "e1t1", E1_CHANNELS}, {"ccs", "ami", "bri", BRI_CHANNELS},
};

std::string readNumbers(std::vector<std::string> const& parts, LineSpan& span)
{
    struct
    {
        char const* what;
        unsigned least, most;
        unsigned* number;
    } const wanted[] = {
        {"span number", 1, MAX_LINE_NUMBER, &span.number},
        {"timing", 0, MAX_LINE_NUMBER, &span.timing},
        {"line build-out", 0, 7, &span.lbo},
    };
    for (std::size_t i = 0; i < std::size(wanted); ++i) {
        auto const& want = wanted[i];
        if (i >= parts.size())
            return std::string(want.what) + " is missing";
        if (!readNumber(parts[i], want.most, *want.number) || *want.number < want.least)
            return std::string(want.what) + " '" + parts[i] + "' is no number from " +
                   std::to_string(want.least) + " to " + std::to_string(want.most);
    }
    return "";
}

template <class Same> bool knows(Same same)
{
    return std::any_of(std::begin(KINDS), std::end(KINDS), same);
}

std::string readKind(std::vector<std::string> const& parts, LineSpan& span)
{
    if (parts.size() < 5)
        return parts.size() < 4 ? "framing is missing" : "coding is missing";
    span.framing = parts[3];
    span.coding = parts[4];
    if (!knows([&](Kind const& kind) { return span.framing == kind.framing; }))
        return "framing '" + span.framing + "' is none of d4, sf, esf, cas, ccs";
    if (!knows([&](Kind const& kind) { return span.coding == kind.coding; }))
        return "coding '" + span.coding + "' is none of ami, b8zs, hdb3";
    for (Kind const& kind : KINDS)
        if (span.framing == kind.framing && span.coding == kind.coding) {
            span.type = kind.type;
            span.use.assign(kind.channels, ChannelUse::None);
            return "";
        }
    return "coding '" + span.coding + "' does not go with framing '" + span.framing + "'";
}

std::string readOptions(std::vector<std::string> const& parts, LineSpan& span)
{
    for (std::size_t i = 5; i < parts.size(); ++i) {
        bool* const option = parts[i] == "crc4"     ? &span.crc4
                             : parts[i] == "yellow" ? &span.yellow
                                                    : nullptr;
        if (option == nullptr)
            return "option '" + parts[i] + "' is neither crc4 nor yellow";
        if (*option)
            return "option '" + parts[i] + "' stands twice";
        *option = true;
    }
    return "";
}
} // namespace

std::string readSpan(std::string const& text, LineSpan& span)
{
    std::string lower = text;
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    std::vector<std::string> const parts = fields(lower, ',');
    for (auto read : {readNumbers, readKind, readOptions}) {
        std::string const reason = read(parts, span);
        if (!reason.empty())
            return reason;
    }
    return "";
}

bool isT1(LineSpan const& span)
{
    return span.use.size() == T1_CHANNELS;
}

bool isE1(LineSpan const& span)
{
    return span.use.size() == E1_CHANNELS;
}
