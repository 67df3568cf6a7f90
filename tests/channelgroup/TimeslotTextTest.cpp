#include <string>

#include <gtest/gtest.h>

#include <drvrepo/IChannelGroup.h>

namespace
{

constexpr std::uint32_t UNTOUCHED = 0x5A5A5A5A;
char const* const OUT_OF_RANGE = "Timeslot out of range";
char const* const NOT_ASCENDING = "Start timeslot must be lower than end timeslot";

struct GoodCase
{
    char const* text;
    std::uint32_t mask;
    char const* printed;
};

const GoodCase GOOD[] = {
    {"1-15;17-31", 0xFFFEFFFE, "1-15;17-31"},
    {"0", 0x00000001, "0"},
    {"1,2", 0x00000006, "1-2"},
    {"3,5 7", 0x000000A8, "3;5;7"},
    {"16", 0x00010000, "16"},
    {"31", 0x80000000, "31"},
    {"0-31", 0xFFFFFFFF, "0-31"},
    {"0-1", 0x00000003, "0-1"},
    {"30-31", 0xC0000000, "30-31"},
    {"0;31", 0x80000001, "0;31"},
    {"", 0x00000000, ""},
    // Repeated and overlapping numbers, in any order.
    {"5,5,6", 0x00000060, "5-6"},
    {"7;3;5", 0x000000A8, "3;5;7"},
    {"1-4;3-6;2", 0x0000007E, "1-6"},
    {"17-31;1-15", 0xFFFEFFFE, "1-15;17-31"},
    // Runs of delimiters, at the ends as well, and nothing else.
    {"1, 2", 0x00000006, "1-2"},
    {" ;1;; ,2, ", 0x00000006, "1-2"},
    {";, ", 0x00000000, ""},
    // Digits at the start decide.
    {"007", 0x00000080, "7"},
    {"7x", 0x00000080, "7"},
    {"1\t2", 0x00000002, "1"},
    {"1-3x", 0x0000000E, "1-3"},
    {"1x-3", 0x0000000E, "1-3"},
    {"1-2-9", 0x00000006, "1-2"}, // the first "-" divides; what is left begins with a 2
};

TEST(TimeslotText, IsRead)
{
    for (GoodCase const& c : GOOD) {
        SCOPED_TRACE(c.text);
        String message("before");
        unsigned int timeslots = UNTOUCHED;
        EXPECT_EQ(0, IChannelGroup::TIMESLOTS_TEXT_TO_UINT(message, c.text, timeslots).code());
        EXPECT_EQ(c.mask, timeslots);
        EXPECT_STREQ("before", message.cString());
    }
}

TEST(TimeslotText, IsPrinted)
{
    for (GoodCase const& c : GOOD) {
        SCOPED_TRACE(c.text);
        String text("before");
        IChannelGroup::TIMESLOTS_UINT_TO_TEXT(c.mask, text);
        EXPECT_STREQ(c.printed, text.cString());
    }
}

struct BadCase
{
    char const* text;
    char const* message;
};

const BadCase BAD[] = {
    {"31-1", NOT_ASCENDING},
    {"4-4", NOT_ASCENDING},
    {"5-5", NOT_ASCENDING},
    {"0-0", NOT_ASCENDING},
    {"31-31", NOT_ASCENDING},
    {"2-1-9", NOT_ASCENDING},
    {"32", OUT_OF_RANGE},
    {"1-32", OUT_OF_RANGE},
    {"32-33", OUT_OF_RANGE},
    {"4294967295", OUT_OF_RANGE},
    {"4294967296", OUT_OF_RANGE}, // not 0
    {"4294967297-5", OUT_OF_RANGE},
    {"1-4294967298", OUT_OF_RANGE},
    // The range of both ends is checked before their order.
    {"40-2", OUT_OF_RANGE},
    {"32-2", OUT_OF_RANGE},
    {"40-40", OUT_OF_RANGE},
    {"5-40", OUT_OF_RANGE},
    {"40-41", OUT_OF_RANGE},
    // What is no number is no timeslot.
    {"2-", OUT_OF_RANGE},
    {"-7", OUT_OF_RANGE},
    {"-", OUT_OF_RANGE},
    {"--", OUT_OF_RANGE},
    {"1--2", OUT_OF_RANGE},
    {"abc", OUT_OF_RANGE},
    {"x7", OUT_OF_RANGE},
    {"+7", OUT_OF_RANGE},
    {"\t7", OUT_OF_RANGE},
    {"1-x", OUT_OF_RANGE},
    {"x-2", OUT_OF_RANGE},
    {"1 - 3", OUT_OF_RANGE},
    // The first error ends the reading.
    {"1;2;40", OUT_OF_RANGE},
    {"1;5-5;40", NOT_ASCENDING},
    {"40;5-5", OUT_OF_RANGE},
    {"0-31;x", OUT_OF_RANGE},
};

TEST(TimeslotText, IsRefused)
{
    for (BadCase const& c : BAD) {
        SCOPED_TRACE(c.text);
        String message("before");
        unsigned int timeslots = UNTOUCHED;
        const XCode rc = IChannelGroup::TIMESLOTS_TEXT_TO_UINT(message, c.text, timeslots);
        EXPECT_EQ(-1, rc.code());
        EXPECT_STREQ(c.message, message.cString());
        EXPECT_EQ(UNTOUCHED, timeslots);
    }
}

// Every single bit, every run, and a large sample of others.
class PrintedMasks : public testing::Test
{
protected:
    void readBack(std::uint32_t mask)
    {
        IChannelGroup::TIMESLOTS_UINT_TO_TEXT(mask, text_);
        unsigned int timeslots = ~mask;
        EXPECT_EQ(0, IChannelGroup::TIMESLOTS_TEXT_TO_UINT(message_, text_, timeslots).code());
        if (timeslots != mask)
            ADD_FAILURE() << "0x" << std::hex << mask << " as " << text_.cString();
    }

    /// The expected text, by a walk that knows no runs: a bit's neighbours decide what is written.
    static std::string expectedText(std::uint32_t mask)
    {
        std::string text;
        for (unsigned bit = 0; bit < 32; ++bit) {
            const bool here = (mask >> bit & 1u) != 0;
            const bool before = bit > 0 && (mask >> (bit - 1) & 1u) != 0;
            const bool after = bit < 31 && (mask >> (bit + 1) & 1u) != 0;
            if (here && !before)
                text += (text.empty() ? "" : ";") + std::to_string(bit);
            if (here && before && !after)
                text += "-" + std::to_string(bit);
        }
        return text;
    }

    String text_;
    String message_;
};

TEST_F(PrintedMasks, AreReadBack)
{
    for (unsigned first = 0; first < 32; ++first)
        for (unsigned last = first; last < 32; ++last) {
            const std::uint32_t run = (UINT32_MAX << first) & (UINT32_MAX >> (31 - last));
            readBack(run);
            readBack(~run);
        }
    for (std::uint32_t low = 0; low < 0x10000; ++low) {
        readBack(low);
        readBack(low << 16);
        readBack(low * 0x9E3779B1u);
    }
}

TEST_F(PrintedMasks, HaveOneItemARun)
{
    std::uint32_t mask = 0;
    for (unsigned i = 0; i < 20000; ++i) {
        mask = mask * 1664525u + 1013904223u;
        IChannelGroup::TIMESLOTS_UINT_TO_TEXT(mask, text_);
        ASSERT_EQ(expectedText(mask), text_.cString());
    }
}

TEST(TimeslotText, TheMessageMayBeTheText)
{
    String text("1-3");
    unsigned int timeslots = 0;
    EXPECT_EQ(0, IChannelGroup::TIMESLOTS_TEXT_TO_UINT(text, text, timeslots).code());
    EXPECT_EQ(0xEu, timeslots);
    EXPECT_STREQ("1-3", text.cString());
    text = "1;40";
    EXPECT_EQ(-1, IChannelGroup::TIMESLOTS_TEXT_TO_UINT(text, text, timeslots).code());
    EXPECT_STREQ(OUT_OF_RANGE, text.cString());
    EXPECT_EQ(0xEu, timeslots);
}

TEST(TimeslotText, NulsSeparateNothing)
{
    String message;
    unsigned int timeslots = 0;
    EXPECT_EQ(
        0,
        IChannelGroup::TIMESLOTS_TEXT_TO_UINT(message, String("1\0x;3", 0, 5), timeslots).code());
    EXPECT_EQ(0xAu, timeslots);
}

} // namespace
