#include <new>

#include <utility/Numbers.h>
#include <utility/StringTokenizer.h>

#include <drvrepo/IChannelGroup.h>

#include "foundation/Texts.h"

namespace
{

constexpr std::uint32_t COUNT = 32;

String::StaticText s_outOfRange("Timeslot out of range");
String::StaticText s_notAscending("Start timeslot must be lower than end timeslot");

/// The bits `first` to `last`, both included.
std::uint32_t range(std::uint32_t first, std::uint32_t last)
{
    return (UINT32_MAX >> (COUNT - 1 - last)) & (UINT32_MAX << first);
}

bool isSet(std::uint32_t mask, std::uint32_t slot)
{
    return slot < COUNT && ((mask >> slot) & 1u) != 0;
}

/// Adds the timeslots of one token, a number or a range, to `mask`.
XCode addToken(String& message, String const& token, std::uint32_t& mask)
{
    const long dash = token.indexOf("-");
    const String end(token.cString(), dash + 1, token.length() - dash - 1);
    const std::uint32_t first = u_valueOf32(token.cString());
    const std::uint32_t last = dash < 0 ? first : u_valueOf32(end.cString());
    if (first >= COUNT || last >= COUNT)
        return fail(message, s_outOfRange);
    // A range of one timeslot is written as its number.
    if (dash >= 0 && first >= last)
        return fail(message, s_notAscending);
    mask |= range(first, last);
    return XCode();
}

} // namespace

XCode IChannelGroup::TIMESLOTS_TEXT_TO_UINT(String& message, String const& text,
                                            unsigned int& timeslots)
{
    try {
        StringTokenizer tokens(text, ";, ");
        std::uint32_t mask = 0;
        String token;
        while (tokens.nextToken(token)) {
            XCode rc = addToken(message, token, mask);
            if (rc.code() != 0)
                return rc;
        }
        timeslots = mask;
        return XCode();
    } catch (std::bad_alloc const&) {
        return XCode::OUT_OF_MEMORY(message);
    }
}

void IChannelGroup::TIMESLOTS_UINT_TO_TEXT(unsigned int timeslots, String& text)
{
    String printed;
    for (std::uint32_t first = 0; first < COUNT; ++first) {
        if (!isSet(timeslots, first))
            continue;
        std::uint32_t last = first;
        while (isSet(timeslots, last + 1))
            ++last;
        if (!printed.isEmpty())
            printed.internalConcat(";", 1);
        if (last == first)
            printed.concatf("%d", static_cast<int>(first));
        else
            printed.concatf("%d-%d", static_cast<int>(first), static_cast<int>(last));
        first = last;
    }
    text = printed;
}
