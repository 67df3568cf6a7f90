#include <support/ScriptScene.h>

namespace
{

// Drivers and the monitor call back as well, and what is told is looked at again after them.

struct CallOutNesting : ::testing::Test, Scene
{
    /// Lets `reaction` run at the next `word` after driver d came in.
    void onceIn(std::string const& word, Story::Reaction const& reaction)
    {
        story().on("d.in", [this, word, reaction] { story().on(word, reaction); });
    }
    /// The attachments that listeners were to be told of.
    std::string counted()
    {
        InfoContainer info;
        repository().getInfo(info, 4, 0, 3, 0, "");
        std::string text;
        for (InfoContainer::Row const& row : info.rows())
            if (row.key == "onAttachmentSet" || row.key == "onAttachmentCleared")
                text += (text.empty() ? "" : ", ") + std::string(row.key.cString()) + " " +
                        row.value.cString();
        return text;
    }
};

TEST_F(CallOutNesting, ListenerRegisteredByAComingDriverMeetsItOnce)
{
    listen("A", 10);
    told();
    story().on("d.in", [&] { listen("L", 20); });
    add("d");
    EXPECT_EQ("[add d: d.in[listen L: L+d ok] A+d ok]", told());
}

TEST_F(CallOutNesting, ListenerRegisteredBeforeTheDriverIsInIsOffered)
{
    monitor().on("DrvRepo: Add driver 'd'", [&] { listen("L", 20); });
    add("d");
    EXPECT_EQ("[add d: log[listen L: ok] L+d ok]", told());
}

TEST_F(CallOutNesting, DriverAddedWhileAListenerIsOfferedAnotherMeetsItOnce)
{
    add("d");
    told();
    story().on("d.name", [&] { add("e"); });
    listen("L", 10);
    EXPECT_EQ("[listen L: d.name[add e: L+e ok] L+d ok]", told());
}

TEST_F(CallOutNesting, ComingDriverThatRemovesItselfIsToldNobody)
{
    listen("A", 10);
    told();
    story().on("d.in", [&] { remove("d"); });
    add("d");
    EXPECT_EQ("[add d: d.in[remove d:] -1<Driver 'd' does not exist>]", told());
    EXPECT_EQ(" ADDING DRIVER 'd' FAILED: Driver 'd' does not exist\n", monitor().takeFailures());
}

TEST_F(CallOutNesting, GoingDriverMayComeBackAtOnce)
{
    listen("A", 10);
    add("d");
    told();
    story().on("d.out", [&] { add("d"); });
    remove("d");
    EXPECT_EQ("[remove d: A-d d.out[add d: A+d ok]]", told());
    EXPECT_EQ("d(A); A", left());
}

TEST_F(CallOutNesting, ListenerRemovedWhenItsCriteriaAreAskedIsNotTold)
{
    add("d");
    told();
    story().on("d.name", [&] { unlisten("L"); });
    listen("L", 10);
    EXPECT_EQ("[listen L: d.name[unlisten L:] "
              "-1<Driver repository observer 'L' does not exist>]",
              told());
}

TEST_F(CallOutNesting, ListenerRemovedWhileItsEventIsBuiltIsNotTold)
{
    listen("A", 10);
    told();
    onceIn("d.ref", [&] { unlisten("A"); });
    add("d");
    EXPECT_EQ("[add d: d.in d.ref[unlisten A:] ok]", told());
}

TEST_F(CallOutNesting, ListenerRemovedByTheLineOfItsComingIsNotTold)
{
    listen("A", 10);
    told();
    monitor().on("DrvRepo:   d: Notify listener 'A' with right of veto: onDriverAdded()",
                 [&] { unlisten("A"); });
    add("d");
    EXPECT_EQ("[add d: log[unlisten A:] ok]", told());
}

TEST_F(CallOutNesting, GoingIsToldOnceWhenItsLineFinishesIt)
{
    listen("A", 10);
    add("d");
    told();
    monitor().on("DrvRepo:   d: Notify listener 'A': onDriverRemoved()", [&] { remove("d"); });
    remove("d");
    EXPECT_EQ("[remove d: log[remove d: A-d]]", told());
}

TEST_F(CallOutNesting, ValueReplacedByTheLineThatTellsItIsNotTold)
{
    listen("A", 10);
    add("d");
    told();
    monitor().on("DrvRepo:   d: Notify listener 'A': onDriverAttachmentSet(k=1)",
                 [&] { attach("k=2"); });
    attach("k=1");
    EXPECT_EQ("[k=1: log[k=2: A+k=2 ok] ok]", told());
}

TEST_F(CallOutNesting, ClearIsToldOnceWhenItsLineChangesTheKey)
{
    listen("A", 10);
    add("d");
    attach("k=1");
    told();
    monitor().on("DrvRepo:   d: Notify listener 'A': onDriverAttachmentCleared(k=1)",
                 [&] { attach("k=2"); });
    attach("k=");
    EXPECT_EQ("[k=: log[k=2: A-k=1 A+k=2 ok] ok]", told());
}

TEST_F(CallOutNesting, FirstLineOfAnOperationMayOvertakeIt)
{
    listen("A", 10);
    monitor().on("DrvRepo: Add driver 'd'", [&] { add("d"); });
    add("d");
    monitor().on("DrvRepo: Set driver 'd' attachment k=1", [&] { remove("d"); });
    attach("k=1");
    EXPECT_EQ("[listen A: ok]"
              "[add d: log[add d: A+d ok] -1<Driver already exists (CDriverRepo): d>]"
              "[k=1: log[remove d: A-d] -1<Driver 'd' does not exist>]",
              told());
    EXPECT_EQ(" ADDING DRIVER 'd' FAILED: Driver already exists (CDriverRepo): d\n"
              " SETTING DRIVER 'd' ATTACHMENT k=1 FAILED: Driver 'd' does not exist\n",
              monitor().takeFailures());
}

TEST_F(CallOutNesting, RefuserRemovedByTheLineOfItsRefusalHearsNothing)
{
    listen("A", 10);
    listen("B", 20, Terms().veto());
    told();
    observer("B").refuse("d", "no");
    monitor().on("DrvRepo:   d: NOTIFY LISTENER 'B' FAILED: no", [&] { unlisten("B"); });
    add("d");
    EXPECT_EQ("[add d: A+d B!d log[unlisten B:] A-d 7<no>]", told());
}

TEST_F(CallOutNesting, QueryPassesOverWhoLeavesAndWhoComesMeanwhile)
{
    add("d");
    add("e");
    told();
    story().on("d.name", [&] {
        remove("d");
        add("f");
    });
    query();
    EXPECT_EQ("[drivers: d.name[remove d:][add f: ok] e]", told());
}

TEST_F(CallOutNesting, DestructorOfADriverMayCallIn)
{
    listen("A", 10);
    add("d");
    drop("d");
    told();
    story().on("d.gone", [&] { add("e"); });
    remove("d");
    EXPECT_EQ("[remove d: A-d d.gone[add e: A+e ok]]", told());
    EXPECT_EQ("e(A); A", left());
}

TEST_F(CallOutNesting, DriverRemovedWhileItIsAskedMatchesNobody)
{
    listen("L", 10, Terms().iid(IDriver::IID()).attribute("k", "1"));
    add("d");
    told();
    story().on("d.query", [&] { remove("d"); });
    attach("k=1");
    EXPECT_EQ("[k=1: d.query[remove d:] -1<Driver 'd' does not exist>]", told());
    EXPECT_EQ("; L", left());
}

// It has left, is to join again at once, and says in its farewell, which comes first, that it
// won't.
TEST_F(CallOutNesting, ListenerRemovedByTheFarewellBeforeItsReturnDoesNotReturn)
{
    listen("L", 10, Terms().attribute("k", "1").snapshot());
    add("d");
    attach("m=1");
    attach("k=1");
    told();
    story().on("L-m=1", [&] { attach("k=1"); });
    story().on("L-d", [&] { unlisten("L"); });
    attach("k=");
    EXPECT_EQ("[k=: L-m=1[k=1: L-d[unlisten L:] ok] ok]", told());
    EXPECT_EQ("d m=1 k=1; ", left());
}

TEST_F(CallOutNesting, ValueReplacedWhileTheDriverIsAskedIsNotCountedAsToldGone)
{
    listen("L", 10, Terms().iid(IDriver::IID()));
    add("d");
    attach("k=1");
    told();
    story().on("d.query", [&] { attach("k=2"); });
    attach("k=");
    EXPECT_EQ("[k=: d.query[k=2: L-k=1 L+k=2 ok] ok]", told());
    EXPECT_EQ("onAttachmentSet 2, onAttachmentCleared 1", counted());
}

// It comes after the value has gone, and so never held it.
TEST_F(CallOutNesting, ListenerThatComesAndGoesInsideAClearHearsNothingOfTheValue)
{
    listen("C", 30);
    add("d");
    attach("k=1");
    told();
    story().on("C-k=1", [&] {
        listen("L", 10, Terms().snapshot());
        unlisten("L");
    });
    attach("k=");
    EXPECT_EQ("[k=: C-k=1[listen L: L+d ok][unlisten L: L-d] ok]", told());
}

// The value is the same, but it is another coming of it, which has been told.
TEST_F(CallOutNesting, ValueClearedAndSetAgainByTheLineOfItsSnapshotIsToldOnce)
{
    add("d");
    attach("k=1");
    told();
    monitor().on("DrvRepo:   d: Notify listener 'L': onDriverAttachmentSet(k=1)", [&] {
        attach("k=");
        attach("k=1");
    });
    listen("L", 10, Terms().snapshot());
    EXPECT_EQ("[listen L: L+d log[k=: ok][k=1: L+k=1 ok] ok]", told());
}

// Among equals the one that meets the driver later stands before the others.
TEST_F(CallOutNesting, ListenersThatMeetTheDriverInTurnStandBeforeTheirEquals)
{
    listen("A", 10);
    listen("B", 10);
    listen("C", 10);
    told();
    story().on("B+d", [&] { listen("L", 10); });
    add("d");
    EXPECT_EQ("[add d: C+d B+d[listen L: L+d ok] A+d ok]", told());
    EXPECT_EQ("d(A L B C); L C B A", left());
}

} // namespace
