#include <gtest/gtest.h>

#include <utility/IInfo.h>

#include <drvrepo/IChannelGroup.h>
#include <drvrepo/Identifiers.h>
#include <drvrepo/testkit/TestDriver.h>

#include <support/TestRepository.h>

namespace
{

TEST(CDriver, StartsWithOneReference)
{
    IDriver* const driver = new TestDriver("fxs 2");
    EXPECT_EQ(1, TestDriver::living());
    driver->release();
    EXPECT_EQ(0, TestDriver::living());
}

TEST(CDriver, TheLastReleaseDeletesIt)
{
    IDriver* const driver = new TestDriver("fxs 2");
    driver->addRef();
    driver->addRef();
    driver->release();
    driver->release();
    EXPECT_EQ(1, TestDriver::living());
    driver->release();
    EXPECT_EQ(0, TestDriver::living());
}

TEST(CDriver, KeepsCopiesOfTypeAndName)
{
    TOVA_UUID did = TOVA_UUID::create(1, 2, 3, 4, "own type");
    String name("e1t1 0");
    const TOVA_UUID watcher(did);
    const String nameWatcher(name);
    {
        const TYPtr<CDriver> driver(new CDriver(did, name));
        EXPECT_EQ(3, watcher.data().references);
        EXPECT_EQ(3, nameWatcher.buffer()->references());
        did = TOVA_UUID::INVALID();
        name = "other";
        CDriver const& constant = *driver;
        EXPECT_EQ(&watcher.data(), &constant.getDID().data());
        EXPECT_STREQ("e1t1 0", constant.getDriverName().cString());
        EXPECT_EQ(&constant.getDID(), &constant.getDID());
        EXPECT_EQ(&constant.getDriverName(), &constant.getDriverName());
        EXPECT_EQ(2, watcher.data().references);
    }
    EXPECT_EQ(1, watcher.data().references);
    EXPECT_EQ(1, nameWatcher.buffer()->references());
}

TEST(CDriver, OutsideARepositoryHasNoLockAndTheProcessesLoop)
{
    const TYPtr<CDriver> driver(new CDriver(IDriver::DID_UNKNOWN(), "fxs 1"));
    EXPECT_EQ(nullptr, (*driver).getDriverRepository());
    EXPECT_EQ(nullptr, (*driver).getLock());
    EXPECT_EQ(&CRIT::INSTANCE(), &(*driver).eventLoop());
}

TEST(CDriver, BorrowsLockAndLoopFromItsRepository)
{
    TYEventLoop loop;
    TestRepository* const repository = new TestRepository(loop);
    const TYPtr<IDriverRepository> life(repository);
    CDriver* const driver = new CDriver(IDriver::DID_UNKNOWN(), "fxs 1");
    const TYPtr<IDriver> held(driver);
    driver->setDriverRepository(repository);
    EXPECT_EQ(repository, driver->getDriverRepository());
    EXPECT_EQ(loop.lock(), driver->getLock());
    EXPECT_EQ(&loop, &driver->eventLoop());
    EXPECT_EQ(1, repository->references());
    driver->setDriverRepository(nullptr);
    EXPECT_EQ(nullptr, driver->getDriverRepository());
    EXPECT_EQ(nullptr, driver->getLock());
    EXPECT_EQ(&CRIT::INSTANCE(), &driver->eventLoop());
    EXPECT_EQ(1, repository->references());
}

TEST(CDriver, AsksItsRepositoryVirtually)
{
    class Elsewhere : public TestRepository
    {
    public:
        Elsewhere(TYEventLoop& loop, TYEventLoop& other) : TestRepository(loop), other_(other) {}
        Lock* getLock() override { return other_.lock(); }
        TYEventLoop& eventLoop() override { return other_; }

    private:
        TYEventLoop& other_;
    };

    TYEventLoop loop;
    TYEventLoop other;
    Elsewhere* const repository = new Elsewhere(loop, other);
    const TYPtr<IDriverRepository> life(repository);
    CDriver* const driver = new CDriver(IDriver::DID_UNKNOWN(), "fxs 1");
    const TYPtr<IDriver> held(driver);
    driver->setDriverRepository(repository);
    EXPECT_EQ(other.lock(), driver->getLock());
    EXPECT_EQ(&other, &driver->eventLoop());
}

TEST(CDriver, MayBelongToAnyRepository)
{
    TYEventLoop loop;
    const TYPtr<IDriverRepository> first(new TestRepository(loop));
    const TYPtr<IDriverRepository> second(new TestRepository(loop));
    const TYPtr<IDriver> driver(new CDriver(IDriver::DID_UNKNOWN(), "fxs 1"));
    (*driver).setDriverRepository(first.get());
    (*driver).setDriverRepository(second.get());
    EXPECT_EQ(second.get(), (*driver).getDriverRepository());
}

// A driver that offers more answers its own interfaces and falls back for the rest.
TEST(CDriver, CanBeDerivedWithMoreInterfaces)
{
    TestDriver* const driver = new TestDriver("fxs 1", DID_ChannelGroup());
    const TYPtr<IDriver> life(driver);
    void* out = &out;
    EXPECT_EQ(-1, driver->queryInterface(IChannelGroup::IID(), &out).code());
    EXPECT_EQ(nullptr, out);
    driver->offer(IChannelGroup::IID());
    EXPECT_EQ(0, driver->queryInterface(IChannelGroup::IID(), &out).code());
    EXPECT_EQ(static_cast<IDriver*>(driver), out);
    EXPECT_EQ(2, driver->references());
    driver->release();
    EXPECT_EQ(0, driver->queryInterface(IDriver::IID(), nullptr).code());
    EXPECT_EQ(-1, driver->queryInterface(IInfo::IID(), nullptr).code());
    EXPECT_EQ(1, driver->references());
    EXPECT_TRUE(DID_ChannelGroup() == driver->getDID());
}

/// A driver of the interface alone.
class PlainDriver : public IDriver
{
public:
    XCode queryInterface(TOVA_UUID const&, void**) override { return XCode(-1); }
    void addRef() override {}
    void release() override {}
    TOVA_UUID const& getDID() const override { return IDriver::DID_UNKNOWN(); }
    String const& getDriverName() const override { return String::EMPTY(); }
};

TEST(IDriver, KnowsNoRepositoryByDefault)
{
    TYEventLoop loop;
    const TYPtr<IDriverRepository> repository(new TestRepository(loop));
    PlainDriver driver;
    EXPECT_EQ(nullptr, driver.getDriverRepository());
    driver.setDriverRepository(repository.get());
    EXPECT_EQ(nullptr, driver.getDriverRepository());
    EXPECT_EQ(nullptr, driver.getLock());
}

} // namespace
