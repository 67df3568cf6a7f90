#include <support/RepositoryFixture.h>

namespace
{

using AddDriver = RepositoryFixture;

TEST_F(AddDriver, WithoutListenersJustEntersIt)
{
    error_ = "left over";
    EXPECT_EQ(0, add("fxs 1").code());
    EXPECT_EQ("", error());
    EXPECT_EQ("fxs 1", drivers());
    EXPECT_EQ(&repository(), driver("fxs 1").getDriverRepository());
    EXPECT_EQ(2, driver("fxs 1").references());
    EXPECT_EQ(1, repository().references());
    EXPECT_EQ("<7> DrvRepo: Add driver 'fxs 1'\n", lines());
}

TEST_F(AddDriver, RefusesNoDriverSilently)
{
    EXPECT_EQ(-1, repository().addDriver(error_, nullptr).code());
    EXPECT_EQ("No driver specified", error());
    EXPECT_EQ("", lines());
}

TEST_F(AddDriver, RefusesTheSameDriverTwiceSilently)
{
    listen("a", 1);
    add("fxs 1");
    forget();
    EXPECT_EQ(-1, add("fxs 1").code());
    EXPECT_EQ("Driver already exists (CDriverRepo): fxs 1", error());
    EXPECT_EQ("fxs 1", drivers());
    EXPECT_EQ(2, driver("fxs 1").references());
    EXPECT_EQ(1u, driver("fxs 1").calls().setDriverRepository);
    EXPECT_EQ("", heard());
    EXPECT_EQ("", lines());
}

TEST_F(AddDriver, RefusesAnotherDriverOfThatName)
{
    add("fxs 1");
    forget();
    const TYPtr<TestDriver> other(new TestDriver("fxs 1"));
    EXPECT_EQ(-1, repository().addDriver(error_, other.get()).code());
    EXPECT_EQ("Driver already exists (CDriverRepo): fxs 1", error());
    EXPECT_EQ(1, other.get()->references());
    EXPECT_EQ(nullptr, other.get()->getDriverRepository());
    EXPECT_EQ(&repository(), driver("fxs 1").getDriverRepository());
    EXPECT_EQ("", lines());
}

TEST_F(AddDriver, NamesAreComparedExactly)
{
    EXPECT_EQ(0, add("fxs 1").code());
    EXPECT_EQ(0, add("fxs 12").code());
    EXPECT_EQ(0, add("Fxs 1").code());
    EXPECT_EQ(0, add("fxs").code());
    EXPECT_EQ(0, add("").code());
    EXPECT_EQ("fxs 1, fxs 12, Fxs 1, fxs, ", drivers());
}

TEST_F(AddDriver, IsToldFrontToBack)
{
    listen("last", 4294967295u);
    listen("first", 0);
    listen("middle", 2147483648u); // above the greatest signed number
    listen("second", 1);
    add("fxs 1");
    EXPECT_EQ("first: added fxs 1\nsecond: added fxs 1\nmiddle: added fxs 1\nlast: added fxs 1\n",
              heard());
}

TEST_F(AddDriver, ThirdOfFourRefuses)
{
    listen("d", 1);
    listen("c", 2);
    refuse("b", 3, "line busy");
    listen("a", 4);
    forget();
    EXPECT_EQ(-1, add("fxs 1").code());
    EXPECT_EQ("d: added fxs 1\nc: added fxs 1\nb: refused fxs 1\n"
              "c: removed fxs 1\nd: removed fxs 1\n",
              heard());
    EXPECT_EQ("line busy", error());
    EXPECT_EQ("<7> DrvRepo: Add driver 'fxs 1'\n"
              "<7> DrvRepo:   fxs 1: Notify listener 'd' with right of veto: onDriverAdded()\n"
              "<7> DrvRepo:   fxs 1: Notify listener 'c' with right of veto: onDriverAdded()\n"
              "<7> DrvRepo:   fxs 1: Notify listener 'b' with right of veto: onDriverAdded()\n"
              "<3> DrvRepo:   fxs 1: NOTIFY LISTENER 'b' FAILED: line busy\n"
              "<7> DrvRepo:   fxs 1: Notify listener 'c': onDriverRemoved()\n"
              "<7> DrvRepo:   fxs 1: Notify listener 'd': onDriverRemoved()\n"
              "<3> DrvRepo: ADDING DRIVER 'fxs 1' FAILED: line busy\n",
              lines());
}

TEST_F(AddDriver, RefusedLeavesAllAsBefore)
{
    listen("a", 1, Terms().snapshot());
    refuse("b", 2, "line busy");
    EXPECT_EQ(-1, add("fxs 1").code());
    EXPECT_EQ("", drivers());
    EXPECT_EQ(nullptr, driver("fxs 1").getDriverRepository());
    EXPECT_EQ(2u, driver("fxs 1").calls().setDriverRepository);
    EXPECT_EQ(1, driver("fxs 1").references());
    EXPECT_EQ(1, repository().references());
    EXPECT_EQ(-1, repository().getDriver("fxs 1", nullptr).code());
    // The name is free again.
    observer("b").accept();
    forget();
    EXPECT_EQ(0, add("fxs 1").code());
    EXPECT_EQ("a: added fxs 1\nb: added fxs 1\n", heard());
}

TEST_F(AddDriver, ReturnsTheCodeOfTheRefusal)
{
    observer("a").refuse("added", "no room", 4711);
    listen("a", 1, Terms().veto());
    EXPECT_EQ(4711, add("fxs 1").code());
    EXPECT_EQ("no room", error());
}

TEST_F(AddDriver, RefusalWithoutATextKeepsWhatStoodThere)
{
    observer("a").refuse("added", "");
    listen("a", 1, Terms().veto());
    error_ = "left over";
    EXPECT_EQ(-1, add("fxs 1").code());
    EXPECT_EQ("left over", error());
    EXPECT_NE(std::string::npos,
              lines().find("<3> DrvRepo: ADDING DRIVER 'fxs 1' FAILED: left over"));
}

TEST_F(AddDriver, RefusalWithoutVetoIsIgnored)
{
    observer("a").refuse("added", "not me");
    listen("a", 1);
    listen("b", 2);
    forget();
    EXPECT_EQ(0, add("fxs 1").code());
    EXPECT_EQ("", error());
    EXPECT_EQ("a: refused fxs 1\nb: added fxs 1\n", heard());
    EXPECT_EQ("<7> DrvRepo: Add driver 'fxs 1'\n"
              "<7> DrvRepo:   fxs 1: Notify listener 'a' with right of veto: onDriverAdded()\n"
              "<7> DrvRepo:   fxs 1: Notify listener 'b' with right of veto: onDriverAdded()\n",
              lines());
}

TEST_F(AddDriver, ListenersThatDoNotMatchAreNotTold)
{
    listen("a", 1, Terms().prefix("bri"));
    refuse("b", 2, "line busy");
    listen("c", 3, Terms().prefix("fx"));
    add("fxs 1");
    EXPECT_EQ("b: refused fxs 1\n", heard());
    observer("b").accept();
    add("fxs 1");
    EXPECT_EQ("b: added fxs 1\nc: added fxs 1\n", heard());
}

/// Reports as its name a String that the test hands in as the error text as well.
class Careless : public TestDriver
{
public:
    explicit Careless(String& name) : TestDriver("unused"), name_(name) {}
    String const& getDriverName() const override { return name_; }

private:
    String& name_;
};

TEST_F(AddDriver, ErrorMayBeTheNameOfARefusedDriver)
{
    String name("fxs 1");
    const TYPtr<Careless> careless(new Careless(name));
    listen("a", 1);
    refuse("b", 2, "line busy");
    forget();
    EXPECT_EQ(-1, repository().addDriver(name, careless.get()).code());
    EXPECT_EQ("line busy", name);
    EXPECT_EQ("", drivers());
    observer("b").accept();
    EXPECT_EQ(0, add("fxs 1").code()) << "the name it came with is free again";
    EXPECT_EQ(1, careless.get()->references());
    EXPECT_NE(std::string::npos, lines().find("ADDING DRIVER 'fxs 1' FAILED: line busy\n"));
}

TEST_F(AddDriver, ErrorMayBeTheNameThatIsTaken)
{
    String name("fxs 1");
    const TYPtr<Careless> careless(new Careless(name));
    add("fxs 1");
    EXPECT_EQ(-1, repository().addDriver(name, careless.get()).code());
    EXPECT_EQ("Driver already exists (CDriverRepo): fxs 1", name);
    EXPECT_EQ(1, careless.get()->references());
}

} // namespace
