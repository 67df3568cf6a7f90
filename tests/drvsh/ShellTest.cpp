#include "ShellFixture.h"

namespace
{
class ShellScript : public ShellFixture
{};

TEST_F(ShellScript, RunsLineByLine)
{
    EXPECT_EQ("a\nb  c\n\nd\n", run("echo a\n\n  # nothing\necho 'b  c' # more\necho\n\techo d"));
    EXPECT_TRUE(good_);
    EXPECT_EQ("", err_.str());
}

TEST_F(ShellScript, StopsAtTheFirstFailure)
{
    EXPECT_EQ("t:2: driver add: Driver already exists (CDriverRepo): a\n",
              failing("driver add a\ndriver add a\necho no further"));
    EXPECT_EQ("", out_.str());
    // What was done before stays done.
    EXPECT_EQ("a  DID_UNKNOWN\n", run("drivers"));
    EXPECT_TRUE(good_);
}

TEST_F(ShellScript, KeepsGoingWhereAskedTo)
{
    keepGoing_ = true;
    EXPECT_EQ("t:1: unknown command 'x'\nt:3: a quote ' is not closed\n",
              failing("x\necho a\necho 'b\necho c"));
    EXPECT_EQ("a\nc\n", out_.str());
}

struct Failure
{
    char const* command;
    char const* complaint;
};

TEST_F(ShellScript, SaysWhatItDoesNotKnow)
{
    Failure const cases[] = {
        {"ehco a", "t:1: unknown command 'ehco', did you mean 'echo'?\n"},
        {"drivr add a", "t:1: unknown command 'drivr', did you mean 'driver add'?\n"},
        {"driver ad a", "t:1: unknown command 'driver ad', did you mean 'driver add'?\n"},
        {"driver frobnicate", "t:1: unknown command 'driver frobnicate'\n"},
        {"driver", "t:1: driver: one of these is missing behind it: add, remove, show\n"},
        {"grup observe g x", "t:1: unknown command 'grup', did you mean 'group observe'?\n"},
        {"xyzzy plugh", "t:1: unknown command 'xyzzy'\n"},
        {"''", "t:1: unknown command ''\n"},
        {"ECHO a", "t:1: unknown command 'ECHO'\n"},
        {"[echo]", "t:1: unknown command '[echo]', did you mean 'echo'?\n"},
        {"drivers all", "t:1: drivers: argument 'all' is one too many\n"},
        {"driver add", "t:1: driver add: NAME is required\n"},
        {"driver add a --dod x",
         "t:1: driver add: there is no option '--dod', did you mean '--did'?\n"},
        {"echo a\\", "t:1: there is nothing behind the backslash\n"},
    };
    for (Failure const& c : cases)
        EXPECT_EQ(c.complaint, failing(c.command)) << c.command;
}

TEST_F(ShellScript, SaysThatItCannotBeRead)
{
    Script script = Script::file("/nowhere/nothing.drv");
    EXPECT_FALSE(shell_.run(script, true));
    EXPECT_EQ("/nowhere/nothing.drv: can't be read: No such file or directory\n", err_.str());
}

TEST_F(ShellScript, EchoHandsOutWhatItGets)
{
    Failure const cases[] = {
        {"echo [x]", "[x]\n"},
        {"echo [a,b] {} %%", "[a,b] {} %%\n"},
        {"echo -- -x --y", "-x --y\n"},
        {"echo '' a ''", " a \n"},
        {"echo ''", "\n"},
        {"echo 1-15;17-31", "1-15;17-31\n"},
        {"echo -5 -", "-5 -\n"},
        {"echo \"\\\"\" '\\'", "\" \\\n"},
    };
    for (Failure const& c : cases)
        EXPECT_EQ(c.complaint, run(c.command)) << c.command;
}

TEST_F(ShellScript, ShowsACommandWhenSomethingStandsUnderIt)
{
    EXPECT_EQ("> listen a\n"
              "  a: fxs 1: added\n"
              "> driver add  'fxs 2'\n"
              "  a: fxs 2: added\n"
              "fxs 1  DID_UNKNOWN\n"
              "fxs 2  DID_UNKNOWN\n",
              run("driver add 'fxs 1'\nlisten a # everything\n  driver add  'fxs 2'\ndrivers"));
}

TEST_F(ShellScript, ShowsEveryCommandWhereAskedTo)
{
    text_.showCommands(TextNarrator::Commands::All);
    EXPECT_EQ("> listen a\n"
              "> driver add a\n"
              "  a: a: added\n"
              "> get a k\n"
              "\n",
              run("listen a\n# nothing\n\ndriver add a\nget a k"));
}

TEST_F(ShellScript, FailsTurnsAFailureIntoSuccess)
{
    EXPECT_EQ("> fails driver add a\n"
              "  failed: driver add: Driver already exists (CDriverRepo): a\n"
              "on\n",
              run("driver add a\nfails driver add a\necho on"));
    EXPECT_TRUE(good_);
    EXPECT_EQ("> fails driver add a --nope -- -x\n"
              "  failed: driver add: there is no option '--nope'\n",
              run("fails driver add a --nope -- -x"));
    EXPECT_EQ("t:1: fails: 'driver' was to fail, but did not\n", failing("fails driver add b"));
    EXPECT_EQ("t:1: fails: COMMAND is required\n", failing("fails"));
    EXPECT_EQ("t:1: fails: it can't stand behind itself\n", failing("fails fails driver add c"));
}

TEST_F(ShellScript, HelpShowsCommandsAndTheirUse)
{
    std::string const all = "\n" + run("help");
    for (CommandEntry const& entry : allCommands()) {
        EXPECT_NE(std::string::npos, all.find("\n" + entry.name + " ")) << entry.name;
        std::string const own = run("help " + entry.name);
        EXPECT_EQ(0u, own.find(entry.summary + "\nUsage: " + entry.name + " ")) << own;
        EXPECT_EQ(own, run(entry.name + " --help"));
    }
    EXPECT_EQ("driver add     Add a driver\n"
              "driver remove  Remove a driver\n"
              "driver show    Print what a driver is and has\n",
              run("help driver"));
    EXPECT_EQ("t:1: help: unknown command 'drivr', did you mean 'drivers'?\n",
              failing("help drivr"));
}

TEST_F(ShellScript, EveryCommandHasAnExampleThatRuns)
{
    char const* const before = "driver add 'fxs 1'\nlisten desk\nattach 'fxs 1' room 12\n"
                               "group add g 1-3\ngroup observe g calls\n";
    for (CommandEntry const& entry : allCommands()) {
        std::ostringstream out;
        std::ostringstream err;
        TextNarrator text(out, err);
        Shell shell(text);
        std::string const folder = SOURCE_FOLDER;
        std::string example = entry.example;
        EXPECT_EQ(0u, (example + " ").find(entry.name + " ")) << entry.name << ": " << example;
        if (entry.name == "load")
            example.replace(example.find("examples"), 0, folder + "/");
        Script script = Script::text("t", before + example + "\n");
        EXPECT_TRUE(shell.run(script, false)) << err.str();
        EXPECT_NE(std::string::npos,
                  run("help " + entry.name).find("Example:\n  " + entry.example));
    }
}

TEST_F(ShellScript, ListsListenersInTheOrderInWhichTheyAreTold)
{
    quietly("listen c --priority 5\nlisten b --priority 5\nlisten d --priority 6\nlisten a\n"
            "unlisten b\nlisten b --priority 6");
    std::string const told = run("driver add x");
    std::string listed;
    for (ListenerWish const* wish : shell_.listeners())
        listed += "  " + wish->name + ": x: added\n";
    EXPECT_EQ("> driver add x\n" + listed, told);
}

TEST_F(ShellScript, LogsFromOneCommandToAnother)
{
    EXPECT_EQ("> driver add b\n  [7] DrvRepo: Add driver 'b'\n",
              run("driver add a\nlog\ndriver add b\nlog off\ndriver add c"));
    EXPECT_EQ("t:1: log: '-1' is neither a number from 0 to 4294967295 nor 'off'\n",
              failing("log -1"));
}

TEST_F(ShellScript, NothingRunsBehindExit)
{
    EXPECT_EQ("a\n", run("echo a\nexit\necho b\nnonsense"));
    EXPECT_TRUE(good_);
    EXPECT_TRUE(shell_.hasEnded());
    EXPECT_EQ("", run("echo c"));
}

TEST_F(ShellScript, LogsWhereAskedTo)
{
    shell_.showLog(0);
    EXPECT_EQ("> listen a --veto --refuse added --say no\n"
              "  [7] DrvRepo: Add listener 'a'\n"
              "> driver add fxs\n"
              "  [7] DrvRepo: Add driver 'fxs'\n"
              "  [7] DrvRepo:   fxs: Notify listener 'a' with right of veto: onDriverAdded()\n"
              "  a: fxs: refused (\"no\")\n"
              "  [3] DrvRepo:   fxs: NOTIFY LISTENER 'a' FAILED: no\n"
              "  [3] DrvRepo: ADDING DRIVER 'fxs' FAILED: no\n",
              run("listen a --veto --refuse added --say no\ndriver add fxs"));
    EXPECT_EQ("t:2: driver add: no\n", err_.str());
}

TEST_F(ShellScript, LogsLinesOfAnyLength)
{
    shell_.showLog(0);
    std::string const name(5000, 'n');
    EXPECT_EQ("> driver add " + name + "\n  [7] DrvRepo: Add driver '" + name + "'\n",
              run("driver add " + name));
}

TEST(ShellLife, EndsWithoutAWord)
{
    std::ostringstream out;
    std::ostringstream err;
    {
        TextNarrator text(out, err);
        Shell shell(text);
        shell.showLog(0);
        Script script = Script::text("t", "driver add a\nlisten l\ngroup add g 1-3\n"
                                          "group observe g o\n");
        EXPECT_TRUE(shell.run(script, false));
        out.str("");
    }
    EXPECT_EQ("", out.str());
    EXPECT_EQ("", err.str());
}

TEST(ShellLife, KeepsRepositoriesApart)
{
    std::ostringstream out;
    TextNarrator text(out, out);
    Shell one(text);
    Shell other(text);
    Script add = Script::text("t", "driver add a");
    EXPECT_TRUE(one.run(add, false));
    Script list = Script::text("t", "drivers");
    EXPECT_TRUE(other.run(list, false));
    EXPECT_EQ("", out.str());
}
} // namespace
