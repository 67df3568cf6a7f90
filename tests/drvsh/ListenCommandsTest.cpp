#include "ShellFixture.h"

namespace
{
class ListenCommands : public ShellFixture
{};

TEST_F(ListenCommands, HearWhatComesAndGoes)
{
    quietly("driver add 'fxs 1'\nattach 'fxs 1' room 12");
    EXPECT_EQ("> listen desk\n"
              "  desk: fxs 1: added\n"
              "> driver add 'fxs 2'\n"
              "  desk: fxs 2: added\n"
              "> attach 'fxs 2' room 13\n"
              "  desk: fxs 2: set room=13\n"
              "> attach 'fxs 2' room 14\n"
              "  desk: fxs 2: cleared room=13\n"
              "  desk: fxs 2: set room=14\n"
              "> detach 'fxs 2' room\n"
              "  desk: fxs 2: cleared room=14\n"
              "> driver remove 'fxs 1'\n"
              "  desk: fxs 1: removed\n"
              "> unlisten desk\n"
              "  desk: fxs 2: removed\n",
              run("listen desk\ndriver add 'fxs 2'\nattach 'fxs 2' room 13\n"
                  "attach 'fxs 2' room 14\nattach 'fxs 2' room 14\ndetach 'fxs 2' room\n"
                  "driver remove 'fxs 1'\nunlisten desk\ndriver remove 'fxs 2'"));
}

TEST_F(ListenCommands, ANameIsTakenOnce)
{
    quietly("listen a");
    EXPECT_EQ("t:1: listen: Driver repository observer 'a' already exists\n",
              failing("listen a --prefix x"));
    // The first is still there, as it was.
    EXPECT_EQ("> driver add b\n  a: b: added\n", run("driver add b"));
    EXPECT_EQ("> unlisten a\n  a: b: removed\n", run("unlisten a"));
    EXPECT_EQ("there is no listener 'a'\n", run("unlisten a"));
    EXPECT_TRUE(good_);
    EXPECT_EQ("> listen a\n  a: b: added\n", run("listen a"));
}

TEST_F(ListenCommands, CriteriaSelect)
{
    run("listen all\nlisten did --did DID_FXS\nlisten iface --iface IInfo\n"
        "listen prefix --prefix 'fxs 1'\nlisten attr --attr room=1 floor=\n"
        "listen both --attr room=1 --attr floor=2");
    EXPECT_EQ("> driver add 'fxs 12'\n"
              "  prefix: fxs 12: added\n"
              "  all:    fxs 12: added\n"
              "> driver add 'fxs 2' --did DID_FXS --iface IInfo\n"
              "  iface:  fxs 2: added\n"
              "  did:    fxs 2: added\n"
              "  all:    fxs 2: added\n"
              "> attach 'fxs 2' room 12\n"
              "  all:    fxs 2: set room=12\n"
              "  did:    fxs 2: set room=12\n"
              "  iface:  fxs 2: set room=12\n"
              "  attr:   fxs 2: added\n"
              "> attach 'fxs 2' floor 2\n"
              "  all:    fxs 2: set floor=2\n"
              "  did:    fxs 2: set floor=2\n"
              "  iface:  fxs 2: set floor=2\n"
              "  attr:   fxs 2: set floor=2\n"
              "  both:   fxs 2: added\n",
              run("driver add 'fxs 12'\ndriver add 'fxs 2' --did DID_FXS --iface IInfo\n"
                  "attach 'fxs 2' room 12\nattach 'fxs 2' floor 2"));
}

TEST_F(ListenCommands, PriorityOrders)
{
    quietly("listen five --priority 5\nlisten one --priority 1\nlisten again --priority 5\n"
            "listen last --priority 4294967295");
    EXPECT_EQ("> driver add a\n"
              "  one:   a: added\n"
              "  again: a: added\n"
              "  five:  a: added\n"
              "  last:  a: added\n"
              "> driver remove a\n"
              "  last:  a: removed\n"
              "  five:  a: removed\n"
              "  again: a: removed\n"
              "  one:   a: removed\n",
              run("driver add a\ndriver remove a"));
}

TEST_F(ListenCommands, SnapshotsTellTheAttachments)
{
    quietly("driver add a\nattach a x 1\nattach a y 2\nattach a z 3\ndetach a y");
    EXPECT_EQ("> listen s --snapshot --attr z=3\n"
              "  s: a: added\n"
              "  s: a: set x=1\n"
              "> unlisten s\n"
              "  s: a: cleared x=1\n"
              "  s: a: removed\n",
              run("listen s --snapshot --attr z=3\nunlisten s"));
}

TEST_F(ListenCommands, ARefusalIsRolledBack)
{
    quietly("listen a --priority 1\nlisten b --priority 2\n"
            "listen guard --priority 3 --veto --refuse 'added fxs 9' --say 'line busy'\n"
            "listen z --priority 4");
    EXPECT_EQ("t:1: driver add: line busy\n", failing("driver add 'fxs 99'"));
    EXPECT_EQ("> driver add 'fxs 99'\n"
              "  a:     fxs 99: added\n"
              "  b:     fxs 99: added\n"
              "  guard: fxs 99: refused (\"line busy\")\n"
              "  b:     fxs 99: removed\n"
              "  a:     fxs 99: removed\n",
              out_.str());
    EXPECT_EQ("", run("drivers"));
    EXPECT_EQ("> driver add 'fxs 8'\n"
              "  a:     fxs 8: added\n"
              "  b:     fxs 8: added\n"
              "  guard: fxs 8: added\n"
              "  z:     fxs 8: added\n",
              run("driver add 'fxs 8'"));
}

TEST_F(ListenCommands, ARefusalWithoutTheRightOfVetoIsIgnored)
{
    EXPECT_EQ("> driver add a\n"
              "  grumbler: a: refused (\"no\"), without right of veto\n"
              "> attach a k v\n"
              "  grumbler: a: refused k=v (\"no\"), without right of veto\n",
              run("listen grumbler --refuse added --refuse 'set k' --say no\n"
                  "driver add a\nattach a k v"));
    EXPECT_TRUE(good_);
}

TEST_F(ListenCommands, ARefusedValueLeavesTheKeyEmpty)
{
    run("driver add p\nlisten a --priority 1\n"
        "listen guard --priority 2 --veto --refuse 'set k=y' --say 'not y'\nattach p k x");
    EXPECT_EQ("t:1: attach: not y\n", failing("attach p k y"));
    EXPECT_EQ("> attach p k y\n"
              "  guard: p: cleared k=x\n"
              "  a:     p: cleared k=x\n"
              "  a:     p: set k=y\n"
              "  guard: p: refused k=y (\"not y\")\n"
              "  a:     p: cleared k=y\n",
              out_.str());
    EXPECT_EQ("\n", run("get p k"));
    EXPECT_EQ("k=\n", run("attachments p"));
}

TEST_F(ListenCommands, AnyQuestionCanBeRefusedByItsNumber)
{
    EXPECT_EQ("> driver add a\n"
              "  third: a: added\n"
              "> attach a k v\n"
              "  third: a: set k=v\n"
              "> fails attach a k w\n"
              "  third: a: cleared k=v\n"
              "  third: a: refused k=w (\"refused\")\n"
              "  failed: attach: refused\n"
              "> attach a k w\n"
              "  third: a: set k=w\n",
              run("listen third --veto --refuse 3rd\ndriver add a\nattach a k v\n"
                  "fails attach a k w\nattach a k w"));
}

TEST_F(ListenCommands, ARefusedListenerLeavesNoTrace)
{
    quietly("driver add a\ndriver add b\ndriver add c");
    EXPECT_EQ("t:1: listen: not c\n", failing("listen l --veto --refuse 'added c' --say 'not c'"));
    EXPECT_EQ("> listen l --veto --refuse 'added c' --say 'not c'\n"
              "  l: a: added\n"
              "  l: b: added\n"
              "  l: c: refused (\"not c\")\n"
              "  l: b: removed\n"
              "  l: a: removed\n",
              out_.str());
    EXPECT_EQ("there is no listener 'l'\n", run("unlisten l"));
    quietly("driver remove a");
}

TEST_F(ListenCommands, AReasonMayBeEmpty)
{
    run("listen l --veto --refuse added --say ''");
    EXPECT_EQ("t:1: driver add: no reason given, code -1\n", failing("driver add a"));
    EXPECT_EQ("> driver add a\n  l: a: refused (\"\")\n", out_.str());
}

TEST_F(ListenCommands, NamesAndTextsArriveUnchanged)
{
    EXPECT_EQ("> driver add [p]\n"
              "  [l]: [p]: refused (\"[no,way]\"), without right of veto\n",
              run("listen [l] --prefix [p] --refuse 'added [p]' --say [no,way]\ndriver add [p]"));
    EXPECT_EQ("> attach [p] [k] [v]\n  [l]: [p]: set [k]=[v]\n", run("attach [p] [k] [v]"));
    EXPECT_EQ("> unlisten [l]\n  [l]: [p]: removed\n", run("unlisten [l]"));
    EXPECT_EQ("> listen -- -x\n  -x: [p]: added\n", run("listen -- -x"));
    EXPECT_EQ("> listen ''\n  :   [p]: added\n", run("listen ''"));
    EXPECT_EQ("there is no listener 'x'\n", run("unlisten x"));
    EXPECT_EQ("> unlisten ''\n  :   [p]: removed\n", run("unlisten ''"));
}

TEST_F(ListenCommands, RefuseWhatTheyDoNotUnderstand)
{
    struct
    {
        char const* command;
        char const* complaint;
    } const cases[] = {
        {"listen", "t:1: listen: NAME is required\n"},
        {"listen a b", "t:1: listen: argument 'b' is one too many\n"},
        {"listen a --attr k", "t:1: listen: 'k' is not KEY=VALUE\n"},
        {"listen a --priority -1",
         "t:1: listen: --priority: '-1' is no number from 0 to 4294967295\n"},
        {"listen a --priority 4294967296",
         "t:1: listen: --priority: '4294967296' is no number from 0 to 4294967295\n"},
        {"listen a --refuse 'removed x'",
         "t:1: listen: 'removed x' says not what to refuse: 'added PREFIX', 'set KEY=VALUE' or "
         "'Nth'\n"},
        {"listen a --did x",
         "t:1: listen: 'x' is no identifier, neither a known name nor a UUID\n"},
        {"listen a --iface IInf",
         "t:1: listen: 'IInf' is no identifier, neither a known name nor a UUID, did you mean "
         "'IInfo'?\n"},
        {"listen a --vet", "t:1: listen: there is no option '--vet', did you mean '--veto'?\n"},
    };
    for (auto const& c : cases)
        EXPECT_EQ(c.complaint, failing(c.command)) << c.command;
    EXPECT_EQ("there is no listener 'a'\n", run("unlisten a"));
}
} // namespace
