#include "ShellFixture.h"

namespace
{
class FindCommand : public ShellFixture
{
protected:
    FindCommand()
    {
        quietly("driver add 'e1t1 0/a' --did DID_E1T1\n"
                "driver add 'e1t1 01' --did DID_E1T1 --iface IInfo\n"
                "driver add 'fxs 1' --did DID_FXS\n"
                "group add 'e1t1 0/B' 1-3\n"
                "attach 'e1t1 0/a' slot 1\nattach 'e1t1 01' slot 12\nattach 'fxs 1' slot 21\n"
                "attach 'e1t1 01' crc4 yes\n");
    }
};

TEST_F(FindCommand, PrintsWhatMeetsAllCriteria)
{
    struct
    {
        char const* command;
        char const* found;
    } const cases[] = {
        {"find", "e1t1 0/a\ne1t1 01\nfxs 1\ne1t1 0/B\n"},
        {"find --did INVALID --prefix ''", "e1t1 0/a\ne1t1 01\nfxs 1\ne1t1 0/B\n"},
        {"find --did DID_E1T1", "e1t1 0/a\ne1t1 01\n"},
        {"find --did DID_ChannelGroup", "e1t1 0/B\n"},
        {"find --prefix 'e1t1 0'", "e1t1 0/a\ne1t1 01\ne1t1 0/B\n"},
        {"find --prefix E1T1", ""},
        {"find --attr slot=1", "e1t1 0/a\ne1t1 01\n"},
        {"find --attr slot=", "e1t1 0/a\ne1t1 01\nfxs 1\ne1t1 0/B\n"},
        {"find --attr slot=1 crc4=y", "e1t1 01\n"},
        {"find --attr slot=1 --attr crc4=n", ""},
        {"find --did DID_FXS --prefix fxs --attr slot=21", "fxs 1\n"},
        {"find --iface IInfo", "e1t1 01\ne1t1 0/B\n"},
        {"find --iface IChannelGroup", "e1t1 0/B\n"},
        {"find --iface IInfo --did DID_E1T1 --prefix e1t1 --attr slot=12", "e1t1 01\n"},
        {"find --iface IDriverRepository", ""},
    };
    for (auto const& c : cases) {
        EXPECT_EQ(c.found, run(c.command)) << c.command;
        EXPECT_TRUE(good_) << c.command;
    }
}

TEST_F(FindCommand, RefusesWhatItDoesNotUnderstand)
{
    EXPECT_EQ("t:1: find: 'slot' is not KEY=VALUE\n", failing("find --attr slot"));
    EXPECT_EQ("t:1: find: argument 'fxs' is one too many\n", failing("find fxs"));
    EXPECT_EQ("t:1: find: 'nix' is no identifier, neither a known name nor a UUID\n",
              failing("find --iface nix"));
}
} // namespace
