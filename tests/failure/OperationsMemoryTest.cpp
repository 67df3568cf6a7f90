#include <gtest/gtest.h>

#include "Heap.h"
#include "Scenarios.h"

// Every request for memory of every operation fails, once alone and once with all behind it. What
// is seen then is what was seen before, and what everybody is told later is what he would have been
// told; nothing is left, neither a reference nor a block.

namespace
{

constexpr heap::Mode MODES[] = {heap::Mode::ONCE, heap::Mode::FROM_THERE};

/// What a world tells when the operation is not made at all, and how that comes out with memory.
struct Untouched
{
    explicit Untouched(Scenario const& scenario)
    {
        World world;
        scenario.prepare(world);
        look = world.look();
        probe = world.probe();
        World other;
        scenario.prepare(other);
        scenario.act(other);
        outcome = other.outcome;
    }
    /// An operation that fails anyway may say why.
    bool mayAnswer(Outcome const& answer) const
    {
        return answer.code == -1 && (answer.text == "Out of memory" ||
                                     (outcome.code == -1 && answer.text == outcome.text));
    }

    std::string look;
    std::string probe;
    Outcome outcome;
};

/// Makes the operation with request `n` failing. Returns whether it got that far.
bool failOne(Scenario const& scenario, std::uint64_t n, heap::Mode mode, Untouched const& untouched)
{
    World world;
    scenario.prepare(world);
    bool happened = false;
    try {
        const heap::Failing failing(n, mode);
        scenario.act(world);
        happened = failing.happened();
    } catch (std::bad_alloc const&) {
        ADD_FAILURE() << "let std::bad_alloc pass";
        happened = true;
    }
    if (happened && scenario.kind != Kind::NESTED) {
        EXPECT_TRUE(untouched.mayAnswer(world.outcome))
            << world.outcome.code << " " << world.outcome.text;
        EXPECT_EQ(untouched.look, world.look());
        EXPECT_EQ(untouched.probe, world.probe());
    }
    EXPECT_EQ("", world.end());
    return happened;
}

/// Lets each request fail until the operation is made without one. Returns how many there were.
std::uint64_t failEach(Scenario const& scenario, heap::Mode mode)
{
    const Untouched untouched(scenario);
    for (std::uint64_t n = 0;; ++n) {
        SCOPED_TRACE(std::string(scenario.name) + ", request " + std::to_string(n) +
                     (mode == heap::Mode::ONCE ? " alone" : " and all behind it"));
        const std::int64_t living = heap::living();
        if (!failOne(scenario, n, mode, untouched))
            return n;
        EXPECT_EQ(living, heap::living());
        if (testing::Test::HasFailure())
            return n;
    }
}

void failAll(std::vector<Scenario> const& scenarios)
{
    std::uint64_t requests = 0;
    for (Scenario const& scenario : scenarios)
        for (heap::Mode mode : MODES) {
            requests += failEach(scenario, mode);
            if (testing::Test::HasFailure())
                return;
        }
    std::printf("%llu requests failed\n", static_cast<unsigned long long>(requests));
    EXPECT_LT(scenarios.size() / 2, requests);
}

TEST(WithoutMemory, RepositoryIsAsAfterARefusal)
{
    failAll(repositoryScenarios());
}

TEST(WithoutMemory, GroupIsAsAfterARefusal)
{
    failAll(groupScenarios());
}

TEST(WithoutMemory, NobodyIsToldALieAndNothingIsLeft)
{
    failAll(nestedScenarios());
}

/// What the operation asks of the heap.
std::uint64_t requestsOf(Scenario const& scenario, World& world)
{
    scenario.prepare(world);
    const std::uint64_t before = heap::count();
    scenario.act(world);
    return heap::count() - before;
}

TEST(WithoutMemory, GoingsAskForNone)
{
    int seen = 0;
    for (Scenario const& scenario : allScenarios()) {
        if (scenario.kind != Kind::GOING)
            continue;
        World world;
        EXPECT_EQ(0u, requestsOf(scenario, world)) << scenario.name;
        EXPECT_EQ("", world.end());
        ++seen;
    }
    EXPECT_EQ(10, seen);
}

TEST(WithoutMemory, GoingsInsideGoingsAskForNone)
{
    int seen = 0;
    for (Scenario const& scenario : nestedScenarios()) {
        const std::string name = scenario.name;
        const std::string deed = name.substr(name.find(' ') + 1);
        const bool clears = deed == "clears k" && name.find("A-d.m=1") == 0; // else d is gone
        if (name[1] != '-' || name.find("A-d.k=1") == 0 || (deed.find("removes ") != 0 && !clears))
            continue;
        World world;
        EXPECT_EQ(0u, requestsOf(scenario, world)) << scenario.name;
        EXPECT_EQ("", world.end());
        ++seen;
    }
    EXPECT_EQ(3 * 4 + 1, seen);
}

TEST(WithoutMemory, RollBacksAskForNone)
{
    int seen = 0;
    for (Scenario const& scenario : allScenarios()) {
        World world;
        requestsOf(scenario, world);
        const std::uint64_t end = heap::count();
        if (world.requestsAtRefusal != 0) {
            EXPECT_EQ(world.requestsAtRefusal, end) << scenario.name;
            EXPECT_EQ("refused", world.outcome.text) << scenario.name;
            ++seen;
        }
        EXPECT_EQ("", world.end()) << scenario.name;
    }
    EXPECT_EQ(8, seen);
}

} // namespace
