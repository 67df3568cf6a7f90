#include <support/RepositoryFixture.h>

namespace
{

using RemoveDriver = RepositoryFixture;
using GetDriver = RepositoryFixture;

TEST_F(RemoveDriver, TellsBackToFront)
{
    listen("a", 1);
    listen("b", 2);
    listen("c", 3);
    add("fxs 1");
    forget();
    repository().removeDriver(&driver("fxs 1"));
    EXPECT_EQ("c: removed fxs 1\nb: removed fxs 1\na: removed fxs 1\n", heard());
    EXPECT_EQ("<7> DrvRepo: Remove driver 'fxs 1'\n"
              "<7> DrvRepo:   fxs 1: Notify listener 'c': onDriverRemoved()\n"
              "<7> DrvRepo:   fxs 1: Notify listener 'b': onDriverRemoved()\n"
              "<7> DrvRepo:   fxs 1: Notify listener 'a': onDriverRemoved()\n",
              lines());
}

TEST_F(RemoveDriver, EqualsAreToldInTheReverseOfTheirComing)
{
    listen("first", 5);
    listen("second", 5);
    listen("third", 5);
    add("fxs 1");
    EXPECT_EQ("third: added fxs 1\nsecond: added fxs 1\nfirst: added fxs 1\n", heard());
    remove("fxs 1");
    EXPECT_EQ("first: removed fxs 1\nsecond: removed fxs 1\nthird: removed fxs 1\n", heard());
}

// Nobody matched when the driver came.
TEST_F(RemoveDriver, IsHeardByWhomANewValueBroughtIn)
{
    listen("a", 1, Terms().attribute("k", "v"));
    add("fxs 1");
    attach("fxs 1", "k", "v");
    EXPECT_EQ("a: added fxs 1\n", heard());
    remove("fxs 1");
    EXPECT_EQ("a: removed fxs 1\n", heard());
}

TEST_F(RemoveDriver, LeavesItInNoRepository)
{
    add("fxs 1");
    add("fxs 2");
    repository().removeDriver(&driver("fxs 1"));
    EXPECT_EQ("fxs 2", drivers());
    EXPECT_EQ(nullptr, driver("fxs 1").getDriverRepository());
    EXPECT_EQ(1, driver("fxs 1").references());
    EXPECT_EQ(2, driver("fxs 2").references());
    EXPECT_EQ(0, add("fxs 1").code());
    EXPECT_EQ("fxs 2, fxs 1", drivers());
}

TEST_F(RemoveDriver, ForgetsTheAttachments)
{
    add("fxs 1");
    attach("fxs 1", "slot", "3");
    remove("fxs 1");
    EXPECT_EQ("", attachment("fxs 1", "slot"));
    add("fxs 1");
    EXPECT_EQ("", attachment("fxs 1", "slot"));
}

TEST_F(RemoveDriver, NothingForNoDriver)
{
    add("fxs 1");
    forget();
    repository().removeDriver(static_cast<IDriver*>(nullptr));
    EXPECT_EQ("fxs 1", drivers());
    EXPECT_EQ("", lines());
}

TEST_F(RemoveDriver, OnlyALineForADriverOfAnUnknownName)
{
    add("fxs 1");
    forget();
    repository().removeDriver(&driver("fxs 2"));
    EXPECT_EQ("fxs 1", drivers());
    EXPECT_EQ("<7> DrvRepo: Remove driver 'fxs 2'\n", lines());
    EXPECT_EQ(0u, driver("fxs 2").calls().setDriverRepository);
    EXPECT_EQ(1, driver("fxs 2").references());
}

// The look-up is by the name that the driver reports: pointers are not compared, on purpose.
TEST_F(RemoveDriver, AnotherOfThatNameTakesTheRegisteredOneOut)
{
    listen("a", 1);
    add("fxs 1");
    const TYPtr<TestDriver> other(new TestDriver("fxs 1"));
    other.get()->setDriverRepository(&repository());
    forget();
    repository().removeDriver(other.get());
    EXPECT_EQ("", drivers());
    EXPECT_EQ("a: removed fxs 1\n", heard());
    EXPECT_EQ("<7> DrvRepo: Remove driver 'fxs 1'\n"
              "<7> DrvRepo:   fxs 1: Notify listener 'a': onDriverRemoved()\n",
              lines());
    EXPECT_EQ(nullptr, other.get()->getDriverRepository());
    EXPECT_EQ(1, other.get()->references());
    // The one that went is not told so.
    EXPECT_EQ(&repository(), driver("fxs 1").getDriverRepository());
    EXPECT_EQ(1, driver("fxs 1").references());
}

TEST_F(RemoveDriver, ListenersHearOfTheRegisteredOne)
{
    std::vector<IDriver*> seen;
    class Watcher : public RecordingObserver
    {
    public:
        Watcher(EventLog& log, std::vector<IDriver*>& seen)
            : RecordingObserver(log, "watcher"), seen_(seen)
        {}
        void onDriverRemoved(Event& event) override
        {
            seen_.push_back(static_cast<IDriverRepository::EvDriver&>(event).driver.get());
        }

    private:
        std::vector<IDriver*>& seen_;
    };
    Watcher watcher(log_, seen);
    repository().addDriverRepositoryObserver(error_, "watcher", TOVA_UUID::INVALID(),
                                             TOVA_UUID::INVALID(), "", 1, false, false, &watcher);
    add("fxs 1");
    const TYPtr<TestDriver> other(new TestDriver("fxs 1"));
    repository().removeDriver(other.get());
    EXPECT_EQ((std::vector<IDriver*>{&driver("fxs 1")}), seen);
    unlisten("watcher");
}

TEST_F(RemoveDriver, ByName)
{
    listen("a", 1);
    add("fxs 1");
    forget();
    repository().removeDriver(String("fxs 1"));
    EXPECT_EQ("", drivers());
    EXPECT_EQ("a: removed fxs 1\n", heard());
    EXPECT_EQ("<7> DrvRepo: Remove driver 'fxs 1'\n"
              "<7> DrvRepo:   fxs 1: Notify listener 'a': onDriverRemoved()\n",
              lines());
    EXPECT_EQ(nullptr, driver("fxs 1").getDriverRepository());
    EXPECT_EQ(1, driver("fxs 1").references());
}

TEST_F(RemoveDriver, ByUnknownNameDoesNothing)
{
    add("fxs 1");
    forget();
    remove("fxs 11");
    remove("fxs");
    remove("");
    EXPECT_EQ("fxs 1", drivers());
    EXPECT_EQ("", lines());
}

TEST_F(RemoveDriver, ByTheNameThatTheDriverItselfHolds)
{
    auto* const last = new TestDriver("fxs 1");
    ASSERT_EQ(0, repository().addDriver(error_, last).code());
    String const& name = last->getDriverName();
    last->release(); // the repository's reference is the last one
    const int before = TestDriver::living();
    repository().removeDriver(name);
    EXPECT_EQ(before - 1, TestDriver::living());
    EXPECT_EQ("", drivers());
}

TEST_F(RemoveDriver, TheLastReferenceGoesLast)
{
    auto* const last = new TestDriver("fxs 1");
    ASSERT_EQ(0, repository().addDriver(error_, last).code());
    last->release();
    const int before = TestDriver::living();
    listen("a", 1);
    observer("a").then = [&](std::string const&) { EXPECT_EQ(before, TestDriver::living()); };
    forget();
    repository().removeDriver(last);
    EXPECT_EQ("a: removed fxs 1\n", heard());
    EXPECT_EQ(before - 1, TestDriver::living());
}

/// Counts the calls that come through its own virtual operations.
class Overriding : public TestRepository
{
public:
    using CDriverRepository::removeDriver;
    using TestRepository::TestRepository;

    XCode getDriver(String const& name, IDriver** driver) override
    {
        calls += "getDriver ";
        return TestRepository::getDriver(name, driver);
    }
    void removeDriver(IDriver* driver) override
    {
        calls += "removeDriver ";
        TestRepository::removeDriver(driver);
    }

    std::string calls;
};

TEST(RemoveDriverByName, GoesThroughTheRepositorysOwnOperations)
{
    TYEventLoop loop;
    const TYPtr<Overriding> repository(new Overriding(loop));
    const TYPtr<TestDriver> driver(new TestDriver("fxs 1"));
    String error;
    repository.get()->addDriver(error, driver.get());
    repository.get()->removeDriver(String("fxs 2"));
    EXPECT_EQ("getDriver ", repository.get()->calls);
    repository.get()->calls.clear();
    repository.get()->removeDriver(String("fxs 1"));
    EXPECT_EQ("getDriver removeDriver ", repository.get()->calls);
    EXPECT_EQ(1, driver.get()->references());
}

TEST_F(GetDriver, GivesOneWithAReference)
{
    add("fxs 1");
    add("fxs 2");
    lines();
    IDriver* found = nullptr;
    EXPECT_EQ(0, repository().getDriver("fxs 2", &found).code());
    ASSERT_EQ(&driver("fxs 2"), found);
    EXPECT_EQ(3, driver("fxs 2").references());
    EXPECT_EQ(2, driver("fxs 1").references());
    found->release();
    EXPECT_EQ("", lines());
}

TEST_F(GetDriver, GivesNullForAnUnknownName)
{
    add("fxs 1");
    lines();
    for (char const* name : {"fxs 2", "fxs", "fxs 11", "", "FXS 1"}) {
        IDriver* found = &driver("fxs 1");
        EXPECT_EQ(-1, repository().getDriver(name, &found).code()) << name;
        EXPECT_EQ(nullptr, found) << name;
    }
    EXPECT_EQ(2, driver("fxs 1").references());
    EXPECT_EQ("", lines());
}

TEST_F(GetDriver, MayBeAskedForTheCodeAlone)
{
    add("fxs 1");
    EXPECT_EQ(0, repository().getDriver("fxs 1", nullptr).code());
    EXPECT_EQ(-1, repository().getDriver("fxs 2", nullptr).code());
    EXPECT_EQ(2, driver("fxs 1").references());
}

} // namespace
