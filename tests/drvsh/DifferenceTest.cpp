#include <drvsh/Difference.h>

#include <gtest/gtest.h>

namespace
{
using Lines = std::vector<std::string>;

struct Case
{
    Lines expected;
    Lines came;
    char const* text;
};

TEST(Difference, ShowsTheFewestChanges)
{
    Case const cases[] = {
        {{}, {}, ""},
        {{"a"}, {"a"}, "  ...\n"},
        {{"a"}, {}, "  - a\n"},
        {{}, {"a"}, "  + a\n"},
        {{"a"}, {"b"}, "  - a\n  + b\n"},
        {{"a", "b", "c"}, {"a", "c"}, "    a\n  - b\n    c\n"},
        {{"a", "c"}, {"a", "b", "c"}, "    a\n  + b\n    c\n"},
        {{"a", "b"}, {"b", "a"}, "  - a\n    b\n  + a\n"},
        {{"x", "a", "b", "c"}, {"a", "b", "c", "y"}, "  - x\n    a\n    b\n    c\n  + y\n"},
        {{"", "a"}, {"a"}, "  - \n    a\n"},
    };
    for (Case const& c : cases)
        EXPECT_EQ(c.text, difference(c.expected, c.came));
}

TEST(Difference, LeavesOutWhatLiesFar)
{
    EXPECT_EQ("  ...\n    3\n    4\n    5\n  - 6\n    7\n    8\n    9\n  ...\n",
              difference({"1", "2", "3", "4", "5", "6", "7", "8", "9", "10", "11"},
                         {"1", "2", "3", "4", "5", "7", "8", "9", "10", "11"}));
}

TEST(Difference, OfVeryMuchIsAllOfIt)
{
    Lines const many(3000, "a");
    Lines const more(3001, "a");
    std::string const text = difference(many, more);
    EXPECT_EQ(3000u * 6 + 3001u * 6, text.size());
    EXPECT_EQ(0u, text.find("  - a\n"));
}
} // namespace
