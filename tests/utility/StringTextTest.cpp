#include <string>

#include <gtest/gtest.h>

#include <utility/String.h>

namespace
{

std::string textOf(String const& string)
{
    return std::string(string.cString(), static_cast<std::size_t>(string.length()));
}

TEST(StringFormat, ReplacesTheContent)
{
    String string("before");
    EXPECT_EQ(&string, &string.format("%s %lu/%8.8lx", "e1t1", 7ul, 0xabul));
    EXPECT_STREQ("e1t1 7/000000ab", string.cString());
    EXPECT_EQ(15, string.length());
    string.format("%s", "");
    EXPECT_EQ(String::StringBuffer::EMPTY(), string.buffer());
}

TEST(StringFormat, TakesItself)
{
    String string("abc");
    string.format("<%s|%s>", string.cString(), string.cString() + 1);
    EXPECT_STREQ("<abc|bc>", string.cString());
    string.format("%s", string.cString());
    EXPECT_STREQ("<abc|bc>", string.cString());
    EXPECT_EQ(1, string.buffer()->references());
}

TEST(StringFormat, LeavesSharersAlone)
{
    String string("abc");
    const String sharer(string);
    string.format("%s!", sharer.cString());
    EXPECT_STREQ("abc", sharer.cString());
    EXPECT_STREQ("abc!", string.cString());
}

TEST(StringFormat, KeepsNulsThatItWrote)
{
    String string;
    string.format("a%cb", 0);
    EXPECT_EQ(std::string("a\0b", 3), textOf(string));
    string.concatf("%c", 0);
    EXPECT_EQ(std::string("a\0b\0", 4), textOf(string));
}

TEST(StringConcatf, Appends)
{
    String string("e1t1");
    EXPECT_EQ(&string, &string.concatf(" %lu", 0ul));
    string.concatf(" %lu", 4294967294ul);
    EXPECT_STREQ("e1t1 0 4294967294", string.cString());
    string.concatf("%s", "");
    EXPECT_STREQ("e1t1 0 4294967294", string.cString());
}

TEST(StringConcatf, TakesItself)
{
    String string("ab");
    string.concatf("%s", string.cString());
    EXPECT_STREQ("abab", string.cString());
    string.concatf("-%s-%s", string.cString() + 2, string.cString());
    EXPECT_STREQ("abab-ab-abab", string.cString());
}

TEST(StringConcatf, LeavesSharersAlone)
{
    String string("a");
    const String sharer(string);
    string.concatf("%d", 1);
    EXPECT_STREQ("a", sharer.cString());
    EXPECT_STREQ("a1", string.cString());
}

TEST(StringConcatf, KeepsNulsBeforeIt)
{
    String string("a\0b", 0, 3);
    string.concatf("%d", 7);
    EXPECT_EQ(std::string("a\0b7", 4), textOf(string));
}

// Short texts are formatted on the stack; the sizes around that limit, and far beyond it.
TEST(StringFormat, TakesAnyLength)
{
    for (std::size_t length : {0u, 1u, 254u, 255u, 256u, 257u, 511u, 5000u, 100000u}) {
        SCOPED_TRACE(length);
        std::string long_(length, 'x');
        for (std::size_t i = 0; i < length; ++i)
            long_[i] = static_cast<char>('a' + i % 26);
        String formatted("old");
        formatted.format("%s", long_.c_str());
        EXPECT_EQ(long_, textOf(formatted));
        String appended("head/");
        appended.concatf("%s", long_.c_str());
        EXPECT_EQ("head/" + long_, textOf(appended));
        appended.concatf("%s", appended.cString());
        EXPECT_EQ("head/" + long_ + "head/" + long_, textOf(appended));
        EXPECT_EQ('\0', appended.cString()[appended.length()]);
    }
}

TEST(StringEquals, ComparesLengthsAndBytes)
{
    struct Case
    {
        String a;
        String b;
        bool expected;
    };
    const Case CASES[] = {
        {"fxs", "fxs", true},
        {"", "", true},
        {String("a\0b", 0, 3), String("a\0b", 0, 3), true},
        // Near misses.
        {"fxs", "FXS", false},
        {"fxs", "fx", false},
        {"fxs", "fxs ", false},
        {"fxs", "", false},
        {String("a\0b", 0, 3), String("a\0c", 0, 3), false},
        {String("a\0b", 0, 3), "a", false},
        {"\xE4", "\x64", false},
    };
    for (Case const& c : CASES) {
        SCOPED_TRACE(testing::Message() << c.a.cString() << " / " << c.b.cString());
        EXPECT_EQ(c.expected, c.a == c.b);
        EXPECT_EQ(c.expected, c.b == c.a);
        EXPECT_EQ(!c.expected, c.a != c.b);
        EXPECT_EQ(c.expected, c.a.equals(c.b));
    }
    const String string("x");
    const String copy(string);
    EXPECT_TRUE(string == copy);
}

TEST(StringEquals, ComparesWithACText)
{
    struct Case
    {
        String string;
        char const* text;
        bool expected;
    };
    const Case CASES[] = {
        {"fxs", "fxs", true},
        {"", "", true},
        {"", nullptr, true},
        // Near misses.
        {"fxs", "Fxs", false},
        {"fxs", "fxs2", false},
        {"fxs", "fx", false},
        {"fxs", "", false},
        {"fxs", nullptr, false},
        {String("\0", 0, 1), nullptr, false},
        {String("\0", 0, 1), "", false},
        {String("fxs\0x", 0, 5), "fxs", false},
    };
    for (Case const& c : CASES) {
        SCOPED_TRACE(testing::Message() << c.string.cString());
        EXPECT_EQ(c.expected, c.string == c.text);
        EXPECT_EQ(c.expected, c.text == c.string);
        EXPECT_EQ(!c.expected, c.string != c.text);
        EXPECT_EQ(!c.expected, c.text != c.string);
    }
    const String self("abc");
    EXPECT_TRUE(self == self.cString());
    EXPECT_FALSE(self == self.cString() + 1);
}

String::StaticText<6> s_static("fixed");

TEST(StringStaticText, IsReferredToAndNeverFreed)
{
    char const* place = nullptr;
    {
        String string("before");
        string = s_static;
        EXPECT_STREQ("fixed", string.cString());
        EXPECT_EQ(5, string.length());
        place = string.cString();
        String other;
        other = s_static;
        EXPECT_EQ(place, other.cString());
        const String copy(other);
        EXPECT_EQ(place, copy.cString());
    }
    String again;
    again = s_static;
    EXPECT_EQ(place, again.cString());
    EXPECT_STREQ("fixed", again.cString());
    EXPECT_EQ(2, again.buffer()->references()); // its own, and this one
}

TEST(StringStaticText, IsNotChangedThroughAString)
{
    String string;
    string = s_static;
    string.concat("!");
    EXPECT_STREQ("fixed!", string.cString());
    String other;
    other = s_static;
    EXPECT_STREQ("fixed", other.cString());
}

} // namespace
