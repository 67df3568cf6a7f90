#include "ChannelList.h"

namespace
{
char const BLANKS[] = " \t\r";

std::string readItem(std::string const& item, std::vector<ChannelRange>& ranges)
{
    if (item.empty())
        return "a channel is missing between the commas";
    std::vector<std::string> const ends = fields(item, '-');
    if (ends.size() > 2)
        return "'" + item + "' is no channel or range";
    unsigned first = 0;
    unsigned last = 0;
    if (!readNumber(ends.front(), MAX_LINE_NUMBER, first) ||
        !readNumber(ends.back(), MAX_LINE_NUMBER, last))
        return "'" + item + "' is no channel or range of channels from 1 to " +
               std::to_string(MAX_LINE_NUMBER);
    if (first == 0 || last == 0)
        return "there is no channel 0, channels count from 1";
    if (first > last)
        return "range '" + item + "' runs backwards";
    ranges.push_back({first, last});
    return "";
}
} // namespace

std::string trimmed(std::string const& text)
{
    std::size_t const first = text.find_first_not_of(BLANKS);
    if (first == std::string::npos)
        return "";
    return text.substr(first, text.find_last_not_of(BLANKS) - first + 1);
}

std::vector<std::string> fields(std::string const& text, char separator)
{
    std::vector<std::string> result;
    std::size_t start = 0;
    for (;;) {
        std::size_t const end = text.find(separator, start);
        if (end == std::string::npos) {
            result.push_back(trimmed(text.substr(start)));
            return result;
        }
        result.push_back(trimmed(text.substr(start, end - start)));
        start = end + 1;
    }
}

bool readNumber(std::string const& text, unsigned most, unsigned& number)
{
    if (text.empty())
        return false;
    unsigned long long value = 0;
    for (char c : text) {
        if (c < '0' || c > '9')
            return false;
        value = value * 10 + static_cast<unsigned>(c - '0');
        if (value > most)
            return false;
    }
    number = static_cast<unsigned>(value);
    return true;
}

std::string readChannelList(std::string const& text, ChannelList& list)
{
    ChannelList read;
    std::size_t const colon = text.find(':');
    read.hasTail = colon != std::string::npos;
    if (read.hasTail)
        read.tail = trimmed(text.substr(colon + 1));
    std::string const channels = trimmed(text.substr(0, colon));
    if (channels.empty())
        return "the list of channels is empty";
    for (std::string const& item : fields(channels, ',')) {
        std::string const reason = readItem(item, read.ranges);
        if (!reason.empty())
            return reason;
    }
    list = read;
    return "";
}
