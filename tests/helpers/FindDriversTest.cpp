#include <drvrepo/CChannelGroup.h>
#include <drvrepo/FindDrivers.h>

#include <support/RepositoryFixture.h>

namespace
{

TOVA_UUID const& alarm()
{
    static const TOVA_UUID id = TOVA_UUID::create(5, 6, 7, 8, "alarm");
    return id;
}

class FindDrivers : public RepositoryFixture
{
protected:
    FindDrivers()
    {
        driver("fxs 2").offer(alarm());
        for (char const* name : {"fxs 2", "e1t1 1", "fxs 1"})
            add(name);
        attach("fxs 1", "room", "12");
    }
    std::string found(ListenerTerms const& terms)
    {
        std::string names;
        for (TYPPtr<IDriver> const& at : findDrivers(repository(), terms))
            names += at->getDriverName().cString() + std::string(";");
        return names;
    }
};

TEST_F(FindDrivers, EachCriterion)
{
    EXPECT_EQ("fxs 2;e1t1 1;fxs 1;", found(ListenerTerms()));
    EXPECT_EQ("fxs 2;fxs 1;", found(ListenerTerms().prefix("fxs")));
    EXPECT_EQ("fxs 1;", found(ListenerTerms().attribute("room", "1")));
    EXPECT_EQ("fxs 2;", found(ListenerTerms().iid(alarm())));
    EXPECT_EQ("", found(ListenerTerms().iid(alarm()).prefix("e1t1")));
    EXPECT_EQ("", found(ListenerTerms().did(alarm())));
    EXPECT_EQ("fxs 2;e1t1 1;fxs 1;", found(ListenerTerms().did(IDriver::DID_UNKNOWN())));
}

TEST_F(FindDrivers, AllOfThemWithoutCriteria)
{
    const TOVA_List<TYPPtr<IDriver>> all = findDrivers(repository());
    EXPECT_EQ(3u, all.count());
    EXPECT_EQ(3, driver("fxs 1").references());
}

TEST_F(FindDrivers, ResultsHoldReferencesAndGiveThemBack)
{
    found(ListenerTerms());
    EXPECT_EQ(2, driver("fxs 1").references());
    EXPECT_EQ(2, driver("fxs 2").references());
    EXPECT_EQ(1, repository().references());
}

TEST_F(FindDrivers, InterfacesInTheirOwnType)
{
    const TYPtr<CChannelGroup> group(new CChannelGroup("fxs 1/B"));
    repository().addDriver(error_, group.get());
    String message;
    group.get()->setTimeslots(message, 6);
    unsigned slots = 0;
    for (TYPPtr<IChannelGroup> const& at :
         findInterfaces<IChannelGroup>(repository(), ListenerTerms().prefix("fxs")))
        slots += at->getTimeslots();
    EXPECT_EQ(6u, slots);
    EXPECT_EQ(0u, findInterfaces<IChannelGroup>(repository(), ListenerTerms().prefix("e")).count());
    EXPECT_EQ(1u, findInterfaces<IChannelGroup>(repository()).count());
    EXPECT_EQ(4u, findInterfaces<IDriver>(repository()).count());
    repository().removeDriver(group.get());
    EXPECT_EQ(2, driver("fxs 1").references()) << "no reference is left";
}

/// Counts how often the lock is held at once, and taken.
class CountingLock : public Lock
{
public:
    XCode lock() override
    {
        ++taken;
        ++held;
        return XCode();
    }
    void unlock() override { --held; }
    int taken = 0;
    int held = 0;
};

class LockedRepository : public CDriverRepository
{
public:
    explicit LockedRepository(TYEventLoop& loop) : CDriverRepository(loop) {}
    Lock* getLock() override { return &lock; }
    TOVA_List<TYPPtr<IDriver>>& getDrivers(TOVA_UUID const& did, String const& pattern,
                                           Attributes const& attributes,
                                           TOVA_List<TYPPtr<IDriver>>& drivers) override
    {
        heldInQuery = lock.held;
        return CDriverRepository::getDrivers(did, pattern, attributes, drivers);
    }
    CountingLock lock;
    int heldInQuery = 0;
};

TEST_F(FindDrivers, QueriesUnderTheLock)
{
    const TYPtr<LockedRepository> locked(new LockedRepository(loop_));
    findDrivers(*locked);
    EXPECT_EQ(1, (*locked).heldInQuery);
    EXPECT_EQ(0, (*locked).lock.held);
    findInterfaces<IDriver>(*locked);
    EXPECT_EQ(2, (*locked).lock.taken);
    EXPECT_EQ(0, (*locked).lock.held);
}

} // namespace
