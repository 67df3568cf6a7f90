#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <utility/StringTokenizer.h>

namespace
{

std::string textOf(String const& string)
{
    return std::string(string.cString(), static_cast<std::size_t>(string.length()));
}

std::vector<std::string> tokensOf(String const& text, String const& delimiters)
{
    StringTokenizer tokens(text, delimiters);
    std::vector<std::string> found;
    String token;
    for (bool more = tokens.hasMoreTokens(); more; more = tokens.hasMoreTokens()) {
        EXPECT_TRUE(tokens.nextToken(token));
        found.push_back(textOf(token));
    }
    EXPECT_FALSE(tokens.nextToken(token));
    return found;
}

TEST(StringTokenizer, CutsAtAnyDelimiter)
{
    struct Case
    {
        char const* text;
        char const* delimiters;
        std::vector<std::string> tokens;
    };
    const Case CASES[] = {
        {"e1t1 0 3/a/b", "/", {"e1t1 0 3", "a", "b"}},
        {"e1t1 0 3", " ", {"e1t1", "0", "3"}},
        {"3,5 7;9", ";, ", {"3", "5", "7", "9"}},
        {"one", "/", {"one"}},
        {"a-b", "/", {"a-b"}},
        // Runs of delimiters, at the start and the end as well, yield no empty tokens.
        {"a//b", "/", {"a", "b"}},
        {"1, 2", ";, ", {"1", "2"}},
        {"/a/", "/", {"a"}},
        {"///a///b///", "/", {"a", "b"}},
        {"/", "/", {}},
        {"; ,;", ";, ", {}},
        {"", "/", {}},
        // Without delimiters the whole text is one token.
        {"a/b c", "", {"a/b c"}},
        {"", "", {}},
        // Other white space separates nothing.
        {"1\t2\n3", ";, ", {"1\t2\n3"}},
    };
    for (Case const& c : CASES) {
        SCOPED_TRACE(testing::Message() << '"' << c.text << "\" by \"" << c.delimiters << '"');
        EXPECT_EQ(c.tokens, tokensOf(c.text, c.delimiters));
    }
}

TEST(StringTokenizer, NulsAreCharactersLikeOthers)
{
    using Tokens = std::vector<std::string>;
    EXPECT_EQ((Tokens{std::string("a\0b", 3), "c"}), tokensOf(String("a\0b/c", 0, 5), "/"));
    EXPECT_EQ((Tokens{"a", "b/c"}), tokensOf(String("a\0b/c", 0, 5), String("\0", 0, 1)));
}

TEST(StringTokenizer, LeavesTheTokenAtTheEnd)
{
    StringTokenizer tokens("a", "/");
    String token("before");
    EXPECT_TRUE(tokens.hasMoreTokens());
    EXPECT_TRUE(tokens.nextToken(token));
    EXPECT_STREQ("a", token.cString());
    EXPECT_FALSE(tokens.hasMoreTokens());
    EXPECT_FALSE(tokens.nextToken(token));
    EXPECT_FALSE(tokens.nextToken(token));
    EXPECT_STREQ("a", token.cString());
}

TEST(StringTokenizer, AskingForMoreTakesNothing)
{
    StringTokenizer tokens("a/b", "/");
    EXPECT_TRUE(tokens.hasMoreTokens());
    EXPECT_TRUE(tokens.hasMoreTokens());
    String token;
    tokens.nextToken(token);
    EXPECT_STREQ("a", token.cString());
}

TEST(StringTokenizer, TheTokenMayBeTheTextOrTheDelimiters)
{
    String text("a/b/c");
    StringTokenizer tokens(text, "/");
    std::string all;
    while (tokens.nextToken(text))
        all += textOf(text) + ";";
    EXPECT_EQ("a;b;c;", all);

    String delimiters("/");
    StringTokenizer others("a/b/c", delimiters);
    all.clear();
    while (others.nextToken(delimiters))
        all += textOf(delimiters) + ";";
    EXPECT_EQ("a;b;c;", all);
}

TEST(StringTokenizer, KeepsItsTextsAlive)
{
    const String kept("a/b");
    EXPECT_EQ(1, kept.buffer()->references());
    {
        const StringTokenizer tokens(kept, kept);
        EXPECT_EQ(3, kept.buffer()->references());
        EXPECT_FALSE(tokens.hasMoreTokens());
    }
    EXPECT_EQ(1, kept.buffer()->references());

    String text("a/b");
    StringTokenizer tokens(text, "/");
    text = "x";
    String token;
    tokens.nextToken(token);
    EXPECT_STREQ("a", token.cString());
}

} // namespace
