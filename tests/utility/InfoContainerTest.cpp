#include <gtest/gtest.h>

#include <utility/InfoContainer.h>

namespace
{

TEST(InfoContainer, KeepsRowsInTheOrderOfAdding)
{
    InfoContainer info;
    EXPECT_TRUE(info.rows().empty());
    const String value("1-15");
    info.add(0, 0, "Configuration", "");
    info.add(1, 2, "Timeslot(s)", value);
    info.add(0, 0, "Configuration", "");
    ASSERT_EQ(3u, info.rows().size());
    EXPECT_EQ(0u, info.rows()[0].depth);
    EXPECT_EQ(0u, info.rows()[0].detail);
    EXPECT_STREQ("Configuration", info.rows()[0].key.cString());
    EXPECT_TRUE(info.rows()[0].value.isEmpty());
    EXPECT_EQ(1u, info.rows()[1].depth);
    EXPECT_EQ(2u, info.rows()[1].detail);
    EXPECT_STREQ("Timeslot(s)", info.rows()[1].key.cString());
    EXPECT_EQ(value.buffer(), info.rows()[1].value.buffer());
    EXPECT_STREQ("Configuration", info.rows()[2].key.cString());
}

TEST(InfoContainer, LeavesOutNothing)
{
    InfoContainer info;
    info.add(4294967295u, 4294967295u, "", "");
    ASSERT_EQ(1u, info.rows().size());
    EXPECT_EQ(4294967295u, info.rows()[0].depth);
    EXPECT_EQ(4294967295u, info.rows()[0].detail);
}

TEST(InfoContainer, TakesTextsOfItsOwnRows)
{
    InfoContainer info;
    info.add(0, 0, "key", "value");
    for (unsigned i = 1; i < 100; ++i)
        info.add(i, i, info.rows()[i - 1].value, info.rows()[0].key);
    EXPECT_STREQ("key", info.rows()[50].key.cString());
    EXPECT_STREQ("key", info.rows()[99].value.cString());
    EXPECT_STREQ("value", info.rows()[1].key.cString());
}

} // namespace
