#include <drvsh/Arguments.h>

#include <gtest/gtest.h>

namespace
{
/// A command with one of each kind, and all that it got as one text.
struct Sample
{
    Arguments arguments{"sample", "A sample"};
    std::string name = "-";
    std::optional<std::string> place;
    std::optional<std::string> say;
    unsigned priority = 7;
    std::vector<std::string> attributes;
    std::vector<std::string> rules;
    bool veto = false;

    Sample()
    {
        arguments.required("NAME", name, "The name");
        arguments.optional("PLACE", place, "The place");
        arguments.option("--say", "TEXT", say, "The text");
        arguments.number("--priority", priority, "The priority");
        arguments.list("--attr", "KEY=VALUE", attributes, "Attributes");
        arguments.repeated("--refuse", "RULE", rules, "Rules");
        arguments.flag("--veto", veto, "Whether");
    }

    std::string parse(std::vector<std::string> const& words)
    {
        try {
            if (!arguments.parse(words))
                return "help";
        } catch (UsageError const& error) {
            return error.what();
        }
        std::string text = "<" + name + ">";
        if (place)
            text += " place <" + *place + ">";
        if (say)
            text += " say <" + *say + ">";
        if (priority != 7)
            text += " priority " + std::to_string(priority);
        for (std::string const& attribute : attributes)
            text += " attr <" + attribute + ">";
        for (std::string const& rule : rules)
            text += " refuse <" + rule + ">";
        return text + (veto ? " veto" : "");
    }
};

struct Case
{
    std::vector<std::string> words;
    char const* parsed;
};

void check(std::vector<Case> const& cases)
{
    for (Case const& c : cases) {
        std::string line;
        for (std::string const& word : c.words)
            line += " <" + word + ">";
        EXPECT_EQ(c.parsed, Sample().parse(c.words)) << line;
    }
}

TEST(Arguments, ArriveAsTheyWereWritten)
{
    check({
        {{"fxs 1"}, "<fxs 1>"},
        {{""}, "<>"},
        {{"", ""}, "<> place <>"},
        // CLI11 by itself takes these for lists, for nothing, or for a command of its own.
        {{"[x]"}, "<[x]>"},
        {{"[a,b]", "[]"}, "<[a,b]> place <[]>"},
        {{"{}", "%%"}, "<{}> place <%%>"},
        {{"++", "-"}, "<++> place <->"},
        {{"sample", "a=b"}, "<sample> place <a=b>"},
        {{"\x01"
          "0\x02",
          "\x01"},
         "<\x01"
         "0\x02> place <\x01>"},
        {{"\"a\"", "'b'"}, "<\"a\"> place <'b'>"},
        {{"/a", "\\"}, "</a> place <\\>"},
        // Behind -- everything is an argument.
        {{"--", "-x"}, "<-x>"},
        {{"--", "--veto", "--"}, "<--veto> place <-->"},
        {{"--", "--say=x"}, "<--say=x>"},
        {{"a", "--", ""}, "<a> place <>"},
        {{"--veto", "--", "[x]"}, "<[x]> veto"},
    });
}

TEST(Arguments, ValuesOfOptionsToo)
{
    check({
        {{"a", "--say", "b c"}, "<a> say <b c>"},
        {{"--say", "b", "a"}, "<a> say <b>"},
        {{"--say=b", "a"}, "<a> say <b>"},
        {{"a", "--say", ""}, "<a> say <>"},
        {{"--say=", "a"}, "<a> say <>"},
        {{"a", "--say", "[x]"}, "<a> say <[x]>"},
        {{"a", "--say=[x,y]"}, "<a> say <[x,y]>"},
        {{"a", "--say=-x"}, "<a> say <-x>"},
        {{"a", "--say=--veto=1"}, "<a> say <--veto=1>"},
        {{"a", "--say", "{}"}, "<a> say <{}>"},
        {{"--say=a=b=c", "="}, "<=> say <a=b=c>"},
        {{"a", "--attr", "k=v"}, "<a> attr <k=v>"},
        {{"a", "--attr", "k=[x]", "j=", ""}, "<a> attr <k=[x]> attr <j=> attr <>"},
        {{"a", "--attr=k=[x,y]", "--attr", "i"}, "<a> attr <k=[x,y]> attr <i>"},
        {{"--attr", "k=v", "j=w", "a"}, "<a> attr <k=v> attr <j=w>"},
        {{"--attr", "k=v", "--", "-x"}, "<-x> attr <k=v>"},
        {{"--refuse", "added", "a", "--refuse", "[3rd]"}, "<a> refuse <added> refuse <[3rd]>"},
        {{"--refuse=", "a"}, "<a> refuse <>"},
        {{"--priority", "0", "a"}, "<a> priority 0"},
        {{"a", "--priority=4294967295"}, "<a> priority 4294967295"},
        {{"a", "--veto", "--veto"}, "<a> veto"},
    });
}

TEST(Arguments, AreRefusedWithTheirNames)
{
    check({
        {{}, "NAME is required"},
        {{"--veto"}, "NAME is required"},
        {{"a", "b", "[c]"}, "argument '[c]' is one too many"},
        {{"a", "b", ""}, "argument '' is one too many"},
        {{"--prioriti=3", "a"}, "there is no option '--prioriti', did you mean '--priority'?"},
        {{"--vote"}, "there is no option '--vote', did you mean '--veto'?"},
        {{"a", "-x"}, "there is no option '-x'"},
        {{"a", "b", "-5"}, "argument '-5' is one too many"},
        {{"a", "--xyz=[q]"}, "there is no option '--xyz'"},
        {{"a", "--priority"}, "--priority: 1 required N missing"},
        {{"a", "--priority", ""}, "--priority: '' is no number from 0 to 4294967295"},
        {{"a", "--priority=-1"}, "--priority: '-1' is no number from 0 to 4294967295"},
        {{"a", "--priority=4294967296"},
         "--priority: '4294967296' is no number from 0 to 4294967295"},
        {{"a", "--priority=[3]"}, "--priority: '[3]' is no number from 0 to 4294967295"},
        {{"a", "--veto=yes"}, "veto was given a disallowed flag override"},
    });
}

TEST(Arguments, RefuseASecondValueForOne)
{
    std::string const text = Sample().parse({"a", "--say", "b", "--say", "c"});
    EXPECT_EQ(0u, text.find("--say: ")) << text;
}

TEST(Arguments, ShowHelp)
{
    Sample sample;
    EXPECT_EQ("help", sample.parse({"--help"}));
    EXPECT_EQ("help", Sample().parse({"a", "b", "--help"}));
    EXPECT_NE(std::string::npos, sample.arguments.help().find("Usage: sample [OPTIONS] NAME"));
    EXPECT_NE(std::string::npos, sample.arguments.help().find("--say TEXT"));
    EXPECT_EQ(
        (std::vector<std::string>{"--help", "--say", "--priority", "--attr", "--refuse", "--veto"}),
        sample.arguments.options());
}

TEST(Arguments, TakeWordsRawWhereDeclaredSo)
{
    std::vector<std::string> words;
    Arguments arguments("fails", "");
    arguments.raw("COMMAND", words, "");
    EXPECT_TRUE(arguments.parse({"driver", "add", "--did", "--", "--help"}));
    EXPECT_EQ((std::vector<std::string>{"driver", "add", "--did", "--", "--help"}), words);
    EXPECT_FALSE(arguments.parse({"--help"}));
    EXPECT_THROW(arguments.parse({}), UsageError);
}

TEST(Arguments, NumberMayBeLeftOut)
{
    for (auto const& c : {std::make_pair("--log", 0u), std::make_pair("--log=3", 3u)}) {
        std::optional<unsigned> log;
        std::vector<std::string> files;
        Arguments arguments("drvsh", "");
        arguments.numberOrNone("--log", log, "");
        arguments.rest("FILE", files, 0, "");
        // A file is never taken for the number.
        EXPECT_TRUE(arguments.parse({c.first, "7"}));
        EXPECT_EQ(c.second, log.value_or(99));
        EXPECT_EQ((std::vector<std::string>{"7"}), files);
    }
}

TEST(Arguments, ShortOptionsTakeTheirValueEitherWay)
{
    for (std::vector<std::string> const& words :
         {std::vector<std::string>{"-k", "-c", "[x]", "-c", ""},
          std::vector<std::string>{"-c[x]", "--command=", "-k"},
          std::vector<std::string>{"-kc", "[x]", "--command", ""}}) {
        std::vector<std::string> commands;
        bool keep = false;
        Arguments arguments("drvsh", "");
        arguments.repeated("-c,--command", "TEXT", commands, "");
        arguments.flag("-k,--keep-going", keep, "");
        EXPECT_TRUE(arguments.parse(words));
        EXPECT_EQ((std::vector<std::string>{"[x]", ""}), commands);
        EXPECT_TRUE(keep);
    }
}
} // namespace
