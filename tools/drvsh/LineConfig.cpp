#include "LineConfig.h"

#include "ChannelList.h"
#include "Nearest.h"
#include "SpanLine.h"

#include <algorithm>
#include <cctype>
#include <map>

namespace
{
/// What may stand behind the ':' of a channel list.
enum class Tail { No, IdleBits, Name, Channel };

/// What a line with a keyword is for.
enum class Kind { Span, Channels, Encoding, Other };

struct Keyword
{
    char const* word;
    Kind kind = Kind::Other;
    ChannelUse use = ChannelUse::None;
    Tail tail = Tail::No;
    char const* port = nullptr; ///< The type of the analogue ports that it names.
};

// A port speaks the signalling of the other side: FXO signalling makes an FXS port.
Keyword const KEYWORDS[] = {
    {"span", Kind::Span},
    {"fxols", Kind::Channels, ChannelUse::Port, Tail::No, "fxs"},
    {"fxogs", Kind::Channels, ChannelUse::Port, Tail::No, "fxs"},
    {"fxoks", Kind::Channels, ChannelUse::Port, Tail::No, "fxs"},
    {"fxsls", Kind::Channels, ChannelUse::Port, Tail::No, "fxo"},
    {"fxsgs", Kind::Channels, ChannelUse::Port, Tail::No, "fxo"},
    {"fxsks", Kind::Channels, ChannelUse::Port, Tail::No, "fxo"},
    {"bchan", Kind::Channels, ChannelUse::Bearer},
    {"inclear", Kind::Channels, ChannelUse::Bearer},
    {"clear", Kind::Channels, ChannelUse::Bearer},
    {"cas", Kind::Channels, ChannelUse::Bearer, Tail::IdleBits},
    {"e&m", Kind::Channels, ChannelUse::Bearer},
    {"e&me1", Kind::Channels, ChannelUse::Bearer},
    {"dchan", Kind::Channels, ChannelUse::Data},
    {"fcshdlc", Kind::Channels, ChannelUse::Data},
    {"hardhdlc", Kind::Channels, ChannelUse::Data},
    {"rawhdlc", Kind::Channels, ChannelUse::Network},
    {"nethdlc", Kind::Channels, ChannelUse::Network, Tail::Name},
    {"dacs", Kind::Channels, ChannelUse::Cross, Tail::Channel},
    {"dacsrbs", Kind::Channels, ChannelUse::Cross, Tail::Channel},
    {"unused", Kind::Channels, ChannelUse::Unused},
    // These say more of channels that another line names.
    {"mulaw", Kind::Encoding},
    {"alaw", Kind::Encoding},
    {"deflaw", Kind::Encoding},
    // These say nothing of drivers: tones, echo, spans over a network, radio cards.
    {"loadzone"},
    {"defaultzone"},
    {"echocanceller"},
    {"dynamic"},
    {"tx"},
    {"dcsrx"},
    {"ctcss"},
    {"debouncetime"},
    {"bursttime"},
    {"corthresh"},
    {"invertcor"},
    {"exttone"},
    {"channels"},
};

Keyword const* findKeyword(std::string const& word)
{
    for (Keyword const& keyword : KEYWORDS)
        if (std::equal(word.begin(), word.end(), keyword.word,
                       keyword.word + std::char_traits<char>::length(keyword.word),
                       [](unsigned char a, unsigned char b) { return std::tolower(a) == b; }))
            return &keyword;
    return nullptr;
}

std::string wrongTail(Keyword const& keyword, ChannelList const& list)
{
    unsigned number = 0;
    switch (keyword.tail) {
    case Tail::No:
        return list.hasTail ? "nothing may follow the channels, ':" + list.tail + "' does" : "";
    case Tail::IdleBits:
        return list.hasTail && (list.tail.size() != 4 ||
                                list.tail.find_first_not_of("01") != std::string::npos)
                   ? "idle bits '" + list.tail + "' are not four of 0 and 1"
                   : "";
    case Tail::Name:
        return list.hasTail && list.tail.empty() ? "the name behind ':' is empty" : "";
    case Tail::Channel:
        if (!list.hasTail)
            return "':CHANNEL' is missing, where the channels are connected to";
        if (!readNumber(list.tail, MAX_LINE_NUMBER, number) || number == 0)
            return "'" + list.tail + "' is no channel from 1 to " + std::to_string(MAX_LINE_NUMBER);
        return "";
    }
    return "";
}

/// Reads a line configuration in two steps: first line by line, then, if every line can be read,
/// it puts the channels into their spans.
class Reader
{
public:
    LineConfig read(std::string const& text);

private:
    struct ChannelLine
    {
        Keyword const* keyword;
        unsigned line;
        std::vector<ChannelRange> ranges;
    };

    void readLine(std::string const& line);
    void warnOfUnknown(std::string const& word);
    void readSpanLine(std::string const& value);
    void readChannelLine(Keyword const& keyword, std::string const& value);
    void place(ChannelLine const& line);
    std::string placeChannel(ChannelLine const& line, unsigned channel);
    LineSpan* spanOf(unsigned channel);
    void error(std::string const& text) { config_.errors.push_back({line_, text}); }
    void warn(std::string const& text) { config_.warnings.push_back({line_, text}); }

    LineConfig config_;
    std::vector<ChannelLine> channelLines_;
    std::map<unsigned, unsigned> takenBy_; // channel to the line that names it
    unsigned line_ = 0;
    unsigned highest_ = 0; // the highest channel that a later span begins above
};

LineConfig Reader::read(std::string const& text)
{
    for (std::string const& line : fields(text, '\n')) {
        ++line_;
        if (line.find('\0') != std::string::npos) {
            error("this is no text, it holds a zero byte");
            return config_;
        }
        readLine(trimmed(line.substr(0, line.find('#'))));
    }
    // Without its spans the rest of the file would only seem to be wrong.
    if (config_.errors.empty())
        for (ChannelLine const& line : channelLines_)
            place(line);
    return config_;
}

void Reader::readLine(std::string const& line)
{
    if (line.empty())
        return;
    std::size_t const equals = line.find('=');
    std::string const word =
        trimmed(line.substr(0, equals == std::string::npos ? line.find_first_of(" \t:,") : equals));
    Keyword const* const keyword = findKeyword(word);
    if (keyword == nullptr) {
        warnOfUnknown(word);
        return;
    }
    if (equals == std::string::npos) {
        error(word + ": '=' is missing");
        return;
    }
    std::string const value = trimmed(line.substr(equals + 1));
    if (keyword->kind == Kind::Span)
        readSpanLine(value);
    else if (keyword->kind != Kind::Other)
        readChannelLine(*keyword, value);
}

void Reader::warnOfUnknown(std::string const& word)
{
    std::vector<std::string> words;
    for (Keyword const& known : KEYWORDS)
        words.push_back(known.word);
    std::size_t const most = 40; // of a line of prose the beginning says enough
    std::string const shown = word.size() > most ? word.substr(0, most) + "..." : word;
    warn("unknown keyword '" + shown + "' is passed over" + didYouMean(word, words));
}

void Reader::readSpanLine(std::string const& value)
{
    LineSpan span;
    std::string const reason = readSpan(value, span);
    if (!reason.empty()) {
        error("span: " + reason);
        return;
    }
    for (LineSpan const& other : config_.spans) {
        if (other.number == span.number) {
            error("span " + std::to_string(span.number) + " stands twice, first in line " +
                  std::to_string(other.line));
            return;
        }
        if (other.timing == span.timing && span.timing != 0)
            warn("span " + std::to_string(span.number) + " has timing " +
                 std::to_string(span.timing) + ", which is span " + std::to_string(other.number) +
                 "'s");
    }
    if (span.crc4 && !isE1(span))
        warn("span " + std::to_string(span.number) + " is no E1, crc4 means nothing to it");
    span.line = line_;
    span.firstChannel = highest_ + 1;
    highest_ += static_cast<unsigned>(span.use.size());
    config_.spans.push_back(span);
}

void Reader::readChannelLine(Keyword const& keyword, std::string const& value)
{
    ChannelList list;
    std::string reason = readChannelList(value, list);
    if (reason.empty())
        reason = wrongTail(keyword, list);
    if (!reason.empty()) {
        error(std::string(keyword.word) + ": " + reason);
        return;
    }
    if (keyword.kind == Kind::Encoding)
        return;
    if (keyword.use == ChannelUse::Port)
        for (ChannelRange const& range : list.ranges)
            highest_ = std::max(highest_, range.last);
    channelLines_.push_back({&keyword, line_, std::move(list.ranges)});
}

void Reader::place(ChannelLine const& line)
{
    line_ = line.line;
    for (ChannelRange const& range : line.ranges)
        for (unsigned channel = range.first; channel <= range.last; ++channel) {
            std::string const reason = placeChannel(line, channel);
            // One line with a hundred wrong channels is one mistake.
            if (!reason.empty()) {
                error(std::string(line.keyword->word) + ": " + reason);
                return;
            }
        }
}

std::string Reader::placeChannel(ChannelLine const& line, unsigned channel)
{
    std::string const name = "channel " + std::to_string(channel);
    auto const taken = takenBy_.emplace(channel, line.line);
    if (!taken.second)
        return name + " is used twice, first in line " + std::to_string(taken.first->second);
    LineSpan* const span = spanOf(channel);
    ChannelUse const use = line.keyword->use;
    if (use == ChannelUse::Port) {
        if (span != nullptr && !isT1(*span))
            return name + " lies in span " + std::to_string(span->number) +
                   ", only a T1 can have analogue ports";
        config_.ports.push_back({channel, line.keyword->port, line.keyword->word, line.line});
    } else if (span == nullptr && use != ChannelUse::Unused) {
        return name + " lies outside every span";
    }
    if (span != nullptr)
        span->use[channel - span->firstChannel] = use;
    return "";
}

LineSpan* Reader::spanOf(unsigned channel)
{
    // Spans begin one above the other, in the order of the file.
    auto const above =
        std::upper_bound(config_.spans.begin(), config_.spans.end(), channel,
                         [](unsigned c, LineSpan const& span) { return c < span.firstChannel; });
    if (above == config_.spans.begin() || !(above - 1)->holds(channel))
        return nullptr;
    return &*(above - 1);
}
} // namespace

unsigned LineSpan::timeslots(ChannelUse what) const
{
    unsigned mask = 0;
    for (std::size_t i = 0; i < use.size(); ++i)
        if (use[i] == what)
            mask |= 1u << (i + 1);
    return mask;
}

LineConfig readLineConfig(std::string const& text)
{
    return Reader().read(text);
}
