#include <gtest/gtest.h>

#include <drvrepo/DRIVER.h>
#include <drvrepo/DriverWrapper.h>
#include <drvrepo/Explain.h>
#include <utility/StringTokenizer.h>
#include <utility/TOVA_Vector.h>

#include "Heap.h"
#include "World.h"

// Operations without a result code, and those that only look: each request for memory fails, once
// alone and once with all behind it. Then std::bad_alloc passes, or code -1 says so, and what the
// operation was to fill is as it was.

namespace
{

using Record = CDriverRepository::DriverWrapper;

/// What the operations work on.
struct Desk
{
    Desk() : group("group"), numbers(8)
    {
        world.plan("A", 10, Terms().veto().snapshot().attribute("m", "1").prefix("d"));
        world.plan("C", 30, Terms());
        world.listen("A");
        world.listen("C");
        world.add("e");
        world.add("d");
        world.add("B");
        world.set("d", "m", "1");
        world.timeslots(0x5);
        wanted.put("m", "1");
        for (int i = 0; i < 40; ++i) // any value will do
            wanted.put(String().format("%d", i), "");
        for (char const* key : {"1", "2", "3", "4", "5", "6", "7", "8", "9"})
            table.put(key, "value");
        for (unsigned word = 0; word < 4; ++word)
            longData.copyOnWrite().addTail(&word, sizeof word);
        numbers.append("one");
        list.append("one");
        list.append("two");
    }
    ~Desk() { EXPECT_EQ("", world.end()); }

    CDriverRepository& repository() { return world.repository(); }
    /// Everything that an operation may fill, as text.
    std::string look()
    {
        std::string all =
            world.look() + name.cString() + "," + type.cString() + "," + message.cString() + "," +
            std::to_string(mask) + "," + std::to_string(numbers.count()) + "," +
            std::to_string(table.count()) + "," + std::to_string(list.count()) + "," +
            std::to_string(longData.buffer().size()) + "," + std::to_string(result.code()) +
            result.message().cString() + "," + std::to_string(listener.attributes().count()) +
            listener.name().cString() +
            std::to_string(explanation.criteria.count() + whatIf.criteria.count() +
                           whatIf.told.count() + explanations.count());
        for (std::uint32_t i = 0; i < numbers.count(); ++i)
            all += std::string(";") + std::as_const(numbers)[i].cString();
        return all;
    }

    World world;
    const String group;
    String name{"name"};
    String type{"type"};
    String message{"message"};
    unsigned mask = 7;
    TOVA_Vector<String> numbers;
    TOVA_List<String> list;
    TOVA_StringHashTable<String> table;
    IDriverRepository::Attributes wanted;
    TYMarshaller longData;
    XCode result{5};
    CDriverRepository::Listener listener;
    const String e1t1{"e1t1"};
    const String many{"a/b/c/d/e/f/g/h/i/j"};
    const String slots{"1-3;5"};
    const String d{"d"};
    const String m{"m"};
    const String a{"A"};
    Explanation explanation;
    WhatIf whatIf;
    TOVA_List<Explanation> explanations;
};

/// Passes "Out of memory" on as what it is.
void check(XCode const& rc)
{
    if (rc.code() != 0)
        throw std::bad_alloc();
}

/// Takes a clone of what it hears.
class Cloning : public IChannelGroupObserver
{
public:
    using Event = ObserverEvent<IChannelGroup>;

    XCode onTimeslotsAdded(String&, Event&) override { return XCode(); }
    void onTimeslotsAdded(Event& event) override
    {
        const std::unique_ptr<Event> first(event.clone());
        const std::unique_ptr<Event> second(event.clone());
        cloned = true;
    }
    void onTimeslotsRemoved(Event&) override {}

    bool cloned = false;
};

struct Operation
{
    char const* name;
    void (*act)(Desk& desk);
};

const unsigned ALL = 20;

const Operation OPERATIONS[] = {
    {"getDrivers",
     [](Desk& d) {
         TOVA_List<TYPPtr<IDriver>> found;
         d.repository().getDrivers(TOVA_UUID::INVALID(), String::EMPTY(), found);
     }},
    {"getDrivers by attachments",
     [](Desk& d) {
         TOVA_List<TYPPtr<IDriver>> found;
         d.repository().getDrivers(TOVA_UUID::INVALID(), String::EMPTY(), d.wanted, found);
     }},
    {"getDriverInterfaces",
     [](Desk& d) {
         TOVA_List<TYPPtr<IUnknown>> found;
         d.repository().getDriverInterfaces(TOVA_UUID::INVALID(), String::EMPTY(), IInfo::IID(),
                                            found);
     }},
    {"getDriverInterfaces by attachments",
     [](Desk& d) {
         TOVA_List<TYPPtr<IUnknown>> found;
         d.repository().getDriverInterfaces(TOVA_UUID::INVALID(), String::EMPTY(), d.wanted,
                                            IID_Unknown(), found);
     }},
    {"getInfo of the repository",
     [](Desk& d) {
         InfoContainer info;
         d.repository().getInfo(info, ALL, 0, ALL, 0, d.group);
     }},
    {"getInfo of the group",
     [](Desk& d) {
         InfoContainer info;
         d.world.group().getInfo(info, ALL, 0, ALL, 0, d.group);
     }},
    {"explaining",
     [](Desk& d) { check(explain(d.message, d.repository(), d.d, d.a, d.explanation)); }},
    {"explaining a change",
     [](Desk& d) { check(explain(d.message, d.repository(), d.d, d.a, d.m, d.type, d.whatIf)); }},
    {"explaining a driver",
     [](Desk& d) { check(explainDriver(d.message, d.repository(), d.d, d.explanations)); }},
    {"explaining a listener",
     [](Desk& d) { check(explainListener(d.message, d.repository(), d.a, d.explanations)); }},
    {"changing timeslots, and an observer keeps no more than a look",
     [](Desk& d) {
         Cloning observer;
         String message;
         d.world.group().addChannelGroupObserver(message, &observer, 1, false, true);
         d.world.group().removeChannelGroupObserver(&observer, false);
         if (!observer.cloned)
             throw std::bad_alloc();
     }},
    {"making a record",
     [](Desk& d) {
         const std::unique_ptr<Record> record(new Record(&d.repository(), d.world.driver("e")));
     }},
    {"recording a listener",
     [](Desk& d) {
         Record record(&d.repository(), d.world.driver("e"));
         record.addListenerOnce(&d.listener, false);
     }},
    {"offering a record's driver to a listener",
     [](Desk& d) {
         Record record(&d.repository(), d.world.driver("e"));
         check(record.addListener(d.message, &d.listener));
     }},
    {"copying a listener",
     [](Desk& d) {
         CDriverRepository::Listener other(d.group, TOVA_UUID::INVALID(), TOVA_UUID::INVALID(),
                                           d.group, d.wanted, 1, true, true, nullptr);
         const CDriverRepository::Listener copy(other);
         d.listener = copy;
         d.listener = CDriverRepository::Listener();
     }},
    {"building a name from parts",
     [](Desk& d) {
         IDriver::BUILD_DRIVER_NAME(d.name, d.e1t1, 1, 2, 3, d.group, d.e1t1, d.group, d.e1t1);
     }},
    {"building a name from components",
     [](Desk& d) { IDriver::BUILD_DRIVER_NAME(d.name, d.e1t1, d.group, d.e1t1, d.group, d.e1t1); }},
    {"building a name from a vector",
     [](Desk& d) { IDriver::BUILD_DRIVER_NAME(d.name, d.numbers); }},
    {"splitting a name into a vector",
     [](Desk& d) { IDriver::SPLIT_DRIVER_NAME(d.many, d.numbers); }},
    {"splitting a name into parts",
     [](Desk& d) {
         unsigned n1 = 0;
         unsigned n2 = 0;
         unsigned n3 = 0;
         IDriver::SPLIT_DRIVER_NAME(d.many, d.type, n1, n2, n3, d.numbers);
     }},
    {"splitting a name into strings",
     [](Desk& d) {
         IDriver::SPLIT_DRIVER_NAME(d.many, &d.name, &d.type, nullptr, nullptr, nullptr);
     }},
    {"rebuilding a name", [](Desk& d) { IDriver::REBUILD_DRIVER_NAME(d.name, d.many, d.e1t1); }},
    {"printing timeslots", [](Desk& d) { IChannelGroup::TIMESLOTS_UINT_TO_TEXT(0xf5, d.name); }},
    {"reading timeslots",
     [](Desk& d) { check(IChannelGroup::TIMESLOTS_TEXT_TO_UINT(d.message, d.slots, d.mask)); }},
    {"making a group",
     [](Desk& d) { const TYPtr<CChannelGroup> made(new CChannelGroup(d.group)); }},
    {"making a driver",
     [](Desk& d) { const TYPtr<CDriver> made(new CDriver(IDriver::DID_UNKNOWN(), d.group)); }},
    {"cloning an event of a driver",
     [](Desk& d) {
         const IDriverRepository::EvDriver event(&d.repository(), d.world.driver("d"));
         const std::unique_ptr<IDriverRepository::EvDriver> copy(event.clone());
     }},
    {"cloning an event of an attachment",
     [](Desk& d) {
         const IDriverRepository::EvAttachment event(&d.repository(), d.world.driver("d"), d.group,
                                                     d.group);
         const std::unique_ptr<IDriverRepository::EvAttachment> copy(event.clone());
     }},
    {"cloning an event of timeslots",
     [](Desk& d) {
         const IChannelGroup::EvTimeslot event(&d.world.group(), 1, 2, 3);
         const std::unique_ptr<IChannelGroup::EvTimeslot> copy(event.clone());
     }},
    {"appending to a string", [](Desk& d) { d.name.concat(d.group); }},
    {"appending formatted text", [](Desk& d) { d.name.concatf("%s", "text"); }},
    {"formatting", [](Desk& d) { d.name.format("%s", "text"); }},
    {"assigning text", [](Desk& d) { d.name = "other"; }},
    {"taking tokens",
     [](Desk& d) {
         StringTokenizer tokens(d.slots, d.group);
         String token;
         tokens.nextToken(token);
     }},
    {"making an identifier",
     [](Desk&) { const TOVA_UUID id = TOVA_UUID::create(1, 2, 3, 4, "id"); }},
    {"making a result with a message", [](Desk& d) { d.result = XCode(-1, d.group); }},
    {"copying a result",
     [](Desk& d) {
         const XCode result(-1, d.group);
         d.result = result;
     }},
    {"growing a vector", [](Desk& d) { d.numbers[20]; }},
    {"copying a vector",
     [](Desk& d) {
         TOVA_Vector<String> copy(d.numbers);
         copy.append(d.group);
     }},
    {"copying a list", [](Desk& d) { const TOVA_List<String> copy(d.list); }},
    {"copying a table", [](Desk& d) { const TOVA_StringHashTable<String> copy(d.table); }},
    {"appending to a marshaller",
     [](Desk& d) {
         const char block[64] = {};
         d.longData.copyOnWrite().addTail(block, sizeof block);
     }},
    {"changing a shared marshaller",
     [](Desk& d) {
         TYMarshaller copy(d.longData);
         copy.copyOnWrite();
     }},
};

/// Returns whether a request failed.
bool failOne(Operation const& operation, std::uint64_t n, heap::Mode mode)
{
    Desk desk;
    const std::string before = desk.look();
    bool happened = false;
    bool threw = false;
    try {
        const heap::Failing failing(n, mode);
        try {
            operation.act(desk);
        } catch (std::bad_alloc const&) {
            threw = true;
        }
        happened = failing.happened();
    } catch (...) {
        ADD_FAILURE() << "threw something else";
    }
    EXPECT_EQ(happened, threw);
    if (desk.message == "Out of memory")
        desk.message = "message";
    if (happened) {
        EXPECT_EQ(before, desk.look());
    }
    return happened;
}

TEST(ReadingWithoutMemory, ThrowsAndLeavesEverythingAsItWas)
{
    for (Operation const& operation : OPERATIONS) { // what is made once and stays is made now
        Desk desk;
        operation.act(desk);
    }
    for (Operation const& operation : OPERATIONS)
        for (heap::Mode mode : {heap::Mode::ONCE, heap::Mode::FROM_THERE})
            for (std::uint64_t n = 0;; ++n) {
                SCOPED_TRACE(std::string(operation.name) + ", request " + std::to_string(n));
                const std::int64_t living = heap::living();
                if (!failOne(operation, n, mode)) {
                    EXPECT_LT(0u, n) << "asks for no memory at all";
                    break;
                }
                EXPECT_EQ(living, heap::living());
                if (HasFailure())
                    return;
            }
}

TEST(ReadingWithoutMemory, FirstInstanceIsMadeAnew)
{
    {
        const heap::Failing failing(0, heap::Mode::FROM_THERE);
        EXPECT_THROW(DRIVER::INSTANCE(), std::bad_alloc);
    }
    IDriver* driver = nullptr;
    EXPECT_EQ(-1, DRIVER::INSTANCE()->getDriver("fxs 1", &driver).code());
}

TEST(ReadingWithoutMemory, TimeslotTextSaysSo)
{
    Desk desk;
    XCode rc;
    {
        const heap::Failing failing(0, heap::Mode::ONCE);
        rc = IChannelGroup::TIMESLOTS_TEXT_TO_UINT(desk.message, desk.slots, desk.mask);
    }
    EXPECT_EQ(-1, rc.code());
    EXPECT_STREQ("Out of memory", desk.message.cString());
    EXPECT_EQ(7u, desk.mask);
}

} // namespace
