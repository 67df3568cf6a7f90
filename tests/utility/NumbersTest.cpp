#include <gtest/gtest.h>

#include <utility/Numbers.h>
#include <utility/String.h>

namespace
{

struct Case
{
    char const* text;
    std::uint32_t value;
};

TEST(ValueOf32, ReadsTheDigitsAtTheStart)
{
    const Case CASES[] = {
        {"0", 0},
        {"7", 7},
        {"31", 31},
        {"007", 7},
        {"00000000000000000000000000012", 12},
        {"4294967294", 4294967294u},
        // What follows the digits doesn't matter.
        {"12x", 12},
        {"1 2", 1},
        {"15-", 15},
        {"3\t", 3},
        {"1.5", 1},
        {"0x10", 0},
        {"1e3", 1},
    };
    for (Case const& c : CASES) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(c.value, u_valueOf32(c.text));
    }
}

TEST(ValueOf32, AnswersTheAbsentNumber)
{
    EXPECT_EQ(4294967295u, ABSENT_NUMBER);
    EXPECT_EQ(ABSENT_NUMBER, u_valueOf32(nullptr));
    for (char const* text :
         {// No digit at the start.
          "", " ", " 5", "\t5", "-1", "+1", "-0", "x", "x1", "/", ":", "\xB2",
          // Too large.
          "4294967295", "4294967296", "4294967297", "9999999999", "18446744073709551615",
          "18446744073709551616", "18446744073709551617", "99999999999999999999999999999999"}) {
        SCOPED_TRACE(text);
        EXPECT_EQ(ABSENT_NUMBER, u_valueOf32(text));
    }
}

TEST(ValueOf32, ReadsBackWhatIsPrinted)
{
    for (std::uint32_t value = 1; value < 4000000000u; value += value / 3 + 1) {
        String text;
        text.format("%lu", static_cast<unsigned long>(value));
        EXPECT_EQ(value, u_valueOf32(text.cString()));
    }
}

} // namespace
