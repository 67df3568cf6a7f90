#include <support/GroupFixture.h>

namespace
{

// What observers hear of setTimeslots: additions, then removals, and the withdrawal of what was
// refused.
using Timeslots = GroupFixture;

TEST_F(Timeslots, SameMaskIsOnlyALine)
{
    observeWithVeto("a", 1);
    lines();
    EXPECT_EQ("", set(0));
    EXPECT_EQ("<7> B: Set Timeslots '00000000'\n", lines());
    set(0xF);
    heard();
    lines();
    message_ = "left over";
    EXPECT_EQ("", set(0xF));
    EXPECT_EQ("<7> B: Set Timeslots '0000000f'\n", lines());
    EXPECT_EQ("left over", message());
}

TEST_F(Timeslots, AddedInAscendingPriorityByTheMethodOfTheirRight)
{
    observe("c", 3);
    observeWithVeto("a", 1);
    observeWithVeto("b", 2);
    lines();
    EXPECT_EQ("a: asked 00000000->80000001: 80000001\nb: asked 00000000->80000001: 80000001\n"
              "c: added 00000000->80000001: 80000001\n",
              set(0x80000001));
    EXPECT_EQ(0x80000001u, group().getTimeslots());
    EXPECT_EQ("<7> B: Set Timeslots '80000001'\n"
              "<7> B:   Notify observers: onTimeslotsAdded(00000000->80000001: 80000001)\n",
              lines());
}

TEST_F(Timeslots, RemovedInDescendingPriority)
{
    observe("c", 3);
    observeWithVeto("a", 1);
    observeWithVeto("b", 2);
    set(0xFF);
    lines();
    EXPECT_EQ("c: removed 000000ff->0000000f: 000000f0\nb: removed 000000ff->0000000f: 000000f0\n"
              "a: removed 000000ff->0000000f: 000000f0\n",
              set(0x0F));
    EXPECT_EQ(0x0Fu, group().getTimeslots());
    EXPECT_EQ("<7> B: Set Timeslots '0000000f'\n"
              "<7> B:   Notify observers: onTimeslotsRemoved(000000ff->0000000f: 000000f0)\n",
              lines());
}

TEST_F(Timeslots, EqualsNewestFirstAndBack)
{
    observe("first 5", 5);
    observe("1", 1);
    observe("second 5", 5);
    observe("greatest", 4294967295u);
    EXPECT_EQ("1: added 00000000->00000001: 00000001\n"
              "second 5: added 00000000->00000001: 00000001\n"
              "first 5: added 00000000->00000001: 00000001\n"
              "greatest: added 00000000->00000001: 00000001\n",
              set(1));
    EXPECT_EQ("greatest: removed 00000001->00000000: 00000001\n"
              "first 5: removed 00000001->00000000: 00000001\n"
              "second 5: removed 00000001->00000000: 00000001\n"
              "1: removed 00000001->00000000: 00000001\n",
              set(0));
}

TEST_F(Timeslots, AddedFirstAndThenRemoved)
{
    observe("b", 2);
    observeWithVeto("a", 1);
    set(0x0F);
    lines();
    EXPECT_EQ("a: asked 0000000f->000000ff: 000000f0\nb: added 0000000f->000000ff: 000000f0\n"
              "b: removed 000000ff->000000f0: 0000000f\na: removed 000000ff->000000f0: 0000000f\n",
              set(0xF0));
    EXPECT_EQ(0xF0u, group().getTimeslots());
    EXPECT_EQ("<7> B: Set Timeslots '000000f0'\n"
              "<7> B:   Notify observers: onTimeslotsAdded(0000000f->000000ff: 000000f0)\n"
              "<7> B:   Notify observers: onTimeslotsRemoved(000000ff->000000f0: 0000000f)\n",
              lines());
}

TEST_F(Timeslots, MaskIsSetBeforeItIsTold)
{
    observe("a", 1);
    set(0x0F);
    std::string seen;
    observer("a").then = [&](std::string const&) {
        char text[16];
        std::snprintf(text, sizeof text, "%x ", group().getTimeslots());
        seen += text;
    };
    set(0xF0);
    EXPECT_EQ("ff f0 ", seen);
}

TEST_F(Timeslots, RefusalByTheSecondOfThree)
{
    observeWithVeto("a", 1);
    observeWithVeto("b", 2);
    observeWithVeto("c", 3);
    observer("b").refuse("asked", "no timeslots left", 12);
    lines();
    EXPECT_EQ("a: asked 00000000->000000f0: 000000f0\nb: refused 00000000->000000f0: 000000f0\n"
              "a: removed 000000f0->00000000: 000000f0\n12",
              set(0xF0));
    EXPECT_EQ("no timeslots left", message());
    EXPECT_EQ(0u, group().getTimeslots());
    EXPECT_EQ("<7> B: Set Timeslots '000000f0'\n"
              "<7> B:   Notify observers: onTimeslotsAdded(00000000->000000f0: 000000f0)\n"
              "<7> B:   Notify observers: onTimeslotsRemoved(000000f0->00000000: 000000f0)\n",
              lines())
        << "a refusal is no error of the group";
}

// The partial outcome is meant: the addition is withdrawn, the removal carried out all the same.
TEST_F(Timeslots, RefusedAdditionStillCarriesOutTheRemoval)
{
    observeWithVeto("a", 1);
    observeWithVeto("b", 2);
    observe("c", 3);
    set(0x0F);
    lines();
    observer("b").refuse("asked", "busy", -7);
    EXPECT_EQ("a: asked 0000000f->000000ff: 000000f0\nb: refused 0000000f->000000ff: 000000f0\n"
              "a: removed 000000ff->0000000f: 000000f0\n"
              "c: removed 0000000f->00000000: 0000000f\nb: removed 0000000f->00000000: 0000000f\n"
              "a: removed 0000000f->00000000: 0000000f\n-7",
              set(0xF0));
    EXPECT_EQ("busy", message());
    EXPECT_EQ(0u, group().getTimeslots());
    EXPECT_EQ("<7> B: Set Timeslots '000000f0'\n"
              "<7> B:   Notify observers: onTimeslotsAdded(0000000f->000000ff: 000000f0)\n"
              "<7> B:   Notify observers: onTimeslotsRemoved(000000ff->0000000f: 000000f0)\n"
              "<7> B:   Notify observers: onTimeslotsRemoved(0000000f->00000000: 0000000f)\n",
              lines());
}

TEST_F(Timeslots, RefusedAdditionKeepsWhatStays)
{
    observeWithVeto("a", 1);
    set(0x3C);
    observer("a").refuse("asked", "busy");
    EXPECT_EQ("a: refused 0000003c->0000003f: 00000003\na: removed 0000003c->0000000c: 00000030\n"
              "-1",
              set(0x0F));
    EXPECT_EQ(0x0Cu, group().getTimeslots());
}

TEST_F(Timeslots, WithoutVetoNothingIsRefused)
{
    observe("a", 1);
    observeWithVeto("b", 2);
    observer("a").refuse("", "no"); // the method it is told by has no answer
    EXPECT_EQ("a: added 00000000->00000001: 00000001\nb: asked 00000000->00000001: 00000001\n",
              set(1));
    EXPECT_EQ(1u, group().getTimeslots());
}

TEST_F(Timeslots, ObserverWithoutVetoBeforeTheRefuserHearsTheWithdrawal)
{
    observe("a", 1);
    observeWithVeto("b", 2);
    observe("c", 3);
    observer("b").refuse("asked", "no");
    EXPECT_EQ("a: added 00000000->00000001: 00000001\nb: refused 00000000->00000001: 00000001\n"
              "a: removed 00000001->00000000: 00000001\n-1",
              set(1));
}

TEST_F(Timeslots, RefusalByTheFirstIsWithdrawnFromNobody)
{
    observeWithVeto("a", 1);
    observe("b", 2);
    observer("a").refuse("asked", "no");
    EXPECT_EQ("a: refused 00000000->00000001: 00000001\n-1", set(1));
    EXPECT_EQ(0u, group().getTimeslots());
}

TEST_F(Timeslots, RemovalsCannotBeRefused)
{
    observeWithVeto("a", 1);
    set(3);
    heard();
    observer("a").refuse("", "no");
    EXPECT_EQ("a: removed 00000003->00000000: 00000003\n", set(0));
    EXPECT_EQ(0u, group().getTimeslots());
}

TEST_F(Timeslots, WithoutObserversAreOnlyLogged)
{
    EXPECT_EQ("", set(0xFFFFFFFF));
    EXPECT_EQ("", set(0x0000FFFF));
    EXPECT_EQ(0xFFFFu, group().getTimeslots());
    EXPECT_EQ("<7> B: Set Timeslots 'ffffffff'\n"
              "<7> B:   Notify observers: onTimeslotsAdded(00000000->ffffffff: ffffffff)\n"
              "<7> B: Set Timeslots '0000ffff'\n"
              "<7> B:   Notify observers: onTimeslotsRemoved(ffffffff->0000ffff: ffff0000)\n",
              lines());
}

TEST_F(Timeslots, MessageBelongsToTheObservers)
{
    observeWithVeto("a", 1);
    observeWithVeto("b", 2);
    message_ = "before";
    observer("a").remark("asked", "fine by me");
    set(1);
    EXPECT_EQ("fine by me", message());
    observer("b").refuse("asked", "");
    EXPECT_NE("", set(3));
    EXPECT_EQ("fine by me", message()) << "a refusal without a text leaves what stood there";
}

TEST_F(Timeslots, NameStandsInFrontOfEveryLineAsItIs)
{
    const TYPtr<TestGroup> other(new TestGroup("100%s"));
    other.get()->setTimeslots(message_, 1);
    EXPECT_EQ("<7> 100%s: Set Timeslots '00000001'\n"
              "<7> 100%s:   Notify observers: onTimeslotsAdded(00000000->00000001: 00000001)\n",
              lines());
}

// The withdrawal looks for the refuser from the back, and finds the later of its two entries: it
// tells all before that one, the refuser's first entry and those never asked included.
TEST_F(Timeslots, RefuserThatIsRegisteredTwiceIsFoundAtItsLaterEntry)
{
    observe("a", 1);
    observeWithVeto("b", 2);
    observe("c", 3);
    observeWithVeto("b", 4);
    observe("d", 5);
    observer("b").refuse("asked", "no");
    EXPECT_EQ("a: added 00000000->00000001: 00000001\nb: refused 00000000->00000001: 00000001\n"
              "c: removed 00000001->00000000: 00000001\nb: removed 00000001->00000000: 00000001\n"
              "a: removed 00000001->00000000: 00000001\n-1",
              set(1));
}

TEST_F(Timeslots, MessageMayBeTheNameOfTheGroup)
{
    String text("own");
    const TYPtr<TestGroup> own(new TestGroup(text));
    own.get()->addChannelGroupObserver(message_, &observer("a"), 1, true, false);
    observer("a").refuse("asked", "no");
    lines();
    EXPECT_EQ(-1, own.get()->setTimeslots(text, 1).code());
    EXPECT_EQ("no", text);
    EXPECT_EQ("own", own.get()->getDriverName());
    EXPECT_EQ("<7> own: Set Timeslots '00000001'\n"
              "<7> own:   Notify observers: onTimeslotsAdded(00000000->00000001: 00000001)\n"
              "<7> own:   Notify observers: onTimeslotsRemoved(00000001->00000000: 00000001)\n",
              lines());
}

} // namespace
