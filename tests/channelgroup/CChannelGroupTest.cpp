#include <utility/TYEventLoop.h>

#include <drvrepo/Identifiers.h>

#include <support/GroupFixture.h>
#include <support/InfoText.h>
#include <support/TestRepository.h>

namespace
{

const unsigned ALL = 4294967295u;

// The group as an object and as a driver.
using ChannelGroup = GroupFixture;

TEST_F(ChannelGroup, StartsWithItsNameAndNoTimeslots)
{
    String name("e1t1 1/B-CHANNELS");
    const TYPtr<CChannelGroup> other(new CChannelGroup(name));
    name = "changed";
    EXPECT_EQ("e1t1 1/B-CHANNELS", other.get()->getDriverName());
    EXPECT_EQ(0u, other.get()->getTimeslots());
    EXPECT_EQ("", lines());
}

TEST_F(ChannelGroup, IsADriverOfItsOwnType)
{
    EXPECT_EQ(&DID_ChannelGroup(), &group().getDID());
    IDriver& driver = group();
    EXPECT_EQ("B", driver.getDriverName());
}

TEST_F(ChannelGroup, KeepsNoRepository)
{
    IDriver& driver = group();
    EXPECT_EQ(nullptr, driver.getDriverRepository());
    TYEventLoop loop;
    const TYPtr<TestRepository> repository(new TestRepository(loop));
    driver.setDriverRepository(repository.get());
    EXPECT_EQ(nullptr, driver.getDriverRepository());
}

TEST_F(ChannelGroup, HasTheProcessWideLock)
{
    EXPECT_EQ(CRIT::INSTANCE().lock(), group().getLock());
    EXPECT_EQ(CRIT::INSTANCE().lock(), static_cast<IChannelGroup&>(group()).getLock());
    EXPECT_EQ(CRIT::INSTANCE().lock(), static_cast<IInfo&>(group()).getLock());
}

TEST_F(ChannelGroup, NamesTheUsualGroups)
{
    EXPECT_STREQ("D-CHANNEL", IChannelGroup::D_CHANNEL_DEFAULT_NAME);
    EXPECT_STREQ("B-CHANNELS", IChannelGroup::B_CHANNELS_DEFAULT_NAME);
}

TEST_F(ChannelGroup, AnswersFourIdentifiersByThreeFaces)
{
    struct
    {
        TOVA_UUID const& iid;
        void* face;
    } const cases[] = {
        {IID_Unknown(), static_cast<IDriver*>(&group())},
        {IDriver::IID(), static_cast<IDriver*>(&group())},
        {IChannelGroup::IID(), static_cast<IChannelGroup*>(&group())},
        {IInfo::IID(), static_cast<IInfo*>(&group())},
    };
    IUnknown* const asked[] = {static_cast<IDriver*>(&group()),
                               static_cast<IChannelGroup*>(&group()),
                               static_cast<IInfo*>(&group())};
    for (auto const& c : cases)
        for (IUnknown* from : asked) {
            SCOPED_TRACE(c.iid.name());
            void* face = nullptr;
            EXPECT_EQ(0, from->queryInterface(c.iid, &face).code());
            EXPECT_EQ(c.face, face);
            EXPECT_EQ(2, group().references());
            static_cast<IUnknown*>(face)->release();
            EXPECT_EQ(1, group().references());
            EXPECT_EQ(0, from->queryInterface(c.iid, nullptr).code());
            EXPECT_EQ(1, group().references());
        }
}

TEST_F(ChannelGroup, AnswersNothingElse)
{
    for (TOVA_UUID const& iid :
         {IDriverRepository::IID(), TOVA_UUID::INVALID(), DID_ChannelGroup(), CID_ChannelGroup()}) {
        SCOPED_TRACE(iid.name());
        void* face = this;
        EXPECT_EQ(-1, group().queryInterface(iid, &face).code());
        EXPECT_EQ(nullptr, face);
        EXPECT_EQ(-1, group().queryInterface(iid, nullptr).code());
        EXPECT_EQ(1, group().references());
    }
}

TEST_F(ChannelGroup, WorksThroughEveryFace)
{
    void* answer = nullptr;
    group().queryInterface(IChannelGroup::IID(), &answer);
    const TYPtr<IChannelGroup> slots(static_cast<IChannelGroup*>(answer));
    group().queryInterface(IInfo::IID(), &answer);
    const TYPtr<IInfo> described(static_cast<IInfo*>(answer));
    group().queryInterface(IDriver::IID(), &answer);
    const TYPtr<IDriver> driver(static_cast<IDriver*>(answer));
    EXPECT_EQ(4, group().references());
    observe("a", 1);
    EXPECT_EQ(0, slots.get()->setTimeslots(message_, 0x6).code());
    EXPECT_EQ("a: added 00000000->00000006: 00000006\n", heard());
    EXPECT_EQ(6u, slots.get()->getTimeslots());
    slots.get()->removeChannelGroupObserver(&observer("a"), true);
    EXPECT_EQ("a: removed 00000006->00000000: 00000006\n", heard());
    EXPECT_EQ(
        0, slots.get()->addChannelGroupObserver(message_, &observer("a"), 1, false, true).code());
    EXPECT_EQ("a: added 00000000->00000006: 00000006\n", heard());
    InfoContainer info;
    described.get()->getInfo(info, 1, 0, 1, 0, "");
    EXPECT_EQ("0/0 Configuration\n1/1 Timeslot(s) = 1-2\n", textOf(info));
    EXPECT_EQ("B", driver.get()->getDriverName());
}

TEST_F(ChannelGroup, IsCountedAndDestroyedThroughEveryFace)
{
    for (int i = 0; i < 3; ++i) {
        const int before = TestGroup::living();
        auto* const own = new TestGroup("own");
        IUnknown* const faces[] = {static_cast<IDriver*>(own), static_cast<IChannelGroup*>(own),
                                   static_cast<IInfo*>(own)};
        faces[i]->addRef();
        EXPECT_EQ(2, own->references());
        own->release();
        EXPECT_EQ(before + 1, TestGroup::living());
        faces[i]->release();
        EXPECT_EQ(before, TestGroup::living());
    }
}

TEST_F(ChannelGroup, IsDeletedThroughEveryFace)
{
    const int before = TestGroup::living();
    delete static_cast<IDriver*>(new TestGroup("own"));
    delete static_cast<IChannelGroup*>(new TestGroup("own"));
    delete static_cast<IInfo*>(new TestGroup("own"));
    EXPECT_EQ(before, TestGroup::living());
}

TEST_F(ChannelGroup, GoesWithoutAWordToItsObservers)
{
    auto* const own = new TestGroup("own");
    own->addChannelGroupObserver(message_, &observer("a"), 1, true, false);
    own->setTimeslots(message_, 1);
    heard();
    lines();
    own->release();
    EXPECT_EQ("", heard());
    EXPECT_EQ("", lines());
}

TEST_F(ChannelGroup, CanBePutIntoARepository)
{
    TYEventLoop loop;
    const TYPtr<TestRepository> repository(new TestRepository(loop));
    EXPECT_EQ(0, repository.get()->addDriver(message_, &group()).code());
    EXPECT_EQ(2, group().references());
    void* face = nullptr;
    EXPECT_EQ(0, repository.get()->getDriverInterface("B", IChannelGroup::IID(), &face).code());
    EXPECT_EQ(static_cast<IChannelGroup*>(&group()), face);
    static_cast<IChannelGroup*>(face)->release();
    repository.get()->removeDriver(&group());
}

struct InfoCase
{
    unsigned maxDepth, depth, maxDetail, detail;
    char const* rows;
};

TEST_F(ChannelGroup, DescribesItsTimeslotsWithinTheLimits)
{
    set(0x8001FFFE);
    heard();
    lines();
    const InfoCase cases[] = {
        {ALL, 0, ALL, 0, "0/0 the Configuration\n1/1 Timeslot(s) = 1-16;31\n"},
        {3, 2, 5, 4, "2/4 the Configuration\n3/5 Timeslot(s) = 1-16;31\n"},
        // One less of either hides the timeslots, one more still nothing else.
        {2, 2, 5, 4, "2/4 the Configuration\n"},
        {3, 2, 4, 4, "2/4 the Configuration\n"},
        {9, 2, 9, 4, "2/4 the Configuration\n3/5 Timeslot(s) = 1-16;31\n"},
        // Below the top row nothing shows.
        {1, 2, 5, 4, ""},
        {3, 2, 3, 4, ""},
        // The limits do not wrap around.
        {ALL, ALL, ALL, 0, "4294967295/0 the Configuration\n"},
        {ALL, 0, ALL, ALL, "0/4294967295 the Configuration\n"},
    };
    for (InfoCase const& c : cases) {
        SCOPED_TRACE(std::to_string(c.maxDepth) + " " + std::to_string(c.depth) + " " +
                     std::to_string(c.maxDetail) + " " + std::to_string(c.detail));
        InfoContainer info;
        EXPECT_EQ(&info,
                  &group().getInfo(info, c.maxDepth, c.depth, c.maxDetail, c.detail, "the "));
        EXPECT_EQ(c.rows, textOf(info));
    }
    EXPECT_EQ("", lines());
}

TEST_F(ChannelGroup, DescribesAnEmptyOneWithAnEmptyText)
{
    InfoContainer info;
    group().getInfo(info, 1, 0, 1, 0, "");
    ASSERT_EQ(2u, info.rows().size());
    EXPECT_EQ("Timeslot(s)", info.rows()[1].key);
    EXPECT_EQ("", info.rows()[1].value);
}

} // namespace
