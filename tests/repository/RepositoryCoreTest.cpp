#include <future>
#include <thread>

#include <drvrepo/DriverWrapper.h>

#include <support/RepositoryFixture.h>

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define LEAK_CHECK
#include <sanitizer/lsan_interface.h>
#endif
#endif

namespace
{

using Repository = RepositoryFixture;

TEST_F(Repository, StartsWithOneReferenceAndNothingInIt)
{
    EXPECT_EQ(1, repository().references());
    EXPECT_EQ("", drivers());
    EXPECT_EQ("", listeners());
    EXPECT_EQ("", lines());
}

TEST_F(Repository, KeepsTheLoopAndItsLock)
{
    EXPECT_EQ(&loop_, &repository().eventLoop());
    EXPECT_EQ(loop_.lock(), repository().getLock());
    EXPECT_NE(CRIT::INSTANCE().lock(), repository().getLock());
}

TEST_F(Repository, TakesNoLockItself)
{
    // Another thread holds the loop's lock all the while: whoever asked for it would not come back.
    std::promise<void> held;
    std::promise<void> done;
    std::thread holder([&] {
        const LockScope scope(loop_.lock());
        held.set_value();
        done.get_future().wait();
    });
    held.get_future().wait();
    listen("a", 1, Terms().snapshot());
    EXPECT_EQ(0, add("fxs 1").code());
    attach("fxs 1", "k", "v");
    EXPECT_EQ("fxs 1", drivers());
    EXPECT_EQ("a", listeners());
    remove("fxs 1");
    EXPECT_EQ("a: added fxs 1\na: set fxs 1 k=v\na: cleared fxs 1 k=v\na: removed fxs 1\n",
              heard());
    done.set_value();
    holder.join();
}

TEST_F(Repository, GoesWithTheLastReference)
{
    const int before = TestRepository::living();
    TestRepository* const own = new TestRepository(loop_);
    own->addRef();
    own->release();
    EXPECT_EQ(before + 1, TestRepository::living());
    own->release();
    EXPECT_EQ(before, TestRepository::living());
}

TEST_F(Repository, AnswersThreeFaces)
{
    struct
    {
        TOVA_UUID const& iid;
        void* face;
    } const cases[] = {
        {IID_Unknown(), static_cast<IDriverRepository*>(&repository())},
        {IDriverRepository::IID(), static_cast<IDriverRepository*>(&repository())},
        {IInfo::IID(), static_cast<IInfo*>(&repository())},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(c.iid.name());
        void* face = nullptr;
        EXPECT_EQ(0, repository().queryInterface(c.iid, &face).code());
        EXPECT_EQ(c.face, face);
        EXPECT_EQ(2, repository().references());
        static_cast<IUnknown*>(face)->release();
        EXPECT_EQ(1, repository().references());
        EXPECT_EQ(0, repository().queryInterface(c.iid, nullptr).code());
        EXPECT_EQ(1, repository().references());
    }
}

TEST_F(Repository, AnswersNothingElse)
{
    for (TOVA_UUID const& iid :
         {IDriver::IID(), IChannelGroup::IID(), TOVA_UUID::INVALID(), IDriver::DID_UNKNOWN()}) {
        SCOPED_TRACE(iid.name());
        void* face = this;
        EXPECT_EQ(-1, repository().queryInterface(iid, &face).code());
        EXPECT_EQ(nullptr, face);
        EXPECT_EQ(-1, repository().queryInterface(iid, nullptr).code());
        EXPECT_EQ(1, repository().references());
    }
}

TEST_F(Repository, AnswersByValueOfTheIdentifier)
{
    TOVA_UUID_Data const& data = IInfo::IID().data();
    const TOVA_UUID alike = TOVA_UUID::create(data.words[0], data.words[1], data.words[2],
                                              data.words[3], "another record");
    void* face = nullptr;
    EXPECT_EQ(0, repository().queryInterface(alike, &face).code());
    EXPECT_EQ(static_cast<IInfo*>(&repository()), face);
    static_cast<IInfo*>(face)->release();
}

TEST_F(Repository, InfoFaceIsTheSameObject)
{
    void* face = nullptr;
    repository().queryInterface(IInfo::IID(), &face);
    ASSERT_NE(static_cast<void*>(static_cast<IDriverRepository*>(&repository())), face);
    auto* const info = static_cast<IInfo*>(face);
    info->addRef();
    EXPECT_EQ(3, repository().references());
    EXPECT_EQ(repository().getLock(), info->getLock());
    void* back = nullptr;
    EXPECT_EQ(0, info->queryInterface(IDriverRepository::IID(), &back).code());
    EXPECT_EQ(static_cast<IDriverRepository*>(&repository()), back);
    static_cast<IDriverRepository*>(back)->release();
    InfoContainer rows;
    EXPECT_EQ(&rows, &info->getInfo(rows, 0, 0, 0, 0, "the "));
    ASSERT_EQ(1u, rows.rows().size());
    EXPECT_EQ("the Driver Repository", rows.rows()[0].key);
    info->release();
    info->release();
}

TEST_F(Repository, GoesThroughEitherFace)
{
    const int before = TestRepository::living();
    void* face = nullptr;
    auto* const own = new TestRepository(loop_);
    own->queryInterface(IInfo::IID(), &face);
    own->release();
    EXPECT_EQ(before + 1, TestRepository::living());
    static_cast<IInfo*>(face)->release();
    EXPECT_EQ(before, TestRepository::living());
}

// It comes with the end of the process: what is registered then stays untouched.
TEST_F(Repository, LeavesWhatIsRegisteredWhenItGoes)
{
#ifdef LEAK_CHECK
    const __lsan::ScopedDisabler left;
#endif
    const TYPtr<TestDriver> driver(new TestDriver("fxs 1"));
    const TYPtr<TestDelegate> delegate(new TestDelegate(&observer("a")));
    auto* const own = new TestRepository(loop_);
    own->addDriverRepositoryObserver(error_, "a", TOVA_UUID::INVALID(), TOVA_UUID::INVALID(), "", 1,
                                     false, false, delegate.get());
    own->addDriver(error_, driver.get());
    forget();
    own->release();
    EXPECT_EQ("", heard());
    EXPECT_EQ("", lines());
    EXPECT_EQ(2, driver.get()->references());
    EXPECT_EQ(own, driver.get()->getDriverRepository());
    EXPECT_EQ(2, delegate.get()->references());
    EXPECT_EQ(&observer("a"), delegate.get()->observer());
}

using Record = CDriverRepository::DriverWrapper;

TEST_F(Repository, RecordHoldsTheDriverWhileItLives)
{
    {
        const Record record(&repository(), &driver("fxs 1"));
        EXPECT_EQ(&driver("fxs 1"), record.getDriver());
        EXPECT_EQ("fxs 1", record.getDriverName());
        EXPECT_EQ(IDriver::DID_UNKNOWN(), record.getDID());
        EXPECT_TRUE(record.getAttachments().isEmpty());
        EXPECT_EQ(2, driver("fxs 1").references());
        EXPECT_EQ(1, repository().references()) << "the repository is not counted";
        EXPECT_EQ(0u, driver("fxs 1").calls().setDriverRepository);
    }
    EXPECT_EQ(1, driver("fxs 1").references());
}

TEST_F(Repository, RecordMayBeEmpty)
{
    const Record none;
    EXPECT_EQ(nullptr, none.getDriver());
    EXPECT_EQ("", none.getDriverName());
    EXPECT_EQ(TOVA_UUID::INVALID(), none.getDID());
    const Record homeless(nullptr, &driver("fxs 1"));
    EXPECT_EQ("fxs 1", homeless.getDriverName());
}

} // namespace
