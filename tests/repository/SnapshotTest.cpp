#include <support/RecordFixture.h>

namespace
{

// What a listener with the snapshot flag hears of attachments when it joins and leaves.
class Snapshot : public RecordFixture
{
protected:
    /// Recorded by hand, so that nothing is told yet.
    Listener* recorded(Terms const& terms, bool active = true)
    {
        Listener* const l = make("a", 1, terms);
        record().addListenerOnce(l, active);
        return l;
    }
    /// What is heard, and then the result: "code 'error'".
    std::string initial(Listener* l)
    {
        error_ = "left over";
        const XCode rc = record().snapshotInitial(error_, l);
        return heard() + std::to_string(rc.code()) + " '" + error() + "'";
    }
    std::string final(Listener* l, char const* key = "", char const* value = "")
    {
        record().snapshotFinal(l, *key != '\0' ? String(key) : String::EMPTY(), value);
        return heard();
    }
};

TEST_F(Snapshot, GoesForwardAndBackInTheOrderOfFirstSetting)
{
    attach("z", "1");
    attach("a", "2");
    attach("m", "3");
    attach("z", "4"); // keeps its place
    Listener* const l = recorded(Terms().snapshot());
    EXPECT_EQ("a: set e1t1 1 z=4\na: set e1t1 1 a=2\na: set e1t1 1 m=3\n0 ''", initial(l));
    EXPECT_EQ("a: cleared e1t1 1 m=3\na: cleared e1t1 1 a=2\na: cleared e1t1 1 z=4\n", final(l));
}

TEST_F(Snapshot, OnlyForThoseWhoAskedForIt)
{
    attach("slot", "1");
    Listener* const l = recorded(Terms().veto());
    EXPECT_EQ("0 ''", initial(l));
    EXPECT_EQ("", final(l));
}

TEST_F(Snapshot, WithoutTheFlagAStrangerSucceedsToo)
{
    attach("slot", "1");
    EXPECT_EQ("0 ''", initial(make("a", 1)));
}

TEST_F(Snapshot, FailsForAStranger)
{
    attach("slot", "1");
    Listener* const stranger = make("a", 1, Terms().snapshot());
    EXPECT_EQ("-1 'left over'", initial(stranger));
    EXPECT_EQ("", final(stranger));
}

TEST_F(Snapshot, IsEmptyForAnInactiveEntry)
{
    attach("slot", "1");
    Listener* const l = recorded(Terms().snapshot(), false);
    EXPECT_EQ("0 ''", initial(l));
    EXPECT_EQ("", final(l));
}

TEST_F(Snapshot, IsEmptyForADeadEntry)
{
    attach("slot", "1");
    Listener* const l = recorded(Terms().snapshot());
    record().removeListenerOnce(l);
    EXPECT_EQ("0 ''", initial(l));
    EXPECT_EQ("", final(l));
}

TEST_F(Snapshot, PassesClearedAttachmentsOver)
{
    attach("a", "1");
    attach("b", "2");
    attach("b", "");
    attach("c", "3");
    Listener* const l = recorded(Terms().snapshot());
    EXPECT_EQ("a: set e1t1 1 a=1\na: set e1t1 1 c=3\n0 ''", initial(l));
    EXPECT_EQ("a: cleared e1t1 1 c=3\na: cleared e1t1 1 a=1\n", final(l));
}

TEST_F(Snapshot, PassesAttachmentsOverThatTheCriteriaImply)
{
    attach("slot", "12");
    attach("port", "3");
    attach("frame", "esf");
    Listener* const l = recorded(
        Terms().attribute("slot", "1").attribute("port", "").attribute("frame", "e").snapshot());
    EXPECT_EQ("a: set e1t1 1 port=3\n0 ''", initial(l)) << "an empty prefix implies nothing";
    EXPECT_EQ("a: cleared e1t1 1 port=3\n", final(l));
}

TEST_F(Snapshot, NeedsTheOtherCriteriaForEveryAttachment)
{
    attach("port", "3");
    Listener* const otherName = recorded(Terms().prefix("fxs").snapshot());
    EXPECT_EQ("0 ''", initial(otherName));
    EXPECT_EQ("", final(otherName));
    Listener* const otherType = recorded(Terms().did(IDriver::IID()).snapshot());
    EXPECT_EQ("0 ''", initial(otherType));
    EXPECT_EQ("", final(otherType));
    Listener* const otherInterface = recorded(Terms().iid(IChannelGroup::IID()).snapshot());
    EXPECT_EQ("a: set e1t1 1 port=3\n0 ''", initial(otherInterface));
    EXPECT_EQ("a: cleared e1t1 1 port=3\n", final(otherInterface));
    EXPECT_EQ(0u, driver().calls().queryInterface) << "no attachment changes what it offers";
}

TEST_F(Snapshot, RefusedGoesBackFromTheOneBefore)
{
    attach("a", "1");
    attach("b", "2");
    attach("c", "3");
    attach("d", "4");
    observer("a").refuse("set e1t1 1 c", "not c", 8);
    Listener* const l = recorded(Terms().veto().snapshot());
    EXPECT_EQ("a: set e1t1 1 a=1\na: set e1t1 1 b=2\na: refused e1t1 1 c=3\n"
              "a: cleared e1t1 1 b=2\na: cleared e1t1 1 a=1\n8 'not c'",
              initial(l));
    EXPECT_TRUE(record().isActive(l)) << "the caller decides about the entry";
    EXPECT_EQ(1, record().getListenerCount(l));
}

TEST_F(Snapshot, RefusalWithoutVetoGoesOn)
{
    attach("a", "1");
    attach("b", "2");
    observer("a").refuse("set", "no");
    Listener* const l = recorded(Terms().snapshot());
    EXPECT_EQ("a: refused e1t1 1 a=1\na: refused e1t1 1 b=2\n0 ''", initial(l));
}

// The way there passes empty values over, the way back tells them all the same, on purpose.
TEST_F(Snapshot, RefusedTellsTheClearingOfEmptyValues)
{
    attach("gone", "x");
    attach("gone", "");
    attach("a", "1");
    attach("gone too", "x");
    attach("gone too", "");
    attach("b", "2");
    observer("a").refuse("set e1t1 1 b", "not b");
    Listener* const l = recorded(Terms().veto().snapshot());
    EXPECT_EQ("a: set e1t1 1 a=1\na: refused e1t1 1 b=2\n"
              "a: cleared e1t1 1 gone too=\na: cleared e1t1 1 a=1\na: cleared e1t1 1 gone=\n"
              "-1 'not b'",
              initial(l));
}

TEST_F(Snapshot, RefusedPassesImpliedValuesOverOnTheWayBack)
{
    attach("slot", "12");
    attach("m", "1");
    attach("n", "2");
    observer("a").refuse("set e1t1 1 n", "not n");
    Listener* const l = recorded(Terms().attribute("slot", "1").veto().snapshot());
    EXPECT_EQ("a: set e1t1 1 m=1\na: refused e1t1 1 n=2\na: cleared e1t1 1 m=1\n-1 'not n'",
              initial(l));
}

TEST_F(Snapshot, RefusedFirstHasNothingToTakeBack)
{
    attach("a", "1");
    attach("b", "2");
    observer("a").refuse("set", "no");
    EXPECT_EQ("a: refused e1t1 1 a=1\n-1 'no'", initial(recorded(Terms().veto().snapshot())));
}

TEST_F(Snapshot, FinalSeesOneAttachmentAtAnotherValue)
{
    attach("a", "1");
    attach("b", "2");
    Listener* const l = recorded(Terms().snapshot());
    EXPECT_EQ("a: cleared e1t1 1 b=old\na: cleared e1t1 1 a=1\n", final(l, "b", "old"));
    EXPECT_EQ("a: cleared e1t1 1 a=1\n", final(l, "b", "")) << "the empty value is none";
    EXPECT_EQ("a: cleared e1t1 1 b=2\na: cleared e1t1 1 a=1\n", final(l, "c", "old"))
        << "a key that is not in the table is not told";
}

// The value that has just gone still counts for the criteria, so that the others are told.
TEST_F(Snapshot, FinalTestsTheCriteriaWithThatValue)
{
    attach("k", "abc");
    attach("m", "1");
    attach("k", "");
    Listener* const l = recorded(Terms().attribute("k", "ab").snapshot());
    EXPECT_EQ("", final(l)) << "as the table stands, the criteria don't hold";
    EXPECT_EQ("a: cleared e1t1 1 m=1\n", final(l, "k", "abc"));
    EXPECT_EQ("", final(l, "k", "zz"));
}

// With an empty key and value nothing is under way, but the attachment under the empty key is
// taken at that value, and so passed over.
TEST_F(Snapshot, FinalPassesTheAttachmentUnderTheEmptyKeyOver)
{
    attach("", "nameless");
    attach("a", "1");
    Listener* const l = recorded(Terms().snapshot());
    EXPECT_EQ("a: set e1t1 1 =nameless\na: set e1t1 1 a=1\n0 ''", initial(l));
    EXPECT_EQ("a: cleared e1t1 1 a=1\n", final(l));
    observer("a").refuse("set e1t1 1 a", "no");
    Listener* const other = recorded(Terms().veto().snapshot());
    EXPECT_EQ("a: set e1t1 1 =nameless\na: refused e1t1 1 a=1\na: cleared e1t1 1 =nameless\n"
              "-1 'no'",
              initial(other))
        << "the way back from a refusal tells it";
}

TEST_F(Snapshot, EmptyTableTellsNothing)
{
    Listener* const l = recorded(Terms().snapshot());
    EXPECT_EQ("0 ''", initial(l));
    EXPECT_EQ("", final(l));
}

} // namespace
