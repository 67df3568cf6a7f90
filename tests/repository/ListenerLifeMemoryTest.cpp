#include <cstdlib>

#include <support/Allocations.h>
#include <support/RepositoryFixture.h>

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define SANITIZED
#endif
#endif

#ifdef SANITIZED
// Freed memory is to be used again at once, as it is without the sanitizer: that a new listener
// stands where an old one stood is what is tested here.
extern "C" char const* __asan_default_options();
extern "C" char const* __asan_default_options()
{
    return "quarantine_size_mb=0:thread_local_quarantine_size_kb=0";
}
#endif

namespace
{

/// How often a listener comes and goes; the variable DRVREPO_ROUNDS says it for longer runs.
int rounds()
{
    char const* const wanted = std::getenv("DRVREPO_ROUNDS");
    return wanted != nullptr ? std::atoi(wanted) : 10000;
}

// The entries of a listener go with it. If they stayed in the drivers' lists, the lists would grow
// for ever, and the next listener at that address would take them for its own.
class ListenerLife : public RepositoryFixture
{
protected:
    ListenerLife() { MON_DRV = nullptr; }

    void furnish(int drivers)
    {
        for (int i = 0; i < drivers; ++i) {
            const std::string name = "fxs " + std::to_string(i);
            add(name);
            attach(name, "slot", "1");
        }
    }
    /// Fails unless the next call of a registration under `name` hears all of driver "fxs 0".
    void expectToHearEverything(char const* name, unsigned priority)
    {
        heard();
        const std::string who = std::string(name) + ": ";
        listen(name, priority, Terms().snapshot());
        ASSERT_EQ(who + "added fxs 0\n" + who + "set fxs 0 slot=1\n", heard());
        attach("fxs 0", "port", "2");
        attach("fxs 0", "port", "");
        ASSERT_EQ(who + "set fxs 0 port=2\n" + who + "cleared fxs 0 port=2\n", heard());
        unlisten(name);
        ASSERT_EQ(who + "cleared fxs 0 slot=1\n" + who + "removed fxs 0\n", heard());
    }
};

/// Hears nothing, so that nothing but the repository asks for memory.
class Silent : public IDriverRepositoryObserver
{
public:
    XCode onDriverAdded(String& error, ObserverEvent<IDriverRepository>&) override
    {
        ++told;
        if (told % 100 != refuseAt)
            return XCode();
        error = reason;
        return XCode(-1);
    }
    void onDriverRemoved(ObserverEvent<IDriverRepository>&) override { --told; }
    XCode onDriverAttachmentSet(String&, ObserverEvent<IDriverRepository>&) override
    {
        return XCode();
    }
    void onDriverAttachmentCleared(ObserverEvent<IDriverRepository>&) override {}

    const String reason = "no";
    int told = 0;
    int refuseAt = -1;
};

TEST_F(ListenerLife, ComingsAndGoingsLeaveNothingBehind)
{
    furnish(100);
    Silent observer;
    const TYPtr<TestDelegate> delegate(new TestDelegate(&observer));
    const String name("a");
    const TOVA_UUID any;
    const String everything;
    const auto comeAndGo = [&](unsigned priority) {
        const bool veto = false;
        const bool snapshot = true;
        ASSERT_EQ(0, repository()
                         .addDriverRepositoryObserver(error_, name, any, any, everything, priority,
                                                      veto, snapshot, delegate.get())
                         .code());
        ASSERT_EQ(100, observer.told);
        repository().removeDriverRepositoryObserver(name);
        ASSERT_EQ(0, observer.told);
    };
    comeAndGo(0);
    const std::int64_t before = allocations::living();
    const int count = rounds();
    for (int round = 0; round < count && !HasFailure(); ++round)
        comeAndGo(static_cast<unsigned>(round % 3));
    EXPECT_EQ(before, allocations::living());
}

TEST_F(ListenerLife, WrappedObserversDelegateGoesWithIt)
{
    Silent silent;
    const String name("a");
    const TOVA_UUID any;
    const std::int64_t before = allocations::living();
    repository().addDriverRepositoryObserver(error_, name, any, any, "", 1, false, false, &silent);
    EXPECT_LT(before, allocations::living());
    repository().removeDriverRepositoryObserver(name);
    EXPECT_EQ(before, allocations::living());
}

TEST_F(ListenerLife, RefusedRegistrationsLeaveNothingBehind)
{
    furnish(100);
    Silent observer;
    observer.refuseAt = 50;
    const TYPtr<TestDelegate> delegate(new TestDelegate(&observer));
    const String name("a");
    const TOVA_UUID any;
    const String everything;
    std::int64_t before = 0;
    for (int round = 0; round < 1000; ++round) {
        const bool veto = true;
        const bool snapshot = true;
        observer.told = 0;
        ASSERT_EQ(-1, repository()
                          .addDriverRepositoryObserver(error_, name, any, any, everything, 1, veto,
                                                       snapshot, delegate.get())
                          .code());
        ASSERT_EQ(1, observer.told) << "all but the refused coming were taken back";
        if (round == 0)
            before = allocations::living();
    }
    EXPECT_EQ(before, allocations::living());
    EXPECT_EQ(1, delegate.get()->references());
}

TEST_F(ListenerLife, DriversThatComeAndGoLeaveNothingBehind)
{
    Silent observer;
    const TYPtr<TestDelegate> delegate(new TestDelegate(&observer));
    const TOVA_UUID any;
    for (int i = 0; i < 100; ++i)
        repository().addDriverRepositoryObserver(error_, String().format("%d", i), any, any, "",
                                                 static_cast<unsigned>(i % 3), false, true,
                                                 delegate.get());
    const TYPtr<CDriver> fxs(new CDriver(IDriver::DID_UNKNOWN(), "fxs 1"));
    std::int64_t before = 0;
    for (int round = 0; round < 1000; ++round) {
        ASSERT_EQ(0, repository().addDriver(error_, fxs.get()).code());
        ASSERT_EQ(100, observer.told);
        repository().removeDriver(fxs.get());
        ASSERT_EQ(0, observer.told);
        if (round == 0)
            before = allocations::living();
    }
    EXPECT_EQ(before, allocations::living());
    for (int i = 0; i < 100; ++i)
        repository().removeDriverRepositoryObserver(String().format("%d", i));
}

TEST_F(ListenerLife, NewListenerHearsEverythingWhereverItStands)
{
    furnish(1);
    for (int round = 0; round < 1000 && !HasFailure(); ++round)
        expectToHearEverything(round % 2 == 0 ? "a" : "b", static_cast<unsigned>(round % 5));
}

TEST_F(ListenerLife, NewListenerHearsEverythingAfterARefusedOne)
{
    furnish(1);
    observer("refuser").refuse("set", "no");
    for (int round = 0; round < 1000 && !HasFailure(); ++round) {
        ASSERT_EQ(-1, listen("refuser", 1, Terms().veto().snapshot()).code());
        expectToHearEverything("a", 2);
    }
}

TEST_F(ListenerLife, NewListenerStandsAtItsOwnPlace)
{
    furnish(1);
    listen("3", 3);
    for (unsigned round = 0; round < 1000; ++round) {
        const unsigned priority = round % 2 == 0 ? 1 : 5;
        heard();
        listen("a", priority);
        heard();
        attach("fxs 0", "port", round % 4 < 2 ? "x" : "");
        const std::string what =
            round % 4 < 2 ? ": set fxs 0 port=x\n" : ": cleared fxs 0 port=x\n";
        const bool first = (priority < 3) == (round % 4 < 2);
        const std::string story = round % 2 == 1 ? ""
                                  : first        ? "a" + what + "3" + what
                                                 : "3" + what + "a" + what;
        ASSERT_EQ(story, heard()) << round;
        unlisten("a");
    }
}

TEST_F(ListenerLife, NewListenerHearsEverythingAfterOneThatLeftFromInside)
{
    furnish(2);
    observer("leaver").then = [&](std::string const& what) {
        if (what == "added fxs 1")
            unlisten("leaver");
    };
    std::int64_t before = 0;
    for (int round = 0; round < 1000 && !HasFailure(); ++round) {
        EXPECT_EQ(-1, listen("leaver", 1, Terms().snapshot()).code());
        heard();
        listen("a", 1, Terms().snapshot());
        ASSERT_EQ("a: added fxs 0\na: set fxs 0 slot=1\na: added fxs 1\na: set fxs 1 slot=1\n",
                  heard());
        unlisten("a");
        heard();
        if (round == 9)
            before = allocations::living();
    }
    EXPECT_EQ(before, allocations::living());
}

TEST_F(ListenerLife, NewDriverIsHeardOfWhereverItsRecordStands)
{
    listen("a", 1, Terms().snapshot());
    for (int round = 0; round < 1000; ++round) {
        const std::string name = round % 2 == 0 ? "fxs 1" : "fxs 2";
        heard();
        add(name);
        attach(name, "slot", "1");
        remove(name);
        ASSERT_EQ("a: added " + name + "\na: set " + name + " slot=1\na: cleared " + name +
                      " slot=1\na: removed " + name + "\n",
                  heard());
    }
}

} // namespace
