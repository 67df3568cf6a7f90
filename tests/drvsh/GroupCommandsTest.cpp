#include "ShellFixture.h"

namespace
{
class GroupCommands : public ShellFixture
{};

TEST_F(GroupCommands, AddSetAndShow)
{
    quietly("group add g\ngroup add h 1-15;17-31");
    EXPECT_EQ("timeslots  none\nmask       0x00000000\n", run("group show g"));
    EXPECT_EQ("timeslots  1-15;17-31\nmask       0xFFFEFFFE\n", run("group show h"));
    quietly("group set g 16\ngroup set h ''");
    EXPECT_EQ("timeslots  16\nmask       0x00010000\n", run("group show g"));
    EXPECT_EQ("timeslots  none\nmask       0x00000000\n", run("group show h"));
    EXPECT_EQ("name        g\n"
              "type        DID_ChannelGroup\n"
              "uuid        21b20c67-4e51-1d60-8fc1-e895ec347e06\n"
              "references  2, one of them this command's own\n"
              "timeslots   16\n",
              run("driver show g"));
}

TEST_F(GroupCommands, ObserversHearWhatComesAndGoes)
{
    quietly("group add g 0-3\ngroup observe g five --priority 5\ngroup observe g one --priority 1\n"
            "group observe g again --priority 5 --veto");
    EXPECT_EQ("> group set g 4-7\n"
              "  one:   g: added 4-7 (0-3 -> 0-7)\n"
              "  again: g: added 4-7 (0-3 -> 0-7)\n"
              "  five:  g: added 4-7 (0-3 -> 0-7)\n"
              "  five:  g: removed 0-3 (0-7 -> 4-7)\n"
              "  again: g: removed 0-3 (0-7 -> 4-7)\n"
              "  one:   g: removed 0-3 (0-7 -> 4-7)\n",
              run("group set g 4-7\ngroup set g 4-7"));
    EXPECT_EQ("timeslots  4-7\n"
              "mask       0x000000F0\n"
              "observer   again\n"
              "observer   five\n"
              "observer   one\n",
              run("group show g"));
}

TEST_F(GroupCommands, ARefusedAdditionIsWithdrawnAndRemovalsStay)
{
    quietly("group add g 0-3\ngroup observe g first --priority 1 --veto\n"
            "group observe g second --priority 2 --veto --refuse 'added 6;9' --say 'slot taken'\n"
            "group observe g third --priority 3");
    EXPECT_EQ("t:1: group set: slot taken\n", failing("group set g 4-7"));
    EXPECT_EQ("> group set g 4-7\n"
              "  first:  g: added 4-7 (0-3 -> 0-7)\n"
              "  second: g: refused 4-7 (\"slot taken\")\n"
              "  first:  g: removed 4-7 (0-7 -> 0-3)\n"
              "  third:  g: removed 0-3 (0-3 -> none)\n"
              "  second: g: removed 0-3 (0-3 -> none)\n"
              "  first:  g: removed 0-3 (0-3 -> none)\n",
              out_.str());
    EXPECT_EQ("> group set g 4-5\n"
              "  first:  g: added 4-5 (none -> 4-5)\n"
              "  second: g: added 4-5 (none -> 4-5)\n"
              "  third:  g: added 4-5 (none -> 4-5)\n",
              run("group set g 4-5"));
}

TEST_F(GroupCommands, ObserversMayHearOfWhatIsThere)
{
    quietly("group add g 1-2\ngroup add empty");
    EXPECT_EQ("> group observe g a --current\n"
              "  a: g: added 1-2 (none -> 1-2)\n"
              "> group unobserve g a --current\n"
              "  a: g: removed 1-2 (1-2 -> none)\n",
              run("group observe g a --current\ngroup unobserve g a --current\n"
                  "group observe g a\ngroup unobserve g a\n"
                  "group observe empty a --current --veto --refuse added\n"
                  "group unobserve empty a --current"));
    EXPECT_EQ("there is no observer 'a'\n", run("group unobserve g a --current"));
    EXPECT_TRUE(good_);
}

TEST_F(GroupCommands, ARefusedObserverLeavesNoTrace)
{
    quietly("group add g 1-2");
    EXPECT_EQ("t:1: group observe: never\n",
              failing("group observe g a --current --veto --refuse 1st --say never"));
    EXPECT_EQ("> group observe g a --current --veto --refuse 1st --say never\n"
              "  a: g: refused 1-2 (\"never\")\n",
              out_.str());
    EXPECT_EQ("timeslots  1-2\nmask       0x00000006\n", run("group show g"));
    quietly("group set g 3");
}

TEST_F(GroupCommands, WithoutTheRightOfVetoNobodyIsAsked)
{
    EXPECT_EQ("> group set g 3\n  a: g: added 3 (none -> 3)\n",
              run("group add g\ngroup observe g a --refuse added\ngroup set g 3"));
}

TEST_F(GroupCommands, ANameIsTakenOncePerGroup)
{
    quietly("group add g\ngroup add h\ngroup observe g a\ngroup observe h a");
    EXPECT_EQ("t:1: group observe: Observer 'a' already exists\n", failing("group observe g a"));
    EXPECT_EQ("t:1: group add: Driver already exists (CDriverRepo): g\n", failing("group add g"));
}

TEST_F(GroupCommands, AGroupTakesItsObserversWithIt)
{
    quietly("group add g 1\ngroup observe g a-long-name\ndriver remove g\ngroup add g 1\n"
            "group observe g b");
    EXPECT_EQ("> group set g 2\n  b: g: added 2 (1 -> 1-2)\n  b: g: removed 1 (1-2 -> 2)\n",
              run("group set g 2"));
}

TEST_F(GroupCommands, RefuseWhatTheyDoNotUnderstand)
{
    quietly("driver add d\ngroup add g 5");
    struct
    {
        char const* command;
        char const* complaint;
    } const cases[] = {
        {"group", "t:1: group: one of these is missing behind it: add, set, show, observe, "
                  "unobserve\n"},
        {"group add x 32", "t:1: group add: Timeslot out of range\n"},
        {"group set g 7-7", "t:1: group set: Start timeslot must be lower than end timeslot\n"},
        {"group set g", "t:1: group set: TIMESLOTS is required\n"},
        {"group set x 1", "t:1: group set: Driver 'x' does not exist\n"},
        {"group set d 1", "t:1: group set: Driver 'd' is no channel group\n"},
        {"group show d", "t:1: group show: Driver 'd' is no channel group\n"},
        {"group observe d a", "t:1: group observe: Driver 'd' is no channel group\n"},
        {"group unobserve x a", "t:1: group unobserve: Driver 'x' does not exist\n"},
        {"group observe g a --refuse 'added 32'", "t:1: group observe: Timeslot out of range\n"},
        {"group observe g a --refuse 'set k'",
         "t:1: group observe: 'set k' is nothing that a channel group asks\n"},
    };
    for (auto const& c : cases)
        EXPECT_EQ(c.complaint, failing(c.command)) << c.command;
    EXPECT_EQ("timeslots  5\nmask       0x00000020\n", run("group show g"));
    EXPECT_EQ("d\ng\n", run("find"));
}
} // namespace
