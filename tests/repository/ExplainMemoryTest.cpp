#include <support/Allocations.h>
#include <support/RepositoryFixture.h>

#include "ExplanationText.h"

namespace
{

class ExplainMemory : public RepositoryFixture
{
protected:
    ExplainMemory()
    {
        add("fxs 1");
        add("fxs 2");
        attach("fxs 1", "first", "1");
        listen("a", 1, Terms().attribute("room", "1").snapshot());
        listen("b", 2);
    }
    /// Lets each request for memory fail in turn, until all are granted. Returns how many failed.
    template <class Ask> int starve(Ask ask)
    {
        for (int n = 0;; ++n) {
            XCode rc;
            bool happened = false;
            {
                const allocations::Failing failing(static_cast<std::uint64_t>(n));
                rc = ask();
                happened = failing.happened();
            }
            if (!happened) {
                EXPECT_EQ(0, rc.code());
                EXPECT_EQ("", error());
                return n;
            }
            EXPECT_EQ(-1, rc.code()) << n;
            EXPECT_EQ("Out of memory", error()) << n;
        }
    }
};

TEST_F(ExplainMemory, WithoutMemoryItSaysSoAndLeavesTheAnswer)
{
    const int references = repository().references();
    const String driverName("fxs 1");
    const String a("a");
    const String key("room");
    const String value("12");
    Explanation explanation;
    WhatIf whatIf;
    TOVA_List<Explanation> list;
    explanation.listener = "left";
    whatIf.listener = "left";
    EXPECT_LT(3, starve([&] {
                  const XCode rc = explain(error_, repository(), driverName, a, explanation);
                  EXPECT_EQ(rc.code() == 0 ? "a" : "left", explanation.listener);
                  return rc;
              }));
    EXPECT_LT(4, starve([&] {
                  const XCode rc = explain(error_, repository(), driverName, a, key, value, whatIf);
                  EXPECT_EQ(rc.code() == 0 ? "a" : "left", whatIf.listener);
                  return rc;
              }));
    EXPECT_EQ("joins: added fxs 1; set fxs 1 first=1;", textOf(whatIf));
    EXPECT_LT(6, starve([&] { return explainDriver(error_, repository(), driverName, list); }));
    EXPECT_EQ(2u, list.count());
    EXPECT_LT(6, starve([&] { return explainListener(error_, repository(), a, list); }));
    EXPECT_EQ(2u, list.count());
    EXPECT_EQ(references, repository().references());
}

} // namespace
