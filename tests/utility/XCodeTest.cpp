#include <cstring>

#include <gtest/gtest.h>

#include <utility/XCode.h>

namespace
{

std::uintptr_t wordOf(XCode const& code)
{
    std::uintptr_t word = 0;
    static_assert(sizeof word == sizeof code, "one word");
    std::memcpy(&word, static_cast<void const*>(&code), sizeof word);
    return word;
}

TEST(XCode, DefaultIsSuccess)
{
    const XCode code;
    EXPECT_EQ(0, code.code());
    EXPECT_STREQ("", code.message().cString());
    EXPECT_EQ(1u, wordOf(code));
}

TEST(XCode, KeepsCodesInTheWord)
{
    for (std::int32_t value :
         {0, 1, -1, 2, -2, 7, 42, 1000000, -1000000, 0x3fffffff, -0x40000000}) {
        SCOPED_TRACE(value);
        const XCode code(value);
        EXPECT_EQ(value, code.code());
        EXPECT_EQ(1u, wordOf(code) & 1u);
        EXPECT_EQ(value, static_cast<std::intptr_t>(wordOf(code)) >> 1);
        EXPECT_TRUE(code.message().isEmpty());
    }
}

// 31 bits fit into a word of 32; the others need a record there.
TEST(XCode, KeepsEveryCode)
{
    for (std::int32_t value : {0x40000000, INT32_MAX, -0x40000001, INT32_MIN}) {
        SCOPED_TRACE(value);
        XCode code(value);
        EXPECT_EQ(value, code.code());
        EXPECT_EQ(sizeof(void*) > 4 ? 1u : 0u, wordOf(code) & 1u);
        EXPECT_TRUE(code.message().isEmpty());
        const XCode copy(code);
        EXPECT_EQ(value, copy.code());
        code = XCode(3);
        EXPECT_EQ(3, code.code());
        EXPECT_EQ(value, copy.code());
    }
}

TEST(XCode, AMessageMakesARecord)
{
    const String message("line busy");
    {
        const XCode code(5, message);
        EXPECT_NE(0u, wordOf(code));
        EXPECT_EQ(0u, wordOf(code) & 1u);
        EXPECT_EQ(5, code.code());
        EXPECT_STREQ("line busy", code.message().cString());
        EXPECT_EQ(2, message.buffer()->references());
        // The record begins with the code, the message follows.
        std::int32_t first = 0;
        std::memcpy(&first, reinterpret_cast<void const*>(wordOf(code)), sizeof first);
        EXPECT_EQ(5, first);
    }
    EXPECT_EQ(1, message.buffer()->references());
}

TEST(XCode, ARecordMayMeanSuccess)
{
    const XCode code(0, "all well");
    EXPECT_EQ(0, code.code());
    EXPECT_STREQ("all well", code.message().cString());
}

TEST(XCode, ARecordWithoutAMessage)
{
    const XCode code(-7, String());
    EXPECT_EQ(-7, code.code());
    EXPECT_TRUE(code.message().isEmpty());
    EXPECT_EQ(0u, wordOf(code) & 1u);
}

TEST(XCode, CopiesRecordsDeeply)
{
    const String message("reason");
    XCode first(2, message);
    {
        const XCode second(first);
        EXPECT_NE(wordOf(first), wordOf(second));
        EXPECT_EQ(2, second.code());
        EXPECT_EQ(message.buffer(), second.message().buffer());
        EXPECT_EQ(3, message.buffer()->references());
    }
    EXPECT_EQ(2, message.buffer()->references());
    XCode third;
    third = first;
    EXPECT_NE(wordOf(first), wordOf(third));
    EXPECT_EQ(3, message.buffer()->references());
    first = XCode();
    EXPECT_EQ(2, message.buffer()->references());
    EXPECT_EQ(2, third.code());
    EXPECT_STREQ("reason", third.message().cString());
}

TEST(XCode, MovesLeaveANullWordThatReadsAsZero)
{
    XCode from(9, "moved");
    const std::uintptr_t word = wordOf(from);
    const XCode to(std::move(from));
    EXPECT_EQ(word, wordOf(to));
    EXPECT_EQ(9, to.code());
    EXPECT_EQ(0u, wordOf(from)); // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(0, from.code());
    EXPECT_TRUE(from.message().isEmpty());
    const XCode copy(from);
    EXPECT_EQ(0, copy.code());
    from = XCode(4);
    EXPECT_EQ(4, from.code());
    from = to;
    EXPECT_EQ(9, from.code());
}

TEST(XCode, AssigningItselfChangesNothing)
{
    const String message("self");
    XCode code(3, message);
    XCode const& same = code;
    code = same;
    EXPECT_EQ(3, code.code());
    EXPECT_STREQ("self", code.message().cString());
    EXPECT_EQ(2, message.buffer()->references());
    XCode& itself = code;
    code = std::move(itself);
    EXPECT_EQ(3, code.code());
    EXPECT_STREQ("self", code.message().cString());
    EXPECT_EQ(2, message.buffer()->references());

    XCode small(-1);
    XCode const& sameSmall = small;
    small = sameSmall;
    EXPECT_EQ(-1, small.code());
}

TEST(XCode, AssigningItsOwnMessageAgain)
{
    XCode code(3, "kept");
    code = XCode(4, code.message());
    EXPECT_EQ(4, code.code());
    EXPECT_STREQ("kept", code.message().cString());
    EXPECT_EQ(1, code.message().buffer()->references());
}

TEST(XCode, OutOfMemoryNamesItself)
{
    String message("before");
    const XCode code = XCode::OUT_OF_MEMORY(message);
    EXPECT_EQ(-1, code.code());
    EXPECT_STREQ("Out of memory", message.cString());
    EXPECT_EQ(13, message.length());
}

} // namespace
