#include "ModelProcess.h"

namespace model
{
namespace
{
WellKnown makeWellKnown()
{
    WellKnown ids;
    ids.unknown = {{{0x00000001, 0x00000000, 0x000000c0, 0x46000000}}, "IUnknown"};
    ids.info = {{{0x00000002, 0x00000000, 0x000000c0, 0x46000000}}, "IInfo"};
    ids.driver = {{{0xc4967433, 0x4594ef38, 0x50bd39af, 0x936b69c1}}, "IDriver"};
    ids.channelGroup = {{{0x283124a1, 0x45d783ee, 0xe988c485, 0xccfc8b79}}, "IChannelGroup"};
    ids.didChannelGroup = {{{0x21b20c67, 0x4e511d60, 0x8fc1e895, 0xec347e06}}, "DID_ChannelGroup"};
    return ids;
}
} // namespace

WellKnown const& wellKnown()
{
    static const WellKnown ids = makeWellKnown();
    return ids;
}

std::string const* Table::find(std::string const& key) const
{
    for (Entry const& entry : entries_)
        if (entry.first == key)
            return &entry.second;
    return nullptr;
}

void Table::put(std::string const& key, std::string const& value)
{
    for (Entry& entry : entries_) {
        if (entry.first == key) {
            entry.second = value;
            return;
        }
    }
    entries_.emplace_back(key, value);
}

void addRow(std::vector<InfoRow>& rows, InfoLimits const& limits, unsigned i, unsigned j,
            std::string const& key, std::string const& value)
{
    const InfoLimits place = limits.beneath(i, j);
    if (place.wanted())
        rows.push_back({static_cast<std::uint32_t>(place.depth),
                        static_cast<std::uint32_t>(place.detail), key, value});
}

void Process::error(std::string const& line)
{
    if (monitorPresent)
        trace.add("log 3 " + quoted(line));
}

void Process::debug(std::int32_t verbosity, std::string const& line)
{
    if (monitorPresent && verbosity <= threshold)
        trace.add("log 7 " + quoted(line));
}

} // namespace model
