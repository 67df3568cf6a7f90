#include <new>

#include <gtest/gtest.h>

#include <drvrepo/IChannelGroup.h>

#include <support/Allocations.h>

namespace
{

TEST(TimeslotTextWithoutMemory, IsNotRead)
{
    const String text("1-15;17-31");
    for (unsigned request = 0;; ++request) {
        SCOPED_TRACE(request);
        ASSERT_GT(100u, request);
        String message("before");
        unsigned int timeslots = 7;
        const std::int64_t living = allocations::living();
        const allocations::Failing failing(request);
        const XCode rc = IChannelGroup::TIMESLOTS_TEXT_TO_UINT(message, text, timeslots);
        if (!failing.happened()) {
            EXPECT_LT(0u, request);
            EXPECT_EQ(0, rc.code());
            EXPECT_EQ(0xFFFEFFFEu, timeslots);
            break;
        }
        EXPECT_EQ(-1, rc.code());
        EXPECT_STREQ("Out of memory", message.cString());
        EXPECT_EQ(7u, timeslots);
        EXPECT_GE(living, allocations::living());
    }
}

// The reason of a refusal is a fixed text: with all that reading needs, there is room for it too.
TEST(TimeslotTextWithoutMemory, IsRefusedWithAFixedText)
{
    const String good("1-2;3");
    const String bad("1-2;50");
    unsigned int timeslots = 7;
    String message;
    const std::uint64_t before = allocations::count();
    ASSERT_EQ(0, IChannelGroup::TIMESLOTS_TEXT_TO_UINT(message, good, timeslots).code());
    const allocations::Failing failing(allocations::count() - before);
    EXPECT_EQ(-1, IChannelGroup::TIMESLOTS_TEXT_TO_UINT(message, bad, timeslots).code());
    EXPECT_STREQ("Timeslot out of range", message.cString());
    EXPECT_FALSE(failing.happened());
}

TEST(TimeslotTextWithoutMemory, IsNotPrinted)
{
    for (unsigned request = 0;; ++request) {
        SCOPED_TRACE(request);
        ASSERT_GT(100u, request);
        String text("before");
        const allocations::Failing failing(request);
        try {
            IChannelGroup::TIMESLOTS_UINT_TO_TEXT(0xFFFEFFFE, text);
            EXPECT_FALSE(failing.happened());
            EXPECT_STREQ("1-15;17-31", text.cString());
            break;
        } catch (std::bad_alloc const&) {
            EXPECT_STREQ("before", text.cString());
        }
    }
}

} // namespace
