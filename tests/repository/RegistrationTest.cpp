#include <support/RepositoryFixture.h>

namespace
{

using Registration = RepositoryFixture;
using Unregistration = RepositoryFixture;
const TOVA_UUID ANY;

TEST_F(Registration, WithoutDriversSucceedsAtOnce)
{
    error_ = "left over";
    EXPECT_EQ(0, listen("a", 1).code());
    EXPECT_EQ("", error());
    EXPECT_EQ("a", listeners());
    EXPECT_EQ("", heard());
    EXPECT_EQ("<7> DrvRepo: Add listener 'a'\n", lines());
    EXPECT_EQ(1, repository().references());
}

TEST_F(Registration, KeepsAscendingPriorities)
{
    listen("last", 4294967295u);
    listen("low", 1);
    listen("high", 2147483648u);
    listen("lowest", 0);
    listen("high 1", 2147483649u);
    EXPECT_EQ("lowest, low, high, high 1, last", listeners());
}

TEST_F(Registration, NewestFirstAmongEquals)
{
    listen("first 5", 5);
    listen("1", 1);
    listen("second 5", 5);
    EXPECT_EQ("1, second 5, first 5", listeners());
    listen("third 5", 5);
    listen("6", 6);
    listen("second 1", 1);
    EXPECT_EQ("second 1, 1, third 5, second 5, first 5, 6", listeners());
    add("fxs 1");
    EXPECT_EQ("second 1: added fxs 1\n1: added fxs 1\nthird 5: added fxs 1\n"
              "second 5: added fxs 1\nfirst 5: added fxs 1\n6: added fxs 1\n",
              heard());
}

TEST_F(Registration, RefusesAKnownName)
{
    listen("a", 5);
    add("fxs 1");
    forget();
    const TYPtr<TestDelegate> delegate(new TestDelegate(&observer("b")));
    EXPECT_EQ(-1, repository()
                      .addDriverRepositoryObserver(error_, "a", ANY, ANY, "", 1, true, true,
                                                   delegate.get())
                      .code());
    EXPECT_EQ("Driver repository observer 'a' already exists", error());
    EXPECT_EQ("<7> DrvRepo: Add listener 'a'\n", lines());
    EXPECT_EQ("a", listeners());
    EXPECT_EQ("", heard());
    EXPECT_EQ(1, delegate.get()->references());
    remove("fxs 1");
    EXPECT_EQ("a: removed fxs 1\n", heard()) << "the first one is still there";
}

TEST_F(Registration, NamesAreComparedExactly)
{
    for (char const* name : {"a", "A", "aa", "", "a "})
        EXPECT_EQ(0, listen(name, 1).code()) << name;
    EXPECT_EQ(-1, listen("", 1).code());
    EXPECT_EQ("Driver repository observer '' already exists", error());
}

TEST_F(Registration, OffersTheDriversOldestFirst)
{
    for (char const* name : {"fxs 2", "bri 1", "fxs 1"})
        add(name);
    remove("bri 1");
    add("bri 1");
    forget();
    error_ = "left over";
    EXPECT_EQ(0, listen("a", 1).code());
    EXPECT_EQ("a: added fxs 2\na: added fxs 1\na: added bri 1\n", heard());
    EXPECT_EQ("", error());
    EXPECT_EQ("<7> DrvRepo: Add listener 'a'\n"
              "<7> DrvRepo:   fxs 2: Notify listener 'a' with right of veto: onDriverAdded()\n"
              "<7> DrvRepo:   fxs 1: Notify listener 'a' with right of veto: onDriverAdded()\n"
              "<7> DrvRepo:   bri 1: Notify listener 'a' with right of veto: onDriverAdded()\n",
              lines());
}

TEST_F(Registration, RefusalOfTheThirdDriverTakesItBack)
{
    for (char const* name : {"fxs 1", "fxs 2", "fxs 3", "fxs 4"})
        add(name);
    forget();
    observer("a").refuse("added fxs 3", "one too many", 17);
    EXPECT_EQ(17, listen("a", 1, Terms().veto()).code());
    EXPECT_EQ("a: added fxs 1\na: added fxs 2\na: refused fxs 3\n"
              "a: removed fxs 2\na: removed fxs 1\n",
              heard());
    EXPECT_EQ("one too many", error());
    EXPECT_EQ("", listeners());
    EXPECT_EQ("<7> DrvRepo: Add listener 'a'\n"
              "<7> DrvRepo:   fxs 1: Notify listener 'a' with right of veto: onDriverAdded()\n"
              "<7> DrvRepo:   fxs 2: Notify listener 'a' with right of veto: onDriverAdded()\n"
              "<7> DrvRepo:   fxs 3: Notify listener 'a' with right of veto: onDriverAdded()\n"
              "<3> DrvRepo:   fxs 3: NOTIFY LISTENER 'a' FAILED: one too many\n"
              "<7> DrvRepo:   fxs 2: Notify listener 'a': onDriverRemoved()\n"
              "<7> DrvRepo:   fxs 1: Notify listener 'a': onDriverRemoved()\n"
              "<3> DrvRepo: ADDING LISTENER 'a' FAILED: one too many\n",
              lines());
}

TEST_F(Registration, RefusedLeavesNoTrace)
{
    add("fxs 1");
    add("fxs 2");
    listen("b", 2);
    const TYPtr<TestDelegate> delegate(new TestDelegate(&observer("a")));
    observer("a").refuse("added fxs 2", "no");
    EXPECT_EQ(-1, repository()
                      .addDriverRepositoryObserver(error_, "a", ANY, ANY, "", 1, true, false,
                                                   delegate.get())
                      .code());
    EXPECT_EQ(1, delegate.get()->references());
    EXPECT_EQ("b", listeners());
    forget();
    attach("fxs 1", "k", "v");
    add("fxs 3");
    remove("fxs 1");
    EXPECT_EQ("b: set fxs 1 k=v\nb: added fxs 3\nb: removed fxs 1\n", heard());
    // The name is free again.
    observer("a").accept();
    EXPECT_EQ(0, listen("a", 1, Terms().veto()).code());
    EXPECT_EQ("a: added fxs 2\na: added fxs 3\n", heard());
}

TEST_F(Registration, RefusalPassesTheDriversThatItDoesNotConcern)
{
    for (char const* name : {"fxs 1", "bri 1", "fxs 2", "fxs 3"})
        add(name);
    forget();
    observer("a").refuse("added fxs 2", "no");
    EXPECT_EQ(-1, listen("a", 1, Terms().veto().prefix("fxs")).code());
    EXPECT_EQ("a: added fxs 1\na: refused fxs 2\na: removed fxs 1\n", heard());
}

TEST_F(Registration, RefusalInASnapshotTakesItBack)
{
    add("fxs 1");
    add("fxs 2");
    attach("fxs 1", "slot", "1");
    attach("fxs 2", "slot", "2");
    attach("fxs 2", "port", "9");
    forget();
    observer("a").refuse("set fxs 2 port", "bad port", 5);
    EXPECT_EQ(5, listen("a", 1, Terms().veto().snapshot()).code());
    EXPECT_EQ("a: added fxs 1\na: set fxs 1 slot=1\na: added fxs 2\na: set fxs 2 slot=2\n"
              "a: refused fxs 2 port=9\na: cleared fxs 2 slot=2\na: removed fxs 2\n"
              "a: cleared fxs 1 slot=1\na: removed fxs 1\n",
              heard());
    EXPECT_EQ("bad port", error());
    EXPECT_EQ("", listeners());
}

TEST_F(Registration, RefusalWithoutVetoIsIgnored)
{
    add("fxs 1");
    add("fxs 2");
    forget();
    observer("a").refuse("added", "no");
    EXPECT_EQ(0, listen("a", 1).code());
    EXPECT_EQ("", error());
    EXPECT_EQ("a: refused fxs 1\na: refused fxs 2\n", heard());
    EXPECT_EQ("a", listeners());
    EXPECT_EQ(std::string::npos, lines().find("<3>"));
}

TEST_F(Registration, WithADelegateHoldsOneReferenceOnIt)
{
    const TYPtr<TestDelegate> delegate(new TestDelegate(&observer("a")));
    EXPECT_EQ(0, repository()
                     .addDriverRepositoryObserver(error_, "a", ANY, ANY, "", 1, false, false,
                                                  delegate.get())
                     .code());
    EXPECT_EQ(2, delegate.get()->references());
    add("fxs 1");
    EXPECT_EQ(2, delegate.get()->references());
    EXPECT_EQ("a: added fxs 1\n", heard());
    unlisten("a");
    EXPECT_EQ(1, delegate.get()->references());
}

TEST_F(Registration, StoppedDelegateIsSilentAndCannotRefuse)
{
    const TYPtr<TestDelegate> delegate(new TestDelegate(&observer("a")));
    observer("a").refuse("added", "no");
    repository().addDriverRepositoryObserver(error_, "a", ANY, ANY, "", 1, true, false,
                                             delegate.get());
    delegate.get()->stopNotifications();
    EXPECT_EQ(0, add("fxs 1").code());
    EXPECT_EQ("", heard());
    EXPECT_EQ("a", listeners()) << "it is the delegate that stops, the registration stays";
}

TEST_F(Registration, WithoutADelegateNothingIsToldNorLogged)
{
    ObserverDelegate<IDriverRepository>* const none = nullptr;
    EXPECT_EQ(0, repository()
                     .addDriverRepositoryObserver(error_, "a", ANY, ANY, "", 1, true, true, none)
                     .code());
    EXPECT_EQ("a", listeners());
    lines();
    add("fxs 1");
    EXPECT_EQ("<7> DrvRepo: Add driver 'fxs 1'\n", lines());
    unlisten("a");
}

TEST_F(Registration, OneObserverUnderTwoNamesHearsTwice)
{
    RecordingObserver& a = observer("a");
    listen("a", 1);
    repository().addDriverRepositoryObserver(error_, "again", ANY, ANY, "", 2, false, false, &a);
    add("fxs 1");
    EXPECT_EQ("a: added fxs 1\na: added fxs 1\n", heard());
    unlisten("again");
    EXPECT_EQ("a: removed fxs 1\n", heard());
    EXPECT_EQ("a", listeners());
}

TEST_F(Unregistration, TellsTheNewestDriverFirst)
{
    for (char const* name : {"fxs 1", "bri 1", "fxs 2"})
        add(name);
    listen("a", 1, Terms().prefix("fxs"));
    listen("b", 2);
    forget();
    unlisten("a");
    EXPECT_EQ("a: removed fxs 2\na: removed fxs 1\n", heard());
    EXPECT_EQ("<7> DrvRepo: Remove listener 'a'\n"
              "<7> DrvRepo:   fxs 2: Notify listener 'a': onDriverRemoved()\n"
              "<7> DrvRepo:   fxs 1: Notify listener 'a': onDriverRemoved()\n",
              lines());
    EXPECT_EQ("b", listeners());
    remove("fxs 1");
    EXPECT_EQ("b: removed fxs 1\n", heard());
}

TEST_F(Unregistration, OfAnUnknownNameDoesNothing)
{
    listen("a", 1);
    add("fxs 1");
    forget();
    for (char const* name : {"b", "A", "", "aa"})
        repository().removeDriverRepositoryObserver(name);
    EXPECT_EQ("a", listeners());
    EXPECT_EQ("", heard());
    EXPECT_EQ("", lines());
}

TEST_F(Unregistration, TakesTheAttachmentsBackFirst)
{
    add("fxs 1");
    attach("fxs 1", "slot", "1");
    attach("fxs 1", "port", "2");
    listen("a", 1, Terms().snapshot());
    forget();
    unlisten("a");
    EXPECT_EQ("a: cleared fxs 1 port=2\na: cleared fxs 1 slot=1\na: removed fxs 1\n", heard());
}

TEST_F(Unregistration, ByTheNameInTheRecordItself)
{
    // A name that shares its text with the listener's own.
    String name("a");
    RecordingObserver& a = observer("a");
    repository().addDriverRepositoryObserver(error_, name, ANY, ANY, "", 1, false, false, &a);
    add("fxs 1");
    forget();
    repository().removeDriverRepositoryObserver(name);
    EXPECT_EQ("a: removed fxs 1\n", heard());
    EXPECT_EQ("a", name);
}

} // namespace
