#include "NestedHarness.h"

#include <gtest/gtest.h>

namespace
{
#if defined(__SANITIZE_ADDRESS__)
const std::uint64_t CALLS = 100000;
#elif defined(__arm__)
const std::uint64_t CALLS = 30000; // under an emulator, a tenth as fast
#else
const std::uint64_t CALLS = 300000;
#endif

TEST(NestedPrograms, KeepTheRules)
{
    const std::uint64_t seed = 20240607;
    nested::Report report;
    for (std::uint64_t index = 0; report.calls < CALLS; ++index) {
        const NestedProgram program = nestedProgram(seed, index);
        ASSERT_EQ("", nested::violationsOf(program, report))
            << "registry_fuzz --nest --seed " << seed << " --program " << index << "\n"
            << toText(program) << nested::storyOf(program);
    }
    RecordProperty("calls", std::to_string(report.calls));
}

/// A story is told again in the same words.
TEST(NestedPrograms, AreReplayed)
{
    for (std::uint64_t index = 0; index < 20; ++index) {
        const NestedProgram program = nestedProgram(7, index);
        nested::Report first;
        nested::Report second;
        nested::violationsOf(program, first);
        nested::violationsOf(nestedProgram(7, index), second);
        EXPECT_EQ(first.hash, second.hash);
        EXPECT_LT(0u, first.calls);
        EXPECT_EQ(nested::storyOf(program), nested::storyOf(program));
    }
}
} // namespace
