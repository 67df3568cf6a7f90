#ifndef TESTS_FAILURE_SCENARIOS_H
#define TESTS_FAILURE_SCENARIOS_H

#include <vector>

#include "World.h"

/// What an operation does, and so what a failure in the middle of it leaves behind.
enum class Kind {
    COMING, ///< all or nothing
    CHANGE, ///< of an attachment or of timeslots: old, new, or what a refusal leaves
    GOING,  ///< always done; asks for no memory
    READ,   ///< changes nothing; std::bad_alloc passes
    NESTED  ///< with calls from inside; judged by what everybody is told
};

/// An operation in a situation.
struct Scenario
{
    char const* name;
    Kind kind;
    void (*prepare)(World& world);
    void (*act)(World& world);
};

std::vector<Scenario> const& repositoryScenarios();
std::vector<Scenario> const& groupScenarios();
std::vector<Scenario> const& nestedScenarios();
std::vector<Scenario> allScenarios();

#endif
