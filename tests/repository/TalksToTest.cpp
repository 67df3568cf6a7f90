#include <vector>

#include <support/RecordFixture.h>

namespace
{

using TalksTo = RecordFixture;

TEST_F(TalksTo, EmptyCriteriaSelectEveryDriver)
{
    EXPECT_TRUE(record().talksTo(make("a", 1)));
    EXPECT_TRUE(record().talksTo(make("a", 1), "any", "thing"));
    const TYPtr<TestDriver> nameless(new TestDriver("", TOVA_UUID::INVALID()));
    const Record other(&repository(), nameless.get());
    EXPECT_TRUE(other.talksTo(make("a", 1)));
    const Listener standard;
    EXPECT_TRUE(record().talksTo(&standard));
}

TEST_F(TalksTo, DriverType)
{
    TOVA_UUID_Data const& data = DID().data();
    const TOVA_UUID alike =
        TOVA_UUID::create(data.words[0], data.words[1], data.words[2], data.words[3], "alike");
    const TOVA_UUID nearMiss =
        TOVA_UUID::create(data.words[0], data.words[1], data.words[2], data.words[3] + 1, "span");
    struct
    {
        TOVA_UUID did;
        bool selects;
    } const cases[] = {
        {DID(), true},
        {alike, true},
        {TOVA_UUID::INVALID(), true},
        {nearMiss, false},
        {IDriver::DID_UNKNOWN(), false},
        {IDriver::IID(), false},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(c.did.name());
        EXPECT_EQ(c.selects, record().talksTo(make("a", 1, Terms().did(c.did))));
        EXPECT_EQ(c.selects, record().talksTo(make("a", 1, Terms().did(c.did)), "k", "v"));
    }
}

TEST_F(TalksTo, AnyTypeIsAlsoAnInvalidRecordOfItsOwn)
{
    TOVA_UUID_Data const& none = TOVA_UUID::INVALID().data();
    const TOVA_UUID alike =
        TOVA_UUID::create(none.words[0], none.words[1], none.words[2], none.words[3], "alike");
    EXPECT_TRUE(record().talksTo(make("a", 1, Terms().did(alike).iid(alike))));
    EXPECT_EQ(0u, driver().calls().queryInterface);
}

TEST_F(TalksTo, Interface)
{
    const TOVA_UUID offered = TOVA_UUID::create(9, 9, 9, 9, "offered");
    driver().offer(offered);
    EXPECT_TRUE(record().talksTo(make("a", 1, Terms().iid(offered))));
    EXPECT_TRUE(record().talksTo(make("a", 1, Terms().iid(IDriver::IID()))));
    EXPECT_FALSE(record().talksTo(make("a", 1, Terms().iid(IChannelGroup::IID()))));
    EXPECT_EQ(2, driver().references()) << "asked without a place for the interface";
}

TEST_F(TalksTo, InterfaceIsNotConsultedForAnAttachment)
{
    Listener* const l = make("a", 1, Terms().iid(IChannelGroup::IID()));
    EXPECT_TRUE(record().talksTo(l, "k", "v"));
    EXPECT_EQ(0u, driver().calls().queryInterface);
    EXPECT_FALSE(record().talksTo(l));
    EXPECT_EQ(1u, driver().calls().queryInterface);
}

/// Answers the interface criterion only to who leaves no place for the interface.
class Strict : public TestDriver
{
public:
    using TestDriver::TestDriver;
    XCode queryInterface(TOVA_UUID const&, void** out) override
    {
        return XCode(out == nullptr ? 0 : -1);
    }
};

TEST_F(TalksTo, InterfaceIsAskedForWithoutAPlaceForIt)
{
    const TYPtr<Strict> strict(new Strict("e1t1 1"));
    const Record other(&repository(), strict.get());
    EXPECT_TRUE(other.talksTo(make("a", 1, Terms().iid(IChannelGroup::IID()))));
}

TEST_F(TalksTo, NamePrefix)
{
    struct
    {
        char const* prefix;
        bool selects;
    } const cases[] = {
        {"", true},
        {"e", true},
        {"e1", true},
        {"e1t1 ", true},
        {"e1t1 1", true},
        // Near misses.
        {"E1", false},
        {"xe1", false},
        {"1", false},
        {"t1", false},
        {"e1t1 1 ", false},
        {"e1t1 11", false},
        {"e1t1  1", false},
        {" e1", false},
        {"e*", false},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(c.prefix);
        EXPECT_EQ(c.selects, record().talksTo(make("a", 1, Terms().prefix(c.prefix))));
        EXPECT_EQ(c.selects, record().talksTo(make("a", 1, Terms().prefix(c.prefix)), "k", "v"));
    }
    const TYPtr<TestDriver> other(new TestDriver("xe1"));
    EXPECT_FALSE(Record(&repository(), other.get()).talksTo(make("a", 1, Terms().prefix("e1"))));
}

struct AttributeCase
{
    char const* key1;
    char const* prefix1;
    char const* key2;
    char const* prefix2;
    bool selects;
};

TEST_F(TalksTo, Attributes)
{
    attach("slot", "12");
    attach("port", "3");
    attach("gone", "x");
    attach("gone", "");
    const AttributeCase cases[] = {
        {"slot", "12", "port", "3", true},
        {"slot", "1", "port", "", true},
        {"slot", "", "none", "", true},
        {"none", "", "gone", "", true},
        // One that fails rejects.
        {"slot", "2", "port", "3", false},
        {"slot", "12", "port", "31", false},
        {"slot", "123", "port", "3", false},
        {"port", "3", "none", "x", false},
        {"slot", "12", "gone", "x", false},
        {"Slot", "12", "port", "3", false},
        {"slo", "12", "port", "3", false},
    };
    for (AttributeCase const& c : cases) {
        SCOPED_TRACE(std::string(c.key1) + "=" + c.prefix1 + " " + c.key2 + "=" + c.prefix2);
        const Terms terms = Terms().attribute(c.key1, c.prefix1).attribute(c.key2, c.prefix2);
        EXPECT_EQ(c.selects, record().talksTo(make("a", 1, terms)));
    }
}

struct OverrideCase
{
    char const* key;
    char const* value;
    bool selects;
};

// A listener for slot=1... and port=3..., of a driver with slot=12 and port=4.
TEST_F(TalksTo, AttributesWithOneAtAnotherValue)
{
    attach("slot", "12");
    attach("port", "4");
    Listener* const l = make("a", 1, Terms().attribute("slot", "1").attribute("port", "3"));
    EXPECT_FALSE(record().talksTo(l));
    const OverrideCase cases[] = {
        {"port", "3", true},  {"port", "37", true}, {"port", "", false},
        {"port", "4", false}, {"slot", "1", false}, {"slot", "", false},
        {"none", "3", false}, {"Port", "3", false}, {"", "3", false},
    };
    for (OverrideCase const& c : cases) {
        SCOPED_TRACE(std::string(c.key) + "=" + c.value);
        EXPECT_EQ(c.selects, record().talksTo(l, c.key, c.value));
    }
    attach("port", "33");
    EXPECT_TRUE(record().talksTo(l));
    EXPECT_FALSE(record().talksTo(l, "slot", "21"));
    EXPECT_FALSE(record().talksTo(l, "slot", ""));
    EXPECT_TRUE(record().talksTo(l, "none", "x"));
    EXPECT_EQ("33", record().getAttachment("port")) << "nothing is stored";
}

TEST_F(TalksTo, EmptyKeyIsAKeyLikeAnyOther)
{
    Listener* const l = make("a", 1, Terms().attribute("", "x"));
    EXPECT_FALSE(record().talksTo(l));
    EXPECT_TRUE(record().talksTo(l, "", "xy"));
    attach("", "xyz");
    EXPECT_TRUE(record().talksTo(l));
    EXPECT_FALSE(record().talksTo(l, "", ""));
    EXPECT_TRUE(record().talksTo(l, "k", ""));
}

/// Writes down what is asked of it, in order.
class Asked : public TestDriver
{
public:
    using TestDriver::TestDriver;
    TOVA_UUID const& getDID() const override
    {
        asked += "type ";
        return TestDriver::getDID();
    }
    String const& getDriverName() const override
    {
        asked += "name ";
        return TestDriver::getDriverName();
    }
    XCode queryInterface(TOVA_UUID const& iid, void** out) override
    {
        asked += "interface ";
        return TestDriver::queryInterface(iid, out);
    }
    std::string take() const { return std::exchange(asked, ""); }

private:
    mutable std::string asked;
};

TEST_F(TalksTo, StopsAtTheFirstThatFails)
{
    const TYPtr<Asked> asked(new Asked("fxs 1", DID()));
    const Record other(&repository(), asked.get());
    Terms terms = Terms().did(DID()).iid(IDriver::IID()).prefix("fxs");
    asked.get()->take();
    EXPECT_TRUE(other.talksTo(make("a", 1, terms)));
    EXPECT_EQ("type interface name ", asked.get()->take());
    EXPECT_TRUE(other.talksTo(make("a", 1, terms), "k", "v"));
    EXPECT_EQ("type name ", asked.get()->take());
    EXPECT_FALSE(other.talksTo(make("a", 1, Terms(terms).did(IDriver::DID_UNKNOWN()))));
    EXPECT_EQ("type ", asked.get()->take());
    EXPECT_FALSE(other.talksTo(make("a", 1, Terms(terms).iid(IChannelGroup::IID()))));
    EXPECT_EQ("type interface ", asked.get()->take());
    EXPECT_FALSE(other.talksTo(make("a", 1, Terms(terms).prefix("bri"))));
    EXPECT_EQ("type interface name ", asked.get()->take());
}

/// A driver whose lock must not be taken.
class Locked : public TestDriver
{
public:
    using TestDriver::TestDriver;
    Lock* getLock() override
    {
        ADD_FAILURE() << "asked for its lock";
        return nullptr;
    }
};

TEST_F(TalksTo, AsksTheDriverUnlocked)
{
    const TYPtr<Locked> locked(new Locked("fxs 1", DID()));
    Record other(&repository(), locked.get());
    Listener* const l = make("a", 1, Terms().did(DID()).iid(IDriver::IID()).prefix("fxs"));
    EXPECT_TRUE(other.talksTo(l));
    EXPECT_EQ(0, other.addListener(error_, l).code());
    other.removeListener(l);
    EXPECT_EQ("a: added fxs 1\na: removed fxs 1\n", heard());
}

// What queries ask for: all three must hold.
} // namespace
