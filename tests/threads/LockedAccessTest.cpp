#include <map>
#include <string>

#include <gtest/gtest.h>

#include <utility/InfoContainer.h>

#include <drvrepo/CChannelGroup.h>
#include <drvrepo/CDriver.h>
#include <drvrepo/DRIVER.h>
#include <drvrepo/IDriverRepositoryObserver.h>

#include "FourThreads.h"

// Threads that use the repository through `DRIVER::INSTANCE()->` alone, or hold its lock while they
// use what they got, need nothing else; nor do those that hold a group's lock.

namespace
{

/// The lock of everything on the process's event loop.
LockScope locked()
{
    return LockScope(DRIVER::INSTANCE().get()->getLock());
}

/// Counts which of the drivers are there, and calls in for each that comes: it sets an attachment,
/// looks for the driver, and takes out every tenth. Told under the lock, it needs none.
class Busybody : public IDriverRepositoryObserver
{
public:
    using Event = ObserverEvent<IDriverRepository>;

    XCode onDriverAdded(String&, Event& event) override
    {
        auto const& about = static_cast<IDriverRepository::EvDriver const&>(event);
        const String name(about.driver.get()->getDriverName());
        ++present_[name.cString()];
        IDriverRepository& repository = *about.source;
        String error;
        repository.setDriverAttachment(error, name, "seen", "1");
        IDriver* driver = nullptr;
        if (repository.getDriver(name, &driver).code() == 0)
            driver->release();
        if (++comings_ % 10 == 0)
            repository.removeDriver(name);
        return XCode();
    }
    void onDriverRemoved(Event& event) override
    {
        auto const& about = static_cast<IDriverRepository::EvDriver const&>(event);
        --present_[about.driver.get()->getDriverName().cString()];
        ++goings_;
    }
    XCode onDriverAttachmentSet(String&, Event&) override
    {
        ++values_;
        return XCode();
    }
    void onDriverAttachmentCleared(Event&) override { --values_; }

    int comings() const { return comings_; }
    int goings() const { return goings_; }
    /// Values that it was told of and that have not gone.
    int values() const { return values_; }
    /// Whether each driver that came has gone, and never twice.
    bool isAlone() const
    {
        for (auto const& at : present_)
            if (at.second != 0)
                return false;
        return true;
    }

private:
    std::map<std::string, int> present_;
    int comings_ = 0;
    int goings_ = 0;
    int values_ = 0;
};

void listen(char const* name, unsigned priority, IDriverRepositoryObserver& observer)
{
    String error;
    const bool veto = true;
    const bool snapshot = true;
    const XCode rc = DRIVER::INSTANCE()->addDriverRepositoryObserver(
        error, name, TOVA_UUID::INVALID(), TOVA_UUID::INVALID(), "", priority, veto, snapshot,
        &observer);
    ASSERT_EQ(0, rc.code()) << error.cString();
}

/// Drivers of this thread, and one whose name all threads fight for, come, are used, and go.
void comeAndGo(int thread, std::atomic<int>& won)
{
    const String name(String().format("fxs %d", thread));
    const String shared("shared");
    const TYPtr<CDriver> own(new CDriver(IDriver::DID_UNKNOWN(), name));
    const TYPtr<CDriver> contended(new CDriver(IDriver::DID_UNKNOWN(), shared));
    String error;
    for (int round = rounds(1000); round > 0; --round) {
        DRIVER::INSTANCE()->addDriver(error, own.get());
        DRIVER::INSTANCE()->setDriverAttachment(error, name, "round", String().format("%d", round));
        {
            const LockScope held = locked();
            // Both under one lock: what another thread added under that name is not ours to remove.
            if (DRIVER::INSTANCE()->addDriver(error, contended.get()).code() == 0) {
                ++won;
                DRIVER::INSTANCE()->removeDriver(contended.get());
            }
            TOVA_List<TYPPtr<IDriver>> found;
            DRIVER::INSTANCE()->getDrivers(TOVA_UUID::INVALID(), "fxs", found);
            EXPECT_GE(THREADS, static_cast<int>(found.count()));
        }
        DRIVER::INSTANCE()->removeDriver(own.get());
    }
    const LockScope held = locked();
    EXPECT_EQ(nullptr, own.get()->getDriverRepository());
}

TEST(LockedAccess, DriversComeAndGoOnFourThreads)
{
    Busybody observer;
    listen("busybody", 10, observer);
    std::atomic<int> won{0};
    onFourThreads([&won](int thread) { comeAndGo(thread, won); });
    DRIVER::INSTANCE()->removeDriverRepositoryObserver("busybody");
    EXPECT_LT(0, won);
    EXPECT_TRUE(observer.isAlone());
    EXPECT_LE(THREADS * rounds(1000), observer.comings());
    EXPECT_EQ(observer.comings(), observer.goings());
    EXPECT_EQ(0, observer.values());
}

TEST(LockedAccess, ListenersComeAndGoOnFourThreads)
{
    String error;
    const TYPtr<CDriver> fxs(new CDriver(IDriver::DID_UNKNOWN(), "fxs"));
    DRIVER::INSTANCE()->addDriver(error, fxs.get());
    onFourThreads([](int thread) {
        const String name(String().format("listener %d", thread));
        for (int round = rounds(1000); round > 0; --round) {
            Busybody observer;
            listen(name.cString(), static_cast<unsigned>(thread), observer);
            DRIVER::INSTANCE()->removeDriverRepositoryObserver(name);
            const LockScope held = locked();
            EXPECT_TRUE(observer.isAlone());
            EXPECT_GE(1, observer.comings());
        }
    });
    const LockScope held = locked();
    DRIVER::INSTANCE()->removeDriver(fxs.get());
    InfoContainer info;
    void* described = nullptr;
    ASSERT_EQ(0, DRIVER::INSTANCE()->queryInterface(IInfo::IID(), &described).code());
    const TYPtr<IInfo> diagnostics(static_cast<IInfo*>(described));
    diagnostics.get()->getInfo(info, 9, 0, 9, 0, "");
    EXPECT_EQ(3u, info.rows().size()) << "nothing but the headings";
}

/// Accepts, takes another timeslot for each that it is told of, and keeps the books.
class Bookkeeper : public IChannelGroupObserver
{
public:
    using Event = ObserverEvent<IChannelGroup>;

    XCode onTimeslotsAdded(String&, Event& event) override
    {
        onTimeslotsAdded(event);
        return XCode();
    }
    void onTimeslotsAdded(Event& event) override
    {
        known |= event.data.word(2);
        const std::uint32_t neighbour = event.data.word(2) << 16;
        String message;
        if (neighbour != 0)
            event.source.get()->setTimeslots(message,
                                             event.source.get()->getTimeslots() | neighbour);
    }
    void onTimeslotsRemoved(Event& event) override { known &= ~event.data.word(2); }

    std::uint32_t known = 0;
};

TEST(LockedAccess, TimeslotsComeAndGoOnFourThreads)
{
    const TYPtr<CChannelGroup> group(new CChannelGroup("B"));
    Bookkeeper first;
    Bookkeeper second;
    String message;
    const bool notifyCurrent = true;
    group.get()->addChannelGroupObserver(message, &first, 1, true, notifyCurrent);
    group.get()->addChannelGroupObserver(message, &second, 2, false, notifyCurrent);
    onFourThreads([&group](int thread) {
        const unsigned bit = 1u << thread;
        for (int round = rounds(2000); round > 0; --round) {
            const LockScope held(group.get()->getLock());
            String text;
            const unsigned mask = group.get()->getTimeslots();
            group.get()->setTimeslots(text, mask | bit);
            EXPECT_NE(0u, group.get()->getTimeslots() & (bit << 16)) << "the neighbour";
            group.get()->setTimeslots(text, group.get()->getTimeslots() & ~(bit | bit << 16));
        }
    });
    EXPECT_EQ(0u, group.get()->getTimeslots());
    EXPECT_EQ(0u, first.known);
    EXPECT_EQ(0u, second.known);
    group.get()->removeChannelGroupObserver(&first, notifyCurrent);
    group.get()->removeChannelGroupObserver(&second, notifyCurrent);
}

TEST(LockedAccess, ObserversOfAGroupComeAndGoOnFourThreads)
{
    const TYPtr<CChannelGroup> group(new CChannelGroup("B"));
    String message;
    group.get()->setTimeslots(message, 0xf);
    onFourThreads([&group](int thread) {
        for (int round = rounds(2000); round > 0; --round) {
            Bookkeeper observer;
            String text;
            const bool notifyCurrent = true;
            const LockScope held(group.get()->getLock());
            group.get()->addChannelGroupObserver(text, &observer, static_cast<unsigned>(thread),
                                                 true, notifyCurrent);
            EXPECT_EQ(0xfu, observer.known & 0xffffu);
            group.get()->removeChannelGroupObserver(&observer, notifyCurrent);
            EXPECT_EQ(0u, observer.known & 0xffffu);
        }
    });
}

} // namespace
