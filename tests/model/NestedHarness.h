#ifndef TESTS_MODEL_NESTED_HARNESS_H
#define TESTS_MODEL_NESTED_HARNESS_H

#include "NestedProgram.h"

/// Runs programs whose calls nest and tells of the ones that break the rules.
namespace nested
{
struct Report
{
    std::uint64_t calls = 0;
    std::uint64_t violations = 0;
    std::uint64_t hash = 14695981039346656037u;
};

/// Runs a program here; returns the violations, each on a line.
std::string violationsOf(NestedProgram const& program, Report& report);

/// Runs a program in a process of its own; true if it breaks a rule, crashes or hangs there.
bool failsApart(NestedProgram const& program);

/// The program without what is not needed for `failsApart`.
NestedProgram reduce(NestedProgram program);

/// Runs a program once more and tells the whole story, violations included.
std::string storyOf(NestedProgram const& program);

} // namespace nested

#endif
