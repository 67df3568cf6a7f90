#include "RandomCommands.h"
#include "ShellFixture.h"

namespace
{
class RandomShell : public ShellFixture
{};

TEST_F(RandomShell, LivesThroughThemAndAnswersTheSame)
{
    keepGoing_ = true;
    std::string commands;
    RandomCommands random(7);
    for (int i = 0; i < 3000; ++i)
        commands += random.line() + "\n";
    std::string const first = run(commands);
    std::string const complaints = err_.str();
    EXPECT_LT(300, std::count(complaints.begin(), complaints.end(), '\n'));
    EXPECT_LT(300u, std::count(first.begin(), first.end(), '>'));

    std::ostringstream out;
    std::ostringstream err;
    TextNarrator text(out, err);
    Shell other(text);
    Script script = Script::text("t", commands);
    EXPECT_FALSE(other.run(script, true));
    EXPECT_EQ(first, out.str());
    EXPECT_EQ(complaints, err.str());
}

TEST(RandomLines, FollowFromTheSeed)
{
    RandomCommands one(3);
    RandomCommands same(3);
    RandomCommands other(4);
    bool differs = false;
    for (int i = 0; i < 100; ++i) {
        std::string const line = one.line();
        EXPECT_EQ(line, same.line());
        differs = differs || line != other.line();
        EXPECT_EQ(std::string::npos, line.find('\n'));
    }
    EXPECT_TRUE(differs);
}
} // namespace
