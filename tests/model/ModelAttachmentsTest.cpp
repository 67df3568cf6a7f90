#include "ModelFixture.h"

namespace
{
using model::Listener;

class ModelAttachments : public ModelFixture
{
protected:
    void quiet()
    {
        heard();
        process_.monitorPresent = false;
    }
};

TEST_F(ModelAttachments, UnknownAndNullDriver)
{
    process_.monitorPresent = true;
    EXPECT_EQ(-1, attach("x", "k", "v"));
    EXPECT_EQ("Driver 'x' does not exist", error_);
    EXPECT_EQ("log 3 \"DrvRepo: SETTING DRIVER 'x' ATTACHMENT k=v FAILED: Driver 'x' does not "
              "exist\"\n",
              heard());
    EXPECT_EQ(-1, repository_.setDriverAttachment(error_, nullptr, "k", "v"));
    EXPECT_EQ("No driver specified", error_);
    EXPECT_EQ("", heard());
    EXPECT_EQ("", repository_.getDriverAttachment("x", "k"));
    EXPECT_EQ("", repository_.getDriverAttachment(nullptr, "k"));
}

TEST_F(ModelAttachments, SameValueTellsNothing)
{
    listen("l");
    add("d");
    attach("d", "k", "x");
    quiet();
    process_.monitorPresent = true;
    error_ = "junk";
    EXPECT_EQ(0, attach("d", "k", "x"));
    EXPECT_EQ("", error_);
    EXPECT_EQ(0, attach("d", "other", ""));
    EXPECT_EQ("log 7 \"DrvRepo: Set driver 'd' attachment k=x\"\n"
              "log 7 \"DrvRepo: Set driver 'd' attachment other=\"\n",
              heard());
}

TEST_F(ModelAttachments, ChangeIsClearBackwardsThenSetForwards)
{
    add("d");
    listen("b", 2);
    listen("a", 1);
    attach("d", "k", "x");
    quiet();
    EXPECT_EQ(0, attach("d", "k", "y"));
    EXPECT_EQ(
        "b.onDriverAttachmentCleared d \"k\"=\"x\"\na.onDriverAttachmentCleared d \"k\"=\"x\"\n"
        "a.onDriverAttachmentSet d \"k\"=\"y\"\nb.onDriverAttachmentSet d \"k\"=\"y\"\n",
        heard());
    EXPECT_EQ(0, attach("d", "k", ""));
    EXPECT_EQ(
        "b.onDriverAttachmentCleared d \"k\"=\"y\"\na.onDriverAttachmentCleared d \"k\"=\"y\"\n",
        heard());
    EXPECT_EQ("", repository_.getDriverAttachment("d", "k"));
}

TEST_F(ModelAttachments, CriterionStartsAndEndsTheMatch)
{
    Listener l = wants("l");
    l.attributes.put("k", "ab");
    listen(l);
    add("d");
    attach("d", "a", "1");
    attach("d", "b", "2");
    EXPECT_EQ("", heard());
    attach("d", "k", "abc");
    EXPECT_EQ("l.onDriverAdded d\nl.onDriverAttachmentSet d \"a\"=\"1\"\n"
              "l.onDriverAttachmentSet d \"b\"=\"2\"\n",
              heard());
    attach("d", "k", "zz");
    EXPECT_EQ("l.onDriverAttachmentCleared d \"b\"=\"2\"\nl.onDriverAttachmentCleared d "
              "\"a\"=\"1\"\nl.onDriverRemoved d\n",
              heard());
}

TEST_F(ModelAttachments, FinalSnapshotSeesTheOtherCriteriaAsTheyStand)
{
    Listener l = wants("l");
    l.attributes.put("k", "a");
    l.attributes.put("m", "b");
    listen(l);
    add("d");
    attach("d", "x", "1");
    attach("d", "m", "b");
    attach("d", "k", "a");
    EXPECT_EQ("l.onDriverAdded d\nl.onDriverAttachmentSet d \"x\"=\"1\"\n", heard());
    attach("d", "k", "");
    EXPECT_EQ("l.onDriverAttachmentCleared d \"x\"=\"1\"\nl.onDriverRemoved d\n", heard());
}

TEST_F(ModelAttachments, NewKeyIsAppendedAndKeepsItsPlace)
{
    add("d");
    attach("d", "b", "1");
    attach("d", "a", "1");
    attach("d", "b", "");
    attach("d", "b", "2");
    listen("l");
    EXPECT_EQ("l.onDriverAdded d\nl.onDriverAttachmentSet d \"b\"=\"2\"\n"
              "l.onDriverAttachmentSet d \"a\"=\"1\"\n",
              heard());
}

TEST_F(ModelAttachments, RefusedChangeLeavesTheKeyEmpty)
{
    add("d");
    listen("c", 3);
    listen("b", 2, refuseSet("k", "y", "no y"));
    listen("a", 1);
    attach("d", "k", "x");
    quiet();
    process_.monitorPresent = true;
    process_.threshold = -1;
    EXPECT_EQ(-1, attach("d", "k", "y"));
    EXPECT_EQ("no y", error_);
    EXPECT_EQ(
        "c.onDriverAttachmentCleared d \"k\"=\"x\"\nb.onDriverAttachmentCleared d \"k\"=\"x\"\n"
        "a.onDriverAttachmentCleared d \"k\"=\"x\"\na.onDriverAttachmentSet d \"k\"=\"y\"\n"
        "b.onDriverAttachmentSet d \"k\"=\"y\"\n  answers -1 \"no y\"\n"
        "log 3 \"DrvRepo:   d: NOTIFY LISTENER 'b' FAILED: no y\"\n"
        "a.onDriverAttachmentCleared d \"k\"=\"y\"\n"
        "log 3 \"DrvRepo: SETTING DRIVER 'd' ATTACHMENT k=y FAILED: no y\"\n",
        heard());
    EXPECT_EQ("", repository_.getDriverAttachment("d", "k"));
}

TEST_F(ModelAttachments, RefusedJoinerIsNotToldTheRemoval)
{
    add("d");
    attach("d", "a", "1");
    Listener l = wants("l");
    l.attributes.put("k", "v");
    listen(l, refuseSet("a", "1", "no a"));
    EXPECT_EQ(-1, attach("d", "k", "v"));
    EXPECT_EQ("l.onDriverAdded d\nl.onDriverAttachmentSet d \"a\"=\"1\"\n  answers -1 \"no a\"\n",
              heard());
    repository_.removeObserver("l");
    EXPECT_EQ("", heard());
}

TEST_F(ModelAttachments, RollBackTakesTheJoinersOutWithoutASnapshot)
{
    add("d");
    attach("d", "a", "1");
    listen("veto", 9, refuseSet("k", "v", "no"));
    Listener l = wants("joiner");
    l.attributes.put("k", "v");
    listen(l);
    listen("always", 1);
    quiet();
    EXPECT_EQ(-1, attach("d", "k", "v"));
    // The joiner no longer matches the table as it stands, so its final snapshot is empty.
    EXPECT_EQ("joiner.onDriverAdded d\njoiner.onDriverAttachmentSet d \"a\"=\"1\"\n"
              "always.onDriverAttachmentSet d \"k\"=\"v\"\n"
              "veto.onDriverAttachmentSet d \"k\"=\"v\"\n  answers -1 \"no\"\n"
              "always.onDriverAttachmentCleared d \"k\"=\"v\"\n"
              "joiner.onDriverRemoved d\n",
              heard());
}

TEST_F(ModelAttachments, EmptyKeyIsLeftOutOfTheFinalSnapshotOfARemoval)
{
    listen("l");
    add("d");
    attach("d", "", "v");
    attach("d", "k", "w");
    EXPECT_EQ("l.onDriverAdded d\nl.onDriverAttachmentSet d \"\"=\"v\"\n"
              "l.onDriverAttachmentSet d \"k\"=\"w\"\n",
              heard());
    repository_.removeObserver("l");
    EXPECT_EQ("l.onDriverAttachmentCleared d \"k\"=\"w\"\nl.onDriverRemoved d\n", heard());
}

TEST_F(ModelAttachments, EmptyKeyThatEndsAMatchIsAChangeLikeAnother)
{
    Listener l = wants("l");
    l.attributes.put("", "v");
    listen(l);
    add("d");
    attach("d", "k", "w");
    attach("d", "", "v");
    attach("d", "", "");
    EXPECT_EQ("l.onDriverAdded d\nl.onDriverAttachmentSet d \"k\"=\"w\"\n"
              "l.onDriverAttachmentCleared d \"k\"=\"w\"\nl.onDriverRemoved d\n",
              heard());
}

TEST_F(ModelAttachments, PeekingSeesTheTableAsItIsBeingChanged)
{
    Policy peeks;
    peeks.peeks = true;
    listen("l", 0, peeks);
    add("d");
    attach("d", "k", "x");
    attach("d", "k", "");
    repository_.removeDriver("d");
    EXPECT_EQ("l.onDriverAdded d\n  sees known \"\" held\n"
              "l.onDriverAttachmentSet d \"k\"=\"x\"\n  sees known \"x\" held\n"
              "l.onDriverAttachmentCleared d \"k\"=\"x\"\n  sees known \"\" held\n"
              "l.onDriverRemoved d\n  sees unknown \"\" held\n",
              heard());
}
} // namespace
