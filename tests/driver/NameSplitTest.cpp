#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <drvrepo/IDriver.h>

namespace
{

constexpr unsigned ABSENT = 4294967295u;
using Texts = std::vector<std::string>;

Texts textsOf(TOVA_Vector<String> const& vector)
{
    Texts texts;
    for (String const& text : vector)
        texts.push_back(text.cString());
    return texts;
}

struct SplitCase
{
    char const* name;
    char const* type;
    unsigned number1;
    unsigned number2;
    unsigned number3;
    Texts further;
    unsigned count;
};

const SplitCase CASES[] = {
    {"e1t1 0 3/a/b", "e1t1", 0, 3, ABSENT, {"a", "b"}, 3},
    {"fxs 2", "fxs", 2, ABSENT, ABSENT, {}, 1},
    {"x/y/z", "x", ABSENT, ABSENT, ABSENT, {"y", "z"}, 3},
    {"bri 1 2 3/a", "bri", 1, 2, 3, {"a"}, 2},
    {"bri 1 2 3 4 5/a", "bri", 1, 2, 3, {"a"}, 2}, // what follows the third number is ignored
    {"a/b/c/d/e/f", "a", ABSENT, ABSENT, ABSENT, {"b", "c", "d", "e", "f"}, 6},
    {"a/1/2/3/4/5/6/7/8/9",
     "a",
     ABSENT,
     ABSENT,
     ABSENT, //
     {"1", "2", "3", "4", "5", "6", "7", "8", "9"},
     10},
    {"x/a 1/b 2", "x", ABSENT, ABSENT, ABSENT, {"a 1", "b 2"}, 3},
    {"x 4294967294", "x", 4294967294u, ABSENT, ABSENT, {}, 1},
    {"x 007 0", "x", 7, 0, ABSENT, {}, 1},
    // Runs of delimiters count as one.
    {"a//b", "a", ABSENT, ABSENT, ABSENT, {"b"}, 2},
    {"/a/b/", "a", ABSENT, ABSENT, ABSENT, {"b"}, 2},
    {"x  1   2", "x", 1, 2, ABSENT, {}, 1},
    {" x 1 ", "x", 1, ABSENT, ABSENT, {}, 1},
    // What is no number is absent, and counts as a place.
    {"e1t1 x", "e1t1", ABSENT, ABSENT, ABSENT, {}, 1},
    {"e1t1 x 5", "e1t1", ABSENT, 5, ABSENT, {}, 1},
    {"e1t1 -1 +2 3", "e1t1", ABSENT, ABSENT, 3, {}, 1},
    {"x 4294967295 1", "x", ABSENT, 1, ABSENT, {}, 1},
    {"x 4294967296 1", "x", ABSENT, 1, ABSENT, {}, 1},
    {"x 3rd", "x", 3, ABSENT, ABSENT, {}, 1},
    {"x\t1", "x\t1", ABSENT, ABSENT, ABSENT, {}, 1},
    {"7 8", "7", 8, ABSENT, ABSENT, {}, 1}, // the first word is the type, whatever it is
    // A head of blanks is a component without a type word.
    {" ", "", ABSENT, ABSENT, ABSENT, {}, 1},
    {"   /a", "", ABSENT, ABSENT, ABSENT, {"a"}, 2},
    // Nothing to split.
    {"", "", ABSENT, ABSENT, ABSENT, {}, 0},
    {"/", "", ABSENT, ABSENT, ABSENT, {}, 0},
    {"///", "", ABSENT, ABSENT, ABSENT, {}, 0},
};

TEST(DriverNameSplit, TakesTheHeadApart)
{
    for (SplitCase const& c : CASES) {
        SCOPED_TRACE(c.name);
        String type("before");
        unsigned number1 = 1;
        unsigned number2 = 2;
        unsigned number3 = 3;
        TOVA_Vector<String> further(8);
        further.append("before");
        EXPECT_EQ(c.count,
                  IDriver::SPLIT_DRIVER_NAME(c.name, type, number1, number2, number3, further));
        EXPECT_STREQ(c.type, type.cString());
        EXPECT_EQ(c.number1, number1);
        EXPECT_EQ(c.number2, number2);
        EXPECT_EQ(c.number3, number3);
        EXPECT_EQ(c.further, textsOf(further));
    }
}

TEST(DriverNameSplit, GivesTheFirstFourFurtherComponents)
{
    for (SplitCase const& c : CASES) {
        SCOPED_TRACE(c.name);
        String type("before");
        unsigned numbers[3] = {1, 2, 3};
        String parts[4] = {"b", "b", "b", "b"};
        EXPECT_EQ(c.count,
                  IDriver::SPLIT_DRIVER_NAME(c.name, type, numbers[0], numbers[1], numbers[2],
                                             &parts[0], &parts[1], &parts[2], &parts[3]));
        EXPECT_STREQ(c.type, type.cString());
        EXPECT_EQ(c.number1, numbers[0]);
        EXPECT_EQ(c.number2, numbers[1]);
        EXPECT_EQ(c.number3, numbers[2]);
        for (std::size_t i = 0; i < 4; ++i)
            EXPECT_EQ(i < c.further.size() ? c.further[i] : "", parts[i].cString());
    }
}

// Results are written one after the other: an object that stands for two of them has the later.
TEST(DriverNameSplit, OneObjectForTwoResultsHoldsTheLater)
{
    const String name("x 1 2 3/a/b/c/d");
    String type;
    unsigned one = 0;
    unsigned other = 0;
    TOVA_Vector<String> further(8);
    IDriver::SPLIT_DRIVER_NAME(name, type, one, one, other, further);
    EXPECT_EQ(2u, one);
    IDriver::SPLIT_DRIVER_NAME(name, type, other, one, one, further);
    EXPECT_EQ(3u, one);
    char const* const FURTHER[] = {"a", "b", "c", "d"};
    for (std::size_t i = 0; i < 3; ++i) {
        unsigned number = 0;
        String parts[4];
        String* at[4] = {&parts[0], &parts[1], &parts[2], &parts[3]};
        at[i + 1] = at[i];
        IDriver::SPLIT_DRIVER_NAME(name, type, number, number, number, at[0], at[1], at[2], at[3]);
        EXPECT_STREQ(FURTHER[i + 1], at[i]->cString());
        EXPECT_EQ(3u, number);
    }
    char const* const ALL[] = {"x 1 2 3", "a", "b", "c", "d"};
    for (std::size_t i = 0; i < 4; ++i) {
        String parts[5];
        String* at[5] = {&parts[0], &parts[1], &parts[2], &parts[3], &parts[4]};
        at[i + 1] = at[i];
        IDriver::SPLIT_DRIVER_NAME(name, at[0], at[1], at[2], at[3], at[4]);
        EXPECT_STREQ(ALL[i + 1], at[i]->cString());
    }
}

struct ComponentsCase
{
    char const* name;
    Texts components;
};

const ComponentsCase COMPONENTS[] = {
    {"e1t1 0 3/a/b", {"e1t1 0 3", "a", "b"}},
    {"a/b/c/d/e/f", {"a", "b", "c", "d", "e", "f"}},
    {"1/2/3/4/5/6/7/8/9", {"1", "2", "3", "4", "5", "6", "7", "8", "9"}},
    {"fxs 2", {"fxs 2"}},
    {"a//b", {"a", "b"}},
    {" / ", {" ", " "}},
    {"/", {}},
    {"", {}},
};

TEST(DriverNameComponents, AreCutAtSlashes)
{
    for (ComponentsCase const& c : COMPONENTS) {
        SCOPED_TRACE(c.name);
        TOVA_Vector<String> components(8);
        components.append("before");
        EXPECT_EQ(c.components.size(), IDriver::SPLIT_DRIVER_NAME(c.name, components));
        EXPECT_EQ(c.components, textsOf(components));
    }
}

TEST(DriverNameComponents, GivesTheFirstFive)
{
    for (ComponentsCase const& c : COMPONENTS) {
        SCOPED_TRACE(c.name);
        String parts[5] = {"b", "b", "b", "b", "b"};
        EXPECT_EQ(c.components.size(), IDriver::SPLIT_DRIVER_NAME(c.name, &parts[0], &parts[1],
                                                                  &parts[2], &parts[3], &parts[4]));
        for (std::size_t i = 0; i < 5; ++i)
            EXPECT_EQ(i < c.components.size() ? c.components[i] : "", parts[i].cString());
    }
}

TEST(DriverNameComponents, TheVectorGrowsByItsStepAndKeepsItsRoom)
{
    TOVA_Vector<String> components(8);
    IDriver::SPLIT_DRIVER_NAME("1/2/3/4/5/6/7/8", components);
    EXPECT_EQ(8u, components.capacity());
    IDriver::SPLIT_DRIVER_NAME("1/2/3/4/5/6/7/8/9", components);
    EXPECT_EQ(16u, components.capacity());
    IDriver::SPLIT_DRIVER_NAME("1", components);
    EXPECT_EQ(1u, components.count());
    EXPECT_EQ(16u, components.capacity());
    IDriver::SPLIT_DRIVER_NAME("", components);
    EXPECT_EQ(0u, components.count());
    EXPECT_EQ(16u, components.capacity());
    EXPECT_TRUE(components[7].isEmpty()); // nothing old comes back
    TOVA_Vector<String> small(3);
    IDriver::SPLIT_DRIVER_NAME("1/2/3/4", small);
    EXPECT_EQ(6u, small.capacity());
}

TEST(DriverNameSplit, PassesNullPointersOver)
{
    String third("before");
    unsigned numbers[3] = {};
    String type;
    EXPECT_EQ(4u, IDriver::SPLIT_DRIVER_NAME("x 1/a/b/c", type, numbers[0], numbers[1], numbers[2],
                                             nullptr, nullptr, &third, nullptr));
    EXPECT_STREQ("c", third.cString());
    EXPECT_EQ(4u,
              IDriver::SPLIT_DRIVER_NAME("x 1/a/b/c", nullptr, nullptr, &third, nullptr, nullptr));
    EXPECT_STREQ("b", third.cString());
    EXPECT_EQ(4u, IDriver::SPLIT_DRIVER_NAME("x 1/a/b/c", type, numbers[0], numbers[1], numbers[2],
                                             nullptr, nullptr, nullptr, nullptr));
    EXPECT_EQ(4u,
              IDriver::SPLIT_DRIVER_NAME("x 1/a/b/c", nullptr, nullptr, nullptr, nullptr, nullptr));
}

// A number that is absent was never written: it doesn't come back either.
TEST(DriverNameSplit, UndoesABuild)
{
    const unsigned NUMBERS[][3] = {
        {0, 3, ABSENT}, {2, ABSENT, ABSENT}, {ABSENT, ABSENT, ABSENT}, {1, 2, 3}, {0, 0, 0}};
    for (unsigned const(&n)[3] : NUMBERS)
        for (char const* further : {"", "a", "b c"}) {
            String name;
            IDriver::BUILD_DRIVER_NAME(name, "e1t1", n[0], n[1], n[2], further, "", "", "");
            SCOPED_TRACE(name.cString());
            String type;
            unsigned found[3] = {};
            String part;
            EXPECT_EQ(*further != '\0' ? 2u : 1u,
                      IDriver::SPLIT_DRIVER_NAME(name, type, found[0], found[1], found[2], &part,
                                                 nullptr, nullptr, nullptr));
            EXPECT_STREQ("e1t1", type.cString());
            EXPECT_EQ(n[0], found[0]);
            EXPECT_EQ(n[1], found[1]);
            EXPECT_EQ(n[2], found[2]);
            EXPECT_STREQ(further, part.cString());
        }
    String name;
    IDriver::BUILD_DRIVER_NAME(name, "x", ABSENT, 5, 6, "", "", "", "");
    String type;
    unsigned found[3] = {};
    EXPECT_EQ(1u, IDriver::SPLIT_DRIVER_NAME(name, type, found[0], found[1], found[2], nullptr,
                                             nullptr, nullptr, nullptr));
    EXPECT_EQ(ABSENT, found[0]);
    EXPECT_EQ(ABSENT, found[1]);
    EXPECT_EQ(ABSENT, found[2]);
}

// Results may be the same objects as arguments.

TEST(DriverNameSplitAliasing, TheTypeWordIsTheName)
{
    String name("e1t1 0 3/a/b");
    unsigned numbers[3] = {};
    TOVA_Vector<String> further(8);
    EXPECT_EQ(3u,
              IDriver::SPLIT_DRIVER_NAME(name, name, numbers[0], numbers[1], numbers[2], further));
    EXPECT_STREQ("e1t1", name.cString());
    EXPECT_EQ(3u, numbers[1]);
    EXPECT_EQ((Texts{"a", "b"}), textsOf(further));
}

TEST(DriverNameSplitAliasing, TheNameIsInTheVector)
{
    TOVA_Vector<String> vector(2);
    vector.append("unused");
    vector.append("a/b/c/d/e");
    EXPECT_EQ(5u, IDriver::SPLIT_DRIVER_NAME(vector[1], vector));
    EXPECT_EQ((Texts{"a", "b", "c", "d", "e"}), textsOf(vector));
    vector[0] = "x 1/y/z";
    String type;
    unsigned numbers[3] = {};
    EXPECT_EQ(3u, IDriver::SPLIT_DRIVER_NAME(vector[0], type, numbers[0], numbers[1], numbers[2],
                                             vector));
    EXPECT_STREQ("x", type.cString());
    EXPECT_EQ((Texts{"y", "z"}), textsOf(vector));
}

TEST(DriverNameSplitAliasing, AComponentIsTheName)
{
    String name("a/b/c");
    String second;
    EXPECT_EQ(3u, IDriver::SPLIT_DRIVER_NAME(name, &name, &second, nullptr, nullptr, nullptr));
    EXPECT_STREQ("a", name.cString());
    EXPECT_STREQ("b", second.cString());
    name = "x 1/y/z";
    String type;
    unsigned numbers[3] = {};
    EXPECT_EQ(3u, IDriver::SPLIT_DRIVER_NAME(name, type, numbers[0], numbers[1], numbers[2], &name,
                                             &second, nullptr, nullptr));
    EXPECT_STREQ("y", name.cString());
    EXPECT_STREQ("z", second.cString());
    EXPECT_STREQ("x", type.cString());
}

} // namespace
