#include <support/RecordFixture.h>

namespace
{

// A listener refuses a new value: the change is taken back.
using AttachmentRefusal = RecordFixture;

TEST_F(AttachmentRefusal, GoesBackFromTheOneBefore)
{
    meet("a", 1);
    meet("b", 2, Terms().veto());
    meet("c", 3, Terms().veto());
    meet("d", 4, Terms().veto());
    observer("c").refuse("set e1t1 1 k=y", "not y", 21);
    EXPECT_EQ("a: set e1t1 1 k=y\nb: set e1t1 1 k=y\nc: refused e1t1 1 k=y\n"
              "b: cleared e1t1 1 k=y\na: cleared e1t1 1 k=y\n21 not y",
              change("k", "y"));
    EXPECT_EQ("", record().getAttachment("k"));
    EXPECT_EQ(1u, record().getAttachments().count()) << "the key stays, empty";
    EXPECT_EQ("a, b, c, d", active());
}

// The old value is not put back: its clear has been told.
TEST_F(AttachmentRefusal, OfAChangeLeavesTheKeyEmpty)
{
    meet("a", 1);
    meet("b", 2, Terms().veto());
    meet("c", 3);
    attach("k", "x");
    heard();
    observer("b").refuse("set e1t1 1 k=y", "not y");
    EXPECT_EQ("c: cleared e1t1 1 k=x\nb: cleared e1t1 1 k=x\na: cleared e1t1 1 k=x\n"
              "a: set e1t1 1 k=y\nb: refused e1t1 1 k=y\na: cleared e1t1 1 k=y\n-1 not y",
              change("k", "y"));
    EXPECT_EQ("", record().getAttachment("k"));
    EXPECT_EQ("a: set e1t1 1 k=x\nb: set e1t1 1 k=x\nc: set e1t1 1 k=x\n", change("k", "x"))
        << "who wants the old value back sets it again";
}

TEST_F(AttachmentRefusal, WithoutVetoIsIgnored)
{
    meet("a", 1);
    meet("b", 2);
    observer("a").refuse("set", "no");
    EXPECT_EQ("a: refused e1t1 1 k=x\nb: set e1t1 1 k=x\n", change("k", "x"));
    EXPECT_EQ("x", record().getAttachment("k"));
}

TEST_F(AttachmentRefusal, OfAStoppedListenerIsNone)
{
    Listener* const l = meet("a", 1, Terms().veto());
    observer("a").refuse("set", "no");
    l->delegate()->stopNotifications();
    EXPECT_EQ("", change("k", "x"));
    EXPECT_EQ("x", record().getAttachment("k"));
}

TEST_F(AttachmentRefusal, ClearsCannotBeRefused)
{
    meet("a", 1, Terms().veto());
    attach("k", "x");
    observer("a").refuse("", "no");
    heard();
    EXPECT_EQ("a: cleared e1t1 1 k=x\n", change("k", ""));
}

TEST_F(AttachmentRefusal, ByTheFirstHasNothingToTakeBack)
{
    meet("a", 1, Terms().veto());
    meet("b", 2);
    observer("a").refuse("set", "no");
    EXPECT_EQ("a: refused e1t1 1 k=x\n-1 no", change("k", "x"));
}

TEST_F(AttachmentRefusal, EndsTheMatchesThatTheValueStarted)
{
    attach("m", "1");
    attach("gone", "x");
    attach("gone", "");
    attach("n", "2");
    meet("a", 1);
    Listener* const b = meet("b", 2, Terms().attribute("k", "x").snapshot());
    Listener* const c = meet("c", 3, Terms().attribute("k", "x"));
    meet("d", 4, Terms().veto());
    Listener* const e = meet("e", 5, Terms().attribute("k", "x"));
    observer("d").refuse("set", "no");
    // "k" stands empty again when they part: their criteria hold for nothing, nothing is cleared.
    EXPECT_EQ("a: set e1t1 1 k=x\nb: added e1t1 1\nb: set e1t1 1 m=1\nb: set e1t1 1 n=2\n"
              "c: added e1t1 1\nd: refused e1t1 1 k=x\n"
              "c: removed e1t1 1\nb: removed e1t1 1\na: cleared e1t1 1 k=x\n-1 no",
              change("k", "x"));
    for (Listener const* l : {b, c, e}) {
        EXPECT_FALSE(record().isActive(l));
        EXPECT_EQ(1, record().getListenerCount(l)) << "they stay recorded";
    }
    observer("d").accept();
    change("k", "x");
    EXPECT_EQ("a, b, c, d, e", active());
}

TEST_F(AttachmentRefusal, OfTheDriverByOneThatJoins)
{
    attach("m", "1");
    meet("a", 1);
    Listener* const b = meet("b", 2, Terms().attribute("k", "x").veto().snapshot());
    meet("c", 3);
    observer("b").refuse("added", "not this driver", 6);
    EXPECT_EQ("a: set e1t1 1 k=x\nb: refused e1t1 1\na: cleared e1t1 1 k=x\n6 not this driver",
              change("k", "x"));
    EXPECT_FALSE(record().isActive(b));
    EXPECT_EQ(1, record().getListenerCount(b));
    EXPECT_EQ("", record().getAttachment("k"));
    observer("b").accept();
    EXPECT_EQ("a: set e1t1 1 k=x\nb: added e1t1 1\nb: set e1t1 1 m=1\nc: set e1t1 1 k=x\n",
              change("k", "x"));
}

// On purpose unlike a listener that refuses in the snapshot of its registration or of the driver's
// coming: that one is told the going.
TEST_F(AttachmentRefusal, InTheSnapshotOfOneThatJoinsIsNotToldTheGoing)
{
    attach("m", "1");
    attach("n", "2");
    meet("a", 1);
    Listener* const b = meet("b", 2, Terms().attribute("k", "x").veto().snapshot());
    observer("b").refuse("set e1t1 1 n", "not n");
    EXPECT_EQ("a: set e1t1 1 k=x\nb: added e1t1 1\nb: set e1t1 1 m=1\nb: refused e1t1 1 n=2\n"
              "b: cleared e1t1 1 m=1\na: cleared e1t1 1 k=x\n-1 not n",
              change("k", "x"));
    EXPECT_FALSE(record().isActive(b));
    EXPECT_EQ("", record().getAttachment("k"));
}

TEST_F(AttachmentRefusal, PartsInTheRollbackSeeTheTableAsItStands)
{
    // The refused value starts a match of "b" with its snapshot, and stays out of it. On the way
    // back the key stands empty, "b" needs it, so that nothing more than the going is told.
    attach("m", "1");
    meet("b", 1, Terms().attribute("k", "x").snapshot());
    meet("c", 2, Terms().veto());
    observer("c").refuse("set", "no");
    EXPECT_EQ("b: added e1t1 1\nb: set e1t1 1 m=1\nc: refused e1t1 1 k=xx\nb: removed e1t1 1\n"
              "-1 no",
              change("k", "xx"));
}

TEST_F(AttachmentRefusal, OfAValueByWhichAnotherHadMatchedBefore)
{
    // "b" matches x and y: the clear ended its first match, the value its second.
    meet("b", 1, Terms().attribute("k", "v"));
    meet("c", 2, Terms().veto());
    attach("k", "v1");
    heard();
    observer("c").refuse("set e1t1 1 k=v2", "not v2");
    EXPECT_EQ("c: cleared e1t1 1 k=v1\nb: removed e1t1 1\nb: added e1t1 1\n"
              "c: refused e1t1 1 k=v2\nb: removed e1t1 1\n-1 not v2",
              change("k", "v2"));
}

TEST_F(AttachmentRefusal, CountersCountEveryAttempt)
{
    Listener* const a = meet("a", 1);
    Listener* const b = meet("b", 2, Terms().veto());
    observer("b").refuse("set", "no");
    change("k", "x");
    change("k", "y");
    EXPECT_EQ(2u, a->count(Listener::ATTACHMENT_SET));
    EXPECT_EQ(2u, a->count(Listener::ATTACHMENT_CLEARED));
    EXPECT_EQ(2u, b->count(Listener::ATTACHMENT_SET));
    EXPECT_EQ(0u, b->count(Listener::ATTACHMENT_CLEARED));
}

// A farewell of a roll-back sees the key cleared, and so has nothing of it to tell.
TEST_F(AttachmentRefusal, WhoLeavesInTheRollBackIsNotToldTheValueGone)
{
    const TOVA_UUID alarms = TOVA_UUID::create(1, 1, 1, 1, "alarms");
    driver().offer(alarms);
    meet("a", 1, Terms().iid(alarms).snapshot());
    meet("b", 2, Terms().iid(alarms).veto());
    driver().withdraw(alarms);
    observer("b").refuse("set", "no");
    EXPECT_EQ("a: set e1t1 1 m=b\nb: refused e1t1 1 m=b\na: removed e1t1 1\n-1 no",
              change("m", "b"));
    EXPECT_EQ("b", active());
}

} // namespace
