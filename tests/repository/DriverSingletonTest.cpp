#include <atomic>
#include <thread>
#include <vector>

#include <drvrepo/DRIVER.h>

#include <support/RepositoryFixture.h>

namespace
{

// The process's repository is shared by all tests of this program: they leave it empty.

TEST(DriverSingleton, IsOneOnTheProcessWideLoop)
{
    DRIVER& instance = DRIVER::INSTANCE();
    EXPECT_EQ(&instance, &DRIVER::INSTANCE());
    ASSERT_TRUE(instance);
    EXPECT_EQ(&CRIT::INSTANCE(), &instance->eventLoop());
    EXPECT_EQ(CRIT::INSTANCE().lock(), instance.get()->getLock());
}

TEST(DriverSingleton, HoldsOneReference)
{
    DRIVER& instance = DRIVER::INSTANCE();
    IDriverRepository* const repository = instance.get();
    const TYPtr<IDriverRepository> kept = TYPtr<IDriverRepository>::share(repository);
    String error;
    const TYPtr<TestDriver> driver(new TestDriver("fxs 1"));
    EXPECT_EQ(0, instance->addDriver(error, driver.get()).code());
    EXPECT_EQ(repository, driver.get()->getDriverRepository());
    EXPECT_EQ(&CRIT::INSTANCE(), &driver.get()->eventLoop());
    instance->removeDriver(driver.get());
    EXPECT_EQ(repository, instance.get());
}

TEST(DriverSingleton, IsTheSameFromEveryThread)
{
    std::vector<DRIVER*> seen(8);
    std::vector<std::thread> threads;
    for (DRIVER*& place : seen)
        threads.emplace_back([&place] { place = &DRIVER::INSTANCE(); });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(std::vector<DRIVER*>(8, &DRIVER::INSTANCE()), seen);
}

/// Writes into a log when it is taken and given back.
class LoggingLock : public Lock
{
public:
    explicit LoggingLock(EventLog& log) : log_(log) {}
    XCode lock() override
    {
        log_.add("lock", "taken");
        return XCode(-1); // callers go on whatever it says
    }
    void unlock() override { log_.add("lock", "given back"); }

private:
    EventLog& log_;
};

/// A repository with a lock of its own.
class LockedRepository : public TestRepository
{
public:
    LockedRepository(TYEventLoop& loop, EventLog& log) : TestRepository(loop), lock_(log) {}
    Lock* getLock() override { return &lock_; }

private:
    LoggingLock lock_;
};

TEST(LockedAccess, HoldsTheRepositorysLockForACall)
{
    TYEventLoop loop;
    EventLog log;
    const TYPPtr<IDriverRepository> repository(new LockedRepository(loop, log));
    const TYPtr<TestDriver> driver(new TestDriver("fxs 1"));
    RecordingObserver observer(log, "a");
    String error;
    repository->addDriverRepositoryObserver(error, "a", TOVA_UUID::INVALID(), TOVA_UUID::INVALID(),
                                            "", 1, false, false, &observer);
    log.take();
    repository->addDriver(error, driver.get());
    EXPECT_EQ("lock: taken\na: added fxs 1\nlock: given back\n", log.take());
    (*repository).removeDriver(driver.get());
    EXPECT_EQ("a: removed fxs 1\n", log.take());
    observer.then = [](std::string const&) { throw 1; };
    EXPECT_THROW(repository->addDriver(error, driver.get()), int);
    EXPECT_EQ("lock: taken\na: added fxs 1\nlock: given back\n", log.take());
    observer.then = nullptr;
    repository.get()->removeDriverRepositoryObserver("a");
}

TEST(LockedAccess, KeepsOtherThreadsOutOfTheProcesssRepository)
{
    DRIVER& instance = DRIVER::INSTANCE();
    EventLog log;
    RecordingObserver observer(log, "a");
    String error;
    instance->addDriverRepositoryObserver(error, "a", TOVA_UUID::INVALID(), TOVA_UUID::INVALID(),
                                          "", 1, false, false, &observer);
    std::thread other;
    std::atomic<bool> coming{false};
    observer.then = [&](std::string const& what) {
        if (what != "added fxs 1")
            return;
        other = std::thread([&] {
            coming = true;
            const LockScope scope(CRIT::INSTANCE().lock());
            log.add("other", "is in");
        });
        while (!coming)
            std::this_thread::yield();
        for (int i = 0; i < 1000; ++i)
            std::this_thread::yield(); // time enough to come in, if nothing kept it out
        log.add("a", "is done");
    };
    const TYPtr<TestDriver> driver(new TestDriver("fxs 1"));
    instance->addDriver(error, driver.get());
    other.join();
    EXPECT_EQ("a: added fxs 1\na: is done\nother: is in\n", log.take());
    instance->removeDriver(driver.get());
    instance->removeDriverRepositoryObserver("a");
}

} // namespace
