#include <drvsh/Nearest.h>

#include <gtest/gtest.h>

namespace
{
std::vector<std::string> const WORDS = {"driver add", "drivers",   "echo", "find",   "get",
                                        "group add",  "group set", "info", "listen", "unlisten"};

struct Case
{
    char const* word;
    char const* nearest;
};

TEST(Nearest, TakesTheOneWithTheFewestChanges)
{
    Case const cases[] = {
        {"ehco", "echo"},
        {"eco", "echo"},
        {"echoo", "echo"},
        {"driver", "drivers"},
        {"drivr add", "driver add"},
        {"lisen", "listen"},
        {"unlissen", "unlisten"},
        {"gte", "get"},
        // The first among equals.
        {"group dd", "group add"},
        // Too far from everything.
        {"", ""},
        {"x", ""},
        {"xyz", ""},
        {"telephone", ""},
        {"ec", ""},
    };
    for (Case const& c : cases)
        EXPECT_EQ(c.nearest, nearest(c.word, WORDS)) << c.word;
}

TEST(Nearest, FindsNothingAmongNothing)
{
    EXPECT_EQ("", nearest("echo", {}));
    EXPECT_EQ("", didYouMean("echo", {}));
}

TEST(Nearest, DoesNotCompareAWordWithoutEnd)
{
    EXPECT_EQ("", nearest(std::string(1000000, 'e'), WORDS));
}

TEST(Nearest, AsksInTheEndOfASentence)
{
    EXPECT_EQ(", did you mean 'echo'?", didYouMean("ehco", WORDS));
}
} // namespace
