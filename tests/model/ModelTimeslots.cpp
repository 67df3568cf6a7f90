#include "ModelGroups.h"

namespace model
{
namespace
{
/// The decimal digits at the start; none, or a number too large, is the absent number.
std::uint64_t number(std::string const& text)
{
    const std::uint64_t absent = 0xffffffff;
    std::size_t at = 0;
    std::uint64_t value = 0;
    for (; at < text.size() && text[at] >= '0' && text[at] <= '9'; ++at) {
        value = value * 10 + static_cast<std::uint64_t>(text[at] - '0');
        if (value > absent)
            return absent;
    }
    return at == 0 ? absent : value;
}

std::vector<std::string> tokens(std::string const& text)
{
    std::vector<std::string> found;
    std::string token;
    for (char c : text + ";") {
        if (std::string(";, ").find(c) == std::string::npos) {
            token += c;
            continue;
        }
        if (!token.empty())
            found.push_back(token);
        token.clear();
    }
    return found;
}

/// The reason why a token is refused, or the empty text and its bits in `mask`.
std::string parse(std::string const& token, std::uint32_t& mask)
{
    const std::size_t dash = token.find('-');
    const bool range = dash != std::string::npos;
    const std::uint64_t first = number(token.substr(0, dash));
    const std::uint64_t last = range ? number(token.substr(dash + 1)) : first;
    if (first >= 32 || last >= 32)
        return "Timeslot out of range";
    if (range && first >= last)
        return "Start timeslot must be lower than end timeslot";
    for (std::uint64_t slot = first; slot <= last; ++slot)
        mask |= std::uint32_t(1) << slot;
    return "";
}
} // namespace

std::string timeslotsToText(std::uint32_t timeslots)
{
    const auto isSet = [timeslots](int slot) { return slot < 32 && (timeslots >> slot & 1) != 0; };
    std::string text;
    for (int first = 0; first < 32; ++first) {
        if (!isSet(first))
            continue;
        int last = first;
        while (isSet(last + 1))
            ++last;
        text += text.empty() ? "" : ";";
        text += std::to_string(first);
        if (last != first)
            text += "-" + std::to_string(last);
        first = last;
    }
    return text;
}

Code timeslotsFromText(std::string& message, std::string const& text, std::uint32_t& timeslots)
{
    std::uint32_t mask = 0;
    for (std::string const& token : tokens(text)) {
        const std::string reason = parse(token, mask);
        if (!reason.empty()) {
            message = reason;
            return -1;
        }
    }
    timeslots = mask;
    return 0;
}

} // namespace model
