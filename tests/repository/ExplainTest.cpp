#include <functional>
#include <stdexcept>
#include <utility>

#include <support/RepositoryFixture.h>

#include "ExplanationText.h"

namespace
{

TOVA_UUID const& span()
{
    static const TOVA_UUID id = TOVA_UUID::create(1, 2, 3, 4, "span");
    return id;
}
TOVA_UUID const& alarm()
{
    static const TOVA_UUID id = TOVA_UUID::create(5, 6, 7, 8, "alarm");
    return id;
}

class Explain : public RepositoryFixture
{
protected:
    Explanation explained(char const* driverName, char const* listener)
    {
        Explanation explanation;
        error_ = "left over";
        const XCode rc = explain(error_, repository(), driverName, listener, explanation);
        EXPECT_EQ(0, rc.code());
        EXPECT_EQ("", error());
        return explanation;
    }
    std::string state(char const* driverName, char const* listener)
    {
        return textOf(explained(driverName, listener));
    }
    std::string criteria(char const* driverName, char const* listener)
    {
        return textOf(explained(driverName, listener).criteria);
    }
    /// The listeners of a driver as they are listed, each "name state".
    std::string listenersOf(char const* driverName)
    {
        TOVA_List<Explanation> found;
        EXPECT_EQ(0, explainDriver(error_, repository(), driverName, found).code());
        std::string text;
        for (Explanation const& at : found)
            text += std::string(at.listener.cString()) + " " + textOf(at) + "\n";
        return text;
    }
    std::string rows()
    {
        InfoContainer info;
        repository().getInfo(info, 99, 0, 99, 0, "");
        std::string text;
        for (InfoContainer::Row const& row : info.rows())
            text += std::string(row.key.cString()) + "|" + row.value.cString() + "\n";
        return text;
    }
};

TEST_F(Explain, CriteriaInTheOrderOfTheirTest)
{
    driver("e1t1 1", span()).offer(alarm());
    add("e1t1 1");
    attach("e1t1 1", "slot", "12");
    attach("e1t1 1", "gone", "x");
    attach("e1t1 1", "gone", "");
    struct
    {
        Terms terms;
        char const* criteria;
        bool selected;
    } const cases[] = {
        {Terms(), "type any: span\ninterface any: none\nname : e1t1 1\n", true},
        {Terms().did(span()).iid(alarm()).prefix("e1").attribute("slot", "1"),
         "type span: span\ninterface alarm: alarm\nname e1: e1t1 1\nslot=1: 12\n", true},
        // Each of them fails, and those behind it are listed all the same.
        {Terms().did(alarm()).iid(IID_Unknown()).prefix("e1t1 1"),
         "type alarm: span FAILS\ninterface IUnknown: IUnknown\nname e1t1 1: e1t1 1\n", false},
        {Terms().did(span()).iid(span()),
         "type span: span\ninterface span: none FAILS\nname : e1t1 1\n", false},
        {Terms().prefix("e1t1 12").attribute("slot", "12"),
         "type any: span\ninterface any: none\nname e1t1 12: e1t1 1 FAILS\nslot=12: 12\n", false},
        {Terms().attribute("slot", "2").attribute("gone", "").attribute("none", "n"),
         "type any: span\ninterface any: none\nname : e1t1 1\n"
         "slot=2: 12 FAILS\ngone=: \nnone=n:  FAILS\n",
         false},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(c.criteria);
        listen("a", 1, c.terms);
        const Explanation explanation = explained("e1t1 1", "a");
        EXPECT_EQ(c.criteria, textOf(explanation.criteria));
        EXPECT_EQ(c.selected, explanation.selected);
        EXPECT_EQ(c.selected ? Explanation::ACTIVE : Explanation::INACTIVE, explanation.state);
        EXPECT_EQ("e1t1 1", explanation.driver);
        EXPECT_EQ("a", explanation.listener);
        unlisten("a");
    }
}

TEST_F(Explain, RightsAndPriority)
{
    add("fxs 1");
    listen("plain", 4294967295u);
    listen("guard", 7, Terms().veto());
    listen("mirror", 7, Terms().snapshot());
    EXPECT_EQ(4294967295u, explained("fxs 1", "plain").priority);
    EXPECT_FALSE(explained("fxs 1", "plain").rightOfVeto);
    EXPECT_FALSE(explained("fxs 1", "plain").wantsSnapshot);
    EXPECT_EQ(7u, explained("fxs 1", "guard").priority);
    EXPECT_TRUE(explained("fxs 1", "guard").rightOfVeto);
    EXPECT_FALSE(explained("fxs 1", "guard").wantsSnapshot);
    EXPECT_TRUE(explained("fxs 1", "mirror").wantsSnapshot);
    EXPECT_FALSE(explained("fxs 1", "mirror").rightOfVeto);
}

TEST_F(Explain, StateFollowsTheAttachment)
{
    add("fxs 1");
    listen("a", 1, Terms().attribute("room", "1"));
    EXPECT_EQ("inactive, count 1, not selected", state("fxs 1", "a"));
    attach("fxs 1", "room", "12");
    EXPECT_EQ("active, count 1, selected", state("fxs 1", "a"));
    attach("fxs 1", "room", "2");
    EXPECT_EQ("inactive, count 1, not selected", state("fxs 1", "a"));
}

// An interface that a driver offers only later is not noticed: nothing asks for it then.
TEST_F(Explain, SelectedButInactive)
{
    add("fxs 1");
    listen("a", 1, Terms().iid(alarm()));
    EXPECT_EQ("inactive, count 1, not selected", state("fxs 1", "a"));
    driver("fxs 1").offer(alarm());
    EXPECT_EQ("inactive, count 1, selected", state("fxs 1", "a"));
}

TEST_F(Explain, WhomTheDelegateReaches)
{
    add("fxs 1");
    const TYPtr<TestDelegate> delegate(new TestDelegate(&observer("x")));
    TestDelegate* const none = nullptr;
    repository().addDriverRepositoryObserver(error_, "with", TOVA_UUID::INVALID(),
                                             TOVA_UUID::INVALID(), "", 1, false, false,
                                             delegate.get());
    repository().addDriverRepositoryObserver(error_, "without", TOVA_UUID::INVALID(),
                                             TOVA_UUID::INVALID(), "", 1, false, false, none);
    EXPECT_EQ("active, count 1, selected", state("fxs 1", "with"));
    delegate.get()->stopNotifications();
    EXPECT_EQ("active, count 1, selected, stopped", state("fxs 1", "with"));
    EXPECT_EQ("active, count 1, selected, no delegate", state("fxs 1", "without"));
    unlisten("with");
    unlisten("without");
}

TEST_F(Explain, UnknownNames)
{
    add("fxs 1");
    listen("a", 1);
    forget();
    Explanation explanation;
    TOVA_List<Explanation> list;
    EXPECT_EQ(-1, explain(error_, repository(), "fxs", "a", explanation).code());
    EXPECT_EQ("Driver 'fxs' does not exist", error());
    EXPECT_EQ(-1, explain(error_, repository(), "fxs", "b", explanation).code());
    EXPECT_EQ("Driver 'fxs' does not exist", error());
    EXPECT_EQ(-1, explain(error_, repository(), "fxs 1", "A", explanation).code());
    EXPECT_EQ("Driver repository observer 'A' does not exist", error());
    WhatIf whatIf;
    EXPECT_EQ(-1, explain(error_, repository(), "fxs 1", "A", "k", "v", whatIf).code());
    EXPECT_EQ("Driver repository observer 'A' does not exist", error());
    EXPECT_EQ(-1, explainDriver(error_, repository(), "fxs 2", list).code());
    EXPECT_EQ("Driver 'fxs 2' does not exist", error());
    EXPECT_EQ(-1, explainListener(error_, repository(), "", list).code());
    EXPECT_EQ("Driver repository observer '' does not exist", error());
    EXPECT_EQ("", lines()) << "nothing is logged";
}

TEST_F(Explain, ArgumentsMayBeOneObject)
{
    add("fxs 1");
    listen("fxs 1", 1);
    String text("fxs 1");
    Explanation explanation;
    EXPECT_EQ(0, explain(text, repository(), text, text, explanation).code());
    EXPECT_EQ("", text);
    EXPECT_EQ(0,
              explain(error_, repository(), explanation.driver, explanation.listener, explanation)
                  .code());
    text = "none";
    EXPECT_EQ(-1, explain(text, repository(), text, text, explanation).code());
    EXPECT_EQ("Driver 'none' does not exist", text);
    TOVA_List<Explanation> list;
    EXPECT_EQ(0, explainListener(error_, repository(), "fxs 1", list).code());
    EXPECT_EQ(0, explainDriver(error_, repository(), list.begin()->driver, list).code());
    EXPECT_EQ(1u, list.count());
}

TEST_F(Explain, ListenersInTheOrderInWhichValuesAreTold)
{
    listen("a", 5);
    listen("b", 5, Terms().attribute("k", "1"));
    listen("c", 1);
    add("fxs 1");
    listen("d", 5);
    forget();
    EXPECT_EQ("c active, count 1, selected\nd active, count 1, selected\n"
              "a active, count 1, selected\nb inactive, count 1, not selected\n",
              listenersOf("fxs 1"));
    attach("fxs 1", "k", "1");
    EXPECT_EQ("c: set fxs 1 k=1\nd: set fxs 1 k=1\na: set fxs 1 k=1\nb: added fxs 1\n", heard());
}

TEST_F(Explain, DriversInTheOrderOfAdding)
{
    add("fxs 2");
    add("e1t1 1");
    listen("a", 1, Terms().prefix("fxs"));
    add("fxs 1");
    TOVA_List<Explanation> found;
    found.append(Explanation());
    EXPECT_EQ(0, explainListener(error_, repository(), "a", found).code());
    std::string text;
    for (Explanation const& at : found)
        text += std::string(at.driver.cString()) + " " + textOf(at) + "\n";
    EXPECT_EQ("fxs 2 active, count 1, selected\ne1t1 1 inactive, count 1, not selected\n"
              "fxs 1 active, count 1, selected\n",
              text);
}

TEST_F(Explain, AFailedListKeepsTheOldOne)
{
    TOVA_List<Explanation> found;
    found.append(Explanation());
    EXPECT_EQ(-1, explainListener(error_, repository(), "a", found).code());
    EXPECT_EQ(-1, explainDriver(error_, repository(), "a", found).code());
    EXPECT_EQ(1u, found.count());
}

TEST_F(Explain, AskingChangesNothing)
{
    driver("fxs 1", span()).offer(alarm());
    listen("b", 2, Terms().iid(alarm()).attribute("room", "1").snapshot().veto());
    listen("a", 1, Terms().did(span()).prefix("fxs").snapshot());
    add("fxs 1");
    attach("fxs 1", "room", "12");
    attach("fxs 1", "floor", "3");
    const std::string before = rows();
    const TestDriver::Calls calls = driver("fxs 1").calls();
    const int references = repository().references();
    forget();
    for (char const* listener : {"a", "b"}) {
        explained("fxs 1", listener);
        for (char const* value : {"", "12", "13", "2"}) {
            WhatIf whatIf;
            explain(error_, repository(), "fxs 1", listener, "room", value, whatIf);
            explain(error_, repository(), "fxs 1", listener, "new", value, whatIf);
        }
        TOVA_List<Explanation> list;
        explainListener(error_, repository(), listener, list);
    }
    listenersOf("fxs 1");
    EXPECT_EQ("", heard());
    EXPECT_EQ("", lines());
    EXPECT_EQ(references, repository().references());
    TestDriver::Calls const& now = driver("fxs 1").calls();
    EXPECT_EQ(calls.addRef, now.addRef);
    EXPECT_EQ(calls.release, now.release);
    EXPECT_EQ(calls.getLock, now.getLock);
    EXPECT_EQ(calls.setDriverRepository, now.setDriverRepository);
    EXPECT_EQ(before, rows());
    EXPECT_EQ("", attachment("fxs 1", "new"));
}

TEST_F(Explain, AsksForAnInterfaceOnlyIfTheListenerWantsOneAndThenOnce)
{
    add("fxs 1");
    listen("any", 1);
    listen("picky", 1, Terms().did(span()).iid(alarm()).attribute("k", "1"));
    const unsigned before = driver("fxs 1").calls().queryInterface;
    explained("fxs 1", "any");
    EXPECT_EQ(before, driver("fxs 1").calls().queryInterface);
    WhatIf whatIf;
    explain(error_, repository(), "fxs 1", "picky", "k", "1", whatIf);
    EXPECT_EQ(before + 1, driver("fxs 1").calls().queryInterface);
}

TEST_F(Explain, FromInsideACall)
{
    listen("a", 1);
    listen("b", 2);
    std::string seen;
    observer("a").then = [&](std::string const& what) {
        seen += what + ":\n" + listenersOf("fxs 1");
    };
    add("fxs 1");
    EXPECT_EQ("added fxs 1:\na active, count 1, selected\nb never offered, count 0, selected\n",
              seen);
    seen.clear();
    observer("a").then = [&](std::string const& what) {
        Explanation explanation;
        const XCode rc = explain(error_, repository(), "fxs 1", "b", explanation);
        seen += what + " " + (rc.code() == 0 ? textOf(explanation) : error()) + "\n";
    };
    remove("fxs 1");
    EXPECT_EQ("removed fxs 1 Driver 'fxs 1' does not exist\n", seen);
}

// One that is just being registered, too, for the drivers that it has not come to yet.
TEST_F(Explain, ListenerOnItsWayToTheDriverIsListed)
{
    add("fxs 1");
    add("fxs 2");
    listen("a", 1);
    std::string seen;
    observer("b").then = [&](std::string const& what) {
        seen += what + ":\n" + listenersOf("fxs 2");
        observer("b").then = nullptr;
    };
    listen("b", 2);
    EXPECT_EQ("added fxs 1:\na active, count 1, selected\nb never offered, count 0, selected\n",
              seen);
}

TEST_F(Explain, DriverThatIsLeavingIsNotAsked)
{
    add("fxs 1");
    add("fxs 2");
    listen("a", 1);
    bool asked = true;
    std::string seen;
    observer("a").then = [&](std::string const&) {
        const unsigned before = driver("fxs 1").calls().getDID;
        TOVA_List<Explanation> found;
        explainListener(error_, repository(), "a", found);
        for (Explanation const& at : found)
            seen += std::string(at.driver.cString()) + ";";
        asked = driver("fxs 1").calls().getDID != before;
    };
    remove("fxs 1");
    observer("a").then = nullptr;
    EXPECT_EQ("fxs 2;", seen);
    EXPECT_FALSE(asked);
}

/// Does something the next time that it is asked for an interface.
class Meddler : public TestDriver
{
public:
    using TestDriver::TestDriver;
    XCode queryInterface(TOVA_UUID const& iid, void** out) override
    {
        if (auto now = std::exchange(then, nullptr))
            now();
        return TestDriver::queryInterface(iid, out);
    }
    std::function<void()> then;
};

TEST_F(Explain, WhatTheDriverRemovesMeanwhileDoesNotExist)
{
    const TYPtr<Meddler> meddler(new Meddler("fxs 1"));
    Explanation explanation;
    listen("a", 1, Terms().iid(alarm()));
    repository().addDriver(error_, meddler.get());
    meddler.get()->then = [&] { repository().removeDriver(meddler.get()); };
    EXPECT_EQ(-1, explain(error_, repository(), "fxs 1", "a", explanation).code());
    EXPECT_EQ("Driver 'fxs 1' does not exist", error());

    repository().addDriver(error_, meddler.get());
    meddler.get()->then = [&] { unlisten("a"); };
    EXPECT_EQ(-1, explain(error_, repository(), "fxs 1", "a", explanation).code());
    EXPECT_EQ("Driver repository observer 'a' does not exist", error());

    // Lists are of what was there when they were asked for, and still is.
    listen("d", 4);
    listen("c", 3);
    listen("b", 2, Terms().iid(alarm()));
    meddler.get()->then = [&] {
        unlisten("b");
        unlisten("c");
        listen("e", 5);
    };
    EXPECT_EQ("d active, count 1, selected\n", listenersOf("fxs 1"));
    listen("f", 9, Terms().iid(alarm()));
    meddler.get()->then = [&] {
        repository().removeDriver(meddler.get());
        add("fxs 2");
    };
    TOVA_List<Explanation> found;
    EXPECT_EQ(0, explainListener(error_, repository(), "f", found).code());
    EXPECT_EQ(0u, found.count());
    EXPECT_EQ(1, meddler.get()->references());
}

TEST_F(Explain, WhatTheDriverThrowsIsPassedOn)
{
    const TYPtr<Meddler> meddler(new Meddler("fxs 1"));
    listen("a", 1, Terms().iid(alarm()));
    repository().addDriver(error_, meddler.get());
    const int references = repository().references();
    meddler.get()->then = [] { throw std::runtime_error("asked"); };
    Explanation explanation;
    EXPECT_THROW(explain(error_, repository(), "fxs 1", "a", explanation), std::runtime_error);
    EXPECT_EQ(references, repository().references());
    EXPECT_EQ("inactive, count 1, not selected", state("fxs 1", "a"));
    repository().removeDriver(meddler.get());
}

} // namespace
