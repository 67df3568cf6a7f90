#include <initializer_list>

#include <gtest/gtest.h>

#include <drvrepo/IDriver.h>

namespace
{

constexpr unsigned ABSENT = 4294967295u;

TOVA_Vector<String> vectorOf(std::initializer_list<char const*> texts)
{
    TOVA_Vector<String> vector(8);
    for (char const* text : texts)
        vector.append(text);
    return vector;
}

TEST(DriverNameJoin, KeepsEmptyComponents)
{
    struct Case
    {
        std::initializer_list<char const*> components;
        char const* name;
    };
    const Case CASES[] = {
        {{}, ""},
        {{"x"}, "x"},
        {{"x", "y", "z"}, "x/y/z"},
        {{"e1t1 0 3", "a", "b"}, "e1t1 0 3/a/b"},
        {{"a", "", "b"}, "a//b"},
        {{""}, ""},
        {{"", ""}, "/"},
        {{"", "", ""}, "//"},
        {{"a", ""}, "a/"},
        {{"", "a"}, "/a"},
        {{"1", "2", "3", "4", "5", "6", "7", "8", "9", "10"}, "1/2/3/4/5/6/7/8/9/10"},
        {{"a/b", "c"}, "a/b/c"}, // taken as it stands
    };
    for (Case const& c : CASES) {
        SCOPED_TRACE(c.name);
        String name("before");
        EXPECT_EQ(&name, &IDriver::BUILD_DRIVER_NAME(name, vectorOf(c.components)));
        EXPECT_STREQ(c.name, name.cString());
    }
}

TEST(DriverNameBuild, WritesTypeNumbersAndComponents)
{
    struct Case
    {
        char const* type;
        unsigned number1;
        unsigned number2;
        unsigned number3;
        std::initializer_list<char const*> further;
        char const* name;
    };
    const Case CASES[] = {
        {"e1t1", 0, 3, ABSENT, {"a", "b"}, "e1t1 0 3/a/b"},
        {"fxs", 2, ABSENT, ABSENT, {}, "fxs 2"},
        {"x", ABSENT, ABSENT, ABSENT, {"y", "z"}, "x/y/z"},
        {"bri", 1, 2, 3, {}, "bri 1 2 3"},
        {"bri", 0, 0, 0, {"0"}, "bri 0 0 0/0"},
        {"x", 4294967294u, 2147483648u, 10, {}, "x 4294967294 2147483648 10"},
        // A number is written only after the one before it.
        {"x", ABSENT, 5, ABSENT, {}, "x"},
        {"x", ABSENT, ABSENT, 5, {}, "x"},
        {"x", ABSENT, 5, 6, {"a"}, "x/a"},
        {"x", 4, ABSENT, 6, {}, "x 4"},
        // Empty components are written.
        {"x", ABSENT, ABSENT, ABSENT, {"", "b"}, "x//b"},
        {"x", 1, ABSENT, ABSENT, {""}, "x 1/"},
        {"x", ABSENT, ABSENT, ABSENT, {"", "", ""}, "x///"},
        // So is an empty type word.
        {"", ABSENT, ABSENT, ABSENT, {}, ""},
        {"", 1, ABSENT, ABSENT, {"a"}, " 1/a"},
    };
    for (Case const& c : CASES) {
        SCOPED_TRACE(c.name);
        String name("before");
        EXPECT_EQ(&name, &IDriver::BUILD_DRIVER_NAME(name, c.type, c.number1, c.number2, c.number3,
                                                     vectorOf(c.further)));
        EXPECT_STREQ(c.name, name.cString());
    }
}

TEST(DriverNameBuild, LeavesOutEmptyArguments)
{
    struct Case
    {
        char const* type;
        unsigned numbers[3];
        char const* c[4];
        char const* name;
    };
    const Case CASES[] = {
        {"e1t1", {1, ABSENT, ABSENT}, {"", "a", "", "b"}, "e1t1 1/a/b"},
        {"e1t1", {0, 3, ABSENT}, {"a", "b", "", ""}, "e1t1 0 3/a/b"},
        {"x", {ABSENT, 5, 6}, {"a", "b", "c", "d"}, "x/a/b/c/d"},
        {"x", {1, 2, 3}, {"", "", "", ""}, "x 1 2 3"},
        {"x", {ABSENT, ABSENT, ABSENT}, {"", "", "", "d"}, "x/d"},
        {"", {ABSENT, ABSENT, ABSENT}, {"a", "", "", ""}, "/a"}, // the type word is none of them
    };
    for (Case const& c : CASES) {
        SCOPED_TRACE(c.name);
        String name("before");
        EXPECT_EQ(&name, &IDriver::BUILD_DRIVER_NAME(name, c.type, c.numbers[0], c.numbers[1],
                                                     c.numbers[2], c.c[0], c.c[1], c.c[2], c.c[3]));
        EXPECT_STREQ(c.name, name.cString());
    }
}

TEST(DriverNameJoin, LeavesOutEmptyArguments)
{
    struct Case
    {
        char const* c[5];
        char const* name;
    };
    const Case CASES[] = {
        {{"a", "b", "c", "d", "e"}, "a/b/c/d/e"},
        {{"", "a", "", "b", ""}, "a/b"},
        {{"", "", "", "", "e"}, "e"},
        {{"a", "", "", "", ""}, "a"},
        {{"", "", "", "", ""}, ""},
        {{"e1t1 0 3", "a", "b", "", ""}, "e1t1 0 3/a/b"},
    };
    for (Case const& c : CASES) {
        SCOPED_TRACE(c.name);
        String name("before");
        EXPECT_EQ(&name, &IDriver::BUILD_DRIVER_NAME(name, c.c[0], c.c[1], c.c[2], c.c[3], c.c[4]));
        EXPECT_STREQ(c.name, name.cString());
    }
}

TEST(DriverNameRebuild, ReplacesTheTypeWord)
{
    struct Case
    {
        char const* oldName;
        char const* type;
        char const* name;
    };
    const Case CASES[] = {
        {"bri 1 2/x", "fxo", "fxo 1 2/x"},
        {"e1t1 0 3/a/b", "bri", "bri 0 3/a/b"},
        {"fxs 2", "fxs", "fxs 2"},
        {"x/y/z", "e1t1", "e1t1/y/z"},
        {"x 1 2 3/a/b/c/d/e/f/g/h/i", "y", "y 1 2 3/a/b/c/d/e/f/g/h/i"},
        {"bri 1", "", " 1"},
        {"", "x", "x"},
        // What no number and no component is gets lost.
        {"x 1 2 3 4", "y", "y 1 2 3"},
        {"x one 2", "y", "y"},
        {"x  1//a/", "y", "y 1/a"},
        {" ", "y", "y"},
    };
    for (Case const& c : CASES) {
        SCOPED_TRACE(c.oldName);
        String name("before");
        EXPECT_EQ(&name, &IDriver::REBUILD_DRIVER_NAME(name, c.oldName, c.type));
        EXPECT_STREQ(c.name, name.cString());
    }
}

// Results may be the same objects as arguments.

TEST(DriverNameAliasing, TheNameIsTheTypeWord)
{
    String name("e1t1");
    IDriver::BUILD_DRIVER_NAME(name, name, 1, 2, ABSENT, vectorOf({"a"}));
    EXPECT_STREQ("e1t1 1 2/a", name.cString());
    name = "bri";
    IDriver::BUILD_DRIVER_NAME(name, name, 1, ABSENT, ABSENT, name, name, "", "x");
    EXPECT_STREQ("bri 1/bri/bri/x", name.cString());
}

TEST(DriverNameAliasing, TheNameIsAComponent)
{
    String name("a");
    IDriver::BUILD_DRIVER_NAME(name, "x", name, "", "y", name);
    EXPECT_STREQ("x/a/y/a", name.cString());
    name = "c";
    IDriver::BUILD_DRIVER_NAME(name, "x", 1, ABSENT, ABSENT, "a", name, name, "d");
    EXPECT_STREQ("x 1/a/c/c/d", name.cString());
}

TEST(DriverNameAliasing, TheNameIsInTheVector)
{
    TOVA_Vector<String> components = vectorOf({"a", "b", "c"});
    IDriver::BUILD_DRIVER_NAME(components[1], components);
    EXPECT_STREQ("a/b/c", components[1].cString());
    IDriver::BUILD_DRIVER_NAME(components[0], components[2], 7, ABSENT, ABSENT, components);
    EXPECT_STREQ("c 7/a/a/b/c/c", components[0].cString());
    EXPECT_EQ(3u, components.count());
}

TEST(DriverNameAliasing, AllOfARebuildIsOneObject)
{
    String name("bri 1 2/x");
    IDriver::REBUILD_DRIVER_NAME(name, name, "fxo");
    EXPECT_STREQ("fxo 1 2/x", name.cString());
    String type("fxs");
    IDriver::REBUILD_DRIVER_NAME(type, name, type);
    EXPECT_STREQ("fxs 1 2/x", type.cString());
    name = "fxo";
    IDriver::REBUILD_DRIVER_NAME(name, name, name);
    EXPECT_STREQ("fxo", name.cString());
}

} // namespace
