#include <climits>

#include <gtest/gtest.h>

#include <drvrepo/IDriver.h>
#include <drvrepo/IKernelDriverRepository.h>

namespace
{

struct Case
{
    long id;
    char const* driver;
    char const* kernel;
};

const Case CASES[] = {
    {0, "getDID", "openConnectionToKernel"},
    {1, "getDriverName", "closeConnectionToKernel"},
    {2, nullptr, "addFactory"},
    {3, nullptr, "removeFactory"},
    // Outside both tables.
    {4, nullptr, nullptr},
    {5, nullptr, nullptr},
    {-1, nullptr, nullptr},
    {-2, nullptr, nullptr},
    {INT_MAX, nullptr, nullptr},
    {INT_MIN, nullptr, nullptr},
};

TEST(MethodNames, AreFoundById)
{
    for (Case const& c : CASES) {
        SCOPED_TRACE(c.id);
        EXPECT_STREQ(c.driver, IDriver::MID::NAME(c.id));
        EXPECT_STREQ(c.kernel, IKernelDriverRepository::MID::NAME(c.id));
    }
}

// Where `long` is wider, only its lower 32 bits are the id.
TEST(MethodNames, IdsHave32Bits)
{
    if (sizeof(long) == 4)
        GTEST_SKIP() << "long has 32 bits here";
    const long high = static_cast<long>(0x700000000ull);
    EXPECT_STREQ("getDID", IDriver::MID::NAME(high));
    EXPECT_STREQ("getDriverName", IDriver::MID::NAME(high + 1));
    EXPECT_STREQ(nullptr, IDriver::MID::NAME(high + 2));
    EXPECT_STREQ("removeFactory", IKernelDriverRepository::MID::NAME(high + 3));
    const long allOnes = static_cast<long>(0xffffffffull);
    EXPECT_STREQ(nullptr, IKernelDriverRepository::MID::NAME(allOnes));
}

} // namespace
