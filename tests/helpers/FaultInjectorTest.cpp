#include <drvrepo/ScopedListener.h>
#include <drvrepo/testkit/FaultInjector.h>

#include <support/RepositoryFixture.h>

namespace
{

class FaultInjectorTest : public RepositoryFixture
{
protected:
    /// Registers the injector behind the others.
    ScopedListener inject(FaultInjector& injector)
    {
        ScopedListener scope;
        const ListenerTerms last = ListenerTerms().priority(4294967295u).veto().snapshot();
        EXPECT_EQ(0, scope.start(error_, repository(), "injector", last, injector).code());
        return scope;
    }
};

TEST_F(FaultInjectorTest, RefusesTheNthQuestion)
{
    FaultInjector injector;
    const ScopedListener injected = inject(injector);
    listen("a", 1);
    injector.arm(3);
    EXPECT_EQ(0, add("fxs 1").code());
    EXPECT_EQ(0, attach("fxs 1", "k", "1").code());
    EXPECT_EQ(0, attach("fxs 1", "k", "").code()) << "can't be refused, and isn't counted";
    EXPECT_EQ(2u, injector.count());
    EXPECT_FALSE(injector.struck());
    forget();
    EXPECT_EQ(FaultInjector::CODE, attach("fxs 1", "k", "2").code());
    EXPECT_EQ("injected", error());
    EXPECT_EQ("a: set fxs 1 k=2\na: cleared fxs 1 k=2\n", heard()) << "the others roll back";
    EXPECT_TRUE(injector.struck());
    EXPECT_EQ(0, attach("fxs 1", "k", "3").code()) << "strikes once";
    EXPECT_TRUE(injector.struck());
}

TEST_F(FaultInjectorTest, ThrowsAtTheNthOfAll)
{
    FaultInjector injector(FaultInjector::THROW);
    const ScopedListener injected = inject(injector);
    add("fxs 1");
    attach("fxs 1", "k", "1");
    injector.arm(1);
    try {
        attach("fxs 1", "k", "");
        FAIL() << "nothing was thrown";
    } catch (FaultInjector::Thrown const& thrown) {
        EXPECT_STREQ("injected", thrown.what());
    }
    injector.arm(1);
    EXPECT_THROW(add("fxs 2"), FaultInjector::Thrown);
    EXPECT_EQ("injected", error()) << "it is logged like a refusal";
    EXPECT_EQ("fxs 1", drivers());
}

TEST_F(FaultInjectorTest, UnarmedItAccepts)
{
    FaultInjector injector;
    const ScopedListener injected = inject(injector);
    EXPECT_EQ(0, add("fxs 1").code());
    EXPECT_EQ(1u, injector.count());
    EXPECT_FALSE(injector.struck());
}

TEST_F(FaultInjectorTest, StandsBeforeAnObserver)
{
    FaultInjector injector(FaultInjector::REFUSE, &observer("x"));
    const ScopedListener injected = inject(injector);
    observer("x").refuse("set fxs 1 k=no", "own reason", -5);
    injector.arm(4);
    add("fxs 1");
    attach("fxs 1", "k", "1");
    EXPECT_EQ(-5, attach("fxs 1", "k", "no").code()) << "an answer of its own";
    EXPECT_EQ("own reason", error());
    EXPECT_EQ(FaultInjector::CODE, attach("fxs 1", "k", "3").code());
    remove("fxs 1");
    EXPECT_EQ("x: added fxs 1\nx: set fxs 1 k=1\nx: cleared fxs 1 k=1\nx: refused fxs 1 k=no\n"
              "x: removed fxs 1\n",
              heard());
}

TEST_F(FaultInjectorTest, StrikesEachInTurn)
{
    listen("a", 1);
    FaultInjector injector;
    std::string left;
    const unsigned strikes = injector.strikeEach([&] {
        const ScopedListener injected = inject(injector);
        add("fxs 1");
        attach("fxs 1", "k", "1");
        left += drivers() + " k=" + attachment("fxs 1", "k") + ";";
        remove("fxs 1");
    });
    EXPECT_EQ(2u, strikes);
    EXPECT_EQ(" k=;fxs 1 k=;fxs 1 k=1;", left);
}

TEST_F(FaultInjectorTest, ThrowsAtEachInTurn)
{
    FaultInjector injector(FaultInjector::THROW);
    int thrown = 0;
    const auto tried = [&](auto step) {
        try {
            step();
        } catch (FaultInjector::Thrown const&) {
            ++thrown;
        }
    };
    const ScopedListener injected = inject(injector);
    const unsigned strikes = injector.strikeEach([&] {
        tried([&] { add("fxs 1"); });
        tried([&] { attach("fxs 1", "k", "1"); });
        tried([&] { attach("fxs 1", "k", ""); });
        tried([&] { remove("fxs 1"); });
        EXPECT_EQ("", drivers());
    });
    EXPECT_EQ(4u, strikes);
    EXPECT_EQ(4, thrown);
}

} // namespace
