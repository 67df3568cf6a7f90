#include <support/RepositoryFixture.h>

namespace
{

using Departure = RepositoryFixture;

// The driver does nothing of its own when it is taken in, so that nothing but its addition asks
// whether it has gone.
TEST_F(Departure, IsToldToAllBeforeTheDriverIsAddedAgainFromInside)
{
    listen("a", 1);
    listen("b", 2);
    listen("c", 3);
    add("fxs 1");
    heard();
    observer("b").then = [&](std::string const& what) {
        if (what == "removed fxs 1")
            add("fxs 1");
    };
    remove("fxs 1");
    EXPECT_EQ("c: removed fxs 1\nb: removed fxs 1\na: removed fxs 1\n"
              "a: added fxs 1\nb: added fxs 1\nc: added fxs 1\n",
              heard());
    EXPECT_EQ("fxs 1", drivers());
    observer("b").then = nullptr;
}

// Also when the driver itself is named, which then isn't found under its name any more.
TEST_F(Departure, IsToldToAllBeforeTheDriverIsRemovedAgainFromInside)
{
    listen("a", 1);
    listen("b", 2);
    listen("c", 3);
    add("fxs 1");
    heard();
    std::string meanwhile;
    observer("c").then = [&](std::string const& what) {
        if (what != "removed fxs 1")
            return;
        repository().removeDriver(&driver("fxs 1"));
        meanwhile = heard();
    };
    remove("fxs 1");
    EXPECT_EQ("c: removed fxs 1\nb: removed fxs 1\na: removed fxs 1\n", meanwhile);
    EXPECT_EQ("", heard());
    observer("c").then = nullptr;
}

// The log tells what was asked for before what comes of it.
TEST_F(Departure, IsRemovedAgainInTheLogBeforeTheOtherFarewells)
{
    listen("a", 1);
    listen("b", 2);
    add("fxs 1");
    std::string meanwhile;
    observer("b").then = [&](std::string const& what) {
        if (what != "removed fxs 1")
            return;
        lines();
        repository().removeDriver(&driver("fxs 1"));
        meanwhile = lines();
    };
    remove("fxs 1");
    EXPECT_EQ("<7> DrvRepo: Remove driver 'fxs 1'\n"
              "<7> DrvRepo:   fxs 1: Notify listener 'a': onDriverRemoved()\n",
              meanwhile);
    observer("b").then = nullptr;
}

} // namespace
