#include <drvsh/Words.h>

#include <gtest/gtest.h>

namespace
{
/// The words in brackets, so that blanks and empty words show.
std::string split(std::string const& line)
{
    std::string text;
    for (std::string const& word : splitWords(line).words)
        text += "<" + word + ">";
    return text;
}

struct Case
{
    char const* line;
    char const* words;
};

TEST(Words, AreSplitAsAShellDoes)
{
    Case const cases[] = {
        {"", ""},
        {"  \t ", ""},
        {"echo", "<echo>"},
        {"  echo \t a  b ", "<echo><a><b>"},
        // Quotes.
        {"attach 'e1t1 1' clock", "<attach><e1t1 1><clock>"},
        {"attach \"e1t1 1\" clock", "<attach><e1t1 1><clock>"},
        {"a ''", "<a><>"},
        {"a \"\"", "<a><>"},
        {"''''", "<>"},
        {"a'b c'd", "<ab cd>"},
        {"'a'\"b\"c", "<abc>"},
        {"'\"'", "<\">"},
        {"\"'\"", "<'>"},
        {"'a\\'", "<a\\>"},
        // Backslashes.
        {"a\\ b", "<a b>"},
        {"\\'", "<'>"},
        {"\\#a", "<#a>"},
        {"\\\\", "<\\>"},
        {"\\a", "<a>"},
        {"\"a\\\"b\\\\c\\$d\\`e\"", "<a\"b\\c$d`e>"},
        {"\"a\\bc\\'\"", "<a\\bc\\'>"},
        // Comments.
        {"# echo", ""},
        {"echo # a", "<echo>"},
        {"echo #a 'b", "<echo>"},
        {"echo a#b", "<echo><a#b>"},
        {"echo ''#b", "<echo><#b>"},
        {"echo '#' \"#b\"", "<echo><#><#b>"},
        // Nothing else means anything.
        {"timeslots 1-15;17-31", "<timeslots><1-15;17-31>"},
        {"; & | > * $HOME `x` [a] {} ! ~", "<;><&><|><>><*><$HOME><`x`><[a]><{}><!><~>"},
        {"a\rb", "<a\rb>"},
    };
    for (Case const& c : cases)
        EXPECT_EQ(c.words, split(c.line)) << c.line;
}

TEST(Words, KeepNuls)
{
    EXPECT_EQ(std::string("<a\0b>", 5), split(std::string("a\0b", 3)));
}

TEST(Words, RefuseWhatIsNotClosed)
{
    Case const cases[] = {
        {"echo 'a", "a quote ' is not closed"},
        {"echo 'a\"", "a quote ' is not closed"},
        {"echo \"a", "a quote \" is not closed"},
        {"echo \"a\\\"", "a quote \" is not closed"},
        {"echo \"a\\", "a quote \" is not closed"},
        {"echo a\\", "there is nothing behind the backslash"},
    };
    for (Case const& c : cases)
        try {
            ADD_FAILURE() << c.line << " gives " << split(c.line);
        } catch (QuotingError const& error) {
            EXPECT_STREQ(c.words, error.what()) << c.line;
        }
}

TEST(Words, KeepTheCommandAsItWasWritten)
{
    EXPECT_EQ("echo 'a  b'  \"c\"", splitWords("  echo 'a  b'  \"c\"  # what else\t").text);
    EXPECT_EQ("echo a#b", splitWords("echo a#b").text);
    EXPECT_EQ("", splitWords("  # nothing").text);
}

TEST(Words, ComeBackFromTheirQuotes)
{
    Case const cases[] = {
        {"a", "a"},
        {"", "''"},
        {"e1t1 1", "'e1t1 1'"},
        {"#a", "'#a'"},
        {"a#b", "a#b"},
        {"it's", "\"it's\""},
        {"a\"b", "'a\"b'"},
        {"a'\"$`\\b", "\"a'\\\"\\$\\`\\\\b\""},
        {"a\\b", "'a\\b'"},
        {"\t", "'\t'"},
    };
    for (Case const& c : cases) {
        EXPECT_EQ(c.words, quoted(c.line));
        EXPECT_EQ("<" + std::string(c.line) + ">", split(quoted(c.line)));
    }
}
} // namespace
