#include <gtest/gtest.h>

#include <pthread.h>

#include <support/Child.h>

#include "Play.h"

// In every call-out of every operation the thread ends: by pthread_exit, or cancelled. What others
// see then is what they see after an exception.

namespace
{

extern "C" void* runThread(void* act)
{
    (*static_cast<std::function<void()> const*>(act))();
    return act; // not reached when the thread ends inside
}

/// Runs `act` on a thread of its own. Returns how it ended: the result of pthread_join.
void* onThread(std::function<void()> const& act)
{
    pthread_t thread;
    void* end = nullptr;
    std::function<void()> copy(act);
    if (pthread_create(&thread, nullptr, runThread, &copy) != 0 || pthread_join(thread, &end) != 0)
        std::abort();
    return end;
}

/// Ends the thread in call-out `n`, and checks what is left.
void endOne(Scenario const& scenario, FailureCheck const& check, int n, Manner manner)
{
    void* const expected = manner == Manner::CANCEL ? PTHREAD_CANCELED : nullptr;
    void* end = &end;
    const Play failed = play(scenario, {n, manner},
                             [&end](std::function<void()> const& act) { end = onThread(act); });
    EXPECT_EQ(expected, end);
    check.check(n, failed);
}

/// In a child process: ends a thread in every `step`th call-out of a scenario. "DONE" and the
/// number of threads that were ended go to `out`.
int endEverywhere(Scenario const& scenario, Manner manner, int step, std::FILE* out)
{
    const FailureCheck check(scenario);
    int ended = 0;
    for (int n = 1; n <= check.callOuts() && !testing::Test::HasFailure(); n += step) {
        SCOPED_TRACE(std::string(scenario.name) + ", call-out " + std::to_string(n) + ": " +
                     check.label(n));
        endOne(scenario, check, n, manner);
        ++ended;
    }
    std::fprintf(out, "DONE %d", ended);
    return testing::Test::HasFailure() ? 1 : 0;
}

void endEverywhere(std::vector<Scenario> const& scenarios, Manner manner, int step)
{
    int ended = 0;
    for (Scenario const& scenario : scenarios) {
        const int callOuts = FailureCheck(scenario).callOuts();
        const std::string end =
            inChild([&](std::FILE* out) { return endEverywhere(scenario, manner, step, out); });
        const int threads = (callOuts + step - 1) / step;
        ASSERT_EQ("0: DONE " + std::to_string(threads), end) << scenario.name;
        ended += threads;
    }
    std::printf("%d threads ended\n", ended);
}

class Unwinding : public testing::TestWithParam<Manner>
{};

TEST_P(Unwinding, RepositoryIsAsAfterARefusal)
{
    endEverywhere(repositoryScenarios(), GetParam(), 1);
}

TEST_P(Unwinding, GroupIsAsAfterARefusal)
{
    endEverywhere(groupScenarios(), GetParam(), 1);
}

// A tenth of the call-outs, each time others: a thread for each takes its time under an emulator.
TEST_P(Unwinding, NobodyIsToldALieByCallsFromInside)
{
    endEverywhere(nestedScenarios(), GetParam(), 11);
}

INSTANTIATE_TEST_SUITE_P(Threads, Unwinding, testing::Values(Manner::EXIT, Manner::CANCEL),
                         [](testing::TestParamInfo<Manner> const& at) {
                             return at.param == Manner::EXIT ? "Exit" : "Cancel";
                         });

} // namespace
