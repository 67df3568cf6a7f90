#include <drvrepo/testkit/FaultInjector.h>

#include <support/GroupFixture.h>

namespace
{

class GroupFaultInjectorTest : public GroupFixture
{
protected:
    /// Registers the injector behind the others.
    void inject(GroupFaultInjector& injector, bool veto)
    {
        const bool notifyCurrent = false;
        group().addChannelGroupObserver(message_, &injector, 4294967295u, veto, notifyCurrent);
    }
    void withdraw(GroupFaultInjector& injector)
    {
        const bool notifyCurrent = false;
        group().removeChannelGroupObserver(&injector, notifyCurrent);
    }
};

TEST_F(GroupFaultInjectorTest, RefusesTheNthAddition)
{
    GroupFaultInjector injector;
    inject(injector, true);
    observeWithVeto("a", 1);
    injector.arm(2);
    EXPECT_EQ("a: asked 00000000->00000001: 00000001\n", set(1));
    EXPECT_EQ("a: removed 00000001->00000000: 00000001\n", set(0)) << "isn't counted";
    EXPECT_EQ("a: asked 00000000->00000002: 00000002\n"
              "a: removed 00000002->00000000: 00000002\n-77",
              set(2));
    EXPECT_EQ("injected", message());
    EXPECT_TRUE(injector.struck());
    EXPECT_EQ(0u, group().getTimeslots());
    withdraw(injector);
}

TEST_F(GroupFaultInjectorTest, WithoutVetoItCanOnlyThrow)
{
    GroupFaultInjector refusing;
    GroupFaultInjector throwing(GroupFaultInjector::THROW);
    inject(refusing, false);
    inject(throwing, false);
    refusing.arm(1);
    throwing.arm(1);
    EXPECT_THROW(set(1), FaultPart::Thrown);
    EXPECT_EQ(0u, refusing.count());
    EXPECT_EQ(0u, group().getTimeslots());
    throwing.arm(2);
    EXPECT_EQ("", set(3));
    EXPECT_THROW(set(0), FaultPart::Thrown);
    EXPECT_EQ(0u, group().getTimeslots()) << "a going is completed";
    withdraw(throwing);
    withdraw(refusing);
}

TEST_F(GroupFaultInjectorTest, StandsBeforeAnObserver)
{
    GroupFaultInjector injector(GroupFaultInjector::REFUSE, &observer("x"));
    inject(injector, true);
    injector.arm(2);
    EXPECT_EQ("x: asked 00000000->00000001: 00000001\n", set(1));
    EXPECT_EQ("-77", set(3));
    EXPECT_EQ("x: removed 00000001->00000000: 00000001\n", set(0));
    withdraw(injector);
    GroupFaultInjector plain(GroupFaultInjector::REFUSE, &observer("y"));
    inject(plain, false);
    EXPECT_EQ("y: added 00000000->00000001: 00000001\n", set(1));
    withdraw(plain);
}

} // namespace
