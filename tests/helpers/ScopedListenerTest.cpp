#include <drvrepo/ScopedListener.h>

#include <support/RepositoryFixture.h>

namespace
{

class ScopedListenerTest : public RepositoryFixture
{
protected:
    XCode start(ScopedListener& listener, char const* name = "scoped")
    {
        return listener.start(error_, repository(), name, ListenerTerms(), observer("x"));
    }
};

TEST_F(ScopedListenerTest, ListensUntilTheScopeEndsAndHearsNoFarewell)
{
    add("fxs 1");
    {
        ScopedListener listener;
        EXPECT_FALSE(listener.isListening());
        EXPECT_EQ(0, start(listener).code());
        EXPECT_TRUE(listener.isListening());
        EXPECT_EQ("scoped", listeners());
        EXPECT_EQ("x: added fxs 1\n", heard());
        forget();
    }
    EXPECT_EQ("", listeners());
    EXPECT_EQ("", heard());
    EXPECT_EQ("<7> DrvRepo: Remove listener 'scoped'\n"
              "<7> DrvRepo:   fxs 1: Notify listener 'scoped': onDriverRemoved()\n",
              lines())
        << "told, but swallowed";
}

TEST_F(ScopedListenerTest, LeavesWithFarewellsIfAsked)
{
    add("fxs 1");
    ScopedListener listener;
    start(listener);
    forget();
    listener.leave();
    EXPECT_FALSE(listener.isListening());
    EXPECT_EQ("x: removed fxs 1\n", heard());
    listener.leave();
    listener.stop();
    EXPECT_EQ("", heard());
}

TEST_F(ScopedListenerTest, TermsCount)
{
    ScopedListener listener;
    listener.start(error_, repository(), "scoped", ListenerTerms().prefix("fxs").veto(),
                   observer("x"));
    observer("x").refuse("added fxs 2", "full");
    EXPECT_EQ(0, add("e1t1 1").code());
    EXPECT_EQ(-1, add("fxs 2").code());
    EXPECT_EQ("x: refused fxs 2\n", heard());
}

TEST_F(ScopedListenerTest, FailedRegistrationLeavesTheOtherAlone)
{
    listen("scoped", 1);
    {
        ScopedListener listener;
        EXPECT_EQ(-1, start(listener).code());
        EXPECT_EQ("Driver repository observer 'scoped' already exists", error());
        EXPECT_FALSE(listener.isListening());
    }
    EXPECT_EQ("scoped", listeners());
    EXPECT_EQ(1, repository().references());
}

TEST_F(ScopedListenerTest, RefusedRegistrationIsNone)
{
    add("fxs 1");
    observer("x").refuse("added", "no");
    ScopedListener listener;
    EXPECT_EQ(-1,
              listener.start(error_, repository(), "scoped", ListenerTerms().veto(), observer("x"))
                  .code());
    EXPECT_EQ("no", error());
    EXPECT_FALSE(listener.isListening());
    EXPECT_EQ("", listeners());
}

TEST_F(ScopedListenerTest, StartingAgainEndsTheFirst)
{
    ScopedListener listener;
    start(listener, "one");
    start(listener, "two");
    EXPECT_EQ("two", listeners());
    EXPECT_EQ(0, start(listener, "two").code()) << "its own name is free then";
    EXPECT_EQ("two", listeners());
}

TEST_F(ScopedListenerTest, MovesWithItsRegistration)
{
    ScopedListener first;
    start(first, "one");
    ScopedListener second(std::move(first));
    EXPECT_TRUE(second.isListening());
    ScopedListener third;
    start(third, "three");
    third = std::move(second);
    EXPECT_EQ("one", listeners());
    ScopedListener& itself = third;
    third = std::move(itself);
    EXPECT_EQ("one", listeners());
    third = ScopedListener();
    EXPECT_EQ("", listeners());
}

TEST_F(ScopedListenerTest, RemovedByAnotherItStopsAllTheSame)
{
    ScopedListener listener;
    start(listener);
    unlisten("scoped");
    listener.stop();
    EXPECT_EQ("", listeners());
    EXPECT_FALSE(listener.isListening());
}

/// Counts its lives.
class Counted : public RecordingObserver
{
public:
    Counted(EventLog& log, int& living) : RecordingObserver(log, "owned"), living_(living)
    {
        ++living_;
    }
    ~Counted() override { --living_; }

private:
    int& living_;
};

TEST_F(ScopedListenerTest, OwnsAnObserverThatIsGivenForGood)
{
    int living = 0;
    add("fxs 1");
    {
        ScopedListener listener;
        EXPECT_EQ(0, listener
                         .start(error_, repository(), "scoped", ListenerTerms(),
                                std::make_unique<Counted>(log_, living))
                         .code());
        EXPECT_EQ("owned: added fxs 1\n", heard());
        EXPECT_EQ(1, living);
        EXPECT_EQ(-1,
                  listener
                      .start(error_, repository(), "scoped", ListenerTerms().veto(),
                             ObserverFunctions().added(
                                 [](String&, IDriverRepository::EvDriver const&) { return -1; }))
                      .code());
        EXPECT_EQ(0, living);
        listener.start(error_, repository(), "scoped", ListenerTerms(),
                       std::make_unique<Counted>(log_, living));
        EXPECT_EQ(1, living);
    }
    EXPECT_EQ(0, living);
}

TEST_F(ScopedListenerTest, EndsInsideItsOwnCall)
{
    int living = 0;
    auto owned = std::make_unique<Counted>(log_, living);
    Counted& watcher = *owned;
    auto listener = std::make_unique<ScopedListener>();
    ScopedListener* const started = listener.get();
    watcher.then = [&, copy = std::string("captured")](std::string const&) {
        listener.reset();
        EXPECT_EQ(1, living) << "whoever is being called lives on";
        EXPECT_EQ("captured", copy);
    };
    add("fxs 1");
    EXPECT_EQ(
        -1,
        started->start(error_, repository(), "scoped", ListenerTerms(), std::move(owned)).code());
    EXPECT_EQ("Driver repository observer 'scoped' does not exist", error());
    EXPECT_EQ("", listeners());
    EXPECT_EQ(0, living);
    EXPECT_EQ("owned: added fxs 1\n", heard());
}

TEST_F(ScopedListenerTest, EndsInsideALaterCall)
{
    int living = 0;
    auto owned = std::make_unique<Counted>(log_, living);
    Counted& watcher = *owned;
    auto listener = std::make_unique<ScopedListener>();
    listener->start(error_, repository(), "scoped", ListenerTerms(), std::move(owned));
    watcher.then = [&](std::string const&) { listener.reset(); };
    add("fxs 1");
    EXPECT_EQ("", listeners());
    EXPECT_EQ(0, living);
    add("fxs 2");
    EXPECT_EQ("owned: added fxs 1\n", heard());
}

TEST_F(ScopedListenerTest, MovesInsideTheRegistration)
{
    add("fxs 1");
    auto listener = std::make_unique<ScopedListener>();
    ScopedListener* const started = listener.get();
    ScopedListener heir;
    observer("x").then = [&](std::string const&) {
        heir = std::move(*listener);
        listener.reset();
    };
    EXPECT_EQ(
        0, started->start(error_, repository(), "scoped", ListenerTerms(), observer("x")).code());
    observer("x").then = nullptr;
    EXPECT_TRUE(heir.isListening());
    EXPECT_EQ("scoped", listeners());
    heir.stop();
    EXPECT_EQ("", listeners());
}

TEST_F(ScopedListenerTest, AnExceptionOutOfTheRegistrationLeavesNone)
{
    add("fxs 1");
    observer("x").then = [](std::string const&) { throw std::runtime_error("x"); };
    ScopedListener listener;
    EXPECT_THROW(start(listener), std::runtime_error);
    EXPECT_FALSE(listener.isListening());
    EXPECT_EQ("", listeners());
    listen("scoped", 1);
    listener.stop();
    EXPECT_EQ("scoped", listeners());
}

TEST_F(ScopedListenerTest, KeepsTheRepository)
{
    ScopedListener listener;
    {
        const TYPtr<TestRepository> other(new TestRepository(loop_));
        listener.start(error_, *other, "scoped", ListenerTerms(), observer("x"));
        EXPECT_EQ(2, (*other).references());
    }
    EXPECT_EQ(2, TestRepository::living());
    listener.stop();
    EXPECT_EQ(1, TestRepository::living());
}

} // namespace
