#include <drvsh/Refusals.h>

#include <gtest/gtest.h>

namespace
{
/// Asks about a driver of that name, which meets a text that it begins with.
bool refusesAdded(Refusals& refusals, std::string const& name)
{
    return refusals.refusesAdded(
        [&](std::string const& text) { return name.compare(0, text.size(), text) == 0; });
}

TEST(Refusals, NoneByThemselves)
{
    Refusals refusals;
    EXPECT_FALSE(refusesAdded(refusals, "fxs 1"));
    EXPECT_FALSE(refusals.refusesSet("clock", "master"));
    EXPECT_EQ("refused", refusals.text());
    refusals.say("");
    EXPECT_EQ("", refusals.text());
}

struct Case
{
    char const* rule;
    std::string refused; // which of the questions below, a letter each
};

TEST(Refusals, AnswerByTheirRule)
{
    Case const cases[] = {
        {"added", "ab"},        {"added fx", "ab"},  {"added fxs 1", "a"}, {"added fxs 12", ""},
        {"added FXS", ""},      {"set clock", "cd"}, {"set clock=", ""},   {"set clock=slave", "d"},
        {"set clock=slav", ""}, {"set cloc", ""},    {"1", "a"},           {"1st", "a"},
        {"2nd", "b"},           {"3rd", "c"},        {"4th", "d"},         {"5th", ""},
        {"set mode=a=b", "e"},
    };
    for (Case const& c : cases) {
        Refusals refusals;
        ASSERT_TRUE(refusals.add(c.rule)) << c.rule;
        std::string refused;
        refused += refusesAdded(refusals, "fxs 1") ? "a" : "";
        refused += refusesAdded(refusals, "fxo 2") ? "b" : "";
        refused += refusals.refusesSet("clock", "master") ? "c" : "";
        refused += refusals.refusesSet("clock", "slave") ? "d" : "";
        if (std::string(c.rule) != "5th")
            refused += refusals.refusesSet("mode", "a=b") ? "e" : "";
        EXPECT_EQ(c.refused, refused) << c.rule;
    }
}

TEST(Refusals, AnyRuleOfSeveral)
{
    Refusals refusals;
    ASSERT_TRUE(refusals.add("added fxo"));
    ASSERT_TRUE(refusals.add("2nd"));
    EXPECT_TRUE(refusesAdded(refusals, "fxo 1"));
    EXPECT_TRUE(refusesAdded(refusals, "fxs 1"));
    EXPECT_FALSE(refusesAdded(refusals, "fxs 1"));
}

TEST(Refusals, DoNotTakeEveryText)
{
    for (char const* rule : {"", "ad", "addedfxs", "set", "set ", "setclock=1", "0", "0th", "-1",
                             "nth", "st", "3x", "3 rd", "99999999999th", "removed fxs"}) {
        Refusals refusals;
        EXPECT_FALSE(refusals.add(rule)) << rule;
        EXPECT_FALSE(refusesAdded(refusals, "fxs 1")) << rule;
    }
}
} // namespace
