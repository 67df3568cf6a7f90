#include "ShellFixture.h"

#include <drvsh/Completion.h>
#include <drvsh/Words.h>

#include <filesystem>
#include <fstream>

namespace
{
/// A shell with names to complete.
class CompletionTest : public ShellFixture
{
protected:
    CompletionTest()
    {
        run("driver add 'fxs 1'\ndriver add 'fxs 2'\ndriver add e1t1\ngroup add 'e1t1 1/B' 1-3\n"
            "group observe 'e1t1 1/B' 'all calls'\ngroup observe 'e1t1 1/B' ports\n"
            "listen desk --prefix nobody\nlisten \"it's\" --prefix nobody\nattach 'fxs 1' room "
            "12\nattach 'fxs 1' 'wing no' left\n"
            "attach 'fxs 2' role a\ndetach 'fxs 2' role\nattach 'fxs 2' ring 1\ndetach 'fxs 2' "
            "ring");
        EXPECT_EQ("", err_.str());
    }

    /// The candidates at the end of the line, joined by "|"; "+" behind those that go on.
    std::string candidates(std::string const& line)
    {
        std::string text;
        for (Completion::Candidate const& candidate : complete(shell_, line).candidates)
            text += (text.empty() ? "" : "|") + candidate.text + (candidate.isWhole ? "" : "+");
        return text;
    }
    /// The line after Tab.
    std::string tab(std::string const& line)
    {
        Completion const completion = complete(shell_, line);
        std::string const text = insertion(completion);
        return text.empty() ? line : line.substr(0, completion.start) + text;
    }
};

struct Case
{
    char const* line;
    char const* wanted;
};

TEST_F(CompletionTest, Commands)
{
    Case const cases[] = {
        {"d", "detach|driver|drivers"},
        {"dri", "driver|drivers"},
        {"driver ", "add|remove|show"},
        {"  driver s", "show"},
        {"group un", "unobserve"},
        {"name ", "build|rebuild|split"},
        {"fails dri", "driver|drivers"},
        {"fails driver r", "remove"},
        {"help li", "listen|listeners"},
        {"help driver a", "add"},
        {"help driver add ", ""},
        {"xyzzy ", ""},
        {"driver frob ", ""},
        {"echo ", "--help"},
        {"# d", ""},
        {"drivers # d", ""},
    };
    for (Case const& c : cases)
        EXPECT_EQ(c.wanted, candidates(c.line)) << c.line;
}

TEST_F(CompletionTest, NamesByWhatTheArgumentIs)
{
    Case const cases[] = {
        {"driver show ", "e1t1|e1t1 1/B|fxs 1|fxs 2"},
        {"driver remove f", "fxs 1|fxs 2"},
        {"driver add ", "--again|--did|--help|--iface"}, // a new name is nobody's
        {"fails driver show 'fx", "fxs 1|fxs 2"},
        {"driver show \"fxs 1", "fxs 1"},
        {"driver show fxs\\ 2", "fxs 2"},
        {"group show ", "e1t1 1/B"},
        {"unlisten ", "desk|it's"},
        {"listen ",
         "--attr|--did|--help|--iface|--prefix|--priority|--refuse|--say|--snapshot|--veto"},
        {"group unobserve 'e1t1 1/B' ", "all calls|ports"},
        {"group unobserve 'fxs 1' ", "--current|--help"},
        {"group unobserve nothing ", "--current|--help"},
        {"get 'fxs 1' ", "room|wing no"},
        {"detach 'fxs 1' r", "room"},
        {"get nothing ", "--help"},
        {"attach 'fxs 1' room ", "--help"},
        {"unlisten desk ", "--help"},
        {"unlisten desk d", ""},
    };
    for (Case const& c : cases)
        EXPECT_EQ(c.wanted, candidates(c.line)) << c.line;
}

TEST_F(CompletionTest, OptionsAndTheirValues)
{
    Case const cases[] = {
        {"find --", "--attr|--did|--help|--iface|--json|--prefix"},
        {"find -", "--attr|--did|--help|--iface|--json|--prefix"},
        {"find --did DID_F", "DID_FXO|DID_FXS"},
        {"find --did=DID_FXS", "--did=DID_FXS"},
        {"find --did=DID_F", "--did=DID_FXO|--did=DID_FXS"},
        {"find --json=", ""},
        {"find --did DID_FXS --pre", "--prefix"},
        {"find --prefix e", "e1t1|e1t1 1/B"},
        {"listen x --attr r", "ring=+|role=+|room=12"},
        {"listen x --attr room=12 w", "wing no=left"},
        {"listen x --attr room=12 --v", "--veto"},
        {"listen x --refuse a", "added|added +"},
        {"listen x --priority ", ""},
        {"driver add x --iface IInfo ID", "IDriver|IDriverRepository"},
        // A value that may be one of a list, or the argument that is still missing.
        {"group observe --refuse 3rd e", "e1t1 1/B"},
        {"driver remove -- f", "fxs 1|fxs 2"},
        {"driver remove -- -", ""},
    };
    for (Case const& c : cases)
        EXPECT_EQ(c.wanted, candidates(c.line)) << c.line;
}

TEST_F(CompletionTest, ListsGoOnBeforeArguments)
{
    quietly("driver add IDesk");
    EXPECT_EQ("IDriver|IDriverRepository", candidates("driver add x --iface IDr"));
    EXPECT_EQ("role=+|room=12", candidates("listen x --attr room=12 ro"));
}

TEST_F(CompletionTest, TabInsertsWithQuotes)
{
    Case const cases[] = {
        {"driv", "driver"},
        {"drivers", "drivers "},
        {"detac", "detach "},
        {"driver show f", "driver show 'fxs "},
        {"driver show 'fxs ", "driver show 'fxs "},
        {"driver show 'fxs 2", "driver show 'fxs 2' "},
        {"driver show \"fxs 2", "driver show 'fxs 2' "},
        {"driver show fxs\\ 2", "driver show 'fxs 2' "},
        {"driver show e1t1", "driver show e1t1"},
        {"unlisten it", "unlisten \"it's\" "},
        {"unlisten 'it", "unlisten \"it's\" "},
        {"listen x --attr rol", "listen x --attr role="},
        {"listen x --attr win", "listen x --attr 'wing no=left' "},
        {"get 'fxs 1' w", "get 'fxs 1' 'wing no' "},
        {"xyz", "xyz"},
        {"", ""},
    };
    for (Case const& c : cases)
        EXPECT_EQ(c.wanted, tab(c.line)) << c.line;
}

TEST_F(CompletionTest, WhatTabInsertsMeansTheName)
{
    for (std::string const name :
         {"a b", "a'b", "a\"b", "a\\b", "#a", "a'b \"c\" \\", "$x`y'", "-x"}) {
        quietly("driver add -- " + quoted(name));
        std::string const line = "driver show -- ";
        std::string const typed = line + openQuoted(name.substr(0, 2));
        std::string const done = tab(typed);
        EXPECT_EQ(name, splitWords(done).words.back()) << done;
        quietly("driver remove -- " + quoted(name));
    }
}

TEST_F(CompletionTest, NeverBreaksACharacterOfSeveralBytes)
{
    quietly("driver add \xc3\xa4"
            "1\ndriver add \xc3\xb6"
            "1");
    EXPECT_EQ("driver show \xc3", tab("driver show \xc3"));
    quietly("driver add z\xc3\xa4\ndriver add z\xc3\xb6");
    EXPECT_EQ("driver show z", tab("driver show z"));
}

TEST_F(CompletionTest, Files)
{
    char name[] = "/tmp/drvsh-complete-XXXXXX";
    std::filesystem::path const folder = ::mkdtemp(name);
    std::filesystem::create_directory(folder / "lines");
    std::ofstream(folder / "lines.conf") << "\n";
    std::ofstream(folder / "my lines.conf") << "\n";
    std::string const at = folder.string() + "/";
    EXPECT_EQ(at + "lines.conf|" + at + "lines/+|" + at + "my lines.conf",
              candidates("load " + at));
    EXPECT_EQ("load '" + at + "my lines.conf' ", tab("load " + at + "my"));
    EXPECT_EQ("", candidates("load " + at + "nowhere/"));
    std::filesystem::remove_all(folder);
}

TEST_F(CompletionTest, ChangesNothing)
{
    std::string const before = run("info");
    for (char const* line : {"driver show ", "group unobserve 'e1t1 1/B' ", "find --attr "})
        complete(shell_, line);
    EXPECT_EQ(before, run("info"));
}

TEST(PartialWords, AreWhatIsTypedSoFar)
{
    struct
    {
        char const* line;
        std::vector<std::string> words;
        char const* last;
        std::size_t start;
    } const cases[] = {
        {"", {}, "", 0},
        {"a", {}, "a", 0},
        {"a ", {"a"}, "", 2},
        {"  a b", {"a"}, "b", 4},
        {"a 'b c", {"a"}, "b c", 2},
        {"a 'b c' ", {"a", "b c"}, "", 8},
        {"a \"b c", {"a"}, "b c", 2},
        {"a \"b\\", {"a"}, "b\\", 2},
        {"a b\\", {"a"}, "b", 2},
        {"a b\\ c", {"a"}, "b c", 2},
        {"a '", {"a"}, "", 2},
    };
    for (auto const& c : cases) {
        PartialLine const partial = splitPartial(c.line);
        EXPECT_EQ(c.words, partial.words) << c.line;
        EXPECT_EQ(c.last, partial.last) << c.line;
        EXPECT_EQ(c.start, partial.start) << c.line;
        EXPECT_FALSE(partial.isComment) << c.line;
    }
    EXPECT_TRUE(splitPartial("a #").isComment);
    EXPECT_TRUE(splitPartial("# a").isComment);
    EXPECT_FALSE(splitPartial("a b#").isComment);
}
} // namespace
