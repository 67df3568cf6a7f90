#include <drvsh/Expectations.h>
#include <drvsh/Script.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
using testing::ElementsAre;
using testing::IsEmpty;
using Lines = std::vector<std::string>;

std::vector<Expectation> read(std::string const& text)
{
    std::vector<Expectation> expectations;
    EXPECT_EQ("", readExpectations(text, expectations));
    return expectations;
}

TEST(Fence, IsFourDashesOrMore)
{
    EXPECT_TRUE(isFence("----"));
    EXPECT_TRUE(isFence("-------"));
    for (char const* line : {"---", "", "--- -", " ----", "---- ", "----x", "===="})
        EXPECT_FALSE(isFence(line)) << line;
}

TEST(Expectations, StandBehindTheirCommands)
{
    std::vector<Expectation> const all = read(
        "# a\nlisten a\n----\n> listen a\n\n  a: x\n----\n\necho b\r\n-----\n----\n-----\nlast");
    ASSERT_EQ(3u, all.size());
    EXPECT_THAT(all[0].commands, ElementsAre("# a", "listen a"));
    EXPECT_EQ(1u, all[0].line);
    EXPECT_EQ("----", all[0].fence);
    EXPECT_THAT(all[0].expected, ElementsAre("> listen a", "", "  a: x"));
    EXPECT_THAT(all[1].commands, ElementsAre("", "echo b"));
    EXPECT_EQ(8u, all[1].line);
    EXPECT_EQ("-----", all[1].fence);
    EXPECT_THAT(all[1].expected, ElementsAre("----"));
    EXPECT_THAT(all[2].commands, ElementsAre("last"));
    EXPECT_EQ(13u, all[2].line);
    EXPECT_EQ("", all[2].fence);
    EXPECT_THAT(all[2].expected, IsEmpty());
}

TEST(Expectations, OfNothing)
{
    EXPECT_THAT(read(""), IsEmpty());
}

TEST(Expectations, NeedAnEnd)
{
    std::vector<Expectation> all;
    EXPECT_EQ("3: what is expected has no end, -----",
              readExpectations("echo\n\n-----\n----\nx\n", all));
}

struct Rewriting
{
    char const* before;
    Lines transcript; // of the first commands
    char const* after;
};

TEST(Expectations, AreReplacedByWhatCame)
{
    Rewriting const cases[] = {
        {"echo a\n----\nold\n----\n", {"a"}, "echo a\n----\na\n----\n"},
        {"echo a\n----\n----\n", {"a", "", "b"}, "echo a\n----\na\n\nb\n----\n"},
        {"echo\n----\nold\n----\n", {}, "echo\n----\n----\n"},
        {"echo a", {"a"}, "echo a\n----\na\n----\n"},
        {"listen a\n", {}, "listen a\n----\n----\n"},
        // The fence is one that nothing between looks like.
        {"echo ----\n----\n----\n", {"----"}, "echo ----\n-----\n----\n-----\n"},
        {"echo\n----\n----\n", {"-----", "----"}, "echo\n------\n-----\n----\n------\n"},
        {"echo\n-----\n-----\n", {"----"}, "echo\n-----\n----\n-----\n"},
    };
    for (Rewriting const& c : cases)
        EXPECT_EQ(c.after, withTranscripts(read(c.before), {c.transcript})) << c.before;
    std::vector<Expectation> const two = read("a\n----\n----\nb\n");
    EXPECT_EQ("a\n----\nx\n----\nb\n", withTranscripts(two, {{"x"}, {}}));
    EXPECT_EQ("a\n----\nx\n----\nb\n----\ny\n----\n", withTranscripts(two, {{"x"}, {"y"}}));
}

TEST(Expectations, ArePassedOverWhereAScriptRuns)
{
    Script script = Script::text("t", "a\n----\nnot me\n----\n-----\n----\n-----\nb\n");
    std::string line;
    ASSERT_TRUE(script.next(line));
    EXPECT_EQ("a", line);
    ASSERT_TRUE(script.next(line));
    EXPECT_EQ("b", line);
    EXPECT_EQ("t:8", script.place());
    EXPECT_FALSE(script.next(line));
    EXPECT_EQ("", script.problem());
}

TEST(Expectations, WithoutAnEndEndAScript)
{
    Script script = Script::text("t", "a\n-----\nb\n----\n");
    std::string line;
    ASSERT_TRUE(script.next(line));
    EXPECT_FALSE(script.next(line));
    EXPECT_EQ("what line 2 expects has no end, -----", script.problem());
}
} // namespace
