#include <support/RecordFixture.h>

namespace
{

// What listeners hear of one change: first that the old value is gone, then the new one.
using AttachmentChange = RecordFixture;

TEST_F(AttachmentChange, NewValueGoesFrontToBack)
{
    meet("b", 2);
    meet("a", 1);
    meet("c", 3);
    EXPECT_EQ("a: set e1t1 1 k=x\nb: set e1t1 1 k=x\nc: set e1t1 1 k=x\n", change("k", "x"));
    EXPECT_EQ("x", record().getAttachment("k"));
    EXPECT_EQ("", change("k", "x")) << "again: nobody is told";
}

TEST_F(AttachmentChange, ClearGoesBackToFront)
{
    meet("b", 2);
    meet("a", 1);
    attach("k", "x");
    heard();
    EXPECT_EQ("b: cleared e1t1 1 k=x\na: cleared e1t1 1 k=x\n", change("k", ""));
    EXPECT_EQ("", record().getAttachment("k"));
    EXPECT_EQ(1u, record().getAttachments().count()) << "the key stays";
    EXPECT_EQ("", change("k", ""));
}

TEST_F(AttachmentChange, AnotherValueIsAClearAndASet)
{
    meet("b", 2);
    meet("a", 1);
    attach("k", "x");
    heard();
    EXPECT_EQ("b: cleared e1t1 1 k=x\na: cleared e1t1 1 k=x\n"
              "a: set e1t1 1 k=y\nb: set e1t1 1 k=y\n",
              change("k", "y"));
    EXPECT_EQ("y", record().getAttachment("k"));
}

TEST_F(AttachmentChange, IsStoredBeforeItIsTold)
{
    meet("a", 1);
    std::string seen;
    observer("a").then = [&](std::string const& what) {
        seen += what.substr(0, 3) + "'" + record().getAttachment("k").cString() + "' ";
    };
    attach("k", "x");
    attach("k", "y");
    EXPECT_EQ("set'x' cle'' set'y' ", seen);
}

TEST_F(AttachmentChange, ClearingAnAbsentKeyTellsNothing)
{
    meet("a", 1);
    EXPECT_EQ("", change("k", ""));
    EXPECT_TRUE(record().getAttachments().isEmpty());
}

TEST_F(AttachmentChange, InactiveAndDeadEntriesHearNothing)
{
    Listener* const other = meet("other", 1, Terms().prefix("fxs"));
    Listener* const gone = meet("gone", 2);
    meet("a", 3);
    record().removeListener(gone);
    forget();
    EXPECT_EQ("a: set e1t1 1 k=x\n", change("k", "x"));
    EXPECT_EQ("a: cleared e1t1 1 k=x\n", change("k", ""));
    EXPECT_FALSE(record().isActive(other));
    EXPECT_FALSE(record().isActive(gone));
}

TEST_F(AttachmentChange, SnapshotFlagDoesNotMatterForAChange)
{
    meet("a", 1);
    meet("b", 2, Terms().snapshot());
    EXPECT_EQ("a: set e1t1 1 k=x\nb: set e1t1 1 k=x\n", change("k", "x"));
}

TEST_F(AttachmentChange, NewValueStartsAMatch)
{
    attach("m", "1");
    attach("n", "2");
    Listener* const l = meet("a", 1, Terms().attribute("k", "ab").snapshot());
    EXPECT_EQ("a: added e1t1 1\na: set e1t1 1 m=1\na: set e1t1 1 n=2\n", change("k", "abc"))
        << "the snapshot leaves out what the match implies";
    EXPECT_TRUE(record().isActive(l));
    EXPECT_EQ(1, record().getListenerCount(l));
    EXPECT_EQ("<7> DrvRepo:   e1t1 1: Notify listener 'a' with right of veto: onDriverAdded()\n"
              "<7> DrvRepo:   e1t1 1: Notify listener 'a': onDriverAttachmentSet(m=1)\n"
              "<7> DrvRepo:   e1t1 1: Notify listener 'a': onDriverAttachmentSet(n=2)\n",
              lines());
}

TEST_F(AttachmentChange, OtherValueEndsTheMatchWithoutAClearOfThatKey)
{
    attach("m", "1");
    Listener* const l = meet("a", 1, Terms().attribute("k", "ab").snapshot());
    attach("k", "abc");
    attach("n", "2");
    forget();
    EXPECT_EQ("a: cleared e1t1 1 n=2\na: cleared e1t1 1 m=1\na: removed e1t1 1\n",
              change("k", "zz"));
    EXPECT_FALSE(record().isActive(l));
    EXPECT_EQ(1, record().getListenerCount(l));
    EXPECT_EQ("", change("m", "7"));
}

TEST_F(AttachmentChange, ClearEndsTheMatch)
{
    meet("a", 1, Terms().attribute("k", "ab"));
    EXPECT_EQ("a: added e1t1 1\n", change("k", "ab"));
    EXPECT_EQ("a: removed e1t1 1\n", change("k", "")) << "without the snapshot flag";
}

TEST_F(AttachmentChange, AnotherMatchingValueIsAGoingAndAComing)
{
    attach("m", "1");
    meet("a", 1, Terms().attribute("k", "ab").snapshot());
    EXPECT_EQ("a: added e1t1 1\na: set e1t1 1 m=1\n", change("k", "ab"));
    EXPECT_EQ("a: cleared e1t1 1 m=1\na: removed e1t1 1\n"
              "a: added e1t1 1\na: set e1t1 1 m=1\n",
              change("k", "abc"));
}

TEST_F(AttachmentChange, NearMissesStartNoMatch)
{
    Listener* const l = meet("a", 1, Terms().attribute("k", "ab").prefix("e1"));
    for (char const* value : {"a", "AB", "xab", "b"})
        EXPECT_EQ("", change("k", value)) << value;
    EXPECT_EQ("", change("K", "ab"));
    EXPECT_FALSE(record().isActive(l));
}

TEST_F(AttachmentChange, TwoCriteriaMustBothHold)
{
    meet("a", 1, Terms().attribute("k", "1").attribute("m", "2").snapshot());
    EXPECT_EQ("", change("k", "1"));
    EXPECT_EQ("", change("z", "3"));
    EXPECT_EQ("a: added e1t1 1\na: set e1t1 1 z=3\n", change("m", "2"));
    EXPECT_EQ("a: cleared e1t1 1 z=3\na: removed e1t1 1\n", change("k", ""))
        << "neither criterion is told";
    EXPECT_EQ("", change("m", ""));
}

TEST_F(AttachmentChange, EmptyCriterionDoesNotDependOnTheValue)
{
    meet("a", 1, Terms().attribute("k", ""));
    EXPECT_EQ("a: set e1t1 1 k=x\n", change("k", "x"));
    EXPECT_EQ("a: cleared e1t1 1 k=x\n", change("k", ""));
}

TEST_F(AttachmentChange, ValueThatMattersStartsTheMatchAtItsPlace)
{
    meet("a", 1);
    meet("b", 2, Terms().attribute("k", "x"));
    meet("c", 3);
    EXPECT_EQ("a: set e1t1 1 k=x\nb: added e1t1 1\nc: set e1t1 1 k=x\n", change("k", "x"));
    EXPECT_EQ("c: cleared e1t1 1 k=x\nb: removed e1t1 1\na: cleared e1t1 1 k=x\n", change("k", ""));
}

// Inactive by hand, though the criteria hold: no value starts a match that there was before.
TEST_F(AttachmentChange, OnlyAMatchThatStartsIsAComing)
{
    Listener* const l = make("a", 1);
    record().addListenerOnce(l, false);
    EXPECT_EQ("", change("k", "x"));
    EXPECT_FALSE(record().isActive(l));
}

TEST_F(AttachmentChange, InterfaceStillCountsForAMatchThatStarts)
{
    Listener* const l = meet("a", 1, Terms().attribute("k", "x").iid(IChannelGroup::IID()));
    EXPECT_EQ("", change("k", "x"));
    EXPECT_FALSE(record().isActive(l));
    attach("k", "");
    driver().offer(IChannelGroup::IID());
    EXPECT_EQ("a: added e1t1 1\n", change("k", "x"));
}

TEST_F(AttachmentChange, EmptyKeyIsAKeyLikeAnyOther)
{
    meet("a", 1, Terms().snapshot());
    meet("b", 2, Terms().attribute("", "x").snapshot());
    attach("k", "1");
    heard();
    EXPECT_EQ("a: set e1t1 1 =x\nb: added e1t1 1\nb: set e1t1 1 k=1\n", change("", "x"));
    EXPECT_EQ("x", record().getAttachment(""));
    EXPECT_EQ("b: cleared e1t1 1 k=1\nb: removed e1t1 1\na: cleared e1t1 1 =x\n", change("", ""));
}

TEST_F(AttachmentChange, KeyAndValueMayBeReferencesIntoTheTable)
{
    meet("a", 1);
    attach("k", "x");
    attach("x", "k");
    heard();
    auto const entry = record().getAttachments().find("k");
    EXPECT_EQ(0, record().setAttachment(error_, entry->value, entry->value).code()); // x=x
    EXPECT_EQ("a: cleared e1t1 1 x=k\na: set e1t1 1 x=x\n", heard());
    EXPECT_EQ(0, record().setAttachment(error_, entry->key, record().getAttachment("x")).code());
    EXPECT_EQ("", heard()) << "k=x already";
    attach("y", "z");
    heard();
    EXPECT_EQ(0, record().setAttachment(error_, entry->value, record().getAttachment("y")).code());
    EXPECT_EQ("a: cleared e1t1 1 x=x\na: set e1t1 1 x=z\n", heard());
    EXPECT_EQ(0, record().setAttachment(error_, "k", record().getAttachment("k")).code());
    EXPECT_EQ("", heard());
}

TEST_F(AttachmentChange, ErrorMayBeTheKeyAndTheValue)
{
    meet("a", 1, Terms().veto());
    observer("a").refuse("set", "no");
    String text("k");
    EXPECT_EQ(-1, record().setAttachment(text, text, text).code());
    EXPECT_EQ("no", text);
    EXPECT_EQ("a: refused e1t1 1 k=k\n", heard());
    EXPECT_EQ("", record().getAttachment("k"));
    EXPECT_EQ(1u, record().getAttachments().count());
    observer("a").accept();
    text = "k";
    EXPECT_EQ(0, record().setAttachment(text, text, text).code());
    EXPECT_EQ("", text);
    EXPECT_EQ("k", record().getAttachment("k"));
}

// More often than anything that is counted in 16 bits.
TEST_F(AttachmentChange, IsToldHoweverManyWentBefore)
{
    MON_DRV = nullptr; // the lines of all that
    Listener* const l = meet("a", 1, Terms().snapshot());
    attach("first", "1");
    const unsigned times = 70000;
    const unsigned before = l->count(Listener::ATTACHMENT_SET);
    for (unsigned i = 0; i < times; ++i) {
        attach("k", i % 2 == 0 ? "1" : "2");
        record().snapshotInitial(error_, l);
        if (i % 1000 == 0)
            heard();
    }
    // By the change, and both keys by the snapshot.
    EXPECT_EQ(before + 3 * times, l->count(Listener::ATTACHMENT_SET));
    heard();
    record().snapshotFinal(l, "", "");
    EXPECT_EQ("a: cleared e1t1 1 k=2\na: cleared e1t1 1 first=1\n", heard());
}

} // namespace
