#include <drvrepo/ScopedDriver.h>

#include <support/RepositoryFixture.h>

namespace
{

class ScopedDriverTest : public RepositoryFixture
{
protected:
    XCode enter(ScopedDriver& scoped, char const* name)
    {
        return scoped.add(error_, repository(), driver(name));
    }
};

TEST_F(ScopedDriverTest, IsInUntilTheScopeEnds)
{
    listen("a", 1);
    {
        ScopedDriver scoped;
        EXPECT_EQ(nullptr, scoped.driver());
        EXPECT_EQ(0, enter(scoped, "fxs 1").code());
        EXPECT_EQ(&driver("fxs 1"), scoped.driver());
        EXPECT_EQ("a: added fxs 1\n", heard());
    }
    EXPECT_EQ("a: removed fxs 1\n", heard());
    EXPECT_EQ("", drivers());
    EXPECT_EQ(1, driver("fxs 1").references());
    EXPECT_EQ(1, repository().references());
}

TEST_F(ScopedDriverTest, RefusedDriverIsNotHeld)
{
    refuse("a", 1, "no");
    ScopedDriver scoped;
    EXPECT_EQ(-1, enter(scoped, "fxs 1").code());
    EXPECT_EQ("no", error());
    EXPECT_EQ(nullptr, scoped.driver());
}

TEST_F(ScopedDriverTest, LeavesAnotherDriverOfTheNameAlone)
{
    ScopedDriver scoped;
    enter(scoped, "fxs 1");
    remove("fxs 1");
    const TYPtr<TestDriver> other(new TestDriver("fxs 1"));
    repository().addDriver(error_, other.get());
    scoped.remove();
    EXPECT_EQ("fxs 1", drivers());
    ScopedDriver late;
    EXPECT_EQ(-1, enter(late, "fxs 1").code());
    late.remove();
    EXPECT_EQ("fxs 1", drivers());
    repository().removeDriver(other.get());
    EXPECT_EQ(1, other.get()->references());
}

TEST_F(ScopedDriverTest, AddingAgainRemovesTheFirst)
{
    ScopedDriver scoped;
    enter(scoped, "fxs 1");
    enter(scoped, "fxs 2");
    EXPECT_EQ("fxs 2", drivers());
    EXPECT_EQ(0, enter(scoped, "fxs 2").code());
    EXPECT_EQ("fxs 2", drivers());
}

TEST_F(ScopedDriverTest, MovesWithItsDriver)
{
    ScopedDriver first;
    enter(first, "fxs 1");
    ScopedDriver second(std::move(first));
    ScopedDriver third;
    enter(third, "fxs 3");
    third = std::move(second);
    EXPECT_EQ("fxs 1", drivers());
    EXPECT_EQ(&driver("fxs 1"), third.driver());
    ScopedDriver& itself = third;
    third = std::move(itself);
    EXPECT_EQ("fxs 1", drivers());
    third = ScopedDriver();
    EXPECT_EQ("", drivers());
}

TEST_F(ScopedDriverTest, EndsInsideItsOwnAddition)
{
    auto scoped = std::make_unique<ScopedDriver>();
    ScopedDriver* const adding = scoped.get();
    listen("a", 1);
    observer("a").then = [&](std::string const&) { scoped.reset(); };
    EXPECT_EQ(-1, enter(*adding, "fxs 1").code());
    EXPECT_EQ("Driver 'fxs 1' does not exist", error());
    EXPECT_EQ("a: added fxs 1\na: removed fxs 1\n", heard());
    EXPECT_EQ("", drivers());
}

TEST_F(ScopedDriverTest, AnExceptionOutOfTheAdditionLeavesNone)
{
    listen("a", 1);
    observer("a").then = [](std::string const&) { throw std::runtime_error("x"); };
    ScopedDriver scoped;
    EXPECT_THROW(enter(scoped, "fxs 1"), std::runtime_error);
    EXPECT_EQ(nullptr, scoped.driver());
    observer("a").then = nullptr;
    add("fxs 1");
    scoped.remove();
    EXPECT_EQ("fxs 1", drivers()) << "that one was added by another";
}

TEST_F(ScopedDriverTest, KeepsTheRepositoryAndTheDriver)
{
    ScopedDriver scoped;
    {
        const TYPtr<TestRepository> other(new TestRepository(loop_));
        const TYPtr<TestDriver> own(new TestDriver("fxs 9"));
        scoped.add(error_, *other, *own);
    }
    EXPECT_EQ(2, TestRepository::living());
    EXPECT_EQ(1, TestDriver::living());
    EXPECT_STREQ("fxs 9", scoped.driver()->getDriverName().cString());
    scoped.remove();
    EXPECT_EQ(1, TestRepository::living());
    EXPECT_EQ(0, TestDriver::living());
}

} // namespace
