#include <gtest/gtest.h>

#include "Play.h"

// Every call-out of every operation throws, one at a time. A coming is rolled back as if the one
// had refused who was asked, with the same lines in the log; a going is carried out; and the
// exception arrives at the caller.

namespace
{

/// Lets every call-out of a scenario throw. Returns how many there were.
int throwEverywhere(Scenario const& scenario)
{
    const FailureCheck check(scenario);
    for (int n = 1; n <= check.callOuts(); ++n) {
        SCOPED_TRACE(std::string(scenario.name) + ", call-out " + std::to_string(n) + ": " +
                     check.label(n));
        const Play failed = play(scenario, {n, Manner::THROW});
        EXPECT_EQ(check.label(n), failed.thrown);
        check.check(n, failed);
        if (testing::Test::HasFailure())
            break;
    }
    return check.callOuts();
}

void throwEverywhere(std::vector<Scenario> const& scenarios, int least)
{
    int thrown = 0;
    for (Scenario const& scenario : scenarios)
        thrown += throwEverywhere(scenario);
    std::printf("%d call-outs threw\n", thrown);
    EXPECT_LT(least, thrown);
}

TEST(Exceptions, RepositoryIsAsAfterARefusal)
{
    throwEverywhere(repositoryScenarios(), 500);
}

TEST(Exceptions, GroupIsAsAfterARefusal)
{
    throwEverywhere(groupScenarios(), 30);
}

TEST(Exceptions, NobodyIsToldALieByCallsFromInside)
{
    throwEverywhere(nestedScenarios(), 3000);
}

TEST(Exceptions, NobodyIsToldALieByCallsFromInsideThatAreGuarded)
{
    for (Scenario const& scenario : nestedScenarios()) {
        const FailureCheck check(scenario);
        for (int n = 1; n <= check.callOuts(); ++n) {
            SCOPED_TRACE(std::string(scenario.name) + ", call-out " + std::to_string(n) + ": " +
                         check.label(n));
            check.check(n, play(scenario, {n, Manner::THROW, false, true}));
            if (HasFailure())
                return;
        }
    }
}

} // namespace
