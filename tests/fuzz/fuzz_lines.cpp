#include <drvsh/LineConfig.h>

#include "Fuzz.h"

// Line configurations: whatever a file holds, remarks come by line, and what is accepted makes
// sense.

namespace
{

void checkRemarks(std::vector<LineRemark> const& remarks, unsigned lines)
{
    unsigned last = 0;
    for (LineRemark const& remark : remarks) {
        require(remark.line >= last && remark.line <= lines, "remarks by line");
        require(!remark.text.empty(), "a remark says something");
        last = remark.line;
    }
}

void checkSpans(LineConfig const& config)
{
    unsigned next = 1;
    for (LineSpan const& span : config.spans) {
        require(span.type == "e1t1" || span.type == "bri", "type of a span");
        require(!span.use.empty() && span.use.size() <= 31, "channels of a span");
        require(span.firstChannel >= next, "spans don't overlap");
        require(span.lbo <= 7, "line build-out");
        next = span.firstChannel + static_cast<unsigned>(span.use.size());
        require(!span.holds(next) && span.holds(span.firstChannel), "the span's own channels");
        const std::uint32_t all =
            span.timeslots(ChannelUse::Bearer) | span.timeslots(ChannelUse::Data) |
            span.timeslots(ChannelUse::None) | span.timeslots(ChannelUse::Network) |
            span.timeslots(ChannelUse::Cross) | span.timeslots(ChannelUse::Unused) |
            span.timeslots(ChannelUse::Port);
        require(all == ((std::uint64_t(1) << span.use.size()) - 1) << 1, "each timeslot has a use");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    const std::string text = Input(data, size).rest();
    unsigned lines = 1;
    for (char c : text)
        lines += c == '\n' ? 1 : 0;
    const LineConfig config = readLineConfig(text);
    checkRemarks(config.errors, lines);
    checkRemarks(config.warnings, lines);
    if (!config.errors.empty())
        return 0;
    checkSpans(config);
    for (AnaloguePort const& port : config.ports) {
        require(port.type == "fxs" || port.type == "fxo", "type of a port");
        require(port.channel >= 1, "number of a port");
    }
    return 0;
}
