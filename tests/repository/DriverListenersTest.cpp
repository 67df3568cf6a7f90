#include <support/RecordFixture.h>

namespace
{

using DriverListeners = RecordFixture;
using DriversList = RepositoryFixture;

TEST_F(DriverListeners, StrangersAreNotThere)
{
    Listener* const l = make("a", 1);
    EXPECT_EQ(0, record().getListenerCount(l));
    EXPECT_FALSE(record().isActive(l));
    EXPECT_EQ(-1, record().removeListenerOnce(l));
    EXPECT_EQ(0, record().getListenerCount(l)) << "asking does not make an entry";
    EXPECT_EQ(0, record().getListenerCount(nullptr));
    EXPECT_FALSE(record().isActive(nullptr));
    EXPECT_EQ(-1, record().removeListenerOnce(nullptr));
}

TEST_F(DriverListeners, AreCountedUpAndDown)
{
    Listener* const l = make("a", 1);
    EXPECT_EQ(1, record().addListenerOnce(l, true));
    EXPECT_EQ(2, record().addListenerOnce(l, true));
    EXPECT_EQ(3, record().addListenerOnce(l, true));
    EXPECT_EQ(3, record().getListenerCount(l));
    EXPECT_EQ(2, record().removeListenerOnce(l));
    EXPECT_EQ(1, record().removeListenerOnce(l));
    EXPECT_TRUE(record().isActive(l));
    EXPECT_EQ(0, record().removeListenerOnce(l));
    EXPECT_FALSE(record().isActive(l));
    EXPECT_EQ(0, record().removeListenerOnce(l)) << "the entry is still there, at 0";
    EXPECT_EQ(0, record().getListenerCount(l));
    EXPECT_EQ("", heard()) << "counting tells nobody";
    EXPECT_EQ("", lines());
}

TEST_F(DriverListeners, ActivityCountsForANewEntryOnly)
{
    Listener* const a = make("a", 1);
    Listener* const b = make("b", 1);
    record().addListenerOnce(a, true);
    record().addListenerOnce(b, false);
    record().addListenerOnce(a, false);
    record().addListenerOnce(b, true);
    EXPECT_TRUE(record().isActive(a));
    EXPECT_FALSE(record().isActive(b));
}

// An entry at 0 stays where it is, and a further addition brings it back as it is: inactive.
TEST_F(DriverListeners, RevivedEntryKeepsItsPlaceAndStaysInactive)
{
    Listener* const a = make("a", 5);
    record().addListenerOnce(a, true);
    record().removeListenerOnce(a);
    EXPECT_EQ(1, record().addListenerOnce(a, true));
    EXPECT_EQ(1, record().getListenerCount(a));
    EXPECT_FALSE(record().isActive(a));
}

TEST_F(DriverListeners, AreToldApartByIdentityNotByName)
{
    Listener* const a = make("a", 1);
    Listener* const alike = make("a", 1);
    record().addListenerOnce(a, true);
    EXPECT_EQ(0, record().getListenerCount(alike));
    EXPECT_EQ(1, record().addListenerOnce(alike, true));
    EXPECT_EQ(1, record().getListenerCount(a));
}

TEST_F(DriverListeners, StandByAscendingPriority)
{
    struct
    {
        char const* name;
        unsigned priority;
    } const listeners[] = {
        {"greatest", 4294967295u}, {"3", 3}, {"0", 0}, {"big", 2147483648u}, {"2", 2},
    };
    for (auto const& l : listeners)
        record().addListenerOnce(make(l.name, l.priority), true);
    EXPECT_EQ("0, 2, 3, big, greatest", active());
}

// Newest first among equals, as in the repository's own list.
TEST_F(DriverListeners, NewestFirstAmongEquals)
{
    record().addListenerOnce(make("first 5", 5), true);
    record().addListenerOnce(make("1", 1), true);
    record().addListenerOnce(make("second 5", 5), true);
    EXPECT_EQ("1, second 5, first 5", active());
    record().addListenerOnce(make("third 5", 5), true);
    EXPECT_EQ("1, third 5, second 5, first 5", active());
}

TEST_F(DriverListeners, NewOneStepsOverDeadEntries)
{
    const Terms byKey = Terms().attribute("k", "v");
    Listener* const a = make("a", 5, byKey);
    Listener* const b = make("b", 5, byKey);
    record().addListenerOnce(make("z", 9), true);
    record().addListenerOnce(a, true);
    record().addListenerOnce(b, true);            // b, a, z
    record().removeListenerOnce(b);               // a dead entry is no place to stand before
    record().addListenerOnce(make("c", 5), true); // (b), c, a, z
    record().removeListenerOnce(a);
    record().addListenerOnce(make("d", 7), true); // (b), c, (a), d, z
    EXPECT_EQ("c, d, z", active());
    // Brought back, and active again by their criteria, they show where they stood.
    record().addListenerOnce(a, true);
    record().addListenerOnce(b, true);
    EXPECT_EQ("c, d, z", active());
    attach("k", "v");
    EXPECT_EQ("b: added e1t1 1\nc: set e1t1 1 k=v\na: added e1t1 1\nd: set e1t1 1 k=v\n"
              "z: set e1t1 1 k=v\n",
              heard());
    EXPECT_EQ("b, c, a, d, z", active());
}

TEST_F(DriverListeners, OneBroughtBackOutOfOrderIsAPlaceToStandBefore)
{
    const Terms byKey = Terms().attribute("k", "v");
    Listener* const a = make("a", 5, byKey);
    record().addListenerOnce(make("x", 1), true);
    record().addListenerOnce(a, true);
    record().removeListenerOnce(a);
    record().addListenerOnce(make("b", 3), true); // x, (a), b
    record().addListenerOnce(a, true);
    String error;
    Listener* const c = make("c", 4);
    EXPECT_EQ(0, record().addListener(error, c).code()); // x, c, a, b
    attach("k", "v");
    EXPECT_EQ("x, c, a, b", active());
    record().addListenerOnce(make("d", 4), true);
    EXPECT_EQ("x, d, c, a, b", active());
}

TEST_F(DriverListeners, AllDeadPutsTheNewOneLast)
{
    Listener* const a = make("a", 1);
    Listener* const b = make("b", 9);
    for (Listener* l : {a, b}) {
        record().addListenerOnce(l, true);
        record().removeListenerOnce(l);
    }
    record().addListenerOnce(make("c", 5), true);
    EXPECT_EQ("c", active());
    record().addListenerOnce(make("d", 5), true);
    EXPECT_EQ("d, c", active());
}

TEST_F(DriverListeners, GoWithTheRecordWithoutAWord)
{
    {
        Record other(&repository(), &driver());
        other.addListener(error_, make("a", 1, Terms().snapshot()));
        other.addListener(error_, make("b", 1, Terms().prefix("fxs")));
        forget();
    }
    EXPECT_EQ("", heard());
    EXPECT_EQ("", lines());
    EXPECT_EQ(2, driver().references());
}

// In the repository's list the newest of equals stands first and so meets a driver first; each
// next one is put before it in the driver's list, which thus has them the other way round.
TEST_F(DriversList, ReversesEqualsForADriverThatCameAfterThem)
{
    listen("first", 5);
    listen("second", 5);
    listen("third", 5);
    add("fxs 1");
    EXPECT_EQ("third: added fxs 1\nsecond: added fxs 1\nfirst: added fxs 1\n", heard());
    attach("fxs 1", "k", "v");
    EXPECT_EQ("first: set fxs 1 k=v\nsecond: set fxs 1 k=v\nthird: set fxs 1 k=v\n", heard());
    attach("fxs 1", "k", "");
    EXPECT_EQ("third: cleared fxs 1 k=v\nsecond: cleared fxs 1 k=v\nfirst: cleared fxs 1 k=v\n",
              heard());
    remove("fxs 1");
    EXPECT_EQ("first: removed fxs 1\nsecond: removed fxs 1\nthird: removed fxs 1\n", heard());
}

TEST_F(DriversList, HasTheNewestFirstForADriverThatWasThereBefore)
{
    add("fxs 1");
    listen("first", 5);
    listen("second", 5);
    listen("third", 5);
    heard();
    attach("fxs 1", "k", "v");
    EXPECT_EQ("third: set fxs 1 k=v\nsecond: set fxs 1 k=v\nfirst: set fxs 1 k=v\n", heard());
}

TEST_F(DriversList, MixesPrioritiesAndEquals)
{
    listen("a 5", 5);
    listen("b 1", 1);
    listen("c 5", 5);
    listen("d 9", 9);
    add("fxs 1"); // meets b 1, c 5, a 5, d 9
    listen("e 5", 5);
    listen("f 1", 1);
    heard();
    attach("fxs 1", "k", "v");
    EXPECT_EQ("f 1: set fxs 1 k=v\nb 1: set fxs 1 k=v\ne 5: set fxs 1 k=v\na 5: set fxs 1 k=v\n"
              "c 5: set fxs 1 k=v\nd 9: set fxs 1 k=v\n",
              heard());
}

} // namespace
