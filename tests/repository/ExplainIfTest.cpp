#include <support/RepositoryFixture.h>

#include "ExplanationText.h"

namespace
{

class ExplainIf : public RepositoryFixture
{
protected:
    /// What would happen, and then is let happen.
    std::string foretold(char const* listener, char const* key, char const* value)
    {
        WhatIf whatIf;
        const XCode rc = explain(error_, repository(), "fxs 1", listener, key, value, whatIf);
        return rc.code() == 0 ? textOf(whatIf) : error();
    }
};

TEST_F(ExplainIf, ActiveListenerHearsOfTheChange)
{
    add("fxs 1");
    listen("a", 1);
    attach("fxs 1", "k", "x");
    attach("fxs 1", "gone", "x");
    attach("fxs 1", "gone", "");
    EXPECT_EQ("stays in:", foretold("a", "k", "x"));
    EXPECT_EQ("stays in: cleared fxs 1 k=x;", foretold("a", "k", ""));
    EXPECT_EQ("stays in: cleared fxs 1 k=x; set fxs 1 k=y;", foretold("a", "k", "y"));
    EXPECT_EQ("stays in: set fxs 1 new=y;", foretold("a", "new", "y"));
    EXPECT_EQ("stays in: set fxs 1 gone=y;", foretold("a", "gone", "y"));
    EXPECT_EQ("stays in:", foretold("a", "gone", ""));
    EXPECT_EQ("stays in:", foretold("a", "new", ""));
    EXPECT_EQ("stays in: set fxs 1 =y;", foretold("a", "", "y"));
}

TEST_F(ExplainIf, ListenerOfOtherDriversHearsNothing)
{
    add("fxs 1");
    listen("a", 1, Terms().prefix("e1t1"));
    EXPECT_EQ("stays out:", foretold("a", "k", "x"));
}

TEST_F(ExplainIf, JoiningTellsTheDriverAndASnapshot)
{
    add("fxs 1");
    attach("fxs 1", "first", "1");
    attach("fxs 1", "gone", "1");
    attach("fxs 1", "gone", "");
    listen("bare", 1, Terms().attribute("room", "1"));
    listen("full", 2, Terms().attribute("room", "1").attribute("any", "").snapshot());
    EXPECT_EQ("stays out:", foretold("bare", "room", "2"));
    EXPECT_EQ("stays out:", foretold("full", "other", "1"));
    EXPECT_EQ("joins: added fxs 1;", foretold("bare", "room", "12"));
    // What the criteria depend on is not told.
    EXPECT_EQ("joins: added fxs 1; set fxs 1 first=1;", foretold("full", "room", "12"));
    attach("fxs 1", "room", "3");
    attach("fxs 1", "last", "9");
    EXPECT_EQ("joins: added fxs 1; set fxs 1 first=1; set fxs 1 last=9;",
              foretold("full", "room", "1"));
}

TEST_F(ExplainIf, LeavingTellsAFinalSnapshotAndTheDriver)
{
    add("fxs 1");
    listen("bare", 1, Terms().attribute("room", "1"));
    listen("full", 2, Terms().attribute("room", "1").snapshot());
    attach("fxs 1", "first", "1");
    attach("fxs 1", "room", "12");
    attach("fxs 1", "last", "9");
    EXPECT_EQ("leaves: removed fxs 1;", foretold("bare", "room", ""));
    EXPECT_EQ("leaves: cleared fxs 1 last=9; cleared fxs 1 first=1; removed fxs 1;",
              foretold("full", "room", "2"));
    EXPECT_EQ("rejoins: cleared fxs 1 last=9; cleared fxs 1 first=1; removed fxs 1; "
              "added fxs 1; set fxs 1 first=1; set fxs 1 last=9;",
              foretold("full", "room", "13"));
    EXPECT_EQ("rejoins: removed fxs 1; added fxs 1;", foretold("bare", "room", "13"));
    EXPECT_EQ("stays in: set fxs 1 other=1;", foretold("full", "other", "1"));
}

TEST_F(ExplainIf, CriteriaAndSelectionAreThoseOfAfterwards)
{
    add("fxs 1");
    attach("fxs 1", "room", "2");
    listen("a", 1, Terms().attribute("room", "1").attribute("floor", "3"));
    WhatIf whatIf;
    explain(error_, repository(), "fxs 1", "a", "room", "12", whatIf);
    EXPECT_FALSE(whatIf.selected);
    EXPECT_EQ("type any: DID_UNKNOWN\ninterface any: none\nname : fxs 1\n"
              "room=1: 12\nfloor=3:  FAILS\n",
              textOf(whatIf.criteria));
    attach("fxs 1", "room", "1");
    explain(error_, repository(), "fxs 1", "a", "floor", "3", whatIf);
    EXPECT_EQ("inactive, count 1, selected", textOf(static_cast<Explanation const&>(whatIf)))
        << "the entry is as it is now";
    EXPECT_EQ("joins: added fxs 1;", textOf(whatIf)) << "what stood there before is gone";
}

// Once in, an interface that the driver has ceased to offer is noticed when a value goes.
TEST_F(ExplainIf, InterfaceIsAskedForWhereTheChangeAsksForIt)
{
    const TOVA_UUID iid = TOVA_UUID::create(1, 1, 1, 1, "changing");
    driver("fxs 1").offer(iid);
    add("fxs 1");
    listen("a", 1, Terms().iid(iid));
    listen("b", 2, Terms().iid(iid).attribute("k", "1"));
    attach("fxs 1", "k", "2");
    driver("fxs 1").withdraw(iid);
    EXPECT_EQ("stays in: set fxs 1 new=x;", foretold("a", "new", "x"));
    EXPECT_EQ("stays out:", foretold("b", "k", "1"));
    EXPECT_EQ("leaves: removed fxs 1;", foretold("a", "k", ""));
    driver("fxs 1").offer(iid);
    EXPECT_EQ("stays in: cleared fxs 1 k=2;", foretold("a", "k", ""));
    EXPECT_EQ("joins: added fxs 1;", foretold("b", "k", "1"));
}

TEST_F(ExplainIf, WithoutADelegateNothingIsToldAndAStoppedOneSwallowsIt)
{
    add("fxs 1");
    const TYPtr<TestDelegate> delegate(new TestDelegate(nullptr));
    TestDelegate* const none = nullptr;
    const Terms terms = Terms().attribute("k", "1");
    terms.listen(error_, repository(), "with", delegate.get());
    terms.listen(error_, repository(), "without", none);
    EXPECT_EQ("joins: added fxs 1;", foretold("with", "k", "1"));
    EXPECT_EQ("joins:", foretold("without", "k", "1"));
    attach("fxs 1", "k", "1");
    EXPECT_EQ("leaves:", foretold("without", "k", ""));
    unlisten("with");
    unlisten("without");
}

TEST_F(ExplainIf, ListenerThatWasNeverOfferedTheDriverHearsNothing)
{
    listen("a", 1);
    listen("b", 2, Terms().attribute("k", "x"));
    std::string seen;
    observer("a").then = [&](std::string const&) { seen = foretold("b", "k", "x"); };
    add("fxs 1");
    observer("a").then = nullptr;
    EXPECT_EQ("stays out:", seen);
}

} // namespace
