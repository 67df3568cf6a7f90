#ifndef DRVSH_CHANNELLIST_H
#define DRVSH_CHANNELLIST_H

#include <string>
#include <vector>

/// The largest channel and span number that a line configuration may hold.
constexpr unsigned MAX_LINE_NUMBER = 65535;

/// Channels with neighbouring numbers, from the first to the last.
struct ChannelRange
{
    unsigned first;
    unsigned last;
};

/// The channels that a line names: "1,3,5", "16-23, 29".
struct ChannelList
{
    std::vector<ChannelRange> ranges; ///< In the order of the text.
    bool hasTail = false;             ///< Whether a ':' follows the list.
    std::string tail;                 ///< What follows that ':', without blanks around it.
};

/// `text` without the blanks and tabs (and a carriage return) around it.
std::string trimmed(std::string const& text);

/// `text` cut at every `separator`; each field is trimmed. An empty text is one empty field.
std::vector<std::string> fields(std::string const& text, char separator);

/// Reads a number made of nothing but decimal digits. Returns false, and leaves `number` alone, if
/// `text` is anything else or the number is above `most`.
bool readNumber(std::string const& text, unsigned most, unsigned& number);

/// Reads a list of channels, from 1 to MAX_LINE_NUMBER, and what follows a ':' behind it.
/// Returns the reason why `text` is no such list, or the empty text; then `list` is filled.
std::string readChannelList(std::string const& text, ChannelList& list);

#endif
