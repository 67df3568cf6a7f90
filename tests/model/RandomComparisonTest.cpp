#include "Harness.h"

#include <gtest/gtest.h>

namespace
{
#if defined(__SANITIZE_ADDRESS__)
const std::uint64_t CALLS = 150000;
#elif defined(__arm__)
const std::uint64_t CALLS = 100000; // under an emulator, a tenth as fast
#elif defined(__OPTIMIZE__)
const std::uint64_t CALLS = 2500000;
#else
const std::uint64_t CALLS = 500000;
#endif

bool fails(Program const& program)
{
    harness::Report unused;
    return harness::compare(program, unused).found;
}

/// A program that differs, down to what it needs, with both traces.
std::string explain(std::uint64_t seed, std::uint64_t index)
{
    const Program reduced = harness::reduce(harness::programOf(seed, index), fails);
    harness::Report unused;
    return "registry_fuzz --seed " + std::to_string(seed) + " --program " + std::to_string(index) +
           "\n" + harness::toText(harness::compare(reduced, unused), reduced);
}

TEST(RandomComparison, LibraryDoesWhatTheModelDoes)
{
    const std::uint64_t seed = 20240607;
    harness::Report report;
    for (std::uint64_t index = 0; report.calls < CALLS; ++index)
        ASSERT_FALSE(harness::compare(harness::programOf(seed, index), report).found)
            << explain(seed, index);
    RecordProperty("calls", std::to_string(report.calls));
}

/// The stream is the same on every machine, whatever the width of its words.
TEST(RandomComparison, StreamOfASeed)
{
    harness::Report report;
    for (std::uint64_t index = 0; index < 40; ++index)
        harness::compare(harness::programOf(1, index), report);
    EXPECT_EQ(0u, report.differences);
    EXPECT_EQ(13299955907659492112u, report.hash);
}

/// A comparison that finds nothing must be able to find something.
TEST(RandomComparison, ReducesToTheStepsThatMatter)
{
    const Program program = harness::programOf(5, 0);
    const auto hasTwoAdditions = [](Program const& steps) {
        int additions = 0;
        for (Step const& step : steps)
            additions += step.kind == Step::Kind::ADD_DRIVER;
        return additions >= 2;
    };
    ASSERT_TRUE(hasTwoAdditions(program));
    const Program reduced = harness::reduce(program, hasTwoAdditions);
    ASSERT_EQ(2u, reduced.size());
    EXPECT_EQ(Step::Kind::ADD_DRIVER, reduced[0].kind);
}
} // namespace
