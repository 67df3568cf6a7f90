#include <climits>
#include <string>

#include <gtest/gtest.h>

#include <utility/String.h>

#include <support/TwoThreads.h>

namespace
{

std::string textOf(String const& string)
{
    return std::string(string.cString(), static_cast<std::size_t>(string.length()));
}

TEST(StringMaking, DefaultIsEmpty)
{
    const String string;
    EXPECT_EQ(0, string.length());
    EXPECT_TRUE(string.isEmpty());
    EXPECT_STREQ("", string.cString());
    EXPECT_EQ(String::StringBuffer::EMPTY(), string.buffer());
}

TEST(StringMaking, EmptyAndNullTextsShareTheEmptyBuffer)
{
    char const* const null = nullptr;
    EXPECT_EQ(String::StringBuffer::EMPTY(), String("").buffer());
    EXPECT_EQ(String::StringBuffer::EMPTY(), String(null).buffer());
    EXPECT_EQ(String::StringBuffer::EMPTY(), String("abc", 1, 0).buffer());
}

TEST(StringMaking, CopiesACText)
{
    char text[] = "fxs 2";
    const String string(text);
    text[0] = 'x';
    EXPECT_EQ(5, string.length());
    EXPECT_STREQ("fxs 2", string.cString());
    EXPECT_FALSE(string.isEmpty());
    EXPECT_EQ(5u, string.buffer()->length());
    EXPECT_EQ(1, string.buffer()->references());
}

TEST(StringMaking, CopiesAPartOfAText)
{
    struct Case
    {
        char const* text;
        long start;
        long count;
        char const* expected;
    };
    const Case CASES[] = {
        {"hello", 0, 5, "hello"},
        {"hello", 0, 1, "h"},
        {"hello", 1, 3, "ell"},
        {"hello", 4, 1, "o"},
        {"hello", 5, 0, ""},
        {"hello", 2, 0, ""},
        // No such place.
        {"hello", -1, 3, ""},
        {"hello", LONG_MIN, 3, ""},
        {"hello", 1, -1, ""},
        {"hello", 1, LONG_MIN, ""},
        {"hello", -1, -1, ""},
        {nullptr, 0, 0, ""},
        {nullptr, 0, 3, ""},
        {nullptr, 2, 3, ""},
    };
    for (Case const& c : CASES) {
        SCOPED_TRACE(testing::Message() << c.start << ", " << c.count);
        const String string(c.text, c.start, c.count);
        EXPECT_STREQ(c.expected, string.cString());
        EXPECT_EQ(static_cast<long>(std::strlen(c.expected)), string.length());
    }
}

TEST(StringMaking, APartMayHoldNuls)
{
    const String string("ab\0cd", 1, 3);
    EXPECT_EQ(std::string("b\0c", 3), textOf(string));
    EXPECT_EQ('\0', string.cString()[3]);
}

TEST(StringSharing, CopiesCountOneBuffer)
{
    String first("name");
    {
        String second(first);
        EXPECT_EQ(first.buffer(), second.buffer());
        EXPECT_EQ(2, first.buffer()->references());
        const String third(second);
        EXPECT_EQ(3, first.buffer()->references());
    }
    EXPECT_EQ(1, first.buffer()->references());
}

TEST(StringSharing, AssigningCountsTheNewAndReleasesTheOld)
{
    String first("first");
    String other("other");
    const String watcher(other);
    EXPECT_EQ(2, watcher.buffer()->references());
    EXPECT_EQ(&other, &(other = first));
    EXPECT_EQ(1, watcher.buffer()->references());
    EXPECT_EQ(2, first.buffer()->references());
    EXPECT_STREQ("first", other.cString());
    other = "text";
    EXPECT_EQ(1, first.buffer()->references());
    EXPECT_STREQ("text", other.cString());
    EXPECT_STREQ("first", first.cString());
}

TEST(StringSharing, MovingHandsTheReferenceOver)
{
    String first("first");
    String::StringBuffer const* const buffer = first.buffer();
    String second(std::move(first));
    EXPECT_EQ(buffer, second.buffer());
    EXPECT_EQ(1, buffer->references());
    String third;
    third = std::move(second);
    EXPECT_EQ(buffer, third.buffer());
    EXPECT_EQ(1, buffer->references());
}

TEST(StringSharing, MovedFromIsStillAString)
{
    String from("first");
    const String to(std::move(from));
    from.concat("new"); // NOLINT(bugprone-use-after-move)
    EXPECT_STREQ("new", from.cString());
    EXPECT_STREQ("first", to.cString());
}

TEST(StringSharing, AssigningItselfChangesNothing)
{
    String string("self");
    String const& same = string;
    string = same;
    EXPECT_STREQ("self", string.cString());
    EXPECT_EQ(1, string.buffer()->references());
    String& itself = string;
    string = std::move(itself);
    EXPECT_STREQ("self", string.cString());
    EXPECT_EQ(1, string.buffer()->references());
}

TEST(StringSharing, AssigningItsOwnTextKeepsIt)
{
    String string("e1t1 0");
    string = string.cString();
    EXPECT_STREQ("e1t1 0", string.cString());
    string = string.cString() + 5;
    EXPECT_STREQ("0", string.cString());
    string = string.cString() + 1;
    EXPECT_EQ(String::StringBuffer::EMPTY(), string.buffer());
}

TEST(StringSharing, AssigningNullEmpties)
{
    char const* const null = nullptr;
    String string("text");
    string = null;
    EXPECT_EQ(String::StringBuffer::EMPTY(), string.buffer());
}

TEST(StringEmpty, IsSharedAndNeverFreed)
{
    EXPECT_EQ(&String::EMPTY(), &String::EMPTY());
    EXPECT_EQ(String::StringBuffer::EMPTY(), String::EMPTY().buffer());
    EXPECT_EQ(0u, String::StringBuffer::EMPTY()->length());
    const std::int32_t before = String::StringBuffer::EMPTY()->references();
    for (int i = 0; i < 3; ++i)
        String::StringBuffer::EMPTY()->release();
    {
        const String copy(String::EMPTY());
        const String other(copy);
        EXPECT_EQ(before, String::StringBuffer::EMPTY()->references());
    }
    EXPECT_EQ(before, String::StringBuffer::EMPTY()->references());
    EXPECT_STREQ("", String::EMPTY().cString());
}

TEST(StringEmpty, ClearsAnotherString)
{
    String string("text");
    const String watcher(string);
    string = String::EMPTY();
    EXPECT_TRUE(string.isEmpty());
    EXPECT_EQ(1, watcher.buffer()->references());
}

TEST(StringEmpty, IsMeasuredByTheLengthAlone)
{
    EXPECT_FALSE(String("\0", 0, 1).isEmpty());
    EXPECT_FALSE(String(" ").isEmpty());
}

TEST(StringConcat, Appends)
{
    String string("fxs");
    EXPECT_EQ(&string, &string.concat(" 2"));
    EXPECT_STREQ("fxs 2", string.cString());
    EXPECT_EQ(5, string.length());
    string.concat(String());
    EXPECT_STREQ("fxs 2", string.cString());
    String empty;
    empty.concat(string);
    EXPECT_STREQ("fxs 2", empty.cString());
}

TEST(StringConcat, LeavesSharersAlone)
{
    String string("a");
    const String sharer(string);
    string.concat("b");
    EXPECT_STREQ("a", sharer.cString());
    EXPECT_STREQ("ab", string.cString());
    EXPECT_EQ(1, sharer.buffer()->references());
    EXPECT_EQ(1, string.buffer()->references());
}

TEST(StringConcat, TakesItself)
{
    String string("ab");
    string.concat(string);
    EXPECT_STREQ("abab", string.cString());
    EXPECT_EQ(4, string.length());
    string.concat(String(string));
    EXPECT_STREQ("abababab", string.cString());
}

TEST(StringConcat, TakesEveryByte)
{
    String string("a\0b", 0, 3);
    string.concat(String("c\0", 0, 2));
    EXPECT_EQ(std::string("a\0bc\0", 5), textOf(string));
}

TEST(StringInternalConcat, AppendsSoManyCharacters)
{
    String string("a");
    EXPECT_EQ(&string, &string.internalConcat("bcd", 2));
    EXPECT_STREQ("abc", string.cString());
    string.internalConcat("x\0y", 3);
    EXPECT_EQ(std::string("abcx\0y", 6), textOf(string));
}

TEST(StringInternalConcat, AppendsNothing)
{
    String string("a");
    string.internalConcat("b", 0);
    string.internalConcat("b", -1);
    string.internalConcat("b", LONG_MIN);
    string.internalConcat(nullptr, 3);
    string.internalConcat(nullptr, 0);
    EXPECT_STREQ("a", string.cString());
    EXPECT_EQ(1, string.length());
}

TEST(StringInternalConcat, TakesItsOwnText)
{
    String string("abc");
    string.internalConcat(string.cString() + 1, 2);
    EXPECT_STREQ("abcbc", string.cString());
    string.internalConcat(string.cString(), string.length());
    EXPECT_STREQ("abcbcabcbc", string.cString());
}

TEST(StringIndexOf, FindsTheFirst)
{
    struct Case
    {
        String text;
        String sought;
        long position;
    };
    const Case CASES[] = {
        {"1-15", "-", 1},
        {"-1-15", "-", 0},
        {"15-", "-", 2},
        {"aab", "ab", 1},
        {"abcabc", "bc", 1},
        {"abc", "abc", 0},
        {"abc", "", 0},
        {"", "", 0},
        {String("a\0b", 0, 3), "b", 2},
        {String("a\0b", 0, 3), String("\0", 0, 1), 1},
        {String("a\0b", 0, 3), String("\0b", 0, 2), 1},
        // Near misses.
        {"abc", "abcd", -1},
        {"abc", "B", -1},
        {"abc", "ca", -1},
        {"", "a", -1},
        {String("a\0b", 0, 3), String("\0c", 0, 2), -1},
        {"ab", String("b\0", 0, 2), -1}, // the closing NUL is no character
    };
    for (Case const& c : CASES) {
        SCOPED_TRACE(testing::Message() << c.text.cString() << " / " << c.sought.cString());
        EXPECT_EQ(c.position, c.text.indexOf(c.sought));
    }
    const String self("abc");
    EXPECT_EQ(0, self.indexOf(self));
}

TEST(StringStartsWith, ComparesByteForByte)
{
    struct Case
    {
        String text;
        String beginning;
        bool expected;
    };
    const Case CASES[] = {
        {"fxs 2", "fxs", true},
        {"fxs 2", "fxs 2", true},
        {"fxs 2", "f", true},
        {"fxs 2", "", true},
        {"", "", true},
        {String("a\0b", 0, 3), String("a\0", 0, 2), true},
        {String("a\0b", 0, 3), "a", true},
        {"\xC3\xA4", "\xC3", true},
        // Near misses.
        {"fxs 2", "fxs 20", false},
        {"fxs 2", "Fxs", false},
        {"fxs 2", "xs", false},
        {"fxs", "fxo", false},
        {"", "f", false},
        {"a", String("a\0", 0, 2), false}, // the closing NUL is no character
        {String("a\0b", 0, 3), String("a\0c", 0, 3), false},
    };
    for (Case const& c : CASES) {
        SCOPED_TRACE(testing::Message() << c.text.cString() << " / " << c.beginning.cString());
        EXPECT_EQ(c.expected, c.text.startsWith(c.beginning));
    }
    const String self("abc");
    EXPECT_TRUE(self.startsWith(self));
}

TEST(StringThreads, CountOneBufferAtomically)
{
    const String shared("shared by two");
    onTwoThreads([&shared](int) {
        for (int i = 0; i < 200000; ++i) {
            const String copy(shared);
            String other;
            other = copy;
        }
    });
    EXPECT_EQ(1, shared.buffer()->references());
    EXPECT_STREQ("shared by two", shared.cString());
}

} // namespace
