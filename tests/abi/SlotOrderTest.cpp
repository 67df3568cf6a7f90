#include "Slots.h"

#include <drvrepo/CChannelGroup.h>
#include <drvrepo/CDriver.h>
#include <drvrepo/CDriverRepository.h>
#include <drvrepo/IDriverRepositoryObserver.h>
#include <drvrepo/ObserverDelegate.h>

#include <utility/InfoContainer.h>

#include <gtest/gtest.h>

namespace
{
using slots::differences;
using slots::slotOf;

using Drivers = TOVA_List<TYPPtr<IDriver>>;
using Interfaces = TOVA_List<TYPPtr<IUnknown>>;
using Attributes = TOVA_StringHashTable<String>;
using Registry = IDriverRepository;

TEST(SlotOrder, Lock)
{
    EXPECT_EQ(0u, slotOf(&Lock::lock));
    EXPECT_EQ(1u, slotOf(&Lock::unlock));
}

/// Its derived class adds nothing, so both have four slots.
template <class Pointer> void checkPointer()
{
    EXPECT_EQ(2u, (slotOf<Pointer, LockRecord() const>(&Pointer::getLock)));
    EXPECT_EQ(3u, (slotOf<Pointer, LockRecord()>(&Pointer::getLock)));
    struct Next : Pointer
    {
        virtual void next() {}
    };
    EXPECT_EQ(4u, slotOf(&Next::next));
    struct Other : Pointer
    {};
    const Pointer pointer;
    const Other other;
    EXPECT_EQ("0 1", differences(&pointer, &other, 4));
}

TEST(SlotOrder, TYPtr)
{
    checkPointer<TYPtr<IDriver>>();
}

TEST(SlotOrder, TYPPtr)
{
    checkPointer<TYPPtr<IDriver>>();
    const TYPtr<IDriver> plain;
    const TYPPtr<IDriver> locking;
    EXPECT_EQ("0 1 2 3", differences(&plain, &locking, 4));
}

template <class Interface> void checkUnknown()
{
    EXPECT_EQ(0u, slotOf(&Interface::queryInterface));
    EXPECT_EQ(1u, slotOf(&Interface::addRef));
    EXPECT_EQ(2u, slotOf(&Interface::release));
    EXPECT_EQ(3u, slotOf(&Interface::getLock));
}

TEST(SlotOrder, IUnknown)
{
    checkUnknown<IUnknown>();
    struct Object : IUnknown
    {
        XCode queryInterface(TOVA_UUID const&, void**) override { return -1; }
        void addRef() override {}
        void release() override {}
        virtual void next() {}
    };
    struct Other : Object
    {};
    EXPECT_EQ(6u, slotOf(&Object::next));
    const Object object;
    const Other other;
    EXPECT_EQ("4 5", differences(&object, &other, 7));
}

TEST(SlotOrder, IInfo)
{
    checkUnknown<IInfo>();
    EXPECT_EQ(6u, slotOf(&IInfo::getInfo));
}

template <class Driver> void checkDriver()
{
    checkUnknown<Driver>();
    EXPECT_EQ(6u, slotOf(&Driver::getDID));
    EXPECT_EQ(7u, slotOf(&Driver::getDriverName));
    EXPECT_EQ(8u, slotOf(&Driver::getDriverRepository));
    EXPECT_EQ(9u, slotOf(&Driver::setDriverRepository));
}

TEST(SlotOrder, IDriver)
{
    checkDriver<IDriver>();
}

TEST(SlotOrder, CDriver)
{
    checkDriver<CDriver>();
    struct Driver : CDriver
    {
        using CDriver::CDriver;
        virtual void next() {}
    };
    EXPECT_EQ(10u, slotOf(&Driver::next));
    const CDriver driver(IDriver::DID_UNKNOWN(), "fxs 1");
    const Driver derived(IDriver::DID_UNKNOWN(), "fxs 1");
    EXPECT_EQ("4 5", differences(&driver, &derived, 10));
}

TEST(SlotOrder, EventsOfTheRepository)
{
    using Event = ObserverEvent<IDriverRepository>;
    EXPECT_EQ(2u, slotOf(&Event::clone));
    EXPECT_EQ(2u, slotOf(&IDriverRepository::EvDriver::clone));
    EXPECT_EQ(2u, slotOf(&IDriverRepository::EvAttachment::clone));

    struct Other : Event
    {};
    struct OtherDriver : IDriverRepository::EvDriver
    {
        using EvDriver::EvDriver;
        virtual void next() {}
    };
    struct OtherAttachment : IDriverRepository::EvAttachment
    {
        using EvAttachment::EvAttachment;
        virtual void next() {}
    };
    const Event event;
    const Other other;
    EXPECT_EQ("0 1", differences(&event, &other, 3));
    const IDriverRepository::EvDriver driver(nullptr, nullptr);
    const OtherDriver otherDriver(nullptr, nullptr);
    EXPECT_EQ("0 1", differences(&driver, &otherDriver, 3));
    const IDriverRepository::EvAttachment attachment(nullptr, nullptr, "", "");
    const OtherAttachment otherAttachment(nullptr, nullptr, "", "");
    EXPECT_EQ("0 1", differences(&attachment, &otherAttachment, 3));
    EXPECT_EQ(3u, slotOf(&OtherDriver::next));
    EXPECT_EQ(3u, slotOf(&OtherAttachment::next));
}

TEST(SlotOrder, EvTimeslot)
{
    using Event = IChannelGroup::EvTimeslot;
    EXPECT_EQ(2u, slotOf(&ObserverEvent<IChannelGroup>::clone));
    EXPECT_EQ(2u, slotOf(&Event::clone));
    struct Other : Event
    {
        virtual void next() {}
    };
    const Event event;
    const Other other;
    EXPECT_EQ("0 1", differences(&event, &other, 3));
    EXPECT_EQ(3u, slotOf(&Other::next));
}

template <class T> void checkDelegate()
{
    using Delegate = ObserverDelegate<T>;
    using Observer = typename T::Observer;
    using Event = ObserverEvent<T>;
    EXPECT_EQ(0u, slotOf(&Delegate::addRef));
    EXPECT_EQ(1u, slotOf(&Delegate::release));
    EXPECT_EQ(2u, slotOf(&Delegate::stopNotifications));
    using Notify = void(void(Observer::*)(Event&), Event&);
    EXPECT_EQ(3u, (slotOf<Delegate, Notify>(&Delegate::notifyEvent)));
    using Ask = XCode(String&, XCode(Observer::*)(String&, Event&), Event&);
    EXPECT_EQ(4u, (slotOf<Delegate, Ask>(&Delegate::notifyEvent)));

    struct Other : Delegate
    {
        using Delegate::Delegate;
        virtual void next() {}
    };
    const Delegate delegate(nullptr);
    const Other other(nullptr);
    EXPECT_EQ("5 6", differences(&delegate, &other, 7));
    EXPECT_EQ(7u, slotOf(&Other::next));
}

TEST(SlotOrder, ObserverDelegate)
{
    checkDelegate<IDriverRepository>();
    checkDelegate<IChannelGroup>();
}

TEST(SlotOrder, Registrations)
{
    using Id = TOVA_UUID const&;
    using Text = String const&;
    using Watch =
        XCode(String&, Text, Id, Id, Text, unsigned int, bool, bool, IDriverRepositoryObserver*);
    using WatchBy = XCode(String&, Text, Id, Id, Text, unsigned int, bool, bool,
                          ObserverDelegate<IDriverRepository>*);
    using WatchSome = XCode(String&, Text, Id, Id, Text, Attributes const&, unsigned int, bool,
                            bool, IDriverRepositoryObserver*);
    using WatchSomeBy = XCode(String&, Text, Id, Id, Text, Attributes const&, unsigned int, bool,
                              bool, ObserverDelegate<IDriverRepository>*);
    EXPECT_EQ(6u, (slotOf<Registry, Watch>(&Registry::addDriverRepositoryObserver)));
    EXPECT_EQ(7u, (slotOf<Registry, WatchBy>(&Registry::addDriverRepositoryObserver)));
    EXPECT_EQ(8u, (slotOf<Registry, WatchSome>(&Registry::addDriverRepositoryObserver)));
    EXPECT_EQ(9u, (slotOf<Registry, WatchSomeBy>(&Registry::addDriverRepositoryObserver)));
    EXPECT_EQ(10u, slotOf(&Registry::removeDriverRepositoryObserver));
}

TEST(SlotOrder, Queries)
{
    using Id = TOVA_UUID const&;
    using Text = String const&;
    EXPECT_EQ(11u, slotOf(&Registry::getDriver));
    EXPECT_EQ(12u, slotOf(&Registry::getDriverInterface));
    using Find = Drivers&(Id, Text, Drivers&);
    using FindSome = Drivers&(Id, Text, Attributes const&, Drivers&);
    EXPECT_EQ(13u, (slotOf<Registry, Find>(&Registry::getDrivers)));
    EXPECT_EQ(14u, (slotOf<Registry, FindSome>(&Registry::getDrivers)));
    using FindFaces = Interfaces&(Id, Text, Id, Interfaces&);
    using FindSomeFaces = Interfaces&(Id, Text, Attributes const&, Id, Interfaces&);
    EXPECT_EQ(15u, (slotOf<Registry, FindFaces>(&Registry::getDriverInterfaces)));
    EXPECT_EQ(16u, (slotOf<Registry, FindSomeFaces>(&Registry::getDriverInterfaces)));
}

TEST(SlotOrder, DriversAndAttachments)
{
    using Text = String const&;
    EXPECT_EQ(17u, slotOf(&Registry::addDriver));
    EXPECT_EQ(18u, (slotOf<Registry, void(IDriver*)>(&Registry::removeDriver)));
    EXPECT_EQ(19u, (slotOf<Registry, void(Text)>(&Registry::removeDriver)));
    using Get = void(IDriver*, Text, String&) const;
    using GetByName = String&(Text, Text, String&) const;
    EXPECT_EQ(20u, (slotOf<Registry, Get>(&Registry::getDriverAttachment)));
    EXPECT_EQ(21u, (slotOf<Registry, GetByName>(&Registry::getDriverAttachment)));
    using Set = XCode(String&, IDriver*, Text, Text);
    using SetByName = XCode(String&, Text, Text, Text);
    EXPECT_EQ(22u, (slotOf<Registry, Set>(&Registry::setDriverAttachment)));
    EXPECT_EQ(23u, (slotOf<Registry, SetByName>(&Registry::setDriverAttachment)));
    EXPECT_EQ(24u, slotOf(&Registry::eventLoop));
}

TEST(SlotOrder, Repository)
{
    checkUnknown<IDriverRepository>();
    checkUnknown<CDriverRepository>();
    EXPECT_EQ(24u, slotOf(&CDriverRepository::eventLoop));
    EXPECT_EQ(25u, slotOf(&CDriverRepository::getInfo));

    struct Other : CDriverRepository
    {
        using CDriverRepository::CDriverRepository;
        virtual void next() {}
    };
    EXPECT_EQ(26u, slotOf(&Other::next));
    const CDriverRepository repository(CRIT::INSTANCE());
    const Other other(CRIT::INSTANCE());
    EXPECT_EQ("4 5", differences(&repository, &other, 26));
    IInfo const* const info = &repository;
    IInfo const* const otherInfo = &other;
    EXPECT_EQ("4 5", differences(info, otherInfo, 7));
}

TEST(SlotOrder, IDriverRepositoryObserver)
{
    EXPECT_EQ(0u, slotOf(&IDriverRepositoryObserver::onDriverAdded));
    EXPECT_EQ(1u, slotOf(&IDriverRepositoryObserver::onDriverRemoved));
    EXPECT_EQ(2u, slotOf(&IDriverRepositoryObserver::onDriverAttachmentSet));
    EXPECT_EQ(3u, slotOf(&IDriverRepositoryObserver::onDriverAttachmentCleared));

    using Event = ObserverEvent<IDriverRepository>;
    struct Observer : IDriverRepositoryObserver
    {
        XCode onDriverAdded(String&, Event&) override { return 0; }
        void onDriverRemoved(Event&) override {}
        XCode onDriverAttachmentSet(String&, Event&) override { return 0; }
        void onDriverAttachmentCleared(Event&) override {}
        virtual void next() {}
    };
    struct Other : Observer
    {};
    EXPECT_EQ(6u, slotOf(&Observer::next));
    const Observer observer;
    const Other other;
    EXPECT_EQ("4 5", differences(&observer, &other, 7));
}

TEST(SlotOrder, IChannelGroup)
{
    checkUnknown<IChannelGroup>();
    EXPECT_EQ(6u, slotOf(&IChannelGroup::addChannelGroupObserver));
    EXPECT_EQ(7u, slotOf(&IChannelGroup::removeChannelGroupObserver));
    EXPECT_EQ(8u, slotOf(&IChannelGroup::getTimeslots));
    EXPECT_EQ(9u, slotOf(&IChannelGroup::setTimeslots));
}

TEST(SlotOrder, CChannelGroup)
{
    checkDriver<CChannelGroup>();
    EXPECT_EQ(10u, slotOf(&CChannelGroup::addChannelGroupObserver));
    EXPECT_EQ(11u, slotOf(&CChannelGroup::removeChannelGroupObserver));
    EXPECT_EQ(12u, slotOf(&CChannelGroup::getTimeslots));
    EXPECT_EQ(13u, slotOf(&CChannelGroup::setTimeslots));
    EXPECT_EQ(14u, slotOf(&CChannelGroup::getInfo));

    struct Other : CChannelGroup
    {
        using CChannelGroup::CChannelGroup;
        virtual void next() {}
    };
    EXPECT_EQ(15u, slotOf(&Other::next));
    const CChannelGroup group("B-CHANNELS");
    const Other other("B-CHANNELS");
    EXPECT_EQ("4 5", differences(&group, &other, 15));
    IChannelGroup const* const second = &group;
    IChannelGroup const* const otherSecond = &other;
    EXPECT_EQ("4 5", differences(second, otherSecond, 10));
    IInfo const* const third = &group;
    IInfo const* const otherThird = &other;
    EXPECT_EQ("4 5", differences(third, otherThird, 7));
}

TEST(SlotOrder, BasesOfTheChannelGroupFollowOneAnother)
{
    const CChannelGroup group("B-CHANNELS");
    char const* const start = reinterpret_cast<char const*>(&group);
    const auto at = [&](auto const* base) {
        return (reinterpret_cast<char const*>(base) - start) /
               static_cast<std::ptrdiff_t>(sizeof(void*));
    };
    EXPECT_EQ(0, at(static_cast<IDriver const*>(&group)));
    EXPECT_EQ(1, at(static_cast<IChannelGroup const*>(&group)));
    EXPECT_EQ(2, at(static_cast<IInfo const*>(&group)));
}

TEST(SlotOrder, IChannelGroupObserver)
{
    using Event = ObserverEvent<IChannelGroup>;
    using Base = IChannelGroupObserver;
    EXPECT_EQ(0u, (slotOf<Base, XCode(String&, Event&)>(&Base::onTimeslotsAdded)));
    EXPECT_EQ(1u, (slotOf<Base, void(Event&)>(&Base::onTimeslotsAdded)));
    EXPECT_EQ(2u, slotOf(&Base::onTimeslotsRemoved));

    struct Observer : IChannelGroupObserver
    {
        XCode onTimeslotsAdded(String&, Event&) override { return 0; }
        void onTimeslotsAdded(Event&) override {}
        void onTimeslotsRemoved(Event&) override {}
        virtual void next() {}
    };
    struct Other : Observer
    {};
    EXPECT_EQ(5u, slotOf(&Observer::next));
    const Observer observer;
    const Other other;
    EXPECT_EQ("3 4", differences(&observer, &other, 6));
}
} // namespace
