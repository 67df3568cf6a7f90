#include <drvrepo/IChannelGroup.h>

#include "Fuzz.h"

// Timeslot text: read against a second reading, printed and read again.

namespace
{

/// What a text means: false for one that must be refused, with the reason.
class Reading
{
public:
    explicit Reading(std::string const& text)
    {
        std::string token;
        for (char c : text + ";") {
            if (c != ';' && c != ',' && c != ' ')
                token += c;
            else if (!token.empty() && reason.empty()) {
                take(token);
                token.clear();
            }
        }
    }

    std::string reason;
    std::uint32_t mask = 0;

private:
    /// A timeslot, or 32 for anything else.
    static unsigned slotOf(std::string const& text)
    {
        unsigned slot = 0;
        std::size_t digits = 0;
        for (; digits < text.size() && text[digits] >= '0' && text[digits] <= '9'; ++digits)
            slot = slot >= 32 ? 32 : slot * 10 + static_cast<unsigned>(text[digits] - '0');
        return digits == 0 || slot > 31 ? 32 : slot;
    }
    void take(std::string const& token)
    {
        const std::size_t dash = token.find('-');
        const unsigned first = slotOf(token.substr(0, dash));
        const unsigned last = dash == std::string::npos ? first : slotOf(token.substr(dash + 1));
        if (first > 31 || last > 31)
            reason = "Timeslot out of range";
        else if (dash != std::string::npos && first >= last)
            reason = "Start timeslot must be lower than end timeslot";
        for (unsigned slot = first; slot <= last && reason.empty(); ++slot)
            mask |= 1u << slot;
    }
};

void checkRoundTrip(unsigned mask)
{
    String text("left over");
    IChannelGroup::TIMESLOTS_UINT_TO_TEXT(mask, text);
    String message("untouched");
    unsigned again = ~mask;
    require(IChannelGroup::TIMESLOTS_TEXT_TO_UINT(message, text, again).code() == 0, "reads back");
    require(again == mask, "the same mask");
    require(message == "untouched", "no message");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    const std::string text = Input(data, size).rest();
    const Reading expected(text);
    const unsigned before = 0x5a5a5a5a;
    unsigned mask = before;
    String message("untouched");
    const XCode rc = IChannelGroup::TIMESLOTS_TEXT_TO_UINT(message, toString(text), mask);
    if (expected.reason.empty()) {
        require(rc.code() == 0 && message == "untouched", "is accepted");
        require(mask == expected.mask, "the mask");
        checkRoundTrip(mask);
    } else {
        require(rc.code() == -1 && mask == before, "is refused");
        require(message == expected.reason.c_str(), "the reason");
    }
    Input words(data, size);
    while (!words.isEmpty())
        checkRoundTrip(words.byte() | words.byte() << 8 | words.byte() << 16 |
                       static_cast<unsigned>(words.byte()) << 24);
    return 0;
}
