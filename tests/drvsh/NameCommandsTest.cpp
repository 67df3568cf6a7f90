#include "ShellFixture.h"

namespace
{
class NameCommands : public ShellFixture
{
protected:
    struct Case
    {
        char const* command;
        char const* printed;
    };
    template <std::size_t N> void prints(Case const (&cases)[N])
    {
        for (Case const& c : cases) {
            EXPECT_EQ(c.printed, run(c.command)) << c.command;
            EXPECT_EQ("", err_.str()) << c.command;
        }
    }
    template <std::size_t N> void fails(Case const (&cases)[N])
    {
        for (Case const& c : cases) {
            EXPECT_EQ(c.printed, failing(c.command)) << c.command;
            EXPECT_EQ("", out_.str()) << c.command;
        }
    }
};

TEST_F(NameCommands, Build)
{
    Case const good[] = {
        {"name build e1t1 0 3 / a b", "e1t1 0 3/a/b\n"},
        {"name build fxs 2", "fxs 2\n"},
        {"name build x / y z", "x/y/z\n"},
        {"name build x", "x\n"},
        {"name build x 1 2 3", "x 1 2 3\n"},
        {"name build x 4294967294", "x 4294967294\n"},
        // An absent number hides those behind it; empty components stay.
        {"name build e1t1 - 5", "e1t1\n"},
        {"name build e1t1 1 - 5 / a", "e1t1 1/a\n"},
        {"name build x / '' b", "x//b\n"},
        {"name build x / / b", "x///b\n"},
        {"name build x /", "x\n"},
        {"name build ''", "\n"},
        {"name build [x] / [a,b] -- -x", "[x]/[a,b]/-x\n"},
    };
    prints(good);
    Case const bad[] = {
        {"name build", "t:1: name build: TYPE is required\n"},
        {"name build x y", "t:1: name build: 'y' is no number from 0 to 4294967294\n"},
        {"name build x ''", "t:1: name build: '' is no number from 0 to 4294967294\n"},
        {"name build x -5", "t:1: name build: '-5' is no number from 0 to 4294967294\n"},
        {"name build x 4294967295",
         "t:1: name build: '4294967295' is no number from 0 to 4294967294\n"},
        {"name build x 1 2 3 4", "t:1: name build: '4' is one number too many\n"},
    };
    fails(bad);
}

TEST_F(NameCommands, Split)
{
    Case const good[] = {
        {"name split 'e1t1 0 3/a/b'", "type        e1t1\n"
                                      "number 1    0\n"
                                      "number 2    3\n"
                                      "number 3    absent\n"
                                      "further 1   a\n"
                                      "further 2   b\n"
                                      "components  3\n"},
        {"name split 'fxs 2'", "type        fxs\n"
                               "number 1    2\n"
                               "number 2    absent\n"
                               "number 3    absent\n"
                               "components  1\n"},
        {"name split ''", "type\n"
                          "number 1    absent\n"
                          "number 2    absent\n"
                          "number 3    absent\n"
                          "components  0\n"},
        {"name split 'e1t1 x 7/[a,b]'", "type        e1t1\n"
                                        "number 1    absent\n"
                                        "number 2    7\n"
                                        "number 3    absent\n"
                                        "further 1   [a,b]\n"
                                        "components  2\n"},
    };
    prints(good);
}

TEST_F(NameCommands, Rebuild)
{
    Case const good[] = {
        {"name rebuild 'bri 1 2/x' fxo", "fxo 1 2/x\n"},
        {"name rebuild x y", "y\n"},
        {"name rebuild 'x 1' ''", " 1\n"},
    };
    prints(good);
}

TEST_F(NameCommands, Port)
{
    Case const good[] = {
        {"port e1t1", "1\n"},      {"port bri", "2\n"},  {"port fxs", "3\n"},
        {"port fxo", "4\n"},       {"port E1T1", "0\n"}, {"port ''", "0\n"},
        {"port 'e1t1 1'", "0\n"},  {"port -1", "0\n"},   {"port '(unknown)'", "0\n"},
        {"port 0", "(unknown)\n"}, {"port 1", "e1t1\n"}, {"port 2", "bri\n"},
        {"port 3", "fxs\n"},       {"port 4", "fxo\n"},  {"port 5", "(invalid)\n"},
        {"port 7", "(invalid)\n"},
    };
    prints(good);
    Case const bad[] = {
        {"port", "t:1: port: TYPE is required\n"},
        {"port 8", "t:1: port: '8' is no number from 0 to 7\n"},
        {"port 4294967297", "t:1: port: '4294967297' is no number from 0 to 7\n"},
    };
    fails(bad);
}

TEST_F(NameCommands, Timeslots)
{
    Case const good[] = {
        {"timeslots 1-15;17-31", "0xFFFEFFFE\n"},
        {"timeslots 0", "0x00000001\n"},
        {"timeslots 1,2", "0x00000006\n"},
        {"timeslots '3,5 7'", "0x000000A8\n"},
        {"timeslots 0-31", "0xFFFFFFFF\n"},
        {"timeslots ''", "0x00000000\n"},
        {"timeslots 0xFFFEFFFE", "1-15;17-31\n"},
        {"timeslots 0xa8", "3;5;7\n"},
        {"timeslots 0x6", "1-2\n"},
        {"timeslots 0x0", "\n"},
    };
    prints(good);
    Case const bad[] = {
        {"timeslots 31-1", "t:1: timeslots: Start timeslot must be lower than end timeslot\n"},
        {"timeslots 4-4", "t:1: timeslots: Start timeslot must be lower than end timeslot\n"},
        {"timeslots 32", "t:1: timeslots: Timeslot out of range\n"},
        {"timeslots 1-32", "t:1: timeslots: Timeslot out of range\n"},
        {"timeslots 40-2", "t:1: timeslots: Timeslot out of range\n"},
        {"timeslots 1;2;40", "t:1: timeslots: Timeslot out of range\n"},
        {"timeslots 2-", "t:1: timeslots: Timeslot out of range\n"},
        {"timeslots -7", "t:1: timeslots: Timeslot out of range\n"},
        {"timeslots abc", "t:1: timeslots: Timeslot out of range\n"},
        {"timeslots 0x", "t:1: timeslots: '0x' is no mask from 0x0 to 0xFFFFFFFF\n"},
        {"timeslots 0xg", "t:1: timeslots: '0xg' is no mask from 0x0 to 0xFFFFFFFF\n"},
        {"timeslots 0x100000000",
         "t:1: timeslots: '0x100000000' is no mask from 0x0 to 0xFFFFFFFF\n"},
        {"timeslots 1 2", "t:1: timeslots: argument '2' is one too many\n"},
    };
    fails(bad);
}
} // namespace
