#include <support/GroupFixture.h>

namespace
{

// Registering and unregistering, and the present timeslots told at once.
using Observers = GroupFixture;

TEST_F(Observers, NoneIsRefusedSilently)
{
    set(1);
    lines();
    EXPECT_EQ(-1, group().addChannelGroupObserver(message_, nullptr, 1, true, true).code());
    EXPECT_EQ("NO CHANNEL-GROUP OBSERVER SPECIFIED", message());
    group().removeChannelGroupObserver(nullptr, true);
    EXPECT_EQ("", lines());
}

TEST_F(Observers, ComeAndGoWithALine)
{
    set(1);
    lines();
    message_ = "left over";
    EXPECT_EQ(0, observeWithVeto("a", 1).code());
    EXPECT_EQ("left over", message());
    EXPECT_EQ("<7> B: Add observer '" + addressOf("a") + "'\n", lines());
    unobserve("a");
    EXPECT_EQ("<7> B: Remove observer '" + addressOf("a") + "'\n", lines());
    EXPECT_EQ("", heard());
    EXPECT_EQ("", set(3)) << "it is gone";
}

TEST_F(Observers, CurrentTimeslotsAreToldAtOnce)
{
    set(0x80000001);
    observe("a", 1);
    lines();
    EXPECT_EQ(0, observe("b", 2, true).code());
    EXPECT_EQ("b: added 00000000->80000001: 80000001\n", heard());
    EXPECT_EQ("<7> B: Add observer '" + addressOf("b") +
                  "'\n"
                  "<7> B:   Notify observer '" +
                  addressOf("b") + "': onTimeslotsAdded(00000000->80000001: 80000001)\n",
              lines());
    EXPECT_EQ(0, observeWithVeto("c", 3, true).code());
    EXPECT_EQ("c: asked 00000000->80000001: 80000001\n", heard());
    EXPECT_EQ("c: removed 80000001->00000001: 80000000\nb: removed 80000001->00000001: 80000000\n"
              "a: removed 80000001->00000001: 80000000\n",
              set(1));
}

TEST_F(Observers, CurrentTimeslotsAreNotToldWhenThereAreNone)
{
    observer("a").refuse("", "no");
    EXPECT_EQ(0, observeWithVeto("a", 1, true).code());
    EXPECT_EQ("", heard());
    EXPECT_EQ("<7> B: Add observer '" + addressOf("a") + "'\n", lines());
    unobserve("a", true);
    EXPECT_EQ("", heard());
    EXPECT_EQ("<7> B: Remove observer '" + addressOf("a") + "'\n", lines());
}

TEST_F(Observers, RefusalOfTheCurrentTimeslotsTakesTheRegistrationBack)
{
    observe("a", 1);
    set(6);
    heard();
    lines();
    observer("b").refuse("asked", "not these", 31);
    EXPECT_EQ(31, observeWithVeto("b", 2, true).code());
    EXPECT_EQ("not these", message());
    EXPECT_EQ("b: refused 00000000->00000006: 00000006\n", heard());
    EXPECT_EQ("<7> B: Add observer '" + addressOf("b") +
                  "'\n"
                  "<7> B:   Notify observer '" +
                  addressOf("b") + "': onTimeslotsAdded(00000000->00000006: 00000006)\n",
              lines());
    EXPECT_EQ("a: added 00000006->00000007: 00000001\n", set(7));
    EXPECT_EQ(7u, group().getTimeslots());
}

TEST_F(Observers, WithoutVetoCurrentTimeslotsAreNotRefused)
{
    set(6);
    observer("a").refuse("", "no");
    EXPECT_EQ(0, observe("a", 1, true).code());
    EXPECT_EQ("a: added 00000000->00000006: 00000006\n", heard());
    EXPECT_EQ("a: removed 00000006->00000000: 00000006\n", set(0));
}

TEST_F(Observers, LeavingHearsThatAllTimeslotsGo)
{
    observe("a", 1);
    observeWithVeto("b", 2);
    set(0x80000001);
    heard();
    lines();
    unobserve("b", true);
    EXPECT_EQ("b: removed 80000001->00000000: 80000001\n", heard());
    EXPECT_EQ("<7> B: Remove observer '" + addressOf("b") +
                  "'\n"
                  "<7> B:   Notify observer '" +
                  addressOf("b") + "': onTimeslotsRemoved(80000001->00000000: 80000001)\n",
              lines());
    EXPECT_EQ(0x80000001u, group().getTimeslots());
    EXPECT_EQ("a: removed 80000001->00000000: 80000001\n", set(0));
}

TEST_F(Observers, LeavingStrangerIsToldToo)
{
    set(6);
    lines();
    unobserve("a", true);
    EXPECT_EQ("a: removed 00000006->00000000: 00000006\n", heard());
    EXPECT_EQ("<7> B: Remove observer '" + addressOf("a") +
                  "'\n"
                  "<7> B:   Notify observer '" +
                  addressOf("a") + "': onTimeslotsRemoved(00000006->00000000: 00000006)\n",
              lines());
    unobserve("a");
    EXPECT_EQ("", heard());
}

// Each registration is an entry of its own: twice registered is twice told.
TEST_F(Observers, TwiceRegisteredHearsTwice)
{
    observe("a", 1);
    observe("b", 2);
    observeWithVeto("a", 3);
    EXPECT_EQ("a: added 00000000->00000001: 00000001\nb: added 00000000->00000001: 00000001\n"
              "a: asked 00000000->00000001: 00000001\n",
              set(1));
    unobserve("a"); // the first one from the front
    EXPECT_EQ("b: added 00000001->00000003: 00000002\na: asked 00000001->00000003: 00000002\n",
              set(3));
    unobserve("a");
    EXPECT_EQ("b: removed 00000003->00000000: 00000003\n", set(0));
    unobserve("a");
    EXPECT_EQ("b: added 00000000->00000001: 00000001\n", set(1));
}

TEST_F(Observers, RefusedSecondRegistrationTakesTheFirstEntryFromTheFront)
{
    observeWithVeto("a", 5);
    set(1);
    heard();
    observer("a").refuse("asked 00000000", "once is enough");
    // The new entry stands in front: it is the first one found.
    EXPECT_EQ(-1, observeWithVeto("a", 1, true).code());
    observe("b", 3);
    heard();
    EXPECT_EQ("b: added 00000001->00000003: 00000002\na: asked 00000001->00000003: 00000002\n",
              set(3));
    // The new entry stands behind: the old one in front is taken, the new one remains.
    EXPECT_EQ(-1, observeWithVeto("a", 9, true).code());
    observe("c", 7);
    heard();
    EXPECT_EQ("b: added 00000003->00000007: 00000004\nc: added 00000003->00000007: 00000004\n"
              "a: asked 00000003->00000007: 00000004\n",
              set(7));
}

TEST_F(Observers, HoldNoReferenceOnTheGroup)
{
    observe("a", 1);
    observeWithVeto("b", 1, true);
    EXPECT_EQ(1, group().references());
    std::string during;
    observer("a").then = [&](std::string const&) {
        during += group().references() > 1 ? "held " : "not held ";
    };
    set(1);
    unobserve("a", true);
    EXPECT_EQ("held held ", during) << "by the event, while it exists";
    EXPECT_EQ(1, group().references());
}

/// Keeps a clone of what it hears and spoils the original.
class Keeper : public RecordingGroupObserver
{
public:
    using RecordingGroupObserver::RecordingGroupObserver;
    void onTimeslotsAdded(Event& event) override { keep(event); }
    void onTimeslotsRemoved(Event& event) override { keep(event); }

    std::unique_ptr<Event> kept;
    IChannelGroup* source = nullptr;

private:
    void keep(Event& event)
    {
        source = event.source.get();
        kept.reset(event.clone());
        const std::uint32_t more = 1;
        event.data.copyOnWrite().addTail(&more, sizeof more);
        event.source.reset();
    }
};

TEST_F(Observers, EachGetsAnEventOfItsOwn)
{
    Keeper keeper(log_, "keeper");
    group().addChannelGroupObserver(message_, &keeper, 1, false, false);
    observe("b", 2);
    EXPECT_EQ("b: added 00000000->00000001: 00000001\n", set(1));
    EXPECT_EQ(static_cast<IChannelGroup*>(&group()), keeper.source);
    EXPECT_EQ(12u, keeper.kept->data.buffer().size());
    EXPECT_EQ("00000000->00000001: 00000001", RecordingGroupObserver::changeOf(*keeper.kept));
    EXPECT_EQ(2, group().references());
    EXPECT_EQ("b: removed 00000001->00000000: 00000001\n", set(0));
    keeper.kept.reset();
    EXPECT_EQ(1, group().references());
    group().removeChannelGroupObserver(&keeper, false);
}

TEST_F(Observers, CanComeAndGoManyTimes)
{
    for (int i = 0; i < 1000; ++i) {
        observe("a", static_cast<unsigned>(i % 7));
        observe("b", static_cast<unsigned>(i % 5));
        unobserve("a");
        unobserve("b");
    }
    observe("c", 3);
    EXPECT_EQ("c: added 00000000->00000001: 00000001\n", set(1));
}

} // namespace
