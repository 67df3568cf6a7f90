#ifndef DRVSH_LINECONFIG_H
#define DRVSH_LINECONFIG_H

#include <string>
#include <vector>

/// What a channel of a span is used for.
enum class ChannelUse {
    None,    ///< No line names the channel.
    Bearer,  ///< It carries a call: bchan, clear, cas, e&m and their like.
    Data,    ///< It carries the signalling of the span: dchan and its like.
    Network, ///< It carries packets: nethdlc, rawhdlc.
    Cross,   ///< It is connected through to another channel: dacs.
    Unused,  ///< It is named as idle.
    Port     ///< An analogue port stands behind it (a channel bank).
};

/// One line to a telephone network or to a channel bank.
struct LineSpan
{
    unsigned number = 0;         ///< The span's number, from 1.
    std::string type;            ///< The type word of its driver's name, "e1t1" or "bri".
    unsigned timing = 0;         ///< Its rank as a source of the clock; 0: never.
    unsigned lbo = 0;            ///< Line build-out, 0 to 7.
    std::string framing;         ///< "d4", "sf", "esf", "cas" or "ccs".
    std::string coding;          ///< "ami", "b8zs" or "hdb3".
    bool crc4 = false;           ///< Whether the CRC4 check is on.
    bool yellow = false;         ///< Whether a yellow alarm is sent while no channel is open.
    unsigned firstChannel = 0;   ///< The global number of the channel in timeslot 1.
    std::vector<ChannelUse> use; ///< Per channel, timeslot 1 first.
    unsigned line = 0;           ///< Where in the file it stands.

    /// Whether the global channel number lies in the span.
    bool holds(unsigned channel) const
    {
        return channel >= firstChannel && channel - firstChannel < use.size();
    }
    /// The timeslots used so, as a mask: bit n stands for timeslot n.
    unsigned timeslots(ChannelUse what) const;
};

/// One analogue port.
struct AnaloguePort
{
    unsigned channel = 0;   ///< Its global channel number, which is also the port's number.
    std::string type;       ///< The type word of its driver's name, "fxs" or "fxo".
    std::string signalling; ///< The keyword that names it: "fxoks" for an FXS port, and so on.
    unsigned line = 0;      ///< Where in the file it stands.
};

/// What is to be said about a line of the file.
struct LineRemark
{
    unsigned line;
    std::string text;
};

/// A line configuration, in the order of the file, and what is wrong with it. If there is an error,
/// spans and ports must not be used.
struct LineConfig
{
    std::vector<LineSpan> spans;
    std::vector<AnaloguePort> ports;
    std::vector<LineRemark> errors;   ///< By line.
    std::vector<LineRemark> warnings; ///< By line.
};

/// Reads and checks the text of a line configuration as telephony hosts keep it (DAHDI's
/// system.conf): "span=..." lines, channel lists by their use, and much that says nothing about
/// drivers, which is read over.
///
/// Channels have global numbers. A span begins at the lowest number above all channels of the span
/// lines before it and of the analogue ports outside a span that stand before it.
LineConfig readLineConfig(std::string const& text);

#endif
