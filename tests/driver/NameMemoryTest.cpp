#include <functional>
#include <new>
#include <string>

#include <gtest/gtest.h>

#include <drvrepo/IDriver.h>

#include <support/Allocations.h>

namespace
{

constexpr unsigned ABSENT = 4294967295u;

/// Everything that a helper can write to.
struct Results
{
    String name = "before";
    String type = "type";
    String parts[5] = {"1", "2", "3", "4", "5"};
    unsigned numbers[3] = {1, 2, 3};
    TOVA_Vector<String> vector{2};

    Results()
    {
        vector.append("x");
        vector.append("y");
    }

    std::string text() const
    {
        std::string all = std::string(name.cString()) + "|" + type.cString();
        for (String const& part : parts)
            all += std::string("|") + part.cString();
        for (unsigned number : numbers)
            all += "|" + std::to_string(number);
        for (String const& element : vector)
            all += std::string("|") + element.cString();
        return all;
    }
};

/// Lets each request for memory of a helper fail in turn: all results have to stay as they were.
void failEach(std::function<void(Results&)> const& work)
{
    for (unsigned request = 0; request < 100; ++request) {
        SCOPED_TRACE(request);
        Results results;
        const std::string before = results.text();
        bool happened = false;
        {
            const allocations::Failing failing(request);
            try {
                work(results);
            } catch (std::bad_alloc const&) {
            }
            happened = failing.happened();
        }
        if (!happened) {
            EXPECT_NE(0u, request);
            EXPECT_NE(before, results.text());
            return;
        }
        EXPECT_EQ(before, results.text());
    }
    FAIL() << "asks for memory without end";
}

const String NAME("e1t1 7 8 9/a longer component/b/c/d/e/f/g/h/i/j");

TEST(DriverNameWithoutMemory, BuildsNothing)
{
    TOVA_Vector<String> components(8);
    components.append("a");
    components.append("b");
    const String c("component");
    failEach([&](Results& r) { IDriver::BUILD_DRIVER_NAME(r.name, components); });
    failEach([&](Results& r) { IDriver::BUILD_DRIVER_NAME(r.name, c, 7, 8, ABSENT, components); });
    failEach([&](Results& r) { IDriver::BUILD_DRIVER_NAME(r.name, c, 7, 8, 9, c, c, c, c); });
    failEach([&](Results& r) { IDriver::BUILD_DRIVER_NAME(r.name, c, c, c, c, c); });
    failEach([&](Results& r) { IDriver::REBUILD_DRIVER_NAME(r.name, NAME, c); });
}

TEST(DriverNameWithoutMemory, SplitsNothing)
{
    failEach([](Results& r) { IDriver::SPLIT_DRIVER_NAME(NAME, r.vector); });
    failEach([](Results& r) {
        IDriver::SPLIT_DRIVER_NAME(NAME, r.type, r.numbers[0], r.numbers[1], r.numbers[2],
                                   r.vector);
    });
    failEach([](Results& r) {
        IDriver::SPLIT_DRIVER_NAME(NAME, r.type, r.numbers[0], r.numbers[1], r.numbers[2],
                                   &r.parts[0], &r.parts[1], &r.parts[2], &r.parts[3]);
    });
    failEach([](Results& r) {
        IDriver::SPLIT_DRIVER_NAME(NAME, &r.parts[0], &r.parts[1], &r.parts[2], &r.parts[3],
                                   &r.parts[4]);
    });
}

TEST(DriverNameMemory, PortTypesAskForNone)
{
    const String text("fxo");
    const std::uint64_t before = allocations::count();
    EXPECT_EQ(4u, static_cast<unsigned>(IDriver::Port::TYPE(text)));
    EXPECT_STREQ("fxo", IDriver::Port::NAME(IDriver::Port::TYPE_FXO));
    EXPECT_EQ(before, allocations::count());
}

TEST(DriverNameMemory, NothingIsKept)
{
    const std::int64_t before = allocations::living();
    {
        Results results;
        IDriver::SPLIT_DRIVER_NAME(NAME, results.vector);
        IDriver::BUILD_DRIVER_NAME(results.name, results.vector);
        EXPECT_EQ(NAME, results.name);
        EXPECT_LT(before, allocations::living());
    }
    EXPECT_EQ(before, allocations::living());
}

} // namespace
