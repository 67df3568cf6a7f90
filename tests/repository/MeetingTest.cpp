#include <support/RecordFixture.h>

namespace
{

// A driver meets a listener: addListener and removeListener of its record.
using Meeting = RecordFixture;

TEST_F(Meeting, NoListenerIsRefused)
{
    EXPECT_EQ(-1, record().addListener(error_, nullptr).code());
    EXPECT_EQ("No listener specified", error());
    record().removeListener(nullptr);
    EXPECT_EQ("", lines());
}

TEST_F(Meeting, OneThatMatchesIsTold)
{
    error_ = "left over";
    Listener* const l = make("a", 1);
    EXPECT_EQ(0, record().addListener(error_, l).code());
    EXPECT_EQ("", error());
    EXPECT_EQ("a: added e1t1 1\n", heard());
    EXPECT_TRUE(record().isActive(l));
    EXPECT_EQ(1, record().getListenerCount(l));
}

TEST_F(Meeting, OneThatDoesNotIsRecordedInactive)
{
    error_ = "left over";
    Listener* const l = make("a", 1, Terms().prefix("fxs").veto());
    EXPECT_EQ(0, record().addListener(error_, l).code());
    EXPECT_EQ("", error());
    EXPECT_FALSE(record().isActive(l));
    EXPECT_EQ(1, record().getListenerCount(l));
    EXPECT_EQ("", lines());
    record().removeListener(l);
    EXPECT_EQ(0, record().getListenerCount(l));
    EXPECT_EQ("", heard());
    EXPECT_EQ("", lines());
}

TEST_F(Meeting, TwiceIsToldOnceAndParted)
{
    attach("slot", "1");
    Listener* const l = make("a", 1, Terms().snapshot());
    record().addListener(error_, l);
    EXPECT_EQ("a: added e1t1 1\na: set e1t1 1 slot=1\n", heard());
    error_ = "left over";
    EXPECT_EQ(0, record().addListener(error_, l).code());
    EXPECT_EQ("", error());
    EXPECT_EQ("", heard());
    EXPECT_EQ(2, record().getListenerCount(l));
    record().removeListener(l);
    EXPECT_EQ("", heard());
    EXPECT_TRUE(record().isActive(l));
    record().removeListener(l);
    EXPECT_EQ("a: cleared e1t1 1 slot=1\na: removed e1t1 1\n", heard());
    EXPECT_FALSE(record().isActive(l));
    EXPECT_EQ(0, record().getListenerCount(l));
    record().removeListener(l);
    EXPECT_EQ("", heard()) << "nothing is left to part from";
}

TEST_F(Meeting, PartingFromAStrangerTellsNothing)
{
    Listener* const l = make("a", 1, Terms().snapshot());
    record().removeListener(l);
    EXPECT_EQ("", lines());
    EXPECT_EQ(-1, record().removeListenerOnce(l));
}

TEST_F(Meeting, ActivatedAfterANonMatchingAdditionPartsOnceOnly)
{
    Listener* const l = make("a", 1, Terms().attribute("k", "v").snapshot());
    record().addListener(error_, l);
    record().addListener(error_, l);
    EXPECT_EQ(2, record().getListenerCount(l));
    attach("k", "v");
    attach("m", "x");
    EXPECT_EQ("a: added e1t1 1\na: set e1t1 1 m=x\n", heard());
    record().removeListener(l);
    EXPECT_EQ("", heard());
    record().removeListener(l);
    EXPECT_EQ("a: cleared e1t1 1 m=x\na: removed e1t1 1\n", heard());
}

TEST_F(Meeting, RefusalOfTheDriverIsReturnedAndNotTakenBack)
{
    observer("a").refuse("added", "no room", 99);
    Listener* const l = make("a", 1, Terms().veto().snapshot());
    attach("slot", "1");
    EXPECT_EQ(99, record().addListener(error_, l).code());
    EXPECT_EQ("no room", error());
    EXPECT_EQ("a: refused e1t1 1\n", heard()) << "who refused is not told of a going";
    EXPECT_EQ(0, record().getListenerCount(l));
    EXPECT_FALSE(record().isActive(l));
    EXPECT_EQ(0, record().removeListenerOnce(l)) << "the entry stays, at 0";
}

// Unlike a listener that joins by an attachment change, this one has heard of the driver and hears
// that it is gone.
TEST_F(Meeting, RefusalInTheSnapshotIsToldTheGoing)
{
    attach("a", "1");
    attach("b", "2");
    attach("c", "3");
    observer("a").refuse("set e1t1 1 c", "not c", 3);
    Listener* const l = make("a", 1, Terms().veto().snapshot());
    EXPECT_EQ(3, record().addListener(error_, l).code());
    EXPECT_EQ("not c", error());
    EXPECT_EQ("a: added e1t1 1\na: set e1t1 1 a=1\na: set e1t1 1 b=2\na: refused e1t1 1 c=3\n"
              "a: cleared e1t1 1 b=2\na: cleared e1t1 1 a=1\na: removed e1t1 1\n",
              heard());
    EXPECT_EQ(0, record().getListenerCount(l));
    EXPECT_FALSE(record().isActive(l));
    EXPECT_EQ("<7> DrvRepo:   e1t1 1: Notify listener 'a' with right of veto: onDriverAdded()\n"
              "<7> DrvRepo:   e1t1 1: Notify listener 'a': onDriverAttachmentSet(a=1)\n"
              "<7> DrvRepo:   e1t1 1: Notify listener 'a': onDriverAttachmentSet(b=2)\n"
              "<7> DrvRepo:   e1t1 1: Notify listener 'a': onDriverAttachmentSet(c=3)\n"
              "<3> DrvRepo:   e1t1 1: NOTIFY LISTENER 'a' FAILED: not c\n"
              "<7> DrvRepo:   e1t1 1: Notify listener 'a': onDriverAttachmentCleared(b=2)\n"
              "<7> DrvRepo:   e1t1 1: Notify listener 'a': onDriverAttachmentCleared(a=1)\n"
              "<7> DrvRepo:   e1t1 1: Notify listener 'a': onDriverRemoved()\n",
              lines());
}

TEST_F(Meeting, RefusalWithoutVetoIsAnAcceptance)
{
    attach("slot", "1");
    observer("a").refuse("", "no");
    Listener* const l = make("a", 1, Terms().snapshot());
    EXPECT_EQ(0, record().addListener(error_, l).code());
    EXPECT_EQ("", error());
    EXPECT_EQ("a: refused e1t1 1\na: refused e1t1 1 slot=1\n", heard());
    EXPECT_TRUE(record().isActive(l));
}

// An addition of an entry that fell to 0 is a first one again, but the entry it finds is inactive:
// the listener is told of the driver and of nothing after.
TEST_F(Meeting, AgainAfterPartingTellsTheDriverAlone)
{
    attach("slot", "1");
    Listener* const l = make("a", 1, Terms().snapshot());
    record().addListener(error_, l);
    record().removeListener(l);
    heard();
    error_ = "left over";
    EXPECT_EQ(0, record().addListener(error_, l).code());
    EXPECT_EQ("", error());
    EXPECT_EQ("a: added e1t1 1\n", heard());
    EXPECT_EQ(1, record().getListenerCount(l));
    EXPECT_FALSE(record().isActive(l));
    attach("slot", "2");
    record().removeListener(l);
    EXPECT_EQ("", heard());
    EXPECT_EQ(0, record().getListenerCount(l));
}

TEST_F(Meeting, ErrorMayBeAnythingThatIsOfferedToIt)
{
    String text("left over");
    const TYPtr<TestDelegate> delegate(new TestDelegate(&observer("a")));
    Listener l(text, TOVA_UUID::INVALID(), TOVA_UUID::INVALID(), "", {}, 1, true, true,
               delegate.get());
    attach("slot", "1");
    observer("a").refuse("set", "no");
    EXPECT_EQ(-1, record().addListener(text, &l).code());
    EXPECT_EQ("no", text);
    EXPECT_EQ("left over", l.name());
}

} // namespace
