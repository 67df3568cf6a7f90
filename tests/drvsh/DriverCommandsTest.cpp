#include "ShellFixture.h"

namespace
{
class DriverCommands : public ShellFixture
{};

TEST_F(DriverCommands, AddShowAndRemove)
{
    quietly("driver add 'e1t1 0 3/a/b'");
    EXPECT_EQ("name        e1t1 0 3/a/b\n"
              "type        DID_UNKNOWN\n"
              "uuid        14bbd19f-4ac5-6360-5b5f-1ca518e3b90f\n"
              "references  2, one of them this command's own\n",
              run("driver show 'e1t1 0 3/a/b'"));
    quietly("driver remove 'e1t1 0 3/a/b'");
    EXPECT_EQ("t:1: driver show: Driver 'e1t1 0 3/a/b' does not exist\n",
              failing("driver show 'e1t1 0 3/a/b'"));
}

TEST_F(DriverCommands, NamesArriveUnchanged)
{
    quietly("driver add [x]\ndriver add -- -x\ndriver add ''\ndriver add 1-2;4\n"
            "driver add 'it is \"it\"'\ndriver add {}");
    EXPECT_EQ("[x]         DID_UNKNOWN\n"
              "-x          DID_UNKNOWN\n"
              "            DID_UNKNOWN\n"
              "1-2;4       DID_UNKNOWN\n"
              "it is \"it\"  DID_UNKNOWN\n"
              "{}          DID_UNKNOWN\n",
              run("drivers"));
    quietly("driver remove [x]\ndriver remove -- -x\ndriver remove ''\ndriver remove 1-2;4\n"
            "driver remove 'it is \"it\"'\ndriver remove {}\ndrivers");
}

TEST_F(DriverCommands, ANameIsTakenOnce)
{
    quietly("driver add a");
    EXPECT_EQ("t:1: driver add: Driver already exists (CDriverRepo): a\n", failing("driver add a"));
    EXPECT_EQ("t:1: driver add: Driver already exists (CDriverRepo): a\n",
              failing("driver add a --again"));
    // Neither attempt left a reference behind.
    EXPECT_EQ("name        a\n"
              "type        DID_UNKNOWN\n"
              "uuid        14bbd19f-4ac5-6360-5b5f-1ca518e3b90f\n"
              "references  2, one of them this command's own\n",
              run("driver show a"));
    EXPECT_EQ("t:1: driver add: Driver 'b' does not exist\n", failing("driver add b --again"));
}

TEST_F(DriverCommands, AnotherDriverOfTheNameRemovesIt)
{
    run("driver add a\nlisten l");
    EXPECT_EQ("> driver remove a --other\n  l: a: removed\n> driver add a\n  l: a: added\n",
              run("driver remove a --other\ndriver add a"));
}

TEST_F(DriverCommands, RemovingNothingIsNoFailure)
{
    EXPECT_EQ("there is no driver 'a'\n", run("driver remove a"));
    EXPECT_EQ("there is no driver 'a'\n", run("driver remove a --other"));
    EXPECT_TRUE(good_);
}

TEST_F(DriverCommands, TypesAreNamesOrUuids)
{
    quietly("driver add a --did DID_ChannelGroup\n"
            "driver add b --did 14bbd19f-4ac5-6360-5b5f-1ca518e3b90f\n"
            "driver add c --did 00000001-0002-0003-0004-0000000500AB\n"
            "driver add d --did INVALID\ndriver add e --did DID_FXO");
    EXPECT_EQ("a  DID_ChannelGroup\n"
              "b  DID_UNKNOWN\n"
              "c  00000001-0002-0003-0004-0000000500AB\n"
              "d  INVALID\n"
              "e  DID_FXO\n",
              run("drivers"));
    EXPECT_EQ("name        c\n"
              "type        00000001-0002-0003-0004-0000000500AB\n"
              "uuid        00000001-0002-0003-0004-0000000500ab\n"
              "references  2, one of them this command's own\n",
              run("driver show c"));
}

TEST_F(DriverCommands, OtherTypesAreRefused)
{
    for (std::string const text :
         {"", "did_unknown", "00000001-0002-0003-0004-0000000500A",
          "00000001-0002-0003-0004-0000000500ABC", "0000000100020003-0004-0000000500AB0-",
          "00000001-0002-0003-0004-0000000500AG", "00000001 0002-0003-0004-0000000500AB"})
        EXPECT_EQ(0u, failing("driver add a --did '" + text + "'")
                          .find("t:1: driver add: '" + text + "' is no identifier"))
            << text << err_.str();
    EXPECT_EQ("t:1: driver add: 'DID_UNKNOWM' is no identifier, neither a known name nor a UUID, "
              "did you mean 'DID_UNKNOWN'?\n",
              failing("driver add a --did DID_UNKNOWM"));
    EXPECT_EQ("", run("drivers"));
}

TEST_F(DriverCommands, OfferInterfaces)
{
    quietly("driver add a --iface IInfo 00000001-0002-0003-0004-000000050006\n"
            "driver add b --iface IKernelDriverRepository\ndriver add c");
    EXPECT_EQ("name        a\n"
              "type        DID_UNKNOWN\n"
              "uuid        14bbd19f-4ac5-6360-5b5f-1ca518e3b90f\n"
              "references  2, one of them this command's own\n"
              "interface   IInfo\n"
              "interface   00000001-0002-0003-0004-000000050006\n",
              run("driver show a"));
    EXPECT_EQ("a\n", run("find --iface IInfo"));
    EXPECT_EQ("a\n", run("find --iface 00000001-0002-0003-0004-000000050006"));
    EXPECT_EQ("b\n", run("find --iface IKernelDriverRepository"));
    EXPECT_EQ("a\nb\nc\n", run("find --iface IDriver"));
    EXPECT_EQ("a\nb\nc\n", run("find --iface IUnknown"));
    // A driver that offers IInfo describes itself.
    EXPECT_EQ("Driver Repository\n"
              "  Drivers\n"
              "    a (DID_UNKNOWN)\n"
              "      Interfaces\n"
              "    b (DID_UNKNOWN)\n"
              "    c (DID_UNKNOWN)\n"
              "  Listeners\n",
              run("info --depth 3"));
}

TEST_F(DriverCommands, CannotBeWhatTheyAreNot)
{
    EXPECT_EQ("t:1: driver add: a driver of the shell can't be an IChannelGroup\n",
              failing("driver add a --iface IChannelGroup"));
    EXPECT_EQ("t:1: driver add: a driver of the shell can't be an "
              "283124a1-45d7-83ee-e988-c485ccfc8b79\n",
              failing("driver add a --iface IInfo 283124a1-45d7-83ee-e988-c485ccfc8b79"));
    EXPECT_EQ("t:1: driver add: a driver of the shell can't be an IDriverRepository\n",
              failing("driver add a --iface IDriverRepository"));
    EXPECT_EQ("", run("drivers"));
}
} // namespace
