#include <drvrepo/DriverWrapper.h>

#include <support/Allocations.h>
#include <support/RepositoryFixture.h>

namespace
{

// What an operation asks of the driver and of the heap grows with the listeners, or with the
// drivers, and not faster.
class OfferCost : public RepositoryFixture
{
protected:
    struct Cost
    {
        std::uint64_t allocations;
        unsigned namesAsked;
        unsigned typesAsked;
    };

    OfferCost() : delegate_(new TestDelegate(nullptr)) { MON_DRV = nullptr; }
    ~OfferCost() override
    {
        for (int i = 0; i < listening_; ++i)
            repository().removeDriverRepositoryObserver(String().format("%d", i));
    }

    /// Sees to it that there are `count` listeners, of mixed priorities, for every driver.
    void listenUpTo(int count)
    {
        for (; listening_ < count; ++listening_)
            repository().addDriverRepositoryObserver(
                error_, String().format("%d", listening_), TOVA_UUID::INVALID(),
                TOVA_UUID::INVALID(), "f", static_cast<unsigned>(listening_ * 7919 % 101), true,
                true, delegate_.get());
    }
    template <class Operation> Cost costOf(TestDriver const& driver, Operation operation)
    {
        const std::uint64_t allocations = allocations::count();
        const TestDriver::Calls calls = driver.calls();
        operation();
        return {allocations::count() - allocations,
                driver.calls().getDriverName - calls.getDriverName,
                driver.calls().getDID - calls.getDID};
    }

    TYPtr<TestDelegate> delegate_;
    int listening_ = 0;
};

TEST_F(OfferCost, ComingDriverAsksAlikeForAnyNumberOfListeners)
{
    const TYPtr<CDriver> plain(new CDriver(IDriver::DID_UNKNOWN(), "fxs 1"));
    std::uint64_t costs[3];
    const int counts[3] = {100, 200, 1000};
    for (int i = 0; i < 3; ++i) {
        listenUpTo(counts[i]);
        costs[i] = costOf(driver("fxs 2"), [&] {
                       repository().addDriver(error_, plain.get());
                   }).allocations;
        repository().removeDriver(plain.get());
    }
    EXPECT_EQ(costs[0], costs[1]);
    EXPECT_EQ(costs[0], costs[2]);
}

TEST_F(OfferCost, ComingDriverIsAskedAlikeForEachListener)
{
    TestDriver& fxs = driver("fxs 1");
    Cost costs[3];
    const int counts[3] = {100, 200, 1000};
    for (int i = 0; i < 3; ++i) {
        listenUpTo(counts[i]);
        costs[i] = costOf(fxs, [&] { repository().addDriver(error_, &fxs); });
        repository().removeDriver(&fxs);
    }
    // For its name, for the prefix and for the log line; nobody has a type criterion.
    const unsigned forHundred = costs[1].namesAsked - costs[0].namesAsked;
    EXPECT_GE(200u, forHundred);
    EXPECT_EQ(9 * forHundred, costs[2].namesAsked - costs[0].namesAsked);
    EXPECT_EQ(0u, costs[2].typesAsked);
}

TEST_F(OfferCost, TellingAValueAsksForNoMemory)
{
    TestDriver& fxs = driver("fxs 1");
    add("fxs 1");
    listenUpTo(100);
    const String name("fxs 1");
    const String key("k");
    const String one("1");
    const String two("2");
    repository().setDriverAttachment(error_, name, key, one);
    const Cost cost =
        costOf(fxs, [&] { repository().setDriverAttachment(error_, name, key, two); });
    EXPECT_EQ(0u, cost.allocations);
    const Cost cleared =
        costOf(fxs, [&] { repository().setDriverAttachment(error_, name, key, String::EMPTY()); });
    EXPECT_EQ(0u, cleared.allocations);
}

TEST_F(OfferCost, GoingAsksForNoMemory)
{
    TestDriver& fxs = driver("fxs 1");
    add("fxs 1");
    attach("fxs 1", "k", "v");
    listenUpTo(100);
    const String name("99");
    EXPECT_EQ(0u,
              costOf(fxs, [&] { repository().removeDriverRepositoryObserver(name); }).allocations);
    // What a test driver remembers of its repositories asks for memory of its own.
    const TYPtr<CDriver> plain(new CDriver(IDriver::DID_UNKNOWN(), "fxs 2"));
    repository().addDriver(error_, plain.get());
    EXPECT_EQ(0u, costOf(fxs, [&] { repository().removeDriver(plain.get()); }).allocations);
}

TEST_F(OfferCost, ComingListenerAsksAlikeForAnyNumberOfDrivers)
{
    std::uint64_t costs[3];
    const int counts[3] = {100, 200, 1000};
    int drivers = 0;
    for (int i = 0; i < 3; ++i) {
        for (; drivers < counts[i]; ++drivers)
            add("fxs " + std::to_string(drivers));
        const int before = listening_;
        costs[i] = costOf(driver("fxs 0"), [&] { listenUpTo(before + 1); }).allocations;
    }
    EXPECT_EQ(costs[0], costs[1]);
    EXPECT_EQ(costs[0], costs[2]);
}

TEST_F(OfferCost, QueryAsksForWhatTheLastResultCannotHold)
{
    for (int i = 0; i < 5; ++i)
        add("fxs " + std::to_string(i));
    TestDriver& fxs = driver("fxs 0");
    TOVA_List<TYPPtr<IDriver>> found;
    const auto query = [&](char const* prefix) {
        const String pattern(prefix);
        return costOf(fxs, [&] { repository().getDrivers(TOVA_UUID::INVALID(), pattern, found); })
            .allocations;
    };
    EXPECT_EQ(5u, query("fxs"));
    EXPECT_EQ(0u, query("fxs"));
    EXPECT_EQ(5u, found.count());
    EXPECT_EQ(0u, query("fxs 3"));
    EXPECT_EQ(1u, found.count());
    EXPECT_EQ(4u, query("fxs")); // the last result held one
}

/// Bytes that a driver takes, once it is known to those who listen.
std::int64_t bytesOf(IDriverRepository& repository, IDriver* driver)
{
    String error;
    const std::int64_t before = allocations::bytes();
    repository.addDriver(error, driver);
    return allocations::bytes() - before;
}

TEST_F(OfferCost, WhoComesLaterBringsTheRoomForTheMeetings)
{
    // Its neighbours in the list, its listener, and what passed between the two.
    const std::int64_t entry = 3 * sizeof(void*) + 8;
    const TYPtr<CDriver> first(new CDriver(IDriver::DID_UNKNOWN(), "fxs 1"));
    const TYPtr<CDriver> second(new CDriver(IDriver::DID_UNKNOWN(), "fxs 2"));
    const std::int64_t alone = bytesOf(repository(), first.get());
    repository().removeDriver(first.get());

    listenUpTo(3); // to nobody yet
    EXPECT_EQ(alone + 3 * entry, bytesOf(repository(), first.get()));
    repository().addDriver(error_, second.get());
    const std::int64_t before = allocations::bytes();
    listenUpTo(4);
    const std::int64_t forTwo = allocations::bytes() - before;
    repository().removeDriver(second.get());
    const std::int64_t after = allocations::bytes();
    listenUpTo(5);
    EXPECT_EQ(forTwo - entry, allocations::bytes() - after);

    // The next driver brings room for all, also for those who brought some for another.
    EXPECT_EQ(alone + 5 * entry, bytesOf(repository(), second.get()));
    repository().removeDriver(first.get());
    repository().removeDriver(second.get());
}

TEST_F(OfferCost, ComingsAndGoingsLeaveNoRoomBehind)
{
    const TYPtr<CDriver> stays(new CDriver(IDriver::DID_UNKNOWN(), "fxs 1"));
    const TYPtr<CDriver> returns(new CDriver(IDriver::DID_UNKNOWN(), "fxs 2"));
    listenUpTo(3);
    repository().addDriver(error_, stays.get());
    repository().addDriver(error_, returns.get());
    std::int64_t bytes = 0;
    for (int round = 0; round < 10; ++round) {
        repository().removeDriver(returns.get());
        repository().removeDriverRepositoryObserver("2");
        --listening_;
        listenUpTo(3);
        repository().addDriver(error_, returns.get());
        if (round == 0)
            bytes = allocations::bytes();
        EXPECT_EQ(bytes, allocations::bytes()) << "round " << round;
    }
    repository().removeDriver(stays.get());
    repository().removeDriver(returns.get());
}

TEST_F(OfferCost, RecordInNoRepositoryFreesTheEntriesThatItAskedFor)
{
    const TYPtr<CDriver> plain(new CDriver(IDriver::DID_UNKNOWN(), "fxs 1"));
    CDriverRepository::Listener listener;
    const std::int64_t before = allocations::bytes();
    {
        CDriverRepository::DriverWrapper record(nullptr, plain.get());
        record.addListenerOnce(&listener, true);
        EXPECT_LT(before, allocations::bytes());
    }
    EXPECT_EQ(before, allocations::bytes());
}

} // namespace
