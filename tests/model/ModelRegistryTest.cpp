#include "ModelFixture.h"

namespace
{
using model::Driver;
using model::Listener;

class ModelDrivers : public ModelFixture
{};

TEST_F(ModelDrivers, NullIsRefused)
{
    EXPECT_EQ(-1, repository_.addDriver(error_, nullptr));
    EXPECT_EQ("No driver specified", error_);
    EXPECT_EQ("", heard(true));
}

TEST_F(ModelDrivers, SameNameIsRefusedWhicheverObject)
{
    Driver& first = make("fxs 1");
    Driver& second = make("fxs 1");
    process_.monitorPresent = true;
    EXPECT_EQ(0, add(first));
    EXPECT_EQ("", error_);
    EXPECT_EQ(-1, add(first));
    EXPECT_EQ("Driver already exists (CDriverRepo): fxs 1", error_);
    EXPECT_EQ(-1, add(second));
    EXPECT_EQ("log 7 \"DrvRepo: Add driver 'fxs 1'\"\nfxs 1.setDriverRepository(R)\n", heard(true));
    EXPECT_EQ(2, first.refs());
    EXPECT_EQ(1, second.refs());
}

TEST_F(ModelDrivers, RemovalByAnotherDriverOfTheName)
{
    Driver& first = make("fxs 1");
    Driver other(process_, "other", {}, "fxs 1");
    add(first);
    heard(true);
    repository_.removeDriver(&other);
    EXPECT_EQ("other.setDriverRepository(null)\n", heard(true));
    EXPECT_EQ(1, first.refs());
    EXPECT_NE(nullptr, first.repository());
    EXPECT_EQ(-1, repository_.getDriver("fxs 1", nullptr));
}

TEST_F(ModelDrivers, RemovalOfUnknownNameIsSilent)
{
    process_.monitorPresent = true;
    repository_.removeDriver("unknown");
    repository_.removeDriver(nullptr);
    EXPECT_EQ("", heard(true));
    Driver& stranger = make("fxs 9");
    repository_.removeDriver(&stranger);
    EXPECT_EQ("log 7 \"DrvRepo: Remove driver 'fxs 9'\"\n", heard(true));
}

TEST_F(ModelDrivers, LookUpCounts)
{
    Driver& driver = make("fxs 1");
    add(driver);
    Driver* found = nullptr;
    EXPECT_EQ(0, repository_.getDriver("fxs 1", &found));
    EXPECT_EQ(&driver, found);
    EXPECT_EQ(3, driver.refs());
    EXPECT_EQ(-1, repository_.getDriver("fxs", &found));
    EXPECT_EQ(nullptr, found);
}

TEST_F(ModelDrivers, LastReferenceGoesWithTheRecord)
{
    Driver& driver = make("fxs 1");
    add(driver);
    driver.release();
    listen("l");
    heard(true);
    repository_.removeDriver("fxs 1");
    EXPECT_EQ("l.onDriverRemoved fxs 1\nfxs 1.setDriverRepository(null)\nfxs 1 destroyed\n",
              heard(true));
}

TEST_F(ModelDrivers, ThirdOfFourRefuses)
{
    listen("a", 1);
    listen("b", 2);
    listen("c", 3, refuseAll("line busy"));
    listen("d", 4);
    process_.monitorPresent = true;
    Driver& driver = make("fxs 1");
    error_ = "junk";
    EXPECT_EQ(-1, add(driver));
    EXPECT_EQ(
        "log 7 \"DrvRepo: Add driver 'fxs 1'\"\n"
        "fxs 1.setDriverRepository(R)\n"
        "log 7 \"DrvRepo:   fxs 1: Notify listener 'a' with right of veto: onDriverAdded()\"\n"
        "a.onDriverAdded fxs 1 given \"junk\"\n"
        "log 7 \"DrvRepo:   fxs 1: Notify listener 'b' with right of veto: onDriverAdded()\"\n"
        "b.onDriverAdded fxs 1\n"
        "log 7 \"DrvRepo:   fxs 1: Notify listener 'c' with right of veto: onDriverAdded()\"\n"
        "c.onDriverAdded fxs 1\n"
        "  answers -1 \"line busy\"\n"
        "log 3 \"DrvRepo:   fxs 1: NOTIFY LISTENER 'c' FAILED: line busy\"\n"
        "log 7 \"DrvRepo:   fxs 1: Notify listener 'b': onDriverRemoved()\"\n"
        "b.onDriverRemoved fxs 1\n"
        "log 7 \"DrvRepo:   fxs 1: Notify listener 'a': onDriverRemoved()\"\n"
        "a.onDriverRemoved fxs 1\n"
        "fxs 1.setDriverRepository(null)\n"
        "log 3 \"DrvRepo: ADDING DRIVER 'fxs 1' FAILED: line busy\"\n",
        heard(true));
    EXPECT_EQ("line busy", error_);
    EXPECT_EQ(1, driver.refs());
    EXPECT_EQ(-1, repository_.getDriver("fxs 1", nullptr));
}

TEST_F(ModelDrivers, RefusalWithoutVetoIsIgnored)
{
    Listener l = wants("l");
    l.rightOfVeto = false;
    listen(l, refuseAll("no"));
    process_.monitorPresent = true;
    EXPECT_EQ(0, add("fxs 1"));
    EXPECT_EQ("", error_);
    EXPECT_EQ(
        "log 7 \"DrvRepo: Add driver 'fxs 1'\"\n"
        "log 7 \"DrvRepo:   fxs 1: Notify listener 'l' with right of veto: onDriverAdded()\"\n"
        "l.onDriverAdded fxs 1\n  answers -1 \"no\"\n",
        heard());
}

TEST_F(ModelDrivers, DebugLinesObeyTheThreshold)
{
    process_.monitorPresent = true;
    process_.threshold = -1;
    listen("l", 0, refuseAll("no"));
    add("fxs 1");
    EXPECT_EQ("l.onDriverAdded fxs 1\n  answers -1 \"no\"\n"
              "log 3 \"DrvRepo:   fxs 1: NOTIFY LISTENER 'l' FAILED: no\"\n"
              "log 3 \"DrvRepo: ADDING DRIVER 'fxs 1' FAILED: no\"\n",
              heard());
}

class ModelListeners : public ModelFixture
{};

TEST_F(ModelListeners, PrioritiesFiveOneFive)
{
    listen("first 5", 5);
    listen("1", 1);
    listen("second 5", 5);
    add("d");
    EXPECT_EQ("1.onDriverAdded d\nsecond 5.onDriverAdded d\nfirst 5.onDriverAdded d\n", heard());
}

TEST_F(ModelListeners, EqualsOfADriverAddedLaterAreReversed)
{
    listen("old");
    listen("new");
    add("d");
    EXPECT_EQ("new.onDriverAdded d\nold.onDriverAdded d\n", heard());
    attach("d", "k", "v");
    EXPECT_EQ("old.onDriverAttachmentSet d \"k\"=\"v\"\nnew.onDriverAttachmentSet d \"k\"=\"v\"\n",
              heard());
}

TEST_F(ModelListeners, ExistingNameIsRefusedAfterTheLogLine)
{
    listen("l");
    process_.monitorPresent = true;
    EXPECT_EQ(-1, listen("l"));
    EXPECT_EQ("Driver repository observer 'l' already exists", error_);
    EXPECT_EQ("log 7 \"DrvRepo: Add listener 'l'\"\n", heard());
}

TEST_F(ModelListeners, RefusalOfTheThirdDriverIsUndoneNewestFirst)
{
    add("a 1");
    add("a 2");
    add("b 1");
    add("c 1");
    process_.monitorPresent = true;
    process_.threshold = -1;
    EXPECT_EQ(-1, listen("l", 0, refuseAdded("b", "no b")));
    EXPECT_EQ("l.onDriverAdded a 1\nl.onDriverAdded a 2\n"
              "l.onDriverAdded b 1\n  answers -1 \"no b\"\n"
              "log 3 \"DrvRepo:   b 1: NOTIFY LISTENER 'l' FAILED: no b\"\n"
              "l.onDriverRemoved a 2\nl.onDriverRemoved a 1\n"
              "log 3 \"DrvRepo: ADDING LISTENER 'l' FAILED: no b\"\n",
              heard());
    add("b 2");
    EXPECT_EQ("", heard());
}

TEST_F(ModelListeners, RemovalTellsNewestDriverFirst)
{
    listen("l");
    add("a");
    add("b");
    heard();
    process_.monitorPresent = true;
    repository_.removeObserver("stranger");
    EXPECT_EQ("", heard());
    repository_.removeObserver("l");
    EXPECT_EQ(
        "log 7 \"DrvRepo: Remove listener 'l'\"\n"
        "log 7 \"DrvRepo:   b: Notify listener 'l': onDriverRemoved()\"\nl.onDriverRemoved b\n"
        "log 7 \"DrvRepo:   a: Notify listener 'l': onDriverRemoved()\"\nl.onDriverRemoved a\n",
        heard());
}

TEST_F(ModelListeners, RegisteredAnewAfterRemovalHearsEverything)
{
    add("d");
    listen("l");
    repository_.removeObserver("l");
    heard();
    listen("l");
    attach("d", "k", "v");
    EXPECT_EQ("l.onDriverAdded d\nl.onDriverAttachmentSet d \"k\"=\"v\"\n", heard());
}
} // namespace
